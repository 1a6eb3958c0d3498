#pragma once
// The editing commands of the file viewer that work on a whole editor: save
// it under a new name, print it, and exchange the Original and the Modified.

#include <QString>
#include <QtGlobal>

class frmCompareFiles;
class QWidget;

namespace filecompare {

// "ORIGINAL", "MODIFIED DIFF" and so on, as the save dialog's title names
// an editor; empty for an unknown identifier.
QString EditorName(qint32 lEditor);

// The save dialog's types, in the order the filter index counts them.
QString SaveEditorFilter();

// Asks for a file and writes the active editor to it in the chosen format.
// A file of this comparison is replaced only when the user says so; a
// read-only file or a failed write is reported and leaves the old file as it
// was. True when a file was written.
bool SaveActiveEditorAs(frmCompareFiles& form);

// The print dialog, with the margins on a tab of their own, then the
// active editor on the chosen printer.
void PrintActiveEditor(frmCompareFiles& form);

// Original and Modified change places, documents, paths and all, and the
// comparison runs again.
void SwapOriginalAndModified(frmCompareFiles& form);

} // namespace filecompare

#pragma once
// What the file viewer's commands on a whole editor (save as, print, swap;
// frmCompareFiles, FileCompareEditing.cpp) share with their tests.

#include <QString>
#include <QtGlobal>

namespace filecompare {

// "ORIGINAL", "MODIFIED DIFF" and so on, as the save dialog's title names
// an editor; empty for an unknown identifier.
QString EditorName(qint32 lEditor);

// The save dialog's types, in the order the filter index counts them.
QString SaveEditorFilter();

} // namespace filecompare

#pragma once
// Which road a file takes into an editor. The type of a file is decided by
// its name alone: the extension text is looked for anywhere in the full path,
// without regard to case, and the first rule that hits decides (so
// "report.xls.doc" is a spreadsheet and "/old.docs/a.txt" a Word file).

#include <QByteArray>
#include <QString>
#include <QtGlobal>

enum class LoadRoad {
    Spreadsheet,  // ".XLS", ".ODS"
    Word,         // Word, OpenDocument text and the other word processor formats; HTML unless compared as source
    Pdf,          // ".PDF"
    Copy,         // everything else goes in as it is: text, RTF, sources
};

// The road of a file bound for the Original or Modified editor.
LoadRoad RoadForEditorFile(const QString& path, bool bHTMLCompareSource);

// The diff panes take a shorter list: these are copied, everything else is
// converted as a Word file.
bool DiffPaneCopiesFile(const QString& path);

// The conversion type asked of the Word road: 2 plain text, 6 rich text.
qint32 WordConversionType(bool bRemoveFormatting);

// True when the first bytes of a staged file are neither RTF nor text: NUL
// bytes without a UTF-16 or UTF-32 byte order mark, as in executables,
// images, archives and undecoded office files.
bool LooksLikeBinaryData(const QByteArray& head);

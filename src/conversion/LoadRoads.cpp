#include "conversion/LoadRoads.h"

#include <initializer_list>

namespace {

bool pathHolds(const QString& path, std::initializer_list<const char*> texts)
{
    for (const char* t : texts)
        if (path.contains(QLatin1String(t), Qt::CaseInsensitive))
            return true;
    return false;
}

} // namespace

LoadRoad RoadForEditorFile(const QString& path, bool bHTMLCompareSource)
{
    // OpenDocument files join the spreadsheet and word groups: without them
    // an .ods or .odt file would be copied byte for byte into the editor.
    if (pathHolds(path, {".XLS", ".ODS"}))
        return LoadRoad::Spreadsheet;
    if (!bHTMLCompareSource && pathHolds(path, {".JHTM", ".XHTM", ".HTM"}))
        return LoadRoad::Word;
    if (pathHolds(path, {".REG", ".WPD", ".WPS", ".MCW", ".ANS", ".ASC", ".DOC", ".ODT"}))
        return LoadRoad::Word;
    if (pathHolds(path, {".PDF"}))
        return LoadRoad::Pdf;
    return LoadRoad::Copy;
}

bool DiffPaneCopiesFile(const QString& path)
{
    return pathHolds(path, {".DAT", ".BAS", ".FRM", ".C", ".cpp", ".TXT", ".RTF", ".JHTM", ".XHTM", ".HTM"});
}

qint32 WordConversionType(bool bRemoveFormatting)
{
    return bRemoveFormatting ? 2 : 6;
}

bool LooksLikeBinaryData(const QByteArray& head)
{
    if (head.startsWith("\xFF\xFE") || head.startsWith("\xFE\xFF") || head.startsWith(QByteArray("\x00\x00\xFE\xFF", 4)))
        return false;
    return head.contains('\0');
}

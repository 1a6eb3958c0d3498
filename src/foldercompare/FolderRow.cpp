#include "foldercompare/FolderRow.h"

namespace foldercompare {

namespace {

// The cells' leading blanks indent a file deeper than a folder, and a blank
// cell is as wide as its case has always made it: users sort and search the
// copied text by these columns.
const QString kFileIndent = QStringLiteral("       ");
const QString kFolderIndent = QStringLiteral("     ");

QString sideText(std::int32_t compare, const QString& none)
{
    if (compare == 0)
        return none;
    return compare < 0 ? QStringLiteral("[M]>[O]") : QStringLiteral("[O]>[M]");
}

void mark(FolderRow& row, int column, const QColor& colour)
{
    row.foreground[column] = colour;
    row.marked[column] = true;
}

} // namespace

FolderRow MakeFolderRow(const skeinmatch::FolderRecord& r, bool bIgnoreDateDifferences)
{
    std::int32_t lDateCompare = r.lDateCompare;
    if (bIgnoreDateDifferences && r.lContentStatus == 0 && r.lSizeCompare == 0)
        lDateCompare = 0;

    const bool isFile = r.lIsFile != 0;
    const QString name = QString::fromStdString(r.sName);
    const QString pathOriginal = QString::fromStdString(r.sPathOriginal);
    const QString pathModified = QString::fromStdString(r.sPathModified);

    FolderRow row;
    auto& t = row.texts;
    if (r.lOnlyInOriginal != 0) {
        t[0] = isFile ? kFileIndent + name : kFolderIndent + pathOriginal;
        t[1] = isFile ? QStringLiteral("    ") : kFolderIndent;
    } else if (r.lOnlyInModified != 0) {
        t[0] = isFile ? QStringLiteral(" ") : kFolderIndent;
        t[1] = isFile ? kFileIndent + name : kFolderIndent + pathModified;
    } else {
        t[0] = isFile ? kFileIndent + name : kFolderIndent + pathOriginal;
        t[1] = isFile ? kFileIndent + name : kFolderIndent + pathModified;
    }
    t[2] = r.lContentStatus == 0 ? QStringLiteral("  ")
        : r.lContentStatus == 1  ? QStringLiteral("CHANGED")
                                 : QStringLiteral("ERR: File");
    t[3] = sideText(r.lSizeCompare, QStringLiteral(" "));
    t[4] = sideText(lDateCompare, QStringLiteral(" "));

    const RowIcon icon = isFile ? RowIcon::File : RowIcon::Folder;
    if (r.lOnlyInOriginal != 0) {
        row.icons[0] = icon;
        mark(row, 0, kOnlyInOriginalColor);
        row.marked[1] = true;
    } else if (r.lOnlyInModified != 0) {
        row.icons[1] = icon;
        mark(row, 1, kOnlyInModifiedColor);
        row.marked[0] = true;
    } else {
        row.icons = {icon, icon};
        if (r.lSizeCompare != 0 || lDateCompare != 0 || r.lContentStatus != 0) {
            mark(row, 0, kChangedColor);
            mark(row, 1, kChangedColor);
            if (r.lContentStatus != 0)
                mark(row, 2, kChangedColor);
            if (r.lSizeCompare != 0)
                mark(row, 3, kChangedColor);
            if (lDateCompare != 0)
                mark(row, 4, kChangedColor);
        }
    }
    return row;
}

} // namespace foldercompare

#pragma once
// One finding as the folder viewer's grid shows it: the five cell texts, the
// icon and which cells are marked. Built from a finding record each time a
// row is painted, so the grid keeps nothing per row but the record's index.

#include "components/skeinmatch/FolderRecord.h"

#include <QColor>
#include <QString>

#include <array>

namespace foldercompare {

inline constexpr int kColumns = 5;

// Cell text colours and the background of a marked cell.
inline const QColor kChangedColor{255, 0, 0};
inline const QColor kOnlyInOriginalColor{0, 0, 255};
inline const QColor kOnlyInModifiedColor{0, 128, 0};
inline const QColor kMarkedBackground{0xEF, 0xEF, 0xEF};

enum class RowIcon { None, File, Folder };

struct FolderRow {
    std::array<QString, kColumns> texts;
    // The icon of column 0 and of column 1.
    std::array<RowIcon, 2> icons{RowIcon::None, RowIcon::None};
    // An invalid colour leaves the cell in the grid's own colours.
    std::array<QColor, kColumns> foreground;
    std::array<bool, kColumns> marked{};
};

// With bIgnoreDateDifferences a difference of date alone marks nothing; a
// date that differs beside a size or content difference stays marked.
FolderRow MakeFolderRow(const skeinmatch::FolderRecord& record, bool bIgnoreDateDifferences);

} // namespace foldercompare

#include "foldercompare/FolderGridModel.h"

#include <QApplication>
#include <QStyle>

namespace foldercompare {

namespace {

const char* const kHeaders[kColumns] = {"[O] Original Folder", "[M] Modified Folder", "Contents", "Size", "Date"};

} // namespace

FolderGridModel::FolderGridModel(QObject* parent)
    : QAbstractTableModel(parent)
{
    if (auto* app = qobject_cast<QApplication*>(QCoreApplication::instance())) {
        fileIcon_ = app->style()->standardIcon(QStyle::SP_FileIcon);
        folderIcon_ = app->style()->standardIcon(QStyle::SP_DirIcon);
    }
}

void FolderGridModel::Clear(bool bIgnoreDateDifferences)
{
    beginResetModel();
    rows_ = 0;
    ignoreDate_ = bIgnoreDateDifferences;
    for (CacheSlot& slot : cache_)
        slot.row = -1;
    endResetModel();
}

void FolderGridModel::AppendRows(qint32 count)
{
    if (count <= 0)
        return;
    beginInsertRows(QModelIndex(), rows_, rows_ + count - 1);
    rows_ += count;
    endInsertRows();
}

bool FolderGridModel::Record(int row, skeinmatch::FolderRecord& record) const
{
    return row >= 0 && row < rows_ && source_ && source_(row, record);
}

FolderRow FolderGridModel::Row(int row) const
{
    CacheSlot& slot = cache_[std::size_t(row) % kCacheSlots];
    if (slot.row != row) {
        skeinmatch::FolderRecord record;
        slot.value = Record(row, record) ? MakeFolderRow(record, ignoreDate_) : FolderRow{};
        slot.row = row;
    }
    return slot.value;
}

int FolderGridModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : rows_;
}

int FolderGridModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : kColumns;
}

QVariant FolderGridModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rows_)
        return {};
    const int col = index.column();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return Row(index.row()).texts[col];
    case Qt::ForegroundRole: {
        const QColor c = Row(index.row()).foreground[col];
        return c.isValid() ? QVariant(c) : QVariant();
    }
    case Qt::BackgroundRole:
        return Row(index.row()).marked[col] ? QVariant(kMarkedBackground) : QVariant();
    case Qt::DecorationRole: {
        if (col > 1)
            return {};
        const RowIcon icon = Row(index.row()).icons[col];
        if (icon == RowIcon::None)
            return {};
        return icon == RowIcon::File ? fileIcon_ : folderIcon_;
    }
    default:
        return {};
    }
}

QVariant FolderGridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < kColumns)
        return QString::fromLatin1(kHeaders[section]);
    if (orientation == Qt::Vertical && role == Qt::DisplayRole)
        return section + 1;
    return QAbstractTableModel::headerData(section, orientation, role);
}

} // namespace foldercompare

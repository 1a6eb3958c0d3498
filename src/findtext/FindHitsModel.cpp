#include "findtext/FindHitsModel.h"

#include "findtext/FindTextSession.h"

namespace {
const char* const kHeaders[] = {"#", "File", "Line", "Col", "Item Found"};
}

int FindHitsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(rows_.size());
}

int FindHitsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString FindHitsModel::File(int row) const { return files_.at(rows_[size_t(row)].file); }
qint32 FindHitsModel::Line(int row) const { return rows_[size_t(row)].line; }
qint32 FindHitsModel::Col(int row) const { return rows_[size_t(row)].col; }

QString FindHitsModel::Item(int row) const
{
    const Row& r = rows_[size_t(row)];
    return QString::fromUtf8(items_.data() + r.itemOffset, qsizetype(r.itemLength));
}

QString FindHitsModel::CellText(int row, int column) const
{
    switch (column) {
    case ColNumber: return QString::number(row + 1);
    case ColFile: return File(row);
    case ColLine: return QString::number(Line(row));
    case ColCol: return QString::number(Col(row));
    case ColItem: return Item(row);
    default: return QString();
    }
}

QVariant FindHitsModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= int(rows_.size()))
        return {};
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
        return CellText(index.row(), index.column());
    if (role == Qt::TextAlignmentRole && index.column() != ColFile && index.column() != ColItem)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant FindHitsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < ColumnCount)
        return QString::fromLatin1(kHeaders[section]);
    if (orientation == Qt::Horizontal && role == Qt::TextAlignmentRole)
        return int(Qt::AlignCenter);
    return {};
}

void FindHitsModel::Clear()
{
    beginResetModel();
    rows_.clear();
    rows_.shrink_to_fit();
    files_.clear();
    items_.clear();
    items_.shrink_to_fit();
    pending_.clear();
    endResetModel();
}

void FindHitsModel::BeginBatch(int expected)
{
    pending_.clear();
    pending_.reserve(size_t(qMax(0, expected)));
}

void FindHitsModel::AddHit(const FindHit& hit)
{
    pending_.push_back(hit);
}

void FindHitsModel::EndBatch()
{
    if (pending_.empty())
        return;
    const int first = int(rows_.size());
    beginInsertRows(QModelIndex(), first, first + int(pending_.size()) - 1);
    rows_.reserve(rows_.size() + pending_.size());
    for (const FindHit& h : pending_) {
        // Hits of one file come together, so the last name is the one to share.
        if (files_.isEmpty() || files_.constLast() != h.sFile)
            files_.append(h.sFile);
        const QByteArray item = h.sItem.toUtf8();
        rows_.push_back(Row{qint32(files_.size() - 1), h.lLine, h.lCol, quint32(item.size()),
                            quint64(items_.size())});
        items_.append(item.constData(), size_t(item.size()));
    }
    pending_.clear();
    endInsertRows();
}

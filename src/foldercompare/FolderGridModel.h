#pragma once
// The rows of the folder viewer's grid. Row i is finding record i of the
// run; the model keeps only how many rows are shown and reads a record back
// when its row is painted, so a grid of 200,000 rows costs what the rows on
// screen cost.

#include "components/skeinmatch/FolderRecord.h"
#include "foldercompare/FolderRow.h"

#include <QAbstractTableModel>
#include <QIcon>

#include <array>
#include <functional>

namespace foldercompare {

class FolderGridModel : public QAbstractTableModel {
    Q_OBJECT

public:
    using RecordSource = std::function<bool(qint32 index, skeinmatch::FolderRecord& record)>;

    explicit FolderGridModel(QObject* parent = nullptr);

    void setRecordSource(RecordSource source) { source_ = std::move(source); }

    // Empties the grid; the date rule of the next rows is fixed here, since
    // the run they come from was started with it.
    void Clear(bool bIgnoreDateDifferences);
    // Shows `count` more records, the next ones in order.
    void AppendRows(qint32 count);

    // The row as it is shown; an empty row when the record cannot be read.
    FolderRow Row(int row) const;
    bool Record(int row, skeinmatch::FolderRecord& record) const;
    bool IgnoreDateDifferences() const { return ignoreDate_; }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    RecordSource source_;
    qint32 rows_ = 0;
    bool ignoreDate_ = false;
    QIcon fileIcon_;
    QIcon folderIcon_;

    // Painting asks for every cell and role of a row in turn; one record read
    // serves them all.
    struct CacheSlot {
        int row = -1;
        FolderRow value;
    };
    static constexpr int kCacheSlots = 64;
    mutable std::array<CacheSlot, kCacheSlots> cache_;
};

} // namespace foldercompare

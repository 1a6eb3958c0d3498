#pragma once
// The rows of fgFiles: one hit a row, with its running number, file, line,
// column and the text found. A search can find a million hits, so rows are
// kept packed (one copy of each file name, the texts in one buffer) and
// turned into display strings only when the view asks for a cell.

#include "findtext/FindTextSession.h"

#include <QAbstractTableModel>
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <string>
#include <vector>

class FindHitsModel : public QAbstractTableModel {
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    enum Column { ColNumber = 0, ColFile, ColLine, ColCol, ColItem, ColumnCount };

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    void Clear();
    // Rows are added in batches so the view lays out once per batch.
    void BeginBatch(int expected);
    void AddHit(const FindHit& hit);
    void EndBatch();

    qint32 Count() const { return qint32(rows_.size()); }
    QString File(int row) const;
    qint32 Line(int row) const;
    qint32 Col(int row) const;
    QString Item(int row) const;
    // The text of a cell, as the grid shows it.
    QString CellText(int row, int column) const;

private:
    struct Row {
        qint32 file;
        qint32 line;
        qint32 col;
        quint32 itemLength;
        quint64 itemOffset;
    };
    std::vector<Row> rows_;
    QStringList files_;
    std::string items_;
    std::vector<FindHit> pending_;
};

#pragma once
// One sheet as the spreadsheet readers hand it over: rows of displayed cell
// texts, trailing empty cells and rows already dropped.

#include "components/lexiform/LexiformResult.h"
#include "components/lexiform/RangeList.h"

#include <QString>
#include <QStringList>
#include <vector>

namespace lexiform {

struct SheetTable {
    int number = 0;  // 1-based position in the workbook
    QString name;
    std::vector<QStringList> rows;
};

// What a reader is asked for.
struct SheetRequest {
    RangeList sheets;        // which sheets to keep; numbers past the end are ignored
    bool formulas = false;   // a formula cell shows "=" and its formula text
    ReadLimits limits;
};

struct WorkbookContent {
    int sheetCount = 0;
    std::vector<SheetTable> sheets;  // the requested ones, in workbook order
};

// Grows rows as cells arrive at (row, column), both 0-based, keeping count of
// the cells made so that a hostile file cannot ask for billions of them.
class SheetBuilder {
public:
    explicit SheetBuilder(long long maxCells, QString* limitReason = nullptr)
        : maxCells_(maxCells), limitReason_(limitReason) {}
    bool set(long long row, long long column, const QString& text);
    // Whether a sheet `rows` by `columns` stays within the cell budget once
    // padded; asked before any of it is built, so that a few repeated cells
    // never cost gigabytes before the refusal.
    bool fits(long long rows, long long columns);
    bool overLimit() const { return overLimit_; }
    std::vector<QStringList> take();

private:
    std::vector<QStringList> rows_;
    long long cells_ = 0;
    long long maxCells_;
    long long width_ = 0;
    QString* limitReason_;
    bool overLimit_ = false;
};

// 0-based column of "AB12" and its 0-based row; false when it is no reference.
bool parseCellReference(QStringView ref, long long& row, long long& column);

} // namespace lexiform

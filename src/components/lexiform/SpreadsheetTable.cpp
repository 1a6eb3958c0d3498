#include "components/lexiform/SpreadsheetTable.h"

#include <QLocale>
#include <algorithm>

namespace lexiform {

bool SheetBuilder::set(long long row, long long column, const QString& text)
{
    if (overLimit_)
        return false;
    if (text.isEmpty())
        return true;
    if (row < 0 || column < 0 || row >= (1LL << 24) || column >= (1LL << 16)) {
        overLimit_ = true;
        return false;
    }
    if (!fits(std::max(row + 1, (long long)rows_.size()), std::max(column + 1, width_)))
        return false;
    width_ = std::max(width_, column + 1);
    if (row >= (long long)rows_.size()) {
        cells_ += row + 1 - (long long)rows_.size();
        if (cells_ > maxCells_) {
            overLimit_ = true;
            return false;
        }
        rows_.resize(std::size_t(row + 1));
    }
    QStringList& r = rows_[std::size_t(row)];
    if (column >= r.size()) {
        cells_ += column + 1 - r.size();
        if (cells_ > maxCells_) {
            overLimit_ = true;
            return false;
        }
        r.resize(column + 1);
    }
    r[column] = text;
    return true;
}

bool SheetBuilder::fits(long long rows, long long columns)
{
    if (overLimit_)
        return false;
    // Both are below 2^24 and 2^16 when they come from cell references, but
    // a repeat count may be anything: no product that could overflow.
    if (rows <= 0 || columns <= 0 || rows <= maxCells_ / columns)
        return true;
    overLimit_ = true;
    if (limitReason_) {
        QLocale c = QLocale::c();
        c.setNumberOptions(QLocale::DefaultNumberOptions);
        *limitReason_ = QStringLiteral("the sheet would need %1 rows by %2 columns, more than the %3 cells "
                                       "a sheet may have")
                            .arg(c.toString(rows), c.toString(columns), c.toString(maxCells_));
    }
    return false;
}

std::vector<QStringList> SheetBuilder::take()
{
    qsizetype width = 0;
    for (const QStringList& r : rows_)
        width = std::max(width, r.size());
    // Every row as wide as the widest, so that columns line up when the
    // rows are written out; refused when that would exceed the cell budget.
    if (!fits((long long)rows_.size(), (long long)width))
        return {};
    for (QStringList& r : rows_)
        if (r.size() < width)
            r.resize(width);
    return std::move(rows_);
}

bool parseCellReference(QStringView ref, long long& row, long long& column)
{
    qsizetype i = 0;
    long long col = 0;
    while (i < ref.size() && ref[i] == QLatin1Char('$'))
        ++i;
    qsizetype letters = 0;
    while (i < ref.size() && ref[i].isLetter() && ref[i].unicode() < 128) {
        col = col * 26 + (ref[i].toUpper().unicode() - 'A' + 1);
        ++i;
        if (++letters > 4)
            return false;
    }
    if (letters == 0)
        return false;
    if (i < ref.size() && ref[i] == QLatin1Char('$'))
        ++i;
    long long r = 0;
    qsizetype digits = 0;
    while (i < ref.size() && ref[i].isDigit() && ref[i].unicode() < 128) {
        r = r * 10 + (ref[i].unicode() - '0');
        ++i;
        if (++digits > 8)
            return false;
    }
    if (digits == 0 || i != ref.size() || r < 1)
        return false;
    row = r - 1;
    column = col - 1;
    return true;
}

} // namespace lexiform

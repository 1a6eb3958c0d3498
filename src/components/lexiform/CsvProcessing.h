#pragma once
// The squaring-up steps applied to comma separated text so that two
// spreadsheets compare line by line.

#include "components/lexiform/CsvText.h"
#include "components/lexiform/RangeList.h"

#include <QByteArray>

namespace lexiform {

void trimCells(std::vector<CsvRecord>& records);

// Pads every cell but the last of a row with spaces up to the next multiple
// of the tab width. The width of a cell depends on that cell alone: widths
// taken from the longest cell of a column would shift every line of the
// column as soon as one cell in one file grows (an average that becomes
// 13.6666666666667), and the comparison would then see the whole sheet as
// changed. Cells of similar length, the usual case in a column, still line up.
void padCells(std::vector<CsvRecord>& records, int tabWidth = 8);

// Keeps the listed rows (1-based); rows past the end are not invented.
void cropRows(std::vector<CsvRecord>& records, const RangeList& rows);

// Keeps the listed columns (1-based) of each row; columns a row lacks are left out.
void cropColumns(std::vector<CsvRecord>& records, const RangeList& columns);

// Drops records whose cells are all empty or blank.
void removeBlankRecords(std::vector<CsvRecord>& records);

// Drops lines of a text file that hold nothing but blanks, keeping every
// other byte as it is; UTF-16 files (with a byte order mark) are handled in
// their own encoding.
QByteArray removeBlankLines(const QByteArray& bytes);

} // namespace lexiform

namespace lexiform {

// Blank lines out of a document that may be rich text or plain text.
QByteArray removeBlankLinesFromDocument(const QByteArray& bytes);

} // namespace lexiform

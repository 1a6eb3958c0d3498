#pragma once
// The squaring-up steps applied to comma separated text so that two
// spreadsheets compare line by line.

#include "components/lexiform/CsvText.h"
#include "components/lexiform/RangeList.h"

#include <QByteArray>

namespace lexiform {

void trimCells(std::vector<CsvRecord>& records);

// Pads every cell but the last of a row with spaces to the width of its
// column, the widest cell of that column in any of the sheets, so that the
// columns of every row of sheets compared together line up. The last cell
// is left alone: trailing blanks would only make noise in a comparison.
void padCells(const std::vector<std::vector<CsvRecord>*>& sheets);
inline void padCells(std::vector<CsvRecord>& records) { padCells({&records}); }

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

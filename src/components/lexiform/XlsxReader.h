#pragma once
// Values or formulas of the sheets of an Office Open XML workbook (.xlsx,
// .xlsm), read with libzip and a streaming XML reader.

#include "components/lexiform/SpreadsheetTable.h"

namespace lexiform {

// Result::Ok, or SourceInvalid for anything that is not a readable workbook.
int readXlsx(const QString& path, const SheetRequest& request, WorkbookContent& out);

// Moves the relative references of a shared formula written for one cell to
// another cell, rowDelta rows and columnDelta columns away. Absolute ($)
// parts, text in quotes and function names stay as they are.
QString shiftFormula(const QString& formula, long long rowDelta, long long columnDelta);

} // namespace lexiform

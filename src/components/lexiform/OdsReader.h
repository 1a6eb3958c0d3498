#pragma once
// Values or formulas of the sheets of an OpenDocument spreadsheet (.ods).

#include "components/lexiform/SpreadsheetTable.h"

namespace lexiform {

int readOds(const QString& path, const SheetRequest& request, WorkbookContent& out);

// "of:=SUM([.F2:.F6])" as a user types it: "=SUM(F2:F6)".
QString odfFormulaText(const QString& stored);

} // namespace lexiform

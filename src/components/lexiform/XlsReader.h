#pragma once
// Values of the sheets of a legacy binary workbook (.xls, BIFF 5 to 8)
// through FreeXL. FreeXL knows no cell formats beyond dates, so numbers come
// out in the general form.

#include "components/lexiform/SpreadsheetTable.h"

namespace lexiform {

int readXls(const QString& path, const SheetRequest& request, WorkbookContent& out);

} // namespace lexiform

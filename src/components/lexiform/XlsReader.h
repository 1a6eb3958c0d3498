#pragma once
// Values of the sheets of a legacy binary workbook (.xls, BIFF 5 to 8)
// through FreeXL. FreeXL knows no cell formats beyond dates, so numbers come
// out in the general form.
//
// FreeXL runs in tallyvane-xls-reader, a process of its own (XlsFrames.h):
// a damaged file that makes the library fault, loop or allocate without end
// costs only that process, and the file is "invalid" with the reason in
// request.limits.limitReason.

#include "components/lexiform/SpreadsheetTable.h"

#include <functional>
#include <string_view>

namespace lexiform {

int readXls(const QString& path, const SheetRequest& request, WorkbookContent& out);

// The sheets in the reader's output. `noValue` gives the text of a cell the
// reader had no value for. SourceInvalid, with a reason, for output that is
// not a whole workbook or asks for more cells than the request allows.
using XlsNoValue = std::function<QString(int sheetIndex, unsigned int row, unsigned short column)>;
int decodeXlsFrames(std::string_view frames, const SheetRequest& request, const XlsNoValue& noValue,
                    WorkbookContent& out);

// The reader program: $TALLYVANE_XLS_READER when set, else beside the
// running program (or one folder up, where test programs run from), else
// in the installed helper folder. Empty when there is none.
QString xlsReaderPath();

} // namespace lexiform

// fuzz-link: tv_lexiform
// Legacy workbooks through FreeXL: any bytes as an .xls file, values and
// every sheet; no crash and no cell past the budget.

#include "FuzzZip.h"
#include "components/lexiform/XlsReader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    lexiform::SheetRequest request;
    request.sheets = *lexiform::parseRangeList(QStringLiteral("*"), true);
    request.limits.maxCells = 1'000'000;
    lexiform::WorkbookContent book;
    if (fuzzzip::writeRaw(data, size))
        lexiform::readXls(fuzzzip::scratchPath(), request, book);
    long long cells = 0;
    for (const auto& sheet : book.sheets)
        for (const auto& row : sheet.rows)
            cells += row.size();
    if (cells > request.limits.maxCells)
        abort();
    return 0;
}

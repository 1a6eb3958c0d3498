// fuzz-link: tv_lexiform
// Legacy workbooks: any bytes as an .xls file, values and every sheet,
// through the reader process as the program runs it. FreeXL faults on some
// damaged files; here that must stay inside the reader (a dead child is an
// invalid file), so this process sees no crash, no leak and no cell past
// the budget. The reader is started for every input: a few dozen runs a
// second.

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

// fuzz-link: tv_lexiform
// What the .xls reader process sends back, as the program decodes it: any
// bytes, since a reader that FreeXL has led astray may send anything. No
// crash, no cell past the budget, no sheet that was not asked for.

#include "components/lexiform/XlsReader.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    lexiform::SheetRequest request;
    // The first byte picks all sheets or the second and third.
    request.sheets = *lexiform::parseRangeList(size && (data[0] & 1) ? QStringLiteral("2-3") : QStringLiteral("*"),
                                               true);
    request.limits.maxCells = 1'000'000;
    QString reason;
    request.limits.limitReason = &reason;
    lexiform::WorkbookContent book;
    const std::string_view frames(reinterpret_cast<const char*>(data), size);
    const auto formula = [](int, unsigned, unsigned short) { return QStringLiteral("f"); };
    const int rc = lexiform::decodeXlsFrames(frames, request, formula, book);
    if (rc != lexiform::Ok && rc != lexiform::SourceInvalid)
        abort();
    long long cells = 0;
    for (const auto& sheet : book.sheets) {
        if (!request.sheets.contains(sheet.number) || sheet.number > book.sheetCount)
            abort();
        for (const auto& row : sheet.rows)
            cells += row.size();
    }
    if (cells > request.limits.maxCells)
        abort();
    return 0;
}

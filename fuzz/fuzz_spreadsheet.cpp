// fuzz-link: tv_lexiform
// Workbooks: XLSX and ODS packages through the sheet readers.

#include "FuzzZip.h"
#include "components/lexiform/OdsReader.h"
#include "components/lexiform/XlsxReader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    lexiform::SheetRequest request;
    request.sheets = *lexiform::parseRangeList(QStringLiteral("*"), true);
    request.formulas = (data[0] & 0x80) != 0;
    request.limits.maxEntryBytes = 8 << 20;
    request.limits.maxCells = 1'000'000;
    lexiform::WorkbookContent book;
    const uint8_t mode = data[0] % 4;
    ++data;
    --size;
    switch (mode) {
    case 0:
        if (fuzzzip::writeRaw(data, size))
            lexiform::readXlsx(fuzzzip::scratchPath(), request, book);
        break;
    case 1:
        if (fuzzzip::writePackage(data, size, {"xl/worksheets/sheet1.xml", "xl/sharedStrings.xml", "xl/styles.xml",
                                               "xl/workbook.xml", "xl/_rels/workbook.xml.rels"}))
            lexiform::readXlsx(fuzzzip::scratchPath(), request, book);
        break;
    case 2:
        if (fuzzzip::writePackage(data, size, {"content.xml"}))
            lexiform::readOds(fuzzzip::scratchPath(), request, book);
        break;
    default:
        if (fuzzzip::writeRaw(data, size))
            lexiform::readOds(fuzzzip::scratchPath(), request, book);
        break;
    }
    return 0;
}

// fuzz-link: tv_lexiform
// Comma separated text and its processing steps: parsing never fails, and
// what is written parses back to the same cells.

#include "components/lexiform/CsvProcessing.h"
#include "components/lexiform/CsvText.h"
#include "components/lexiform/NumberFormat.h"
#include "components/lexiform/RangeList.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    // The first line is a range list and a number format, the rest the CSV.
    const qsizetype nl = bytes.indexOf('\n');
    const QString head = QString::fromUtf8(nl < 0 ? bytes : bytes.left(nl));
    const QString text = QString::fromUtf8(nl < 0 ? QByteArray() : bytes.mid(nl + 1));

    std::vector<lexiform::CsvRecord> records = lexiform::parseCsv(text);
    if (lexiform::parseCsv(lexiform::csvText(records)) != records)
        abort();  // what we write must read back as written

    lexiform::trimCells(records);
    lexiform::padCells(records);
    if (auto list = lexiform::parseRangeList(head.section(QLatin1Char('|'), 0, 0), false)) {
        lexiform::cropRows(records, *list);
        lexiform::cropColumns(records, *list);
        (void)list->select(1000);
    }
    lexiform::removeBlankRecords(records);
    (void)lexiform::csvText(records);
    (void)lexiform::removeBlankLines(bytes);

    const QString code = head.section(QLatin1Char('|'), 1);
    if (size >= 8) {
        double v;
        memcpy(&v, data, sizeof v);
        (void)lexiform::formatNumber(v, code, (data[0] & 1) != 0);
        (void)lexiform::formatGeneral(v);
    }
    return 0;
}

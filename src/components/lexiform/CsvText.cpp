#include "components/lexiform/CsvText.h"

namespace lexiform {

QString csvQuote(const QString& field, QChar separator)
{
    bool needs = false;
    for (QChar c : field) {
        if (c == separator || c == QLatin1Char('"') || c == QLatin1Char('\n') || c == QLatin1Char('\r')) {
            needs = true;
            break;
        }
    }
    if (!needs)
        return field;
    QString out;
    out.reserve(field.size() + 2);
    out += QLatin1Char('"');
    for (QChar c : field) {
        if (c == QLatin1Char('"'))
            out += QLatin1Char('"');
        out += c;
    }
    out += QLatin1Char('"');
    return out;
}

QString csvLine(const CsvRecord& record, QChar separator)
{
    QString line;
    for (qsizetype i = 0; i < record.size(); ++i) {
        if (i)
            line += separator;
        line += csvQuote(record[i], separator);
    }
    return line;
}

std::vector<CsvRecord> parseCsv(const QString& text, QChar separator)
{
    std::vector<CsvRecord> records;
    CsvRecord record;
    QString field;
    bool inQuotes = false;
    bool fieldStarted = false;  // something (even "") was seen for this record
    const qsizetype n = text.size();
    auto endRecord = [&] {
        record.append(field);
        field.clear();
        records.push_back(std::move(record));
        record = CsvRecord();
        fieldStarted = false;
    };
    for (qsizetype i = 0; i < n; ++i) {
        QChar c = text[i];
        if (inQuotes) {
            if (c == QLatin1Char('"')) {
                if (i + 1 < n && text[i + 1] == QLatin1Char('"')) {
                    field += c;
                    ++i;
                } else {
                    inQuotes = false;
                }
            } else {
                field += c;
            }
            continue;
        }
        if (c == QLatin1Char('"') && field.isEmpty()) {
            inQuotes = true;
            fieldStarted = true;
        } else if (c == separator) {
            record.append(field);
            field.clear();
            fieldStarted = true;
        } else if (c == QLatin1Char('\n') || c == QLatin1Char('\r')) {
            if (c == QLatin1Char('\r') && i + 1 < n && text[i + 1] == QLatin1Char('\n'))
                ++i;
            endRecord();
        } else {
            field += c;
            fieldStarted = true;
        }
    }
    if (fieldStarted || !field.isEmpty() || !record.isEmpty())
        endRecord();
    return records;
}

QString csvText(const std::vector<CsvRecord>& records)
{
    QString out;
    for (const CsvRecord& r : records) {
        out += csvLine(r);
        out += QLatin1Char('\n');
    }
    return out;
}

} // namespace lexiform

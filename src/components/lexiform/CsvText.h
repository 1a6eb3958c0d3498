#pragma once
// Comma separated text as the spreadsheet road writes and reprocesses it:
// fields quoted only when they hold a comma, a quote or a line end, quotes
// doubled inside (RFC 4180). Parsing is tolerant: a stray quote in an
// unquoted field is taken as text, and an unterminated quoted field ends at
// the end of the input.

#include <QString>
#include <QStringList>
#include <vector>

namespace lexiform {

using CsvRecord = QStringList;

QString csvQuote(const QString& field, QChar separator = QLatin1Char(','));
QString csvLine(const CsvRecord& record, QChar separator = QLatin1Char(','));
std::vector<CsvRecord> parseCsv(const QString& text, QChar separator = QLatin1Char(','));

// Records joined with '\n', each line ended.
QString csvText(const std::vector<CsvRecord>& records);

} // namespace lexiform

#include "components/lexiform/CsvProcessing.h"

#include "components/lexiform/RtfReader.h"
#include "components/lexiform/RtfWriter.h"

#include <QStringDecoder>
#include <algorithm>
#include <QStringEncoder>

namespace lexiform {

void trimCells(std::vector<CsvRecord>& records)
{
    for (CsvRecord& r : records)
        for (QString& cell : r) {
            qsizetype b = 0, e = cell.size();
            while (b < e && (cell[b] == QLatin1Char(' ') || cell[b] == QLatin1Char('\t')))
                ++b;
            while (e > b && (cell[e - 1] == QLatin1Char(' ') || cell[e - 1] == QLatin1Char('\t')))
                --e;
            if (b > 0 || e < cell.size())
                cell = cell.mid(b, e - b);
        }
}

void padCells(const std::vector<std::vector<CsvRecord>*>& sheets)
{
    std::vector<qsizetype> widths;
    for (const std::vector<CsvRecord>* records : sheets)
        for (const CsvRecord& r : *records)
            for (qsizetype i = 0; i + 1 < r.size(); ++i) {
                if (std::size_t(i) >= widths.size())
                    widths.resize(std::size_t(i) + 1, 0);
                widths[std::size_t(i)] = std::max(widths[std::size_t(i)], r[i].size());
            }
    for (std::vector<CsvRecord>* records : sheets)
        for (CsvRecord& r : *records)
            for (qsizetype i = 0; i + 1 < r.size(); ++i)
                r[i] = r[i].leftJustified(widths[std::size_t(i)], QLatin1Char(' '));
}

void cropRows(std::vector<CsvRecord>& records, const RangeList& rows)
{
    std::vector<CsvRecord> kept;
    for (std::size_t i = 0; i < records.size(); ++i)
        if (rows.contains((long long)i + 1))
            kept.push_back(std::move(records[i]));
    records = std::move(kept);
}

void cropColumns(std::vector<CsvRecord>& records, const RangeList& columns)
{
    for (CsvRecord& r : records) {
        CsvRecord kept;
        for (qsizetype i = 0; i < r.size(); ++i)
            if (columns.contains(i + 1))
                kept.append(r[i]);
        r = std::move(kept);
    }
}

void removeBlankRecords(std::vector<CsvRecord>& records)
{
    std::vector<CsvRecord> kept;
    for (CsvRecord& r : records) {
        bool blank = true;
        for (const QString& c : r)
            if (!c.trimmed().isEmpty()) {
                blank = false;
                break;
            }
        if (!blank)
            kept.push_back(std::move(r));
    }
    records = std::move(kept);
}

namespace {

bool blankLine(QStringView line)
{
    for (QChar c : line)
        if (c != QLatin1Char(' ') && c != QLatin1Char('\t') && c != QLatin1Char('\r') && c != QLatin1Char('\f')
            && c != QLatin1Char('\v'))
            return false;
    return true;
}

QByteArray removeBlankLinesUtf16(const QByteArray& bytes, QStringConverter::Encoding enc)
{
    QStringDecoder decode(enc, QStringConverter::Flag::Stateless);
    QString text = decode(bytes.mid(2));
    QString out;
    const auto lines = QStringView(text).split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < lines.size(); ++i) {
        bool last = i + 1 == lines.size();
        if (blankLine(lines[i]))
            continue;
        out += lines[i];
        if (!last)
            out += QLatin1Char('\n');
    }
    QStringEncoder encode(enc, QStringConverter::Flag::Stateless);
    return bytes.left(2) + QByteArray(encode(out));
}

} // namespace

QByteArray removeBlankLines(const QByteArray& bytes)
{
    if (bytes.startsWith("\xFF\xFE"))
        return removeBlankLinesUtf16(bytes, QStringConverter::Utf16LE);
    if (bytes.startsWith("\xFE\xFF"))
        return removeBlankLinesUtf16(bytes, QStringConverter::Utf16BE);
    QByteArray out;
    out.reserve(bytes.size());
    qsizetype start = 0;
    const qsizetype n = bytes.size();
    while (start < n) {
        qsizetype end = bytes.indexOf('\n', start);
        qsizetype stop = end < 0 ? n : end + 1;
        bool blank = true;
        for (qsizetype i = start; i < (end < 0 ? n : end); ++i) {
            char c = bytes[i];
            if (c != ' ' && c != '\t' && c != '\r' && c != '\f' && c != '\v') {
                blank = false;
                break;
            }
        }
        if (!blank)
            out.append(bytes.constData() + start, stop - start);
        start = stop;
    }
    return out;
}

} // namespace lexiform

namespace lexiform {

QByteArray removeBlankLinesFromDocument(const QByteArray& bytes)
{
    if (!looksLikeRtf(bytes))
        return removeBlankLines(bytes);
    // Rich text: a blank line is a paragraph with nothing but blanks in it.
    Document doc = readRtf(bytes);
    std::vector<Paragraph> kept;
    for (Paragraph& p : doc.paragraphs)
        if (!p.text().trimmed().isEmpty())
            kept.push_back(std::move(p));
    doc.paragraphs = std::move(kept);
    return writeRtf(doc);
}

} // namespace lexiform

#include "components/lexiform/OdsReader.h"

#include "components/lexiform/FastXmlReader.h"
#include "components/lexiform/NumberFormat.h"
#include "components/lexiform/XmlChildren.h"
#include "components/lexiform/ZipPackage.h"

namespace lexiform {

namespace {

// Text of a cell's <text:p> paragraphs, joined by line feeds, with the
// spacing elements expanded.
QString readCellText(FastXmlReader& xml)
{
    QString text;
    int paragraphs = 0;
    int depth = 1;
    int inParagraph = 0;
    while (depth > 0 && !xml.atEnd()) {
        switch (xml.readNext()) {
        case FastXmlReader::StartElement: {
            ++depth;
            if (xml.isName("p") || xml.isName("h")) {
                if (paragraphs++)
                    text += QLatin1Char('\n');
                ++inParagraph;
            } else if (xml.isName("s")) {
                int c = xml.attribute("c").toInt();
                text += QString(std::clamp(c, 1, 1000), QLatin1Char(' '));
            } else if (xml.isName("tab")) {
                text += QLatin1Char('\t');
            } else if (xml.isName("line-break")) {
                text += QLatin1Char('\n');
            } else if (xml.isName("annotation") || xml.isName("note")) {
                xml.skipCurrentElement();
                --depth;
            }
            break;
        }
        case FastXmlReader::EndElement:
            --depth;
            if (xml.isName("p") || xml.isName("h"))
                --inParagraph;
            break;
        case FastXmlReader::Characters:
            if (inParagraph > 0)
                text += xml.text();
            break;
        default:
            break;
        }
    }
    return text;
}

QString isoDateValue(QStringView v)
{
    // "2024-01-08" or "2024-01-08T13:45:00[.123]"
    QString s = v.toString();
    qsizetype t = s.indexOf(QLatin1Char('T'));
    if (t < 0)
        return s;
    QString time = s.mid(t + 1).section(QLatin1Char('.'), 0, 0);
    if (time == QLatin1String("00:00:00"))
        return s.left(t);
    return s.left(t) + QLatin1Char(' ') + time;
}

QString isoTimeValue(QStringView v)
{
    // ISO duration "PT13H45M00S"
    QString s = v.toString();
    long long h = 0, m = 0;
    double sec = 0;
    qsizetype p = s.indexOf(QLatin1Char('T'));
    if (p < 0)
        return s;
    QString num;
    for (qsizetype i = p + 1; i < s.size(); ++i) {
        QChar c = s[i];
        if (c.isDigit() || c == QLatin1Char('.'))
            num += c;
        else if (c == QLatin1Char('H')) {
            h = num.toLongLong();
            num.clear();
        } else if (c == QLatin1Char('M')) {
            m = num.toLongLong();
            num.clear();
        } else if (c == QLatin1Char('S')) {
            sec = num.toDouble();
            num.clear();
        }
    }
    long long total = h * 3600 + m * 60 + std::llround(sec);
    return QStringLiteral("%1:%2:%3")
        .arg(total / 3600, 2, 10, QLatin1Char('0'))
        .arg((total / 60) % 60, 2, 10, QLatin1Char('0'))
        .arg(total % 60, 2, 10, QLatin1Char('0'));
}

class TableReader {
public:
    TableReader(const SheetRequest& request) : request_(request) {}

    // Reads one <table:table> (the reader stands on its start tag).
    bool read(FastXmlReader& xml, bool keep, SheetTable& table)
    {
        SheetBuilder builder(request_.limits.maxCells, request_.limits.limitReason);
        long long row = 0;
        for (XmlChildren children(xml); children.next();) {
            if (xml.isName("table-row")) {
                long long repeat = std::max(1LL, xml.attribute("number-rows-repeated").toLongLong());
                if (!keep) {
                    xml.skipCurrentElement();
                    continue;
                }
                QStringList cells;
                bool any = readRow(xml, cells);
                if (!any) {
                    // Blank rows, often repeated a million times to the sheet's
                    // end, are only counted; they exist in the output only if a
                    // row with content follows.
                    row += repeat;
                    continue;
                }
                if (!builder.fits(row + repeat, cells.size()))
                    return false;
                for (long long k = 0; k < repeat; ++k, ++row)
                    for (qsizetype c = 0; c < cells.size(); ++c)
                        if (!builder.set(row, c, cells[c]))
                            return false;
            } else if (xml.isName("table") || xml.isName("shapes") || xml.isName("named-expressions")
                       || xml.isName("forms")) {
                xml.skipCurrentElement();  // sub-tables and drawings are not cells
            } else {
                children.enter();
            }
        }
        if (builder.overLimit())
            return false;
        table.rows = builder.take();
        return !builder.overLimit();
    }

private:
    // Reads the cells of one row; true when one of them has content.
    bool readRow(FastXmlReader& xml, QStringList& cells)
    {
        long long pendingBlank = 0;
        bool any = false;
        while (!xml.atEnd()) {
            auto t = xml.readNext();
            if (t == FastXmlReader::EndElement && xml.isName("table-row"))
                break;
            if (t != FastXmlReader::StartElement)
                continue;
            if (!xml.isName("table-cell") && !xml.isName("covered-table-cell")) {
                xml.skipCurrentElement();
                continue;
            }
            long long repeat = std::max(1LL, xml.attribute("number-columns-repeated").toLongLong());
            const QString type = xml.attribute("value-type");
            const QString value = xml.attribute("value");
            const QString dateValue = xml.attribute("date-value");
            const QString timeValue = xml.attribute("time-value");
            const QString boolValue = xml.attribute("boolean-value");
            const QString formula = xml.attribute("formula");
            QString text = readCellText(xml);
            QString shown;
            if (request_.formulas && !formula.isEmpty()) {
                shown = odfFormulaText(formula);
            } else if (type == QLatin1String("date") && !dateValue.isEmpty()) {
                shown = isoDateValue(dateValue);
            } else if (type == QLatin1String("time") && !timeValue.isEmpty()) {
                shown = isoTimeValue(timeValue);
            } else if (type == QLatin1String("boolean")) {
                shown = boolValue == QLatin1String("true") ? QStringLiteral("TRUE") : QStringLiteral("FALSE");
            } else if (!text.isEmpty()) {
                shown = text;
            } else if (!value.isEmpty()) {
                bool ok = false;
                double v = value.toDouble(&ok);
                shown = ok ? formatGeneral(v) : value;
            }
            if (shown.isEmpty()) {
                pendingBlank += repeat;
                continue;
            }
            if (cells.size() + pendingBlank + repeat > request_.limits.maxCells || pendingBlank + repeat > (1LL << 16))
                return any;  // a row wider than any program makes: keep what came before
            for (long long k = 0; k < pendingBlank; ++k)
                cells.append(QString());
            pendingBlank = 0;
            for (long long k = 0; k < repeat; ++k)
                cells.append(shown);
            any = true;
        }
        return any;
    }

    const SheetRequest& request_;
};

} // namespace

QString odfFormulaText(const QString& stored)
{
    QString f = stored;
    // Namespace prefix: "of:=", "oooc:=", "msoxl:="
    qsizetype colon = f.indexOf(QLatin1Char(':'));
    if (colon > 0 && colon + 1 < f.size() && f[colon + 1] == QLatin1Char('=')) {
        bool prefix = true;
        for (qsizetype i = 0; i < colon; ++i)
            if (!f[i].isLetter())
                prefix = false;
        if (prefix)
            f = f.mid(colon + 1);
    }
    if (!f.startsWith(QLatin1Char('=')))
        f.prepend(QLatin1Char('='));
    QString out;
    bool inString = false;
    bool inRef = false;
    bool atRefPart = false;  // at the start of a reference or just after ':'
    for (qsizetype i = 0; i < f.size(); ++i) {
        QChar c = f[i];
        if (inString) {
            out += c;
            if (c == QLatin1Char('"'))
                inString = false;
            continue;
        }
        if (inRef) {
            if (c == QLatin1Char(']')) {
                inRef = false;
                continue;
            }
            if (c == QLatin1Char('.') && atRefPart) {
                atRefPart = false;
                continue;
            }
            atRefPart = c == QLatin1Char(':');
            out += c;
            continue;
        }
        if (c == QLatin1Char('"')) {
            inString = true;
            out += c;
        } else if (c == QLatin1Char('[')) {
            inRef = true;
            atRefPart = true;
        } else {
            out += c;
        }
    }
    return out;
}

int readOds(const QString& path, const SheetRequest& request, WorkbookContent& out)
{
    out = {};
    ZipPackage zip(request.limits);
    if (!zip.open(path))
        return SourceInvalid;
    auto member = zip.openMember(QStringLiteral("content.xml"));
    if (!member)
        return SourceInvalid;
    FastXmlReader xml(member.get());
    bool sawSpreadsheet = false;
    int number = 0;
    TableReader reader(request);
    while (!xml.atEnd()) {
        if (xml.readNext() != FastXmlReader::StartElement)
            continue;
        if (xml.isName("spreadsheet")) {
            sawSpreadsheet = true;
        } else if (sawSpreadsheet && xml.isName("table")) {
            ++number;
            SheetTable table;
            table.number = number;
            table.name = xml.attribute("name");
            bool keep = request.sheets.contains(number);
            if (!reader.read(xml, keep, table))
                return SourceInvalid;
            if (keep)
                out.sheets.push_back(std::move(table));
        }
    }
    if (xml.hasError() || member->overLimit() || member->corrupt() || !sawSpreadsheet)
        return SourceInvalid;
    out.sheetCount = number;
    return Ok;
}

} // namespace lexiform

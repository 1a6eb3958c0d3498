#include "components/lexiform/XlsxReader.h"

#include "components/lexiform/FastXmlReader.h"
#include "components/lexiform/NumberFormat.h"
#include "components/lexiform/XmlChildren.h"
#include "components/lexiform/ZipPackage.h"

#include <QHash>
#include <QXmlStreamReader>
#include <map>

namespace lexiform {

namespace {

// Text of an <si> or <is> element: its <t> elements, leaving out phonetic runs.
QString readStringItem(FastXmlReader& xml)
{
    QString text;
    int depth = 1;
    int phonetic = 0;
    while (depth > 0 && !xml.atEnd()) {
        switch (xml.readNext()) {
        case FastXmlReader::StartElement:
            ++depth;
            if (xml.isName("rPh"))
                ++phonetic;
            else if (xml.isName("t") && !phonetic) {
                text += xml.readElementText();
                --depth;
            }
            break;
        case FastXmlReader::EndElement:
            --depth;
            if (xml.isName("rPh"))
                --phonetic;
            break;
        default:
            break;
        }
    }
    return text;
}

struct Styles {
    std::vector<QString> cellFormats;  // format code by xf index
};

Styles readStyles(const ZipPackage& zip, const QString& path)
{
    Styles styles;
    auto member = zip.openMember(path);
    if (!member)
        return styles;
    QHash<int, QString> custom;
    QXmlStreamReader xml(member.get());
    bool inCellXfs = false;
    while (!xml.atEnd()) {
        auto t = xml.readNext();
        if (t == QXmlStreamReader::StartElement) {
            if (xml.name() == QLatin1String("numFmt")) {
                const auto a = xml.attributes();
                custom.insert(a.value(QLatin1String("numFmtId")).toInt(), a.value(QLatin1String("formatCode")).toString());
            } else if (xml.name() == QLatin1String("cellXfs")) {
                inCellXfs = true;
            } else if (inCellXfs && xml.name() == QLatin1String("xf")) {
                int id = xml.attributes().value(QLatin1String("numFmtId")).toInt();
                styles.cellFormats.push_back(custom.contains(id) ? custom.value(id) : builtinNumberFormat(id));
                if (styles.cellFormats.size() > 1'000'000)
                    break;
            }
        } else if (t == QXmlStreamReader::EndElement && xml.name() == QLatin1String("cellXfs")) {
            inCellXfs = false;
        }
    }
    return styles;
}

bool readSharedStrings(const ZipPackage& zip, const QString& path, std::vector<QString>& strings)
{
    auto member = zip.openMember(path);
    if (!member)
        return true;  // a workbook without text has none
    FastXmlReader xml(member.get());
    while (!xml.atEnd()) {
        if (xml.readNext() == FastXmlReader::StartElement && xml.isName("si"))
            strings.push_back(readStringItem(xml));
    }
    return !member->overLimit() && !member->corrupt() && !xml.hasError();
}

struct SharedFormula {
    QString text;
    long long row = 0;
    long long column = 0;
};

class SheetReader {
public:
    SheetReader(const std::vector<QString>& strings, const Styles& styles, bool date1904, const SheetRequest& request)
        : strings_(strings), styles_(styles), date1904_(date1904), request_(request), builder_(request.limits.maxCells, request.limits.limitReason)
    {
    }

    int read(const ZipPackage& zip, const QString& path, SheetTable& table)
    {
        auto member = zip.openMember(path);
        if (!member)
            return SourceInvalid;
        FastXmlReader xml(member.get());
        long long row = -1;
        long long nextColumn = 0;
        while (!xml.atEnd()) {
            if (xml.readNext() != FastXmlReader::StartElement)
                continue;
            if (xml.isName("row")) {
                bool ok = false;
                long long r = xml.attribute("r").toLongLong(&ok);
                row = ok && r >= 1 ? r - 1 : row + 1;
                nextColumn = 0;
            } else if (xml.isName("c")) {
                if (row < 0)
                    row = 0;
                if (!readCell(xml, row, nextColumn))
                    break;
            }
        }
        if (member->overLimit() || member->corrupt() || builder_.overLimit() || xml.hasError())
            return SourceInvalid;
        table.rows = builder_.take();
        if (builder_.overLimit())
            return SourceInvalid;
        return Ok;
    }

private:
    bool readCell(FastXmlReader& xml, long long row, long long& nextColumn)
    {
        long long r = row, column = nextColumn;
        const QString ref = xml.attribute("r");
        if (!ref.isEmpty()) {
            long long rr = 0, cc = 0;
            if (parseCellReference(ref, rr, cc)) {
                r = rr;
                column = cc;
            }
        }
        nextColumn = column + 1;
        const QString type = xml.attribute("t");
        const int style = xml.attribute("s").toInt();
        QString value, formula, inlineText;
        bool hasFormula = false;
        for (XmlChildren children(xml); children.next();) {
            if (xml.isName("v")) {
                value = xml.readElementText();
            } else if (xml.isName("f")) {
                const QString ft = xml.attribute("t");
                const QString si = xml.attribute("si");
                formula = xml.readElementText();
                hasFormula = true;
                if (ft == QLatin1String("shared") && !si.isEmpty()) {
                    if (!formula.isEmpty()) {
                        shared_[si] = {formula, r, column};
                    } else if (auto it = shared_.find(si); it != shared_.end()) {
                        formula = shiftFormula(it->second.text, r - it->second.row, column - it->second.column);
                    }
                }
            } else if (xml.isName("is")) {
                inlineText = readStringItem(xml);
            } else {
                children.enter();
            }
        }
        QString shown;
        if (request_.formulas && hasFormula && !formula.isEmpty())
            shown = QLatin1Char('=') + formula;
        else
            shown = display(type, value, inlineText, style);
        return builder_.set(r, column, shown);
    }

    QString display(const QString& type, const QString& value, const QString& inlineText, int style) const
    {
        if (type == QLatin1String("s")) {
            bool ok = false;
            long long i = value.trimmed().toLongLong(&ok);
            return ok && i >= 0 && i < (long long)strings_.size() ? strings_[std::size_t(i)] : QString();
        }
        if (type == QLatin1String("inlineStr"))
            return inlineText;
        if (type == QLatin1String("str") || type == QLatin1String("e"))
            return value;
        if (type == QLatin1String("b"))
            return value.trimmed() == QLatin1String("1") ? QStringLiteral("TRUE") : QStringLiteral("FALSE");
        if (value.isEmpty())
            return QString();
        if (type == QLatin1String("d"))
            return QString(value).replace(QLatin1Char('T'), QLatin1Char(' '));  // ISO date-time as stored
        bool ok = false;
        double v = value.trimmed().toDouble(&ok);
        if (!ok)
            return value;
        QString code = style >= 0 && std::size_t(style) < styles_.cellFormats.size() ? styles_.cellFormats[std::size_t(style)] : QString();
        return formatNumber(v, code, date1904_);
    }

    const std::vector<QString>& strings_;
    const Styles& styles_;
    bool date1904_;
    const SheetRequest& request_;
    SheetBuilder builder_;
    std::map<QString, SharedFormula> shared_;
};

} // namespace

QString shiftFormula(const QString& formula, long long rowDelta, long long columnDelta)
{
    QString out;
    const qsizetype n = formula.size();
    qsizetype i = 0;
    auto isNameChar = [](QChar c) { return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('.'); };
    while (i < n) {
        QChar c = formula[i];
        if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
            qsizetype j = i + 1;
            while (j < n) {
                if (formula[j] == c) {
                    if (j + 1 < n && formula[j + 1] == c) {
                        j += 2;
                        continue;
                    }
                    break;
                }
                ++j;
            }
            out += formula.mid(i, j - i + 1);
            i = j + 1;
            continue;
        }
        bool boundary = i == 0 || !isNameChar(formula[i - 1]);
        if (boundary && (c == QLatin1Char('$') || (c.isLetter() && c.unicode() < 128))) {
            // Try [$]LETTERS[$]DIGITS not followed by a name character or "(".
            qsizetype j = i;
            bool colAbs = false, rowAbs = false;
            if (formula[j] == QLatin1Char('$')) {
                colAbs = true;
                ++j;
            }
            qsizetype ls = j;
            while (j < n && formula[j].isLetter() && formula[j].unicode() < 128)
                ++j;
            qsizetype le = j;
            if (j < n && formula[j] == QLatin1Char('$')) {
                rowAbs = true;
                ++j;
            }
            qsizetype ds = j;
            while (j < n && formula[j].isDigit())
                ++j;
            qsizetype de = j;
            bool follows = j < n && (isNameChar(formula[j]) || formula[j] == QLatin1Char('(') || formula[j] == QLatin1Char('!'));
            if (le > ls && le - ls <= 3 && de > ds && !follows) {
                long long col = 0;
                for (qsizetype k = ls; k < le; ++k)
                    col = col * 26 + (formula[k].toUpper().unicode() - 'A' + 1);
                long long row = formula.mid(ds, de - ds).toLongLong();
                if (!colAbs)
                    col += columnDelta;
                if (!rowAbs)
                    row += rowDelta;
                if (col >= 1 && row >= 1) {
                    QString letters;
                    for (long long k = col; k > 0; k = (k - 1) / 26)
                        letters.prepend(QChar(char16_t('A' + (k - 1) % 26)));
                    out += (colAbs ? QStringLiteral("$") : QString()) + letters + (rowAbs ? QStringLiteral("$") : QString())
                           + QString::number(row);
                } else {
                    out += QStringLiteral("#REF!");
                }
                i = j;
                continue;
            }
            // Not a reference: copy the whole name so that its tail is not
            // mistaken for one.
            qsizetype k = i + 1;
            while (k < n && isNameChar(formula[k]))
                ++k;
            out += formula.mid(i, k - i);
            i = k;
            continue;
        }
        out += c;
        ++i;
    }
    return out;
}

int readXlsx(const QString& path, const SheetRequest& request, WorkbookContent& out)
{
    out = {};
    ZipPackage zip(request.limits);
    if (!zip.open(path))
        return SourceInvalid;

    const QString workbookPath = officeDocumentPath(zip, QStringLiteral("xl/workbook.xml"));
    if (!zip.contains(workbookPath))
        return SourceInvalid;

    struct SheetRef {
        QString name;
        QString relId;
    };
    std::vector<SheetRef> sheetRefs;
    bool date1904 = false;
    bool sawWorkbook = false;
    {
        auto member = zip.openMember(workbookPath);
        if (!member)
            return SourceInvalid;
        QXmlStreamReader xml(member.get());
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            const auto a = xml.attributes();
            if (xml.name() == QLatin1String("workbook"))
                sawWorkbook = true;
            if (xml.name() == QLatin1String("sheet")) {
                QString rid;
                for (const auto& attr : a)
                    if (attr.name() == QLatin1String("id"))
                        rid = attr.value().toString();
                sheetRefs.push_back({a.value(QLatin1String("name")).toString(), rid});
            } else if (xml.name() == QLatin1String("workbookPr")) {
                QStringView d = a.value(QLatin1String("date1904"));
                date1904 = d == QLatin1String("1") || d == QLatin1String("true");
            }
        }
        if (xml.hasError() || member->overLimit() || !sawWorkbook)
            return SourceInvalid;  // a word processor file renamed, or no workbook at all
    }
    const QString base = partFolder(workbookPath);
    const QString relsPath = (base.isEmpty() ? QString() : base + QLatin1Char('/')) + QStringLiteral("_rels/")
                             + workbookPath.mid(base.isEmpty() ? 0 : base.size() + 1) + QStringLiteral(".rels");
    QHash<QString, QString> targets;  // by relationship id
    QString stylesPath, stringsPath;
    for (const Relationship& rel : readRelationships(zip, relsPath, base)) {
        targets.insert(rel.id, rel.target);
        if (rel.type.endsWith(QLatin1String("/styles")))
            stylesPath = rel.target;
        else if (rel.type.endsWith(QLatin1String("/sharedStrings")))
            stringsPath = rel.target;
    }
    if (stringsPath.isEmpty() && zip.contains(base + QStringLiteral("/sharedStrings.xml")))
        stringsPath = base + QStringLiteral("/sharedStrings.xml");
    if (stylesPath.isEmpty())
        stylesPath = base + QStringLiteral("/styles.xml");

    out.sheetCount = int(sheetRefs.size());
    std::vector<long long> wanted = request.sheets.select(out.sheetCount);
    if (wanted.empty())
        return Ok;

    const Styles styles = readStyles(zip, stylesPath);
    std::vector<QString> strings;
    if (!stringsPath.isEmpty() && !readSharedStrings(zip, stringsPath, strings))
        return SourceInvalid;

    for (long long number : wanted) {
        const SheetRef& ref = sheetRefs[std::size_t(number - 1)];
        QString sheetPath = targets.value(ref.relId);
        if (sheetPath.isEmpty())
            sheetPath = base + QStringLiteral("/worksheets/sheet%1.xml").arg(number);
        SheetTable table;
        table.number = int(number);
        table.name = ref.name;
        SheetReader reader(strings, styles, date1904, request);
        int rc = reader.read(zip, sheetPath, table);
        if (rc != Ok)
            return rc;
        out.sheets.push_back(std::move(table));
    }
    return Ok;
}

} // namespace lexiform

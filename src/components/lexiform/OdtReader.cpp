#include "components/lexiform/OdtReader.h"

#include "components/lexiform/FormatPatch.h"
#include "components/lexiform/XmlChildren.h"
#include "components/lexiform/ZipPackage.h"

#include <QXmlStreamReader>
#include <map>

namespace lexiform {

namespace {

QLatin1String L(const char* s)
{
    return QLatin1String(s);
}

std::optional<double> parseLength(const QString& v)
{
    bool ok = false;
    if (v.endsWith(L("pt"))) {
        double d = v.chopped(2).toDouble(&ok);
        if (ok && d > 0 && d < 2000)
            return d;
    }
    return std::nullopt;
}

FormatPatch readTextProperties(const QXmlStreamAttributes& a)
{
    FormatPatch p;
    const QString weight = attributeValue(a, L("font-weight"));
    if (!weight.isEmpty())
        p.bold = weight == L("bold") || weight.toInt() >= 600;
    const QString style = attributeValue(a, L("font-style"));
    if (!style.isEmpty())
        p.italic = style == L("italic") || style == L("oblique");
    const QString underline = attributeValue(a, L("text-underline-style"));
    if (!underline.isEmpty())
        p.underline = underline != L("none");
    const QString strike = attributeValue(a, L("text-line-through-style"));
    if (!strike.isEmpty())
        p.strike = strike != L("none");
    const QString color = attributeValue(a, L("color"));
    if (!color.isEmpty())
        p.foreColor = parseHexColor(color);
    if (attributeValue(a, L("use-window-font-color")) == L("true"))
        p.foreColor = std::optional<Rgb>();
    const QString back = attributeValue(a, L("background-color"));
    if (!back.isEmpty())
        p.backColor = back == L("transparent") ? std::nullopt : parseHexColor(back);
    const QString font = attributeValue(a, L("font-name"));
    if (!font.isEmpty())
        p.fontName = font;
    if (auto size = parseLength(attributeValue(a, L("font-size"))))
        p.fontSize = *size;
    return p;
}

struct OdfStyle {
    QString parent;
    FormatPatch patch;
};

class StyleSheet {
public:
    // Reads the styles of a part: <style:style> and <style:default-style>
    // with their text properties, wherever they stand.
    void read(QXmlStreamReader& xml, QStringView stopAt)
    {
        QString current;
        bool inStyle = false;
        while (!xml.atEnd()) {
            auto t = xml.readNext();
            if (t == QXmlStreamReader::EndElement) {
                if (xml.name() == QLatin1String("style") || xml.name() == QLatin1String("default-style"))
                    inStyle = false;
                continue;
            }
            if (t != QXmlStreamReader::StartElement)
                continue;
            const QStringView n = xml.name();
            if (n == stopAt)
                return;
            const auto a = xml.attributes();
            if (n == QLatin1String("style")) {
                current = attributeValue(a, L("family")) + QLatin1Char(':') + attributeValue(a, L("name"));
                styles_[current].parent = attributeValue(a, L("parent-style-name"));
                inStyle = true;
            } else if (n == QLatin1String("default-style")) {
                current = attributeValue(a, L("family")) + QStringLiteral(":");
                inStyle = true;
            } else if (n == QLatin1String("text-properties") && inStyle) {
                styles_[current].patch = readTextProperties(a);
            } else if (n == QLatin1String("master-styles") || n == QLatin1String("list-style")
                       || n == QLatin1String("page-layout")) {
                xml.skipCurrentElement();
            }
        }
    }

    FormatPatch resolve(const QString& family, const QString& name) const
    {
        FormatPatch result = chain(family, name);
        if (auto it = styles_.find(family + QLatin1Char(':')); it != styles_.end())
            result.over(it->second.patch);
        result.fontName.reset();  // fonts of whole styles are layout, not emphasis
        result.fontSize.reset();
        return result;
    }

    FormatPatch resolveText(const QString& name) const { return chain(QStringLiteral("text"), name); }

private:
    // A style and its parents, the nearest first; a loop in a broken file
    // ends after 32 steps.
    FormatPatch chain(const QString& family, const QString& name) const
    {
        FormatPatch result;
        QString cur = name;
        for (int guard = 0; !cur.isEmpty() && guard < 32; ++guard) {
            auto it = styles_.find(family + QLatin1Char(':') + cur);
            if (it == styles_.end())
                break;
            result.over(it->second.patch);
            cur = it->second.parent;
        }
        return result;
    }

    std::map<QString, OdfStyle> styles_;
};

class BodyReader {
public:
    explicit BodyReader(const StyleSheet& styles) : styles_(styles) {}

    std::vector<Paragraph> notes;

    // Block content up to the end of the element the reader stands in.
    void readBlocks(QXmlStreamReader& xml, std::vector<Paragraph>& out)
    {
        for (XmlChildren children(xml); children.next();) {
            const QStringView n = xml.name();
            if (n == QLatin1String("p") || n == QLatin1String("h")) {
                readParagraph(xml, out);
            } else if (n == QLatin1String("table")) {
                readTable(xml, out);
            } else if (isSkipped(n)) {
                xml.skipCurrentElement();
            } else {
                children.enter();  // list, list-item, section, index body...: look inside
            }
        }
    }

private:
    static bool isSkipped(QStringView n)
    {
        return n == QLatin1String("tracked-changes") || n == QLatin1String("annotation")
               || n == QLatin1String("sequence-decls") || n == QLatin1String("variable-decls")
               || n == QLatin1String("user-field-decls") || n == QLatin1String("forms")
               || n == QLatin1String("table-of-content-source") || n == QLatin1String("index-title-template")
               || n == QLatin1String("alphabetical-index-source") || n == QLatin1String("illustration-index-source")
               || n == QLatin1String("note-citation") || n == QLatin1String("table-columns")
               || n == QLatin1String("table-column") || n == QLatin1String("image") || n == QLatin1String("object")
               || n == QLatin1String("desc") || n == QLatin1String("title") || n == QLatin1String("annotation-end");
    }

    void readParagraph(QXmlStreamReader& xml, std::vector<Paragraph>& out)
    {
        Paragraph p;
        std::vector<Paragraph> anchored;
        std::vector<FormatPatch> stack;  // one per open span
        FormatPatch base = styles_.resolve(QStringLiteral("paragraph"), attributeValue(xml.attributes(), L("style-name")));
        auto current = [&] {
            CharFormat f;
            base.applyTo(f);
            for (const FormatPatch& s : stack)
                s.applyTo(f);
            return f;
        };
        bool lastWasSpace = true;  // leading blanks of a paragraph vanish
        int depth = 1;
        std::vector<bool> spanOpened;  // per depth: did this element push a patch
        spanOpened.push_back(false);
        while (depth > 0 && !xml.atEnd()) {
            auto t = xml.readNext();
            if (t == QXmlStreamReader::EndElement) {
                --depth;
                if (!spanOpened.empty()) {
                    if (spanOpened.back())
                        stack.pop_back();
                    spanOpened.pop_back();
                }
                continue;
            }
            if (t == QXmlStreamReader::Characters) {
                // OpenDocument collapses white space like HTML; real blanks
                // come as <text:s/>, tabs as <text:tab/>.
                QString text;
                for (QChar c : xml.text()) {
                    bool space = c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QLatin1Char('\n')
                                 || c == QLatin1Char('\r');
                    if (space) {
                        if (!lastWasSpace)
                            text += QLatin1Char(' ');
                        lastWasSpace = true;
                    } else {
                        text += c;
                        lastWasSpace = false;
                    }
                }
                appendText(p, text, current());
                continue;
            }
            if (t != QXmlStreamReader::StartElement)
                continue;
            const QStringView n = xml.name();
            const auto a = xml.attributes();
            if (n == QLatin1String("s")) {
                int c = std::clamp(attributeValue(a, L("c")).toInt(), 1, 10000);
                xml.skipCurrentElement();
                appendText(p, QString(c, QLatin1Char(' ')), current());
                lastWasSpace = true;
            } else if (n == QLatin1String("tab")) {
                xml.skipCurrentElement();
                appendText(p, QStringLiteral("\t"), current());
                lastWasSpace = true;
            } else if (n == QLatin1String("line-break")) {
                xml.skipCurrentElement();
                appendText(p, QString(QChar(0x2028)), current());
                lastWasSpace = true;
            } else if (n == QLatin1String("note")) {
                readNote(xml);
            } else if (n == QLatin1String("text-box") || n == QLatin1String("table")) {
                // Content anchored in the paragraph: shown after it.
                if (n == QLatin1String("table"))
                    readTable(xml, anchored);
                else
                    readBlocks(xml, anchored);
            } else if (isSkipped(n)) {
                xml.skipCurrentElement();
            } else {
                ++depth;
                if (n == QLatin1String("span") || n == QLatin1String("a")) {
                    stack.push_back(styles_.resolveText(attributeValue(a, L("style-name"))));
                    spanOpened.push_back(true);
                } else {
                    spanOpened.push_back(false);  // fields, frames, ruby, meta: look inside
                }
            }
        }
        out.push_back(std::move(p));
        for (Paragraph& x : anchored)
            out.push_back(std::move(x));
    }

    void readNote(QXmlStreamReader& xml)
    {
        for (XmlChildren children(xml); children.next();) {
            if (xml.name() == QLatin1String("note-body"))
                readBlocks(xml, notes);
            else
                xml.skipCurrentElement();
        }
    }

    void readTable(QXmlStreamReader& xml, std::vector<Paragraph>& out)
    {
        for (XmlChildren children(xml); children.next();) {
            const QStringView n = xml.name();
            if (n == QLatin1String("table-row")) {
                out.push_back(readRow(xml));
            } else if (isSkipped(n)) {
                xml.skipCurrentElement();
            } else {
                children.enter();  // header rows, row groups
            }
        }
    }

    Paragraph readRow(QXmlStreamReader& xml)
    {
        Paragraph row;
        int cells = 0;
        for (XmlChildren children(xml); children.next();) {
            const QStringView n = xml.name();
            if (n == QLatin1String("table-cell")) {
                std::vector<Paragraph> content;
                readBlocks(xml, content);
                appendTableCell(row, cells++ == 0, content);
            } else {
                xml.skipCurrentElement();  // covered cells add nothing
            }
        }
        return row;
    }

    const StyleSheet& styles_;
};

} // namespace

int readOdt(const QString& path, const ReadLimits& limits, Document& out)
{
    out = Document();
    ZipPackage zip(limits);
    if (!zip.open(path))
        return SourceInvalid;
    StyleSheet styles;
    if (auto member = zip.openMember(QStringLiteral("styles.xml"))) {
        QXmlStreamReader xml(member.get());
        styles.read(xml, QStringLiteral("never"));
    }
    auto member = zip.openMember(QStringLiteral("content.xml"));
    if (!member)
        return SourceInvalid;
    QXmlStreamReader xml(member.get());
    // Automatic styles come before the body in content.xml.
    styles.read(xml, QStringLiteral("body"));
    BodyReader reader(styles);
    bool sawText = false;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("text")) {
            sawText = true;
            reader.readBlocks(xml, out.paragraphs);
        }
    }
    if (xml.hasError() || member->overLimit() || member->corrupt() || !sawText)
        return SourceInvalid;
    for (Paragraph& p : reader.notes)
        out.paragraphs.push_back(std::move(p));
    if (out.paragraphs.empty())
        out.paragraphs.emplace_back();
    return Ok;
}

} // namespace lexiform

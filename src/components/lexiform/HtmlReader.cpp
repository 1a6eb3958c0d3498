#include "components/lexiform/HtmlReader.h"

#include "components/lexiform/FormatPatch.h"
#include "components/lexiform/PlainTextReader.h"

#include <QHash>
#include <QRegularExpression>
#include <libxml/HTMLparser.h>
#include <libxml/tree.h>

namespace lexiform {

namespace {

QString nameOf(const xmlNode* n)
{
    return QString::fromUtf8(reinterpret_cast<const char*>(n->name)).toLower();
}

QString attributeOf(const xmlNode* n, const char* name)
{
    for (const xmlAttr* a = n->properties; a; a = a->next) {
        if (QString::fromUtf8(reinterpret_cast<const char*>(a->name)).compare(QLatin1String(name), Qt::CaseInsensitive))
            continue;
        xmlChar* v = xmlNodeListGetString(n->doc, a->children, 1);
        QString s = v ? QString::fromUtf8(reinterpret_cast<const char*>(v)) : QString();
        xmlFree(v);
        return s;
    }
    return {};
}

std::optional<Rgb> cssColor(QString v)
{
    v = v.trimmed().toLower();
    if (auto hex = parseHexColor(v))
        return hex;
    static const QRegularExpression rgb(QStringLiteral("^rgba?\\(\\s*(\\d+)\\s*,\\s*(\\d+)\\s*,\\s*(\\d+)"));
    if (auto m = rgb.match(v); m.hasMatch())
        return Rgb(std::min(m.captured(1).toInt(), 255) << 16 | std::min(m.captured(2).toInt(), 255) << 8
                   | std::min(m.captured(3).toInt(), 255));
    static const QHash<QString, Rgb> named = {
        {"black", 0x000000},  {"silver", 0xC0C0C0}, {"gray", 0x808080},   {"grey", 0x808080},  {"white", 0xFFFFFF},
        {"maroon", 0x800000}, {"red", 0xFF0000},    {"purple", 0x800080}, {"fuchsia", 0xFF00FF},
        {"magenta", 0xFF00FF}, {"green", 0x008000}, {"lime", 0x00FF00},   {"olive", 0x808000}, {"yellow", 0xFFFF00},
        {"navy", 0x000080},   {"blue", 0x0000FF},   {"teal", 0x008080},   {"aqua", 0x00FFFF},  {"cyan", 0x00FFFF},
        {"orange", 0xFFA500}, {"brown", 0xA52A2A},  {"pink", 0xFFC0CB},   {"gold", 0xFFD700},
        {"darkred", 0x8B0000}, {"darkblue", 0x00008B}, {"darkgreen", 0x006400}, {"lightgray", 0xD3D3D3},
    };
    auto it = named.find(v);
    if (it != named.end())
        return *it;
    return std::nullopt;
}

// Inline CSS of a style attribute, as far as it touches character formats.
void applyStyleAttribute(const QString& css, FormatPatch& p)
{
    for (const QString& decl : css.split(QLatin1Char(';'))) {
        const qsizetype colon = decl.indexOf(QLatin1Char(':'));
        if (colon < 0)
            continue;
        const QString prop = decl.left(colon).trimmed().toLower();
        const QString value = decl.mid(colon + 1).trimmed().toLower().remove(QStringLiteral("!important")).trimmed();
        if (prop == QLatin1String("font-weight")) {
            p.bold = value == QLatin1String("bold") || value == QLatin1String("bolder") || value.toInt() >= 600;
        } else if (prop == QLatin1String("font-style")) {
            p.italic = value == QLatin1String("italic") || value == QLatin1String("oblique");
        } else if (prop == QLatin1String("text-decoration") || prop == QLatin1String("text-decoration-line")) {
            if (value.contains(QLatin1String("underline")))
                p.underline = true;
            if (value.contains(QLatin1String("line-through")))
                p.strike = true;
            if (value == QLatin1String("none")) {
                p.underline = false;
                p.strike = false;
            }
        } else if (prop == QLatin1String("color")) {
            if (auto c = cssColor(value))
                p.foreColor = c;
        } else if (prop == QLatin1String("background-color") || prop == QLatin1String("background")) {
            if (value.startsWith(QLatin1String("transparent")))
                p.backColor = std::optional<Rgb>();
            else if (auto c = cssColor(value.section(QLatin1Char(' '), 0, 0)))
                p.backColor = c;
        } else if (prop == QLatin1String("font-family")) {
            QString family = decl.mid(colon + 1).section(QLatin1Char(','), 0, 0).trimmed();
            family.remove(QLatin1Char('"')).remove(QLatin1Char('\''));
            if (!family.isEmpty())
                p.fontName = family;
        } else if (prop == QLatin1String("font-size")) {
            bool ok = false;
            double d = 0;
            if (value.endsWith(QLatin1String("pt")))
                d = value.chopped(2).toDouble(&ok);
            else if (value.endsWith(QLatin1String("px")))
                d = value.chopped(2).toDouble(&ok) * 0.75;
            if (ok && d > 0 && d < 2000)
                p.fontSize = d;
        }
    }
}

bool isBlock(const QString& n)
{
    static const QStringList blocks = {
        "p",      "div",    "h1",         "h2",     "h3",      "h4",    "h5",       "h6",   "li",     "dt",
        "dd",     "ul",     "ol",         "dl",     "blockquote", "pre", "address", "center", "section", "article",
        "header", "footer", "nav",        "aside",  "main",    "figure", "figcaption", "form", "fieldset", "legend",
        "table",  "hr",     "caption",    "body",   "html",    "details", "summary", "menu", "tbody", "thead", "tfoot"};
    return blocks.contains(n);
}

bool isSkipped(const QString& n)
{
    static const QStringList skipped = {"head", "script", "style", "noscript", "template", "title", "iframe",
                                        "svg",  "math",   "object", "embed",   "select",   "button", "canvas"};
    return skipped.contains(n);
}

class Renderer {
public:
    Document doc;

    void render(const xmlNode* node, const FormatPatch& inherited, int depth)
    {
        for (const xmlNode* n = node; n; n = n->next) {
            if (n->type == XML_TEXT_NODE || n->type == XML_CDATA_SECTION_NODE) {
                text(QString::fromUtf8(reinterpret_cast<const char*>(n->content)), inherited);
                continue;
            }
            if (n->type != XML_ELEMENT_NODE)
                continue;
            const QString name = nameOf(n);
            if (isSkipped(name))
                continue;
            if (depth > kMaxFormattedDepth) {
                // Old pages leave tags unclosed by the thousand. Past this
                // depth the text keeps the format it has and the walk goes
                // on without recursion, so no text is dropped and the stack
                // stays small.
                flatText(n, inherited);
                continue;
            }
            FormatPatch patch = formatOf(n, name);
            patch.over(inherited);

            if (name == QLatin1String("br")) {
                append(QString(QChar(0x2028)), patch);
                lastWasSpace_ = true;
                continue;
            }
            if (name == QLatin1String("tr")) {
                breakParagraph();
                ++inRow_;
                cellsInRow_.push_back(0);
                render(n->children, patch, depth + 1);
                cellsInRow_.pop_back();
                --inRow_;
                breakParagraph();
                continue;
            }
            if ((name == QLatin1String("td") || name == QLatin1String("th")) && inRow_ > 0) {
                if (cellsInRow_.back()++ > 0)
                    append(QStringLiteral("\t"), FormatPatch());
                lastWasSpace_ = true;
                ++inCell_;
                render(n->children, patch, depth + 1);
                --inCell_;
                continue;
            }
            const bool block = isBlock(name);
            if (block)
                breakParagraph();
            static const QRegularExpression preStyle(QStringLiteral("white-space\\s*:\\s*pre"),
                                                    QRegularExpression::CaseInsensitiveOption);
            const bool pre = name == QLatin1String("pre") || name == QLatin1String("textarea")
                             || name == QLatin1String("listing") || name == QLatin1String("xmp")
                             || preStyle.match(attributeOf(n, "style")).hasMatch();
            if (pre)
                ++pre_;
            render(n->children, patch, depth + 1);
            if (pre)
                --pre_;
            if (block)
                breakParagraph();
        }
    }

    // Frames of about half a kilobyte each: 1,000 of them fit well within the
    // smallest stack a worker thread gets, and no real page nests deeper.
    static constexpr int kMaxFormattedDepth = 1000;

    void flatText(const xmlNode* top, const FormatPatch& format)
    {
        const xmlNode* n = top;
        while (n) {
            bool descend = false;
            if (n->type == XML_TEXT_NODE || n->type == XML_CDATA_SECTION_NODE) {
                text(QString::fromUtf8(reinterpret_cast<const char*>(n->content)), format);
            } else if (n->type == XML_ELEMENT_NODE) {
                const QString name = nameOf(n);
                if (name == QLatin1String("br")) {
                    append(QString(QChar(0x2028)), format);
                    lastWasSpace_ = true;
                } else if (!isSkipped(name)) {
                    if (isBlock(name))
                        breakParagraph();
                    descend = n->children != nullptr;
                }
            }
            if (descend) {
                n = n->children;
                continue;
            }
            // Next sibling, or up until there is one, never above `top`.
            while (n != top && !n->next)
                n = n->parent;
            if (n == top)
                break;
            n = n->next;
        }
    }

    void finish()
    {
        breakParagraph();
        if (doc.paragraphs.empty())
            doc.paragraphs.emplace_back();
    }

private:
    FormatPatch formatOf(const xmlNode* n, const QString& name)
    {
        FormatPatch p;
        if (name == QLatin1String("b") || name == QLatin1String("strong") || name == QLatin1String("th")
            || (name.size() == 2 && name[0] == QLatin1Char('h') && name[1] >= QLatin1Char('1') && name[1] <= QLatin1Char('6')))
            p.bold = true;
        else if (name == QLatin1String("i") || name == QLatin1String("em") || name == QLatin1String("cite")
                 || name == QLatin1String("var") || name == QLatin1String("dfn"))
            p.italic = true;
        else if (name == QLatin1String("u") || name == QLatin1String("ins"))
            p.underline = true;
        else if (name == QLatin1String("s") || name == QLatin1String("strike") || name == QLatin1String("del"))
            p.strike = true;
        else if (name == QLatin1String("mark"))
            p.backColor = std::optional<Rgb>(0xFFFF00);
        else if (name == QLatin1String("font")) {
            if (auto c = cssColor(attributeOf(n, "color")))
                p.foreColor = c;
            const QString face = attributeOf(n, "face").section(QLatin1Char(','), 0, 0).trimmed();
            if (!face.isEmpty())
                p.fontName = face;
        }
        const QString style = attributeOf(n, "style");
        if (!style.isEmpty())
            applyStyleAttribute(style, p);
        const QString bg = attributeOf(n, "bgcolor");
        if (!bg.isEmpty() && name != QLatin1String("table") && name != QLatin1String("body"))
            if (auto c = cssColor(bg))
                p.backColor = c;
        return p;
    }

    void text(const QString& raw, const FormatPatch& patch)
    {
        if (pre_ > 0) {
            // Pre-formatted text keeps its blanks and lines.
            const QStringList lines = QString(raw).replace(QStringLiteral("\r\n"), QStringLiteral("\n")).split(QLatin1Char('\n'));
            for (qsizetype i = 0; i < lines.size(); ++i) {
                if (i > 0) {
                    if (inCell_ > 0)
                        append(QStringLiteral(" "), patch);
                    else
                        newParagraph();
                }
                append(lines[i], patch);
            }
            lastWasSpace_ = false;
            return;
        }
        QString out;
        out.reserve(raw.size());
        for (QChar c : raw) {
            if (c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QLatin1Char('\n') || c == QLatin1Char('\r')
                || c == QLatin1Char('\f')) {
                if (!lastWasSpace_)
                    out += QLatin1Char(' ');
                lastWasSpace_ = true;
            } else {
                out += c;
                lastWasSpace_ = false;
            }
        }
        append(out, patch);
    }

    void append(const QString& s, const FormatPatch& patch)
    {
        if (s.isEmpty())
            return;
        CharFormat f;
        patch.applyTo(f);
        appendText(current_, s, f);
    }

    // Ends the paragraph under construction if it holds anything; blocks
    // inside a table cell only add a blank.
    void breakParagraph()
    {
        if (inCell_ > 0) {
            if (!lastWasSpace_)
                append(QStringLiteral(" "), FormatPatch());
            lastWasSpace_ = true;
            return;
        }
        if (inRow_ > 0)
            return;
        if (!current_.runs.empty())
            newParagraph();
        lastWasSpace_ = true;
    }

    void newParagraph()
    {
        // Blanks at the end of a paragraph are not shown, and neither is a
        // line break there: "<p><br></p>" is one empty line.
        bool brDropped = false;
        while (!current_.runs.empty()) {
            QString& t = current_.runs.back().text;
            while (t.endsWith(QLatin1Char(' ')))
                t.chop(1);
            if (!brDropped && t.endsWith(QChar(0x2028))) {
                t.chop(1);
                brDropped = true;
                continue;
            }
            if (!t.isEmpty())
                break;
            current_.runs.pop_back();
        }
        doc.paragraphs.push_back(std::move(current_));
        current_ = Paragraph();
        lastWasSpace_ = true;
    }

    Paragraph current_;
    bool lastWasSpace_ = true;
    int pre_ = 0;
    int inRow_ = 0;
    int inCell_ = 0;
    std::vector<int> cellsInRow_;
};

// libxml2 takes the encoding from a <meta> tag; without one it would assume
// Latin-1 and garble UTF-8 pages, so such pages are decoded here (byte order
// mark, valid UTF-8, else Windows-1252) and handed over as UTF-8.
bool declaresCharset(const QByteArray& html)
{
    static const QRegularExpression meta(QStringLiteral("<meta[^>]+charset\\s*=\\s*[\"']?[A-Za-z0-9_.:-]+"),
                                         QRegularExpression::CaseInsensitiveOption);
    return meta.match(QString::fromLatin1(html.left(4096))).hasMatch();
}

} // namespace

Document readHtml(const QByteArray& html)
{
    Renderer r;
    if (html.isEmpty()) {
        r.finish();
        return r.doc;
    }
    // Without HUGE the parser stops at 256 levels and drops everything after.
    const int options = HTML_PARSE_RECOVER | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | HTML_PARSE_NONET
                        | XML_PARSE_HUGE;
    const bool declared = declaresCharset(html) && !html.startsWith("\xFF\xFE") && !html.startsWith("\xFE\xFF")
                          && !html.startsWith("\xEF\xBB\xBF");
    const QByteArray bytes = declared ? html : decodeText(html).toUtf8();
    htmlDocPtr doc = htmlReadMemory(bytes.constData(), int(std::min<qsizetype>(bytes.size(), INT_MAX)), nullptr,
                                    declared ? nullptr : "UTF-8", options);
    if (doc) {
        if (const xmlNode* root = xmlDocGetRootElement(doc))
            r.render(root, FormatPatch(), 0);
        xmlFreeDoc(doc);
    }
    r.finish();
    return r.doc;
}

} // namespace lexiform

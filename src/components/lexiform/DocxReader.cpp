#include "components/lexiform/DocxReader.h"

#include "components/lexiform/FormatPatch.h"
#include "components/lexiform/ZipPackage.h"

#include <QHash>
#include <QXmlStreamReader>
#include <map>

namespace lexiform {

namespace {

bool toggle(const QXmlStreamAttributes& a)
{
    const QString v = attributeValue(a, QLatin1String("val"));
    return !(v == QLatin1String("0") || v == QLatin1String("false") || v == QLatin1String("off")
             || v == QLatin1String("none"));
}

std::optional<Rgb> highlightColor(const QString& name)
{
    static const QHash<QString, Rgb> colors = {
        {"yellow", 0xFFFF00},     {"green", 0x00FF00},       {"cyan", 0x00FFFF},        {"magenta", 0xFF00FF},
        {"blue", 0x0000FF},       {"red", 0xFF0000},         {"darkBlue", 0x000080},    {"darkCyan", 0x008080},
        {"darkGreen", 0x008000},  {"darkMagenta", 0x800080}, {"darkRed", 0x800000},     {"darkYellow", 0x808000},
        {"darkGray", 0x808080},   {"lightGray", 0xC0C0C0},   {"black", 0x000000},       {"white", 0xFFFFFF},
    };
    auto it = colors.find(name);
    if (it == colors.end())
        return std::nullopt;
    return *it;
}

struct RunProperties {
    FormatPatch patch;
    QString styleId;
    bool hidden = false;
};

// Reads <w:rPr> (the reader stands on its start tag).
RunProperties readRunProperties(QXmlStreamReader& xml)
{
    RunProperties rp;
    std::optional<std::optional<Rgb>> shading, highlight;
    int depth = 1;
    while (depth > 0 && !xml.atEnd()) {
        auto t = xml.readNext();
        if (t == QXmlStreamReader::EndElement) {
            --depth;
            continue;
        }
        if (t != QXmlStreamReader::StartElement)
            continue;
        ++depth;
        const QStringView n = xml.name();
        const auto a = xml.attributes();
        if (n == QLatin1String("b"))
            rp.patch.bold = toggle(a);
        else if (n == QLatin1String("i"))
            rp.patch.italic = toggle(a);
        else if (n == QLatin1String("u"))
            rp.patch.underline = toggle(a);
        else if (n == QLatin1String("strike") || n == QLatin1String("dstrike")) {
            bool on = toggle(a);
            rp.patch.strike = on || rp.patch.strike.value_or(false);
        } else if (n == QLatin1String("color")) {
            const QString v = attributeValue(a, QLatin1String("val"));
            rp.patch.foreColor = v == QLatin1String("auto") ? std::nullopt : parseHexColor(v);
        } else if (n == QLatin1String("highlight")) {
            highlight = highlightColor(attributeValue(a, QLatin1String("val")));
        } else if (n == QLatin1String("shd")) {
            const QString fill = attributeValue(a, QLatin1String("fill"));
            shading = fill == QLatin1String("auto") ? std::nullopt : parseHexColor(fill);
        } else if (n == QLatin1String("rFonts")) {
            QString font = attributeValue(a, QLatin1String("ascii"));
            if (font.isEmpty())
                font = attributeValue(a, QLatin1String("hAnsi"));
            if (!font.isEmpty())
                rp.patch.fontName = font;
        } else if (n == QLatin1String("sz")) {
            bool ok = false;
            double halfPoints = attributeValue(a, QLatin1String("val")).toDouble(&ok);
            if (ok && halfPoints > 0 && halfPoints < 4000)
                rp.patch.fontSize = halfPoints / 2;
        } else if (n == QLatin1String("rStyle")) {
            rp.styleId = attributeValue(a, QLatin1String("val"));
        } else if (n == QLatin1String("vanish")) {
            rp.hidden = toggle(a);
        }
    }
    // A highlight wins over shading, as word processors draw it on top.
    if (highlight)
        rp.patch.backColor = highlight;
    else if (shading)
        rp.patch.backColor = shading;
    return rp;
}

struct Style {
    QString basedOn;
    FormatPatch patch;
    bool hidden = false;
};

class Styles {
public:
    void read(const ZipPackage& zip, const QString& path)
    {
        auto member = zip.openMember(path);
        if (!member)
            return;
        QXmlStreamReader xml(member.get());
        QString current;
        bool inDefaults = false;
        while (!xml.atEnd()) {
            auto t = xml.readNext();
            if (t == QXmlStreamReader::EndElement) {
                if (xml.name() == QLatin1String("style"))
                    current.clear();
                else if (xml.name() == QLatin1String("rPrDefault"))
                    inDefaults = false;
                continue;
            }
            if (t != QXmlStreamReader::StartElement)
                continue;
            const QStringView n = xml.name();
            if (n == QLatin1String("rPrDefault")) {
                inDefaults = true;
            } else if (n == QLatin1String("style")) {
                current = attributeValue(xml.attributes(), QLatin1String("styleId"));
                styles_[current] = Style();
            } else if (n == QLatin1String("basedOn") && !current.isEmpty()) {
                styles_[current].basedOn = attributeValue(xml.attributes(), QLatin1String("val"));
            } else if (n == QLatin1String("rPr")) {
                RunProperties rp = readRunProperties(xml);
                if (inDefaults) {
                    defaults_ = rp.patch;
                } else if (!current.isEmpty()) {
                    styles_[current].patch = rp.patch;
                    styles_[current].hidden = rp.hidden;
                }
            } else if (n == QLatin1String("pPr") || n == QLatin1String("tblPr") || n == QLatin1String("tcPr")
                       || n == QLatin1String("trPr") || n == QLatin1String("tblStylePr")) {
                xml.skipCurrentElement();
            }
        }
        // Document-wide defaults of size and font are not carried: the viewer
        // shows text in its own default, and a patch on every run would only
        // make the output heavier.
        defaults_.fontName.reset();
        defaults_.fontSize.reset();
    }

    // The whole chain of a style, base first, as one patch.
    FormatPatch resolve(const QString& id) const
    {
        FormatPatch result;
        QString cur = id;
        for (int guard = 0; !cur.isEmpty() && guard < 32; ++guard) {
            auto it = styles_.find(cur);
            if (it == styles_.end())
                break;
            result.over(it->second.patch);
            cur = it->second.basedOn;
        }
        return result;
    }

    const FormatPatch& defaults() const { return defaults_; }

private:
    std::map<QString, Style> styles_;
    FormatPatch defaults_;
};

class BodyReader {
public:
    BodyReader(const Styles& styles) : styles_(styles) {}

    std::vector<QString> noteOrder;  // "f3" for footnote 3, "e1" for endnote 1

    // Block content up to the end of the element the reader stands in:
    // paragraphs, tables, content controls, text boxes.
    void readBlocks(QXmlStreamReader& xml, std::vector<Paragraph>& out)
    {
        int depth = 1;
        while (depth > 0 && !xml.atEnd()) {
            auto t = xml.readNext();
            if (t == QXmlStreamReader::EndElement) {
                --depth;
                continue;
            }
            if (t != QXmlStreamReader::StartElement)
                continue;
            const QStringView n = xml.name();
            if (n == QLatin1String("p")) {
                readParagraph(xml, out);
            } else if (n == QLatin1String("tbl")) {
                readTable(xml, out);
            } else if (n == QLatin1String("sectPr") || n == QLatin1String("Fallback") || n == QLatin1String("del")
                       || n == QLatin1String("moveFrom")) {
                xml.skipCurrentElement();
            } else {
                ++depth;  // sdt, sdtContent, customXml, ins: look inside
            }
        }
    }

private:
    void readParagraph(QXmlStreamReader& xml, std::vector<Paragraph>& out)
    {
        Paragraph p;
        std::vector<Paragraph> anchored;  // text boxes, after the paragraph
        FormatPatch paragraphPatch;
        paragraphPatch.over(styles_.resolve(QStringLiteral("Normal")));
        paragraphPatch.over(styles_.defaults());
        CharFormat runFormat;
        bool runHidden = false;
        int depth = 1;
        while (depth > 0 && !xml.atEnd()) {
            auto t = xml.readNext();
            if (t == QXmlStreamReader::EndElement) {
                --depth;
                if (xml.name() == QLatin1String("r")) {
                    runHidden = false;
                }
                continue;
            }
            if (t != QXmlStreamReader::StartElement)
                continue;
            const QStringView n = xml.name();
            if (n == QLatin1String("pPr")) {
                readParagraphProperties(xml, paragraphPatch);
            } else if (n == QLatin1String("r")) {
                ++depth;
                runFormat = CharFormat();
                paragraphPatch.applyTo(runFormat);
            } else if (n == QLatin1String("rPr")) {
                RunProperties rp = readRunProperties(xml);
                FormatPatch patch = rp.patch;
                if (!rp.styleId.isEmpty())
                    patch.over(styles_.resolve(rp.styleId));
                patch.over(paragraphPatch);
                runFormat = CharFormat();
                patch.applyTo(runFormat);
                runHidden = rp.hidden;
            } else if (n == QLatin1String("t")) {
                QString text = xml.readElementText(QXmlStreamReader::IncludeChildElements);
                if (!runHidden)
                    appendText(p, text, runFormat);
            } else if (n == QLatin1String("tab") || n == QLatin1String("ptab")) {
                xml.skipCurrentElement();
                if (!runHidden)
                    appendText(p, QStringLiteral("\t"), runFormat);
            } else if (n == QLatin1String("br") || n == QLatin1String("cr")) {
                const QString type = attributeValue(xml.attributes(), QLatin1String("type"));
                xml.skipCurrentElement();
                if (!runHidden && type != QLatin1String("page") && type != QLatin1String("column"))
                    appendText(p, QString(QChar(0x2028)), runFormat);
            } else if (n == QLatin1String("noBreakHyphen")) {
                xml.skipCurrentElement();
                appendText(p, QStringLiteral("-"), runFormat);
            } else if (n == QLatin1String("footnoteReference") || n == QLatin1String("endnoteReference")) {
                noteOrder.push_back((n == QLatin1String("footnoteReference") ? QStringLiteral("f") : QStringLiteral("e"))
                                    + attributeValue(xml.attributes(), QLatin1String("id")));
                xml.skipCurrentElement();
            } else if (n == QLatin1String("txbxContent")) {
                readBlocks(xml, anchored);
            } else if (n == QLatin1String("delText") || n == QLatin1String("instrText") || n == QLatin1String("Fallback")
                       || n == QLatin1String("del") || n == QLatin1String("moveFrom") || n == QLatin1String("delInstrText")) {
                xml.skipCurrentElement();
            } else {
                ++depth;  // hyperlink, ins, smartTag, fldSimple, sdt, drawing...: look inside
            }
        }
        out.push_back(std::move(p));
        for (Paragraph& a : anchored)
            out.push_back(std::move(a));
    }

    void readParagraphProperties(QXmlStreamReader& xml, FormatPatch& paragraphPatch)
    {
        int depth = 1;
        while (depth > 0 && !xml.atEnd()) {
            auto t = xml.readNext();
            if (t == QXmlStreamReader::EndElement) {
                --depth;
                continue;
            }
            if (t != QXmlStreamReader::StartElement)
                continue;
            if (xml.name() == QLatin1String("pStyle")) {
                paragraphPatch = styles_.resolve(attributeValue(xml.attributes(), QLatin1String("val")));
                paragraphPatch.over(styles_.defaults());
            }
            // The paragraph mark's own run properties do not format the text.
            xml.skipCurrentElement();
        }
    }

    void readTable(QXmlStreamReader& xml, std::vector<Paragraph>& out)
    {
        int depth = 1;
        while (depth > 0 && !xml.atEnd()) {
            auto t = xml.readNext();
            if (t == QXmlStreamReader::EndElement) {
                --depth;
                continue;
            }
            if (t != QXmlStreamReader::StartElement)
                continue;
            const QStringView n = xml.name();
            if (n == QLatin1String("tr")) {
                out.push_back(readRow(xml));
            } else if (n == QLatin1String("tblPr") || n == QLatin1String("tblGrid")) {
                xml.skipCurrentElement();
            } else {
                ++depth;
            }
        }
    }

    Paragraph readRow(QXmlStreamReader& xml)
    {
        Paragraph row;
        int cells = 0;
        int depth = 1;
        while (depth > 0 && !xml.atEnd()) {
            auto t = xml.readNext();
            if (t == QXmlStreamReader::EndElement) {
                --depth;
                continue;
            }
            if (t != QXmlStreamReader::StartElement)
                continue;
            const QStringView n = xml.name();
            if (n == QLatin1String("tc")) {
                std::vector<Paragraph> content;
                readBlocks(xml, content);
                if (cells++)
                    appendText(row, QStringLiteral("\t"), CharFormat());
                bool first = true;
                for (Paragraph& p : content) {
                    if (p.runs.empty())
                        continue;
                    if (!first)
                        appendText(row, QStringLiteral(" "), CharFormat());
                    first = false;
                    for (Run& r : p.runs)
                        appendText(row, r.text, r.format);
                }
            } else if (n == QLatin1String("trPr") || n == QLatin1String("tblPrEx")) {
                xml.skipCurrentElement();
            } else {
                ++depth;
            }
        }
        return row;
    }

    const Styles& styles_;
};

// Notes of one part (footnotes.xml or endnotes.xml) by id, without the
// separator notes every document carries.
std::map<QString, std::vector<Paragraph>> readNotes(const ZipPackage& zip, const QString& path, const Styles& styles,
                                                   bool& failed)
{
    std::map<QString, std::vector<Paragraph>> notes;
    auto member = zip.openMember(path);
    if (!member)
        return notes;
    QXmlStreamReader xml(member.get());
    BodyReader reader(styles);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("footnote") || xml.name() == QLatin1String("endnote")) {
            const auto a = xml.attributes();
            const QString type = attributeValue(a, QLatin1String("type"));
            const QString id = attributeValue(a, QLatin1String("id"));
            if (!type.isEmpty() && type != QLatin1String("normal")) {
                xml.skipCurrentElement();
                continue;
            }
            reader.readBlocks(xml, notes[id]);
        }
    }
    failed = xml.hasError() || member->overLimit() || member->corrupt();
    return notes;
}

QString mainDocumentPath(const ZipPackage& zip)
{
    auto member = zip.openMember(QStringLiteral("_rels/.rels"));
    if (member) {
        QXmlStreamReader xml(member.get());
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("Relationship")) {
                const auto a = xml.attributes();
                if (attributeValue(a, QLatin1String("Type")).endsWith(QLatin1String("/officeDocument")))
                    return resolvePartPath(QString(), attributeValue(a, QLatin1String("Target")));
            }
        }
    }
    return QStringLiteral("word/document.xml");
}

} // namespace

int readDocx(const QString& path, const ReadLimits& limits, Document& out)
{
    out = Document();
    ZipPackage zip(limits);
    if (!zip.open(path))
        return SourceInvalid;
    const QString docPath = mainDocumentPath(zip);
    const QString folder = docPath.contains(QLatin1Char('/')) ? docPath.section(QLatin1Char('/'), 0, -2) : QString();
    const QString prefix = folder.isEmpty() ? QString() : folder + QLatin1Char('/');
    auto member = zip.openMember(docPath);
    if (!member)
        return SourceInvalid;

    Styles styles;
    styles.read(zip, prefix + QStringLiteral("styles.xml"));

    QXmlStreamReader xml(member.get());
    BodyReader reader(styles);
    bool sawBody = false;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("body")) {
            sawBody = true;
            reader.readBlocks(xml, out.paragraphs);
        }
    }
    if (xml.hasError() || member->overLimit() || member->corrupt() || !sawBody)
        return SourceInvalid;

    if (!reader.noteOrder.empty()) {
        bool failedF = false, failedE = false;
        auto footnotes = readNotes(zip, prefix + QStringLiteral("footnotes.xml"), styles, failedF);
        auto endnotes = readNotes(zip, prefix + QStringLiteral("endnotes.xml"), styles, failedE);
        if (failedF || failedE)
            return SourceInvalid;
        for (const QString& ref : reader.noteOrder) {
            auto& notes = ref.startsWith(QLatin1Char('f')) ? footnotes : endnotes;
            auto it = notes.find(ref.mid(1));
            if (it == notes.end())
                continue;
            for (Paragraph& p : it->second)
                out.paragraphs.push_back(std::move(p));
            notes.erase(it);
        }
    }
    if (out.paragraphs.empty())
        out.paragraphs.emplace_back();
    return Ok;
}

} // namespace lexiform

#include "components/lexiform/DocxReader.h"

#include "components/lexiform/FastXmlReader.h"
#include "components/lexiform/FormatPatch.h"
#include "components/lexiform/XmlChildren.h"
#include "components/lexiform/ZipPackage.h"

#include <QHash>
#include <map>

namespace lexiform {

namespace {

bool toggle(const FastXmlReader& xml)
{
    const QString v = xml.attribute("val");
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
RunProperties readRunProperties(FastXmlReader& xml)
{
    RunProperties rp;
    std::optional<std::optional<Rgb>> shading, highlight;
    for (XmlChildren children(xml); children.next();) {
        children.enter();
        if (xml.isName("b"))
            rp.patch.bold = toggle(xml);
        else if (xml.isName("i"))
            rp.patch.italic = toggle(xml);
        else if (xml.isName("u"))
            rp.patch.underline = toggle(xml);
        else if (xml.isName("strike") || xml.isName("dstrike")) {
            bool on = toggle(xml);
            rp.patch.strike = on || rp.patch.strike.value_or(false);
        } else if (xml.isName("color")) {
            const QString v = xml.attribute("val");
            rp.patch.foreColor = v == QLatin1String("auto") ? std::nullopt : parseHexColor(v);
        } else if (xml.isName("highlight")) {
            highlight = highlightColor(xml.attribute("val"));
        } else if (xml.isName("shd")) {
            const QString fill = xml.attribute("fill");
            shading = fill == QLatin1String("auto") ? std::nullopt : parseHexColor(fill);
        } else if (xml.isName("rFonts")) {
            QString font = xml.attribute("ascii");
            if (font.isEmpty())
                font = xml.attribute("hAnsi");
            if (!font.isEmpty())
                rp.patch.fontName = font;
        } else if (xml.isName("sz")) {
            bool ok = false;
            double halfPoints = xml.attribute("val").toDouble(&ok);
            if (ok && halfPoints > 0 && halfPoints < 4000)
                rp.patch.fontSize = halfPoints / 2;
        } else if (xml.isName("rStyle")) {
            rp.styleId = xml.attribute("val");
        } else if (xml.isName("vanish")) {
            rp.hidden = toggle(xml);
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
        FastXmlReader xml(member.get());
        QString current;
        bool inDefaults = false;
        while (!xml.atEnd()) {
            auto t = xml.readNext();
            if (t == FastXmlReader::EndElement) {
                if (xml.isName("style"))
                    current.clear();
                else if (xml.isName("rPrDefault"))
                    inDefaults = false;
                continue;
            }
            if (t != FastXmlReader::StartElement)
                continue;
            if (xml.isName("rPrDefault")) {
                inDefaults = true;
            } else if (xml.isName("style")) {
                current = xml.attribute("styleId");
                styles_[current] = Style();
            } else if (xml.isName("basedOn") && !current.isEmpty()) {
                styles_[current].basedOn = xml.attribute("val");
            } else if (xml.isName("rPr")) {
                RunProperties rp = readRunProperties(xml);
                if (inDefaults) {
                    defaults_ = rp.patch;
                } else if (!current.isEmpty()) {
                    styles_[current].patch = rp.patch;
                    styles_[current].hidden = rp.hidden;
                }
            } else if (xml.isName("pPr") || xml.isName("tblPr") || xml.isName("tcPr")
                       || xml.isName("trPr") || xml.isName("tblStylePr")) {
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
    void readBlocks(FastXmlReader& xml, std::vector<Paragraph>& out)
    {
        for (XmlChildren children(xml); children.next();) {
            if (xml.isName("p")) {
                readParagraph(xml, out);
            } else if (xml.isName("tbl")) {
                readTable(xml, out);
            } else if (xml.isName("sectPr") || xml.isName("Fallback") || xml.isName("del")
                       || xml.isName("moveFrom")) {
                xml.skipCurrentElement();
            } else {
                children.enter();  // sdt, sdtContent, customXml, ins: look inside
            }
        }
    }

private:
    void readParagraph(FastXmlReader& xml, std::vector<Paragraph>& out)
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
            if (t == FastXmlReader::EndElement) {
                --depth;
                if (xml.isName("r")) {
                    runHidden = false;
                }
                continue;
            }
            if (t != FastXmlReader::StartElement)
                continue;
            if (xml.isName("pPr")) {
                readParagraphProperties(xml, paragraphPatch);
            } else if (xml.isName("r")) {
                ++depth;
                runFormat = CharFormat();
                paragraphPatch.applyTo(runFormat);
            } else if (xml.isName("rPr")) {
                RunProperties rp = readRunProperties(xml);
                FormatPatch patch = rp.patch;
                if (!rp.styleId.isEmpty())
                    patch.over(styles_.resolve(rp.styleId));
                patch.over(paragraphPatch);
                runFormat = CharFormat();
                patch.applyTo(runFormat);
                runHidden = rp.hidden;
            } else if (xml.isName("t")) {
                QString text = xml.readElementText();
                if (!runHidden)
                    appendText(p, text, runFormat);
            } else if (xml.isName("tab") || xml.isName("ptab")) {
                xml.skipCurrentElement();
                if (!runHidden)
                    appendText(p, QStringLiteral("\t"), runFormat);
            } else if (xml.isName("br") || xml.isName("cr")) {
                const QString type = xml.attribute("type");
                xml.skipCurrentElement();
                if (!runHidden && type != QLatin1String("page") && type != QLatin1String("column"))
                    appendText(p, QString(QChar(0x2028)), runFormat);
            } else if (xml.isName("noBreakHyphen")) {
                xml.skipCurrentElement();
                appendText(p, QStringLiteral("-"), runFormat);
            } else if (xml.isName("footnoteReference") || xml.isName("endnoteReference")) {
                noteOrder.push_back((xml.isName("footnoteReference") ? QStringLiteral("f") : QStringLiteral("e"))
                                    + xml.attribute("id"));
                xml.skipCurrentElement();
            } else if (xml.isName("txbxContent")) {
                readBlocks(xml, anchored);
            } else if (xml.isName("delText") || xml.isName("instrText") || xml.isName("Fallback")
                       || xml.isName("del") || xml.isName("moveFrom") || xml.isName("delInstrText")) {
                xml.skipCurrentElement();
            } else {
                ++depth;  // hyperlink, ins, smartTag, fldSimple, sdt, drawing...: look inside
            }
        }
        out.push_back(std::move(p));
        for (Paragraph& a : anchored)
            out.push_back(std::move(a));
    }

    void readParagraphProperties(FastXmlReader& xml, FormatPatch& paragraphPatch)
    {
        for (XmlChildren children(xml); children.next();) {
            if (xml.isName("pStyle")) {
                paragraphPatch = styles_.resolve(xml.attribute("val"));
                paragraphPatch.over(styles_.defaults());
            }
            // The paragraph mark's own run properties do not format the text.
            xml.skipCurrentElement();
        }
    }

    void readTable(FastXmlReader& xml, std::vector<Paragraph>& out)
    {
        for (XmlChildren children(xml); children.next();) {
            if (xml.isName("tr")) {
                out.push_back(readRow(xml));
            } else if (xml.isName("tblPr") || xml.isName("tblGrid")) {
                xml.skipCurrentElement();
            } else {
                children.enter();
            }
        }
    }

    Paragraph readRow(FastXmlReader& xml)
    {
        Paragraph row;
        int cells = 0;
        for (XmlChildren children(xml); children.next();) {
            if (xml.isName("tc")) {
                std::vector<Paragraph> content;
                readBlocks(xml, content);
                appendTableCell(row, cells++ == 0, content);
            } else if (xml.isName("trPr") || xml.isName("tblPrEx")) {
                xml.skipCurrentElement();
            } else {
                children.enter();
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
    FastXmlReader xml(member.get());
    BodyReader reader(styles);
    while (!xml.atEnd()) {
        if (xml.readNext() != FastXmlReader::StartElement)
            continue;
        if (xml.isName("footnote") || xml.isName("endnote")) {
            const QString type = xml.attribute("type");
            const QString id = xml.attribute("id");
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

} // namespace

int readDocx(const QString& path, const ReadLimits& limits, Document& out)
{
    out = Document();
    ZipPackage zip(limits);
    if (!zip.open(path))
        return SourceInvalid;
    const QString docPath = officeDocumentPath(zip, QStringLiteral("word/document.xml"));
    const QString folder = partFolder(docPath);
    const QString prefix = folder.isEmpty() ? QString() : folder + QLatin1Char('/');
    auto member = zip.openMember(docPath);
    if (!member)
        return SourceInvalid;

    Styles styles;
    styles.read(zip, prefix + QStringLiteral("styles.xml"));

    FastXmlReader xml(member.get());
    BodyReader reader(styles);
    bool sawBody = false;
    while (!xml.atEnd()) {
        if (xml.readNext() == FastXmlReader::StartElement && xml.isName("body")) {
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

#include "components/lexiform/DocumentWriters.h"

#include "components/lexiform/FileBytes.h"

#include <QFile>
#include <zip.h>

namespace lexiform {

namespace {

QString hexColor(Rgb c)
{
    return QStringLiteral("%1").arg(c & 0xFFFFFF, 6, 16, QLatin1Char('0')).toUpper();
}

// Characters XML 1.0 cannot carry at all are dropped; markup is escaped.
QString xmlEscape(const QString& s)
{
    QString out;
    out.reserve(s.size() + 16);
    for (QChar c : s) {
        const char16_t u = c.unicode();
        if (u < 0x20 && u != '\t' && u != '\n' && u != '\r')
            continue;
        if (u == 0xFFFE || u == 0xFFFF)
            continue;
        switch (u) {
        case '<': out += QLatin1String("&lt;"); break;
        case '>': out += QLatin1String("&gt;"); break;
        case '&': out += QLatin1String("&amp;"); break;
        case '"': out += QLatin1String("&quot;"); break;
        default: out += c;
        }
    }
    return out;
}

QString cssOf(const CharFormat& f)
{
    QStringList parts;
    if (f.bold)
        parts << QStringLiteral("font-weight:bold");
    if (f.italic)
        parts << QStringLiteral("font-style:italic");
    if (f.underline || f.strike)
        parts << QStringLiteral("text-decoration:%1%2%3")
                     .arg(f.underline ? QStringLiteral("underline") : QString())
                     .arg(f.underline && f.strike ? QStringLiteral(" ") : QString())
                     .arg(f.strike ? QStringLiteral("line-through") : QString());
    if (f.foreColor)
        parts << QStringLiteral("color:#") + hexColor(*f.foreColor);
    if (f.backColor)
        parts << QStringLiteral("background-color:#") + hexColor(*f.backColor);
    if (!f.fontName.isEmpty())
        parts << QStringLiteral("font-family:'%1'").arg(QString(f.fontName).remove(QLatin1Char('\'')));
    if (f.fontSize > 0)
        parts << QStringLiteral("font-size:%1pt").arg(f.fontSize);
    return parts.join(QLatin1Char(';'));
}

bool addMember(zip_t* z, const char* name, const QByteArray& bytes)
{
    void* copy = malloc(std::size_t(std::max<qsizetype>(bytes.size(), 1)));
    if (!copy)
        return false;
    memcpy(copy, bytes.constData(), std::size_t(bytes.size()));
    zip_source_t* src = zip_source_buffer(z, copy, zip_uint64_t(bytes.size()), 1);
    if (!src) {
        free(copy);
        return false;
    }
    zip_int64_t idx = zip_file_add(z, name, src, ZIP_FL_OVERWRITE | ZIP_FL_ENC_UTF_8);
    if (idx < 0) {
        zip_source_free(src);
        return false;
    }
    return true;
}

} // namespace

QByteArray writePlainText(const Document& doc)
{
    // Paragraphs joined by line feeds and the last one ended, unless it is
    // empty: then the line feed before it already ends the text, and reading
    // the file back as text gives the same paragraphs.
    QString out = doc.plainText();
    out.replace(QChar(0x2028), QLatin1Char('\n'));
    if (!doc.paragraphs.empty() && !doc.paragraphs.back().runs.empty())
        out += QLatin1Char('\n');
    return out.toUtf8();
}

QByteArray writeHtml(const Document& doc)
{
    // Blanks and tabs are kept as written (pre-wrap), so the paragraphs
    // follow each other without white space between them.
    QString out = QStringLiteral("<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title></title>\n"
                                 "<style>p { margin: 0; }</style>\n</head>\n<body style=\"white-space:pre-wrap\">");
    for (const Paragraph& p : doc.paragraphs) {
        out += QLatin1String("<p>");
        if (p.runs.empty())
            out += QLatin1String("<br>");
        for (const Run& r : p.runs) {
            QString text = xmlEscape(r.text);
            text.replace(QChar(0x2028), QLatin1String("<br>"));
            const QString css = cssOf(r.format);
            if (css.isEmpty())
                out += text;
            else
                out += QStringLiteral("<span style=\"%1\">%2</span>").arg(css, text);
        }
        out += QLatin1String("</p>");
    }
    out += QLatin1String("</body>\n</html>\n");
    return out.toUtf8();
}

QByteArray docxBytes(const Document& doc)
{
    QString body;
    for (const Paragraph& p : doc.paragraphs) {
        body += QLatin1String("<w:p>");
        for (const Run& r : p.runs) {
            const CharFormat& f = r.format;
            QString props;
            if (!f.fontName.isEmpty())
                props += QStringLiteral("<w:rFonts w:ascii=\"%1\" w:hAnsi=\"%1\" w:cs=\"%1\"/>").arg(xmlEscape(f.fontName));
            if (f.bold)
                props += QLatin1String("<w:b/>");
            if (f.italic)
                props += QLatin1String("<w:i/>");
            if (f.strike)
                props += QLatin1String("<w:strike/>");
            if (f.foreColor)
                props += QStringLiteral("<w:color w:val=\"%1\"/>").arg(hexColor(*f.foreColor));
            if (f.fontSize > 0)
                props += QStringLiteral("<w:sz w:val=\"%1\"/>").arg(qRound(f.fontSize * 2));
            if (f.underline)
                props += QLatin1String("<w:u w:val=\"single\"/>");
            if (f.backColor)
                props += QStringLiteral("<w:shd w:val=\"clear\" w:color=\"auto\" w:fill=\"%1\"/>").arg(hexColor(*f.backColor));
            body += QLatin1String("<w:r>");
            if (!props.isEmpty())
                body += QLatin1String("<w:rPr>") + props + QLatin1String("</w:rPr>");
            // Tabs and line breaks are elements of their own in a run.
            QString chunk;
            auto flush = [&] {
                if (!chunk.isEmpty())
                    body += QLatin1String("<w:t xml:space=\"preserve\">") + xmlEscape(chunk) + QLatin1String("</w:t>");
                chunk.clear();
            };
            for (QChar c : r.text) {
                if (c == QLatin1Char('\t')) {
                    flush();
                    body += QLatin1String("<w:tab/>");
                } else if (c == QChar(0x2028) || c == QLatin1Char('\n') || c == QLatin1Char('\r')) {
                    flush();
                    body += QLatin1String("<w:br/>");
                } else {
                    chunk += c;
                }
            }
            flush();
            body += QLatin1String("</w:r>");
        }
        body += QLatin1String("</w:p>");
    }
    const QByteArray document =
        QByteArrayLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                          "<w:document xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\"><w:body>")
        + body.toUtf8()
        + QByteArrayLiteral("<w:sectPr><w:pgSz w:w=\"11906\" w:h=\"16838\"/><w:pgMar w:top=\"1440\" w:right=\"1440\" "
                            "w:bottom=\"1440\" w:left=\"1440\" w:header=\"720\" w:footer=\"720\" w:gutter=\"0\"/></w:sectPr>"
                            "</w:body></w:document>");
    const QByteArray contentTypes = QByteArrayLiteral(
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
        "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
        "<Default Extension=\"rels\" ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
        "<Default Extension=\"xml\" ContentType=\"application/xml\"/>"
        "<Override PartName=\"/word/document.xml\" "
        "ContentType=\"application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml\"/>"
        "</Types>");
    const QByteArray rels = QByteArrayLiteral(
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
        "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
        "<Relationship Id=\"rId1\" "
        "Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument\" "
        "Target=\"word/document.xml\"/></Relationships>");

    zip_source_t* out = zip_source_buffer_create(nullptr, 0, 0, nullptr);
    if (!out)
        return {};
    zip_t* z = zip_open_from_source(out, ZIP_TRUNCATE, nullptr);
    if (!z) {
        zip_source_free(out);
        return {};
    }
    zip_source_keep(out);
    const bool ok = addMember(z, "[Content_Types].xml", contentTypes) && addMember(z, "_rels/.rels", rels)
                    && addMember(z, "word/document.xml", document);
    if (!ok || zip_close(z) != 0) {
        zip_discard(z);
        zip_source_free(out);
        return {};
    }
    QByteArray bytes;
    if (zip_source_open(out) == 0) {
        zip_stat_t st;
        zip_stat_init(&st);
        if (zip_source_stat(out, &st) == 0 && (st.valid & ZIP_STAT_SIZE)) {
            bytes.resize(qsizetype(st.size));
            if (zip_source_read(out, bytes.data(), st.size) != zip_int64_t(st.size))
                bytes.clear();
        }
        zip_source_close(out);
    }
    zip_source_free(out);
    return bytes;
}

bool writeDocx(const Document& doc, const QString& path)
{
    // Built in memory and written through the safe write, so that a failure
    // leaves the old file alone.
    const QByteArray bytes = docxBytes(doc);
    return !bytes.isEmpty() && writeFileBytes(path, bytes);
}

} // namespace lexiform

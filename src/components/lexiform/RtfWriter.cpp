#include "components/lexiform/RtfWriter.h"

#include "components/lexiform/RtfCodePages.h"

#include <QHash>
#include <cmath>
#include <vector>

namespace lexiform {

namespace {

class Tables {
public:
    Tables()
    {
        fontNames_.push_back(QStringLiteral("Times New Roman"));
    }

    int font(const QString& name)
    {
        if (name.isEmpty())
            return 0;
        auto it = fontIndex_.constFind(name);
        if (it != fontIndex_.constEnd())
            return *it;
        const int index = int(fontNames_.size());
        fontNames_.push_back(name);
        fontIndex_.insert(name, index);
        return index;
    }

    // Index 0 of the colour table stays "automatic".
    int color(Rgb rgb)
    {
        auto it = colorIndex_.constFind(rgb);
        if (it != colorIndex_.constEnd())
            return *it;
        const int index = int(colors_.size()) + 1;
        colors_.push_back(rgb);
        colorIndex_.insert(rgb, index);
        return index;
    }

    const std::vector<QString>& fonts() const { return fontNames_; }
    const std::vector<Rgb>& colors() const { return colors_; }

private:
    std::vector<QString> fontNames_;
    QHash<QString, int> fontIndex_;
    std::vector<Rgb> colors_;
    QHash<Rgb, int> colorIndex_;
};

void appendNumber(QByteArray& out, long long n)
{
    out += QByteArray::number(n);
}

// Text as RTF: ASCII as is, the rest of Windows-1252 as \uN\'hh, everything
// else as \uN?. A UTF-16 unit is what \u counts, so a character outside the
// basic plane goes out as its two surrogates.
void appendText(QByteArray& out, const QString& text)
{
    for (QChar qc : text) {
        const char16_t c = qc.unicode();
        switch (c) {
        case u'\\': out += "\\\\"; continue;
        case u'{': out += "\\{"; continue;
        case u'}': out += "\\}"; continue;
        case u'\t': out += "\\tab "; continue;
        case u'\n':
        case u'\r':
        case u'\x2028': out += "\\line "; continue;
        case u'\x00A0': out += "\\~"; continue;
        default: break;
        }
        if (c >= 0x20 && c < 0x7F) {
            out += char(c);
            continue;
        }
        out += "\\u";
        appendNumber(out, static_cast<int16_t>(c));
        const unsigned char fallback = c >= 0x80 ? rtf::toWindows1252(c) : 0;
        if (fallback) {
            static const char hex[] = "0123456789abcdef";
            out += "\\'";
            out += hex[fallback >> 4];
            out += hex[fallback & 15];
        } else {
            out += '?';
        }
    }
}

bool isPlain(const CharFormat& f)
{
    return f == CharFormat{};
}

void appendFormat(QByteArray& out, const CharFormat& f, Tables& tables)
{
    if (f.bold)
        out += "\\b";
    if (f.italic)
        out += "\\i";
    if (f.underline)
        out += "\\ul";
    if (f.strike)
        out += "\\strike";
    if (!f.fontName.isEmpty()) {
        out += "\\f";
        appendNumber(out, tables.font(f.fontName));
    }
    if (f.fontSize > 0) {
        out += "\\fs";
        appendNumber(out, std::lround(std::min(f.fontSize, 1638.0) * 2));
    }
    if (f.foreColor) {
        out += "\\cf";
        appendNumber(out, tables.color(*f.foreColor & 0xFFFFFF));
    }
    if (f.backColor) {
        const QByteArray n = QByteArray::number(tables.color(*f.backColor & 0xFFFFFF));
        out += "\\highlight" + n + "\\chcbpat" + n + "\\cb" + n;
    }
}

} // namespace

QByteArray writeRtf(const Document& doc)
{
    Tables tables;
    QByteArray body;
    body.reserve(1024);
    for (const Paragraph& para : doc.paragraphs) {
        for (const Run& run : para.runs) {
            if (run.text.isEmpty())
                continue;
            if (isPlain(run.format)) {
                // A blank after a control word would be eaten as its delimiter.
                appendText(body, run.text);
                continue;
            }
            body += '{';
            appendFormat(body, run.format, tables);
            body += ' ';
            appendText(body, run.text);
            body += '}';
        }
        body += "\\par\n";
    }

    QByteArray out;
    out.reserve(body.size() + 512);
    out += "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\n{\\fonttbl";
    const auto& fonts = tables.fonts();
    for (std::size_t i = 0; i < fonts.size(); ++i) {
        out += "{\\f";
        appendNumber(out, static_cast<long long>(i));
        out += "\\fnil\\fcharset0 ";
        QString name = fonts[i];
        name.replace(QLatin1Char(';'), QLatin1Char(','));
        appendText(out, name);
        out += ";}";
    }
    out += "}\n{\\colortbl;";
    for (Rgb c : tables.colors()) {
        out += "\\red";
        appendNumber(out, (c >> 16) & 0xFF);
        out += "\\green";
        appendNumber(out, (c >> 8) & 0xFF);
        out += "\\blue";
        appendNumber(out, c & 0xFF);
        out += ';';
    }
    out += "}\n\\pard\\plain\n";
    out += body;
    out += "}\n";
    return out;
}

} // namespace lexiform

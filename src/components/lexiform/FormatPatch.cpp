#include "components/lexiform/FormatPatch.h"

namespace lexiform {

std::optional<Rgb> parseHexColor(QStringView text)
{
    QStringView t = text.trimmed();
    if (t.startsWith(QLatin1Char('#')))
        t = t.mid(1);
    bool ok = false;
    if (t.size() == 6) {
        uint v = t.toUInt(&ok, 16);
        if (ok)
            return Rgb(v);
    } else if (t.size() == 3) {
        uint v = t.toUInt(&ok, 16);
        if (ok) {
            uint r = (v >> 8) & 0xF, g = (v >> 4) & 0xF, b = v & 0xF;
            return Rgb((r * 17) << 16 | (g * 17) << 8 | (b * 17));
        }
    }
    return std::nullopt;
}

void appendText(Paragraph& p, const QString& text, const CharFormat& format)
{
    if (text.isEmpty())
        return;
    if (!p.runs.empty() && p.runs.back().format == format)
        p.runs.back().text += text;
    else
        p.runs.push_back({text, format});
}

void appendTableCell(Paragraph& row, bool firstCell, const std::vector<Paragraph>& content)
{
    if (!firstCell)
        appendText(row, QStringLiteral("\t"), CharFormat());
    bool first = true;
    for (const Paragraph& p : content) {
        if (p.runs.empty())
            continue;
        if (!first)
            appendText(row, QStringLiteral(" "), CharFormat());
        first = false;
        for (const Run& r : p.runs)
            appendText(row, r.text, r.format);
    }
}

} // namespace lexiform

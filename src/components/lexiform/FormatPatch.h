#pragma once
// A partial character format: what one style, span or tag says, leaving the
// rest to whatever it is applied over. Readers resolve style chains by
// applying patches in order, the most general first.

#include "components/lexiform/RichTextModel.h"

#include <QXmlStreamAttributes>

namespace lexiform {

struct FormatPatch {
    std::optional<bool> bold, italic, underline, strike;
    std::optional<std::optional<Rgb>> foreColor, backColor;  // outer: said at all; inner: automatic
    std::optional<QString> fontName;
    std::optional<double> fontSize;

    // Fields this patch says override those of `under`.
    void over(const FormatPatch& under)
    {
        if (!bold) bold = under.bold;
        if (!italic) italic = under.italic;
        if (!underline) underline = under.underline;
        if (!strike) strike = under.strike;
        if (!foreColor) foreColor = under.foreColor;
        if (!backColor) backColor = under.backColor;
        if (!fontName) fontName = under.fontName;
        if (!fontSize) fontSize = under.fontSize;
    }

    void applyTo(CharFormat& f) const
    {
        if (bold) f.bold = *bold;
        if (italic) f.italic = *italic;
        if (underline) f.underline = *underline;
        if (strike) f.strike = *strike;
        if (foreColor) f.foreColor = *foreColor;
        if (backColor) f.backColor = *backColor;
        if (fontName) f.fontName = *fontName;
        if (fontSize) f.fontSize = *fontSize;
    }
};

// An attribute by its local name: OOXML and OpenDocument qualify attributes
// with prefixes that each file is free to choose.
inline QString attributeValue(const QXmlStreamAttributes& attributes, QLatin1String localName)
{
    for (const QXmlStreamAttribute& a : attributes)
        if (a.name() == localName)
            return a.value().toString();
    return {};
}

inline bool hasAttribute(const QXmlStreamAttributes& attributes, QLatin1String localName)
{
    for (const QXmlStreamAttribute& a : attributes)
        if (a.name() == localName)
            return true;
    return false;
}

// "#C9211E", "C9211E", "#abc"; nothing for anything else.
std::optional<Rgb> parseHexColor(QStringView text);

// Appends text to a paragraph, merging it into the last run when the format
// is the same.
void appendText(Paragraph& p, const QString& text, const CharFormat& format);

// Appends one table cell to the paragraph that stands for its row: cells
// apart by a tab, the cell's non-empty paragraphs apart by a blank.
void appendTableCell(Paragraph& row, bool firstCell, const std::vector<Paragraph>& content);

} // namespace lexiform

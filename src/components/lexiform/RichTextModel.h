#pragma once
// The rich text model every Lexiform reader produces and every writer takes:
// a document is a list of paragraphs, a paragraph a list of runs of equally
// formatted text. It is deliberately small: the comparison viewers only show
// character formats, so paragraph layout (indents, alignment, styles) is not
// carried.

#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

namespace lexiform {

// Colours as 0xRRGGBB; an empty optional means "automatic" (the reader's
// default text colour, or no background).
using Rgb = std::uint32_t;

struct CharFormat {
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    std::optional<Rgb> foreColor;
    std::optional<Rgb> backColor;
    QString fontName;     // empty: the default font
    double fontSize = 0;  // points; 0: the default size

    bool operator==(const CharFormat&) const = default;
};

struct Run {
    QString text;  // never holds a paragraph break; may hold '\t' and U+2028 (line break)
    CharFormat format;

    bool operator==(const Run&) const = default;
};

struct Paragraph {
    std::vector<Run> runs;

    QString text() const
    {
        QString s;
        for (const Run& r : runs)
            s += r.text;
        return s;
    }
    bool operator==(const Paragraph&) const = default;
};

struct Document {
    std::vector<Paragraph> paragraphs;

    // Paragraphs joined by '\n', no line end after the last.
    QString plainText() const
    {
        QString s;
        for (std::size_t i = 0; i < paragraphs.size(); ++i) {
            if (i)
                s += QLatin1Char('\n');
            s += paragraphs[i].text();
        }
        return s;
    }
    bool operator==(const Document&) const = default;
};

} // namespace lexiform

#pragma once
// Colours as the settings and the viewers hold them: 32-bit COLORREF numbers
// with red in the low byte. A number with the top bit set names a system
// colour by its index (5 is the window background, 8 the window text).

#include "components/lexiform/RichTextModel.h"

#include <QColor>
#include <cstdint>

namespace tv {

// Resolves system colours through the application's palette.
QColor colorFromColorref(std::int32_t colorref);
std::int32_t colorrefFromColor(const QColor& color);

inline lexiform::Rgb rgbFromColor(const QColor& c)
{
    return (lexiform::Rgb(c.red()) << 16) | (lexiform::Rgb(c.green()) << 8) | lexiform::Rgb(c.blue());
}

inline QColor colorFromRgb(lexiform::Rgb rgb)
{
    return QColor((rgb >> 16) & 0xFF, (rgb >> 8) & 0xFF, rgb & 0xFF);
}

} // namespace tv

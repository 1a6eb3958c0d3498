#include "document/ColorRef.h"

#include <QGuiApplication>
#include <QPalette>

namespace tv {

namespace {

QPalette::ColorRole roleOfSystemColor(int index)
{
    switch (index) {
    case 5: return QPalette::Base;              // window background
    case 8: return QPalette::Text;              // window text
    case 13: return QPalette::Highlight;
    case 14: return QPalette::HighlightedText;
    case 15: return QPalette::Button;           // button face
    case 18: return QPalette::ButtonText;
    case 24: return QPalette::ToolTipBase;
    case 23: return QPalette::ToolTipText;
    default: return QPalette::Base;
    }
}

} // namespace

QColor colorFromColorref(std::int32_t colorref)
{
    const auto u = static_cast<std::uint32_t>(colorref);
    if (u & 0x80000000u)
        return QGuiApplication::palette().color(QPalette::Active, roleOfSystemColor(int(u & 0xFF)));
    return QColor(int(u & 0xFF), int((u >> 8) & 0xFF), int((u >> 16) & 0xFF));
}

std::int32_t colorrefFromColor(const QColor& c)
{
    return std::int32_t(c.red() | (c.green() << 8) | (c.blue() << 16));
}

} // namespace tv

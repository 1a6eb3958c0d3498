#include "document/ClsAPIHighlight.h"

#include "document/ColorRef.h"
#include "document/RichTextBox.h"

#include <QRandomGenerator>

namespace {

std::int32_t rgb(int r, int g, int b)
{
    return std::int32_t(r | (g << 8) | (b << 16));
}

} // namespace

void ClsAPIHighlight::AssignControls(RichTextBox* richText, QObject* dialog)
{
    rtb_ = richText;
    dialog_ = dialog;
}

void ClsAPIHighlight::APIHighlightHard(std::int32_t lColor)
{
    if (!rtb_)
        return;
    rtb_->setSelBackColor(lColor);
}

void ClsAPIHighlight::APIHighlightHardHard(std::int32_t lColor, std::int32_t lFontColor)
{
    if (!rtb_)
        return;
    APIHighlightHard(lColor);
    rtb_->setSelColor(lFontColor);
}

void ClsAPIHighlight::APIHighlightRemove()
{
    APIHighlightHard(tv::colorrefFromColor(tv::colorFromColorref(kSystemWindowColor)));
}

std::int32_t ClsAPIHighlight::NamedColour(const QString& name)
{
    const QString n = name.toLower();
    if (n == QLatin1String("beige") || n == QLatin1String("fadedpink"))
        return rgb(250, 200, 200);
    if (n == QLatin1String("fred"))
        return rgb(23, 200, 200);
    if (n == QLatin1String("random")) {
        auto channel = [] { return int(255 * QRandomGenerator::global()->generateDouble()); };
        const int r = channel();
        const int g = channel();
        const int b = channel();
        return rgb(r, g, b);
    }
    return 0;
}

#pragma once
// The four character formats of a rendered comparison, read from the option
// set at each use so that a changed option shows at the next render.

#include "filecompare/ComparisonResult.h"
#include "settings/clsCompareFileOptions.h"

#include <cstdint>

class RichTextBox;
class clsRTBDocument;

namespace filecompare {

struct DiffFormat {
    std::int32_t color;
    std::int32_t backColor;
    bool bold;
    bool underline;
    bool strikeout;
    bool italic;
};

inline DiffFormat DeletionFormat(const clsCompareFileOptions& o)
{
    return {o.lViewDeletionForeColor.Data(), o.lViewDeletionBackColor.Data(), o.bViewDeletionBold.Data(),
            o.bViewDeletionUnderline.Data(), o.bViewDeletionStrikeout.Data(), o.bViewDeletionItalic.Data()};
}

inline DiffFormat AdditionFormat(const clsCompareFileOptions& o)
{
    return {o.lViewAdditionForeColor.Data(), o.lViewAdditionBackColor.Data(), o.bViewAdditionBold.Data(),
            o.bViewAdditionUnderline.Data(), o.bViewAdditionStrikeout.Data(), o.bViewAdditionItalic.Data()};
}

inline DiffFormat ChangeFormatOriginal(const clsCompareFileOptions& o)
{
    return {o.lViewChangeForeColorOriginal.Data(), o.lViewChangeBackColorOriginal.Data(),
            o.bViewChangeBoldOriginal.Data(),      o.bViewChangeUnderlineOriginal.Data(),
            o.bViewChangeStrikeoutOriginal.Data(), o.bViewChangeItalicOriginal.Data()};
}

inline DiffFormat ChangeFormatModified(const clsCompareFileOptions& o)
{
    return {o.lViewChangeForeColorModified.Data(), o.lViewChangeBackColorModified.Data(),
            o.bViewChangeBoldModified.Data(),      o.bViewChangeUnderlineModified.Data(),
            o.bViewChangeStrikeoutModified.Data(), o.bViewChangeItalicModified.Data()};
}

// Gives the selection of a box the format, then empties the selection.
void FormatSelection(RichTextBox* rtb, const DiffFormat& f);

// Gives paragraphs first..last of a rendered pane the format whole, and puts
// a copy of them at the top of a filtered box (additions, deletions).
void ColorizeWholeSection(clsRTBDocument& doc, RichTextBox* pane, qint32 first, qint32 last, const DiffFormat& f,
                          RichTextBox* filtered);

// Progress of step i of n walked from the end: 100/n on the first step,
// 100.0 on the last.
inline double StepPercent(int i, int n)
{
    return 100.0 - (double(i) / double(n)) * 100.0;
}

} // namespace filecompare

// The all-in-one rendering: the Original, into which the Modified's added
// text is inserted and in which deleted text stays, coloured; inside a
// changed section the Modified's words stand behind the Original's.
//
// A paragraph break is one character in the boxes, and a box has no hidden
// paragraph mark at its end, so a section without its line end is the
// paragraph span less one character, and a whole box is its whole text.

#include "document/RichTextBox.h"
#include "document/clsRTBDocument.h"
#include "filecompare/DiffRenderer.h"
#include "filecompare/FileCompareFormats.h"
#include "filecompare/FileCompareSession.h"

#include <array>

namespace filecompare {

QString AllInOneRenderer::wordRangeText(const RichTextBox* rtb, qint32 lFromWord, qint32 lToWord)
{
    qint32 lFirst = 0, lLast = 0, unused = 0;
    const WordIndex& index = words_.of(rtb);
    index.bounds(lFromWord, lFirst, unused);
    index.bounds(lToWord, unused, lLast);
    if (lFirst == 0)
        lFirst = 1;
    const QString text = rtb->Text();
    const qsizetype from = qBound(qsizetype(0), qsizetype(lFirst - 1), text.size());
    const qsizetype to = qBound(from, qsizetype(lLast), text.size());
    return text.mid(from, to - from);
}

// Inserts text in front of the delimiter behind word lWord, formatted.
void AllInOneRenderer::insertFormattedText(RichTextBox* rtb, qint32 lWord, const QString& sText, const DiffFormat& f)
{
    qint32 lFirst = 0, lLast = 0;
    words_.of(rtb).bounds(lWord, lFirst, lLast);
    if (lLast == 0)
        lLast = 1;
    rtb->setSelStart(lLast - 1);
    rtb->setSelText(sText);
    rtb->setSelStart(lLast - 1);
    rtb->setSelLength(qint32(sText.size()));
    FormatSelection(rtb, f);
}

bool AllInOneRenderer::render(const ComparisonResult& result)
{
    const clsCompareFileOptions& o = *run_.options;
    const RichText lineBreak = RichText::fromPlainText(QStringLiteral("\n"));
    BulkEdit bulk{p_.merged};
    p_.merged->setTextRTF(p_.original->TextRTF());
    TakeLook(p_.merged, p_.original);
    p_.docMerged->ParagraphCollectionCreate();
    return WalkFromLast(result, run_, 3, QStringLiteral("Document: "), QStringLiteral("% Done."),
                        [&](int, const Difference& d) {
        if (d.kind == kKindAddition) {
            renderAddition(d);
        } else if (d.kind == kKindDeletion) {
            ColorizeWholeSection(*p_.docMerged, p_.merged, d.lf, d.ll, DeletionFormat(o), p_.deletions);
        } else if (d.kind == kKindChange) {
            renderChange(d);
            p_.changes->setSelStart(0);
            p_.changes->setSelRTF(p_.mergedSection->TextRTF() + lineBreak);
        }
        Sleep(0);
    });
}

void AllInOneRenderer::renderAddition(const Difference& d)
{
    const RichText lineBreak = RichText::fromPlainText(QStringLiteral("\n"));
    const qint32 lf = d.lf, ll = d.ll;
    p_.docModified->SelectParagraphs(d.rf, d.rl, false);
    p_.mergedSection->setTextRTF(p_.modified->SelRTF());
    const DiffFormat f = AdditionFormat(*run_.options);
    p_.docMergedSection->ColorizeAll(f.color, f.backColor, f.bold, f.underline, f.strikeout, f.italic);
    p_.docMergedSection->SelectAll();
    p_.additions->setSelStart(0);
    p_.additions->setSelRTF(p_.mergedSection->SelRTF() + lineBreak);
    // The added text gains a line break in front, or behind it when it goes
    // to the top of the document.
    p_.mergedSection->setSelStart(lf < 1 ? p_.mergedSection->TextLength() : 0);
    p_.mergedSection->setSelRTF(lineBreak);
    p_.docMergedSection->SelectAll();
    const qint32 inserted = p_.mergedSection->SelLength();
    const qint32 lengthBefore = p_.merged->TextLength();
    p_.docMerged->SetCursorAt(lf);
    p_.merged->setSelRTF(p_.mergedSection->SelRTF());
    p_.docMerged->ParagraphCollectionAdjust(ll + 1, inserted);
    // Behind the last paragraph its end was the overshoot past the text; it
    // now ends at the line break put in front of the added text, which then
    // lies in the seam as everywhere else.
    if (lf >= 1 && lf >= p_.docMerged->ParagraphCount())
        p_.docMerged->SetLastCharLocationOfParagraph(lf, lengthBefore + 1);
}

void AllInOneRenderer::renderChange(const Difference& d)
{
    const clsCompareFileOptions& o = *run_.options;
    const qint32 lLeftFirst = d.lf, lLeftLast = d.ll;
    p_.docOriginal->SelectParagraphs(d.lf, d.ll, false);
    const RichText section = p_.original->SelRTF();
    p_.originalSection->setTextRTF(section);
    p_.mergedSection->setTextRTF(section);
    p_.docModified->SelectParagraphs(d.rf, d.rl, false);
    p_.modifiedSection->setTextRTF(p_.modified->SelRTF());
    for (auto w = d.words.rbegin(); w != d.words.rend(); ++w) {
        if (w->kind == kKindAddition) {
            const QString text = wordRangeText(p_.modifiedSection, w->rf, w->rl);
            insertFormattedText(p_.mergedSection, w->lf, text, AdditionFormat(o));
        } else if (w->kind == kKindDeletion) {
            FormatWordRange(words_, p_.mergedSection, w->lf, w->ll, DeletionFormat(o));
        } else if (w->kind == kKindChange) {
            FormatWordRange(words_, p_.mergedSection, w->lf, w->ll, ChangeFormatOriginal(o));
            const QString text = wordRangeText(p_.modifiedSection, w->rf, w->rl);
            insertFormattedText(p_.mergedSection, w->ll, text, ChangeFormatModified(o));
        }
    }

    // Positions from the Original's index hold in the combined document,
    // since everything inserted so far lies behind this record.
    const clsRTBDocument& original = *p_.docOriginal;
    const qint32 a = original.GetLastCharLocationOfParagraph(lLeftLast);
    const qint32 b = original.GetFirstCharLocationOfParagraph(lLeftFirst);
    const bool lastParagraph = lLeftLast >= original.ParagraphCount();
    const qint32 originalLength = p_.original->TextLength();
    const qint32 L = lastParagraph ? originalLength - b : a - b - 1;
    const qint32 T = p_.mergedSection->TextLength();
    p_.merged->setSelStart(b);
    p_.merged->setSelLength(qMax(0, L));
    p_.docMergedSection->SelectAll();
    p_.merged->setSelRTF(p_.mergedSection->SelRTF());
    p_.docMerged->ParagraphCollectionAdjust(lLeftLast + 1, T - L);
    // A change may grow its paragraph; navigation selects it by number.
    p_.docMerged->SetLastCharLocationOfParagraph(lLeftLast, lastParagraph ? p_.merged->TextLength() + 2 : a + T - L);
}

void AllInOneRenderer::showDifference(const Difference& d)
{
    const std::array<RichTextBox*, 3> boxes{p_.original, p_.modified, p_.merged};
    for (RichTextBox* box : boxes)
        box->setUpdatesLocked(true);
    p_.docOriginal->SelectParagraphs(d.lf, d.ll, false);
    p_.docModified->SelectParagraphs(d.rf, d.rl, false);
    if (d.kind != kKindAddition) {
        p_.docMerged->SelectParagraphs(d.lf, d.ll, true);
    } else {
        try {
            // The added text lies in the seam behind paragraph lLeftLast.
            p_.docMerged->SelectAllTextBetween(d.ll, d.ll + 1, false);
        } catch (const std::exception&) {
            p_.docMerged->SetCursorAt(d.ll);
        }
    }
    if (!run_.options->bSelectTextInDiffViewer.Data())
        p_.merged->setSelLength(1);
    for (RichTextBox* box : boxes) {
        box->setUpdatesLocked(false);
        BringSelectionToThird(box, *run_.coupling);
    }
}

void AllInOneRenderer::scroll(bool up)
{
    p_.docMerged->ScrollRTB(up);
}

std::vector<RichTextBox*> AllInOneRenderer::panes() const
{
    return {p_.merged};
}

} // namespace filecompare

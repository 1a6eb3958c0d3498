// The all-in-one rendering: the Original, into which the Modified's added
// text is inserted and in which deleted text stays, coloured; inside a
// changed section the Modified's words stand behind the Original's.
//
// A paragraph break is one character in the boxes, and a box has no hidden
// paragraph mark at its end, so a section without its line end is the
// paragraph span less one character, and a whole box is its whole text.

#include "document/ClsAPIHighlight.h"
#include "filecompare/FileCompareFormats.h"
#include "filecompare/FileCompareWidgets.h"
#include "filecompare/frmCompareFiles.h"

using filecompare::DiffFormat;
using filecompare::Sleep;

namespace {

QString wordRangeText(const RichTextBox* rtb, qint32 lFromWord, qint32 lToWord)
{
    qint32 lFirst = 0, lLast = 0, unused = 0;
    frmCompareFiles::FindWordBounds(rtb, lFromWord, lFirst, unused);
    frmCompareFiles::FindWordBounds(rtb, lToWord, unused, lLast);
    if (lFirst == 0)
        lFirst = 1;
    const QString text = rtb->Text();
    const qsizetype from = qBound(qsizetype(0), qsizetype(lFirst - 1), text.size());
    const qsizetype to = qBound(from, qsizetype(lLast), text.size());
    return text.mid(from, to - from);
}

// Inserts text in front of the delimiter behind word lWord, formatted.
void insertFormattedText(RichTextBox* rtb, qint32 lWord, const QString& sText, const DiffFormat& f)
{
    qint32 lFirst = 0, lLast = 0;
    frmCompareFiles::FindWordBounds(rtb, lWord, lFirst, lLast);
    if (lLast == 0)
        lLast = 1;
    rtb->setSelStart(lLast - 1);
    rtb->setSelText(sText);
    rtb->setSelStart(lLast - 1);
    rtb->setSelLength(qint32(sText.size()));
    filecompare::FormatSelection(rtb, f);
}

} // namespace

void frmCompareFiles::UpdateChangesToRTFFileAIO()
{
    const RichText lineBreak = RichText::fromPlainText(QStringLiteral("\n"));
    WalkRecordsFromLast(SkeinMacroDiff, 3, QStringLiteral("Document: "), QStringLiteral("% Done."),
                        [&](int, int kind, int lf, int ll, int rf, int rl) {
        if (kind == filecompare::kKindAddition) {
            ++mlAdditionCount;
            docModified.SelectParagraphs(rf, rl, false);
            rtbAIODiffTemp->setTextRTF(rtbModified->SelRTF());
            const DiffFormat f = filecompare::AdditionFormat(moFileOptions);
            docAIODiffTemp.ColorizeAll(f.color, f.backColor, f.bold, f.underline, f.strikeout, f.italic);
            docAIODiffTemp.SelectAll();
            rtbAdditions->setSelStart(0);
            rtbAdditions->setSelRTF(rtbAIODiffTemp->SelRTF() + lineBreak);
            // The added text gains a line break in front, or behind it when
            // it goes to the top of the document.
            rtbAIODiffTemp->setSelStart(lf < 1 ? rtbAIODiffTemp->TextLength() : 0);
            rtbAIODiffTemp->setSelRTF(lineBreak);
            docAIODiffTemp.SelectAll();
            const qint32 inserted = rtbAIODiffTemp->SelLength();
            const qint32 lengthBefore = rtbAIODiff->TextLength();
            docAIODiff.SetCursorAt(lf);
            rtbAIODiff->setSelRTF(rtbAIODiffTemp->SelRTF());
            docAIODiff.ParagraphCollectionAdjust(ll + 1, inserted);
            // Behind the last paragraph its end was the overshoot past the
            // text; it now ends at the line break put in front of the added
            // text, which then lies in the seam as everywhere else.
            if (lf >= 1 && lf >= docAIODiff.ParagraphCount())
                docAIODiff.SetLastCharLocationOfParagraph(lf, lengthBefore + 1);
        } else if (kind == filecompare::kKindDeletion) {
            ++mlDeletionCount;
            filecompare::ColorizeWholeSection(docAIODiff, rtbAIODiff, lf, ll, filecompare::DeletionFormat(moFileOptions),
                                              rtbDeletions);
        } else if (kind == filecompare::kKindChange) {
            ++mlChangeCount;
            ColorizeParagraphsInRTB_AIO(lf, ll, rf, rl);
            rtbChanges->setSelStart(0);
            rtbChanges->setSelRTF(rtbAIODiffTemp->TextRTF() + lineBreak);
        }
        Sleep(0);
    });
}

void frmCompareFiles::ColorizeParagraphsInRTB_AIO(qint32 lLeftFirst, qint32 lLeftLast, qint32 lRightFirst,
                                                   qint32 lRightLast)
{
    docOriginal.SelectParagraphs(lLeftFirst, lLeftLast, false);
    const RichText section = rtbOriginal->SelRTF();
    rtbOriginalDiffTemp->setTextRTF(section);
    rtbAIODiffTemp->setTextRTF(section);
    docModified.SelectParagraphs(lRightFirst, lRightLast, false);
    rtbModifiedDiffTemp->setTextRTF(rtbModified->SelRTF());
    CompareSectionWords();
    UpdateChangesToParagraphsRTF_AIO();

    // Positions from the Original's index hold in the combined document,
    // since everything inserted so far lies behind this record.
    const qint32 a = docOriginal.GetLastCharLocationOfParagraph(lLeftLast);
    const qint32 b = docOriginal.GetFirstCharLocationOfParagraph(lLeftFirst);
    const bool lastParagraph = lLeftLast >= docOriginal.ParagraphCount();
    const qint32 originalLength = rtbOriginal->TextLength();
    const qint32 L = lastParagraph ? originalLength - b : a - b - 1;
    const qint32 T = rtbAIODiffTemp->TextLength();
    rtbAIODiff->setSelStart(b);
    rtbAIODiff->setSelLength(qMax(0, L));
    docAIODiffTemp.SelectAll();
    rtbAIODiff->setSelRTF(rtbAIODiffTemp->SelRTF());
    docAIODiff.ParagraphCollectionAdjust(lLeftLast + 1, T - L);
    // A change may grow its paragraph; navigation selects it by number.
    docAIODiff.SetLastCharLocationOfParagraph(lLeftLast, lastParagraph ? rtbAIODiff->TextLength() + 2 : a + T - L);
}

void frmCompareFiles::UpdateChangesToParagraphsRTF_AIO()
{
    WalkRecordsFromLast(SkeinMiniDiff, 2, QStringLiteral("Section: "), QStringLiteral("% Done"),
                        [&](int, int kind, int lf, int ll, int rf, int rl) {
        if (kind == filecompare::kKindAddition) {
            const QString text = wordRangeText(rtbModifiedDiffTemp, rf, rl);
            insertFormattedText(rtbAIODiffTemp, lf, text, filecompare::AdditionFormat(moFileOptions));
        } else if (kind == filecompare::kKindDeletion) {
            FormatWordRange(rtbAIODiffTemp, lf, ll, filecompare::DeletionFormat(moFileOptions));
        } else if (kind == filecompare::kKindChange) {
            FormatWordRange(rtbAIODiffTemp, lf, ll, filecompare::ChangeFormatOriginal(moFileOptions));
            const QString text = wordRangeText(rtbModifiedDiffTemp, rf, rl);
            insertFormattedText(rtbAIODiffTemp, ll, text, filecompare::ChangeFormatModified(moFileOptions));
        }
    });
    SetPanelText(2, QString());
}

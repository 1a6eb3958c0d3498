// The side-by-side rendering: the difference records coloured into copies of
// the two editors, from the last record to the first, with the word-level
// records of each changed section marked inside it.

#include "document/RichTextBox.h"
#include "document/clsRTBDocument.h"
#include "filecompare/DiffRenderer.h"
#include "filecompare/FileCompareFormats.h"
#include "filecompare/FileCompareSession.h"
#include "filecompare/FileCompareWidgets.h"

#include <array>

namespace filecompare {

namespace {

// The span a changed section occupies in a work pane, by the editor's index:
// the section left the editor without its paragraph break, so the span it
// replaces must leave that break alone too. True when the section brought
// back the very characters it replaced.
bool replaceSection(RichTextBox* work, const clsRTBDocument& reference, qint32 first, qint32 last,
                    const RichTextBox* section)
{
    const qint32 start = reference.GetFirstCharLocationOfParagraph(first);
    qint32 end = reference.GetLastCharLocationOfParagraph(last);
    if (end > start && end - 1 < work->TextLength() && work->characterAt(end - 1) == QLatin1Char('\n'))
        --end;
    work->setSelStart(start);
    work->setSelLength(qMax(0, end - start));
    const bool same = work->SelText() == section->Text();
    work->setSelRTF(section->TextRTF());
    return same;
}

} // namespace

bool SideBySideRenderer::render(const ComparisonResult& result)
{
    const clsCompareFileOptions& o = *run_.options;
    bool sameParagraphs = true;
    const bool whole = WalkFromLast(result, run_, 3, QStringLiteral("Document "),
                                    QStringLiteral("% Done. Click here to Abort."), [&](int, const Difference& d) {
        if (d.kind == kKindChange) {
            sameParagraphs = renderChange(d) && sameParagraphs;
            p_.docOriginalWork->SelectParagraphs(d.lf, d.ll, true);
            // The Original's text of the section, then the Modified's, each
            // as a paragraph of its own.
            p_.changes->setSelStart(0);
            const RichText lineBreak = RichText::fromPlainText(QStringLiteral("\n"));
            p_.changes->setSelRTF(p_.originalSection->TextRTF() + lineBreak + p_.modifiedSection->TextRTF()
                                  + lineBreak);
        } else if (d.kind == kKindDeletion) {
            ColorizeWholeSection(*p_.docOriginalWork, p_.originalWork, d.lf, d.ll, DeletionFormat(o), p_.deletions);
        } else if (d.kind == kKindAddition) {
            ColorizeWholeSection(*p_.docModifiedWork, p_.modifiedWork, d.rf, d.rl, AdditionFormat(o), p_.additions);
        }
        Sleep(0);
    });
    // The finished work panes become the shown ones whole; the work panes
    // take the old shown documents.
    p_.originalPane->swapDocuments(*p_.originalWork);
    p_.modifiedPane->swapDocuments(*p_.modifiedWork);
    // Copies whose sections all came back as they were keep their
    // paragraphs, and their indexes go with them.
    if (sameParagraphs) {
        p_.docOriginalPane->ParagraphCollectionTake(*p_.docOriginalWork);
        p_.docModifiedPane->ParagraphCollectionTake(*p_.docModifiedWork);
    } else {
        p_.docOriginalPane->ParagraphCollectionCreate();
        p_.docModifiedPane->ParagraphCollectionCreate();
    }
    return whole;
}

bool SideBySideRenderer::renderChange(const Difference& d)
{
    const clsCompareFileOptions& o = *run_.options;
    p_.docOriginal->SelectParagraphs(d.lf, d.ll, false);
    p_.originalSection->setTextRTF(p_.original->SelRTF());
    p_.docModified->SelectParagraphs(d.rf, d.rl, false);
    p_.modifiedSection->setTextRTF(p_.modified->SelRTF());
    for (auto w = d.words.rbegin(); w != d.words.rend(); ++w) {
        if (w->kind == kKindAddition) {
            FormatWordRange(words_, p_.modifiedSection, w->rf, w->rl, AdditionFormat(o));
        } else if (w->kind == kKindDeletion) {
            FormatWordRange(words_, p_.originalSection, w->lf, w->ll, DeletionFormat(o));
        } else if (w->kind == kKindChange) {
            FormatWordRange(words_, p_.modifiedSection, w->rf, w->rl, ChangeFormatModified(o));
            FormatWordRange(words_, p_.originalSection, w->lf, w->ll, ChangeFormatOriginal(o));
        }
    }
    // The editors' indexes never change during the pass, and everything the
    // work panes changed so far lies behind this record.
    const bool original = replaceSection(p_.originalWork, *p_.docOriginal, d.lf, d.ll, p_.originalSection);
    return replaceSection(p_.modifiedWork, *p_.docModified, d.rf, d.rl, p_.modifiedSection) && original;
}

void SideBySideRenderer::showDifference(const Difference& d)
{
    // The views take the final selections once, so each scrolls once. In the
    // editors the paragraphs are selected without their last line end: a
    // selection that reaches into the next paragraph makes the view lay out
    // its whole document before it can show it, seconds for a long one.
    const std::array<RichTextBox*, 4> boxes{p_.original, p_.modified, p_.originalPane, p_.modifiedPane};
    for (RichTextBox* box : boxes)
        box->setUpdatesLocked(true);
    p_.docOriginal->SelectParagraphs(d.lf, d.ll, false);
    p_.docModified->SelectParagraphs(d.rf, d.rl, false);
    p_.docOriginalPane->SelectParagraphs(d.lf, d.ll, true);
    p_.docModifiedPane->SelectParagraphs(d.rf, d.rl, true);
    if (!run_.options->bSelectTextInDiffViewer.Data()) {
        p_.originalPane->setSelLength(1);
        p_.modifiedPane->setSelLength(1);
    }
    for (RichTextBox* box : boxes) {
        box->setUpdatesLocked(false);
        BringSelectionToThird(box, *run_.coupling);
    }
}

void SideBySideRenderer::scroll(bool up)
{
    p_.docOriginalPane->ScrollRTB(up);
    p_.docModifiedPane->ScrollRTB(up);
}

std::vector<RichTextBox*> SideBySideRenderer::panes() const
{
    return {p_.originalPane, p_.modifiedPane};
}

} // namespace filecompare

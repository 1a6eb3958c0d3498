// What both renderings share: the walk over the records, the formats of a
// selection and a section, and bringing a selection into sight.

#include "document/ClsAPIHighlight.h"
#include "document/RichTextBox.h"
#include "document/clsRTBDocument.h"
#include "filecompare/DiffRenderer.h"
#include "filecompare/FileCompareFormats.h"
#include "filecompare/FileCompareWidgets.h"

#include <QScrollBar>
#include <QTextEdit>

namespace filecompare {

bool WalkFromLast(const ComparisonResult& result, const RenderRun& run, int panel, const QString& caption,
                  const QString& tail, const std::function<void(int i, const Difference&)>& step)
{
    const int n = result.count();
    // Each new status text costs a relayout and a repaint of the window at the
    // next look at the event queue, a good share of the walk on thousands of
    // differences; one text per whole percent shows the progress as well, and
    // the last step still shows its own.
    int shownWhole = -1;
    for (int i = n - 1; i >= 0; --i) {
        if (run.stopRequested())
            return false;
        const double percent = StepPercent(i, n);
        if (int(percent) != shownWhole) {
            shownWhole = int(percent);
            run.progress(panel, caption + FormatPercent(percent) + tail);
        }
        step(i, *result.at(i));
    }
    return true;
}

void TakeLook(RichTextBox* to, const RichTextBox* from)
{
    if (to->document()->defaultFont() != from->document()->defaultFont())
        to->document()->setDefaultFont(from->document()->defaultFont());
}

BulkEdit::BulkEdit(std::initializer_list<RichTextBox*> boxes)
    : boxes_(boxes)
{
    for (RichTextBox* b : boxes_)
        b->beginBulkEdit();
}

BulkEdit::~BulkEdit()
{
    for (RichTextBox* b : boxes_)
        b->endBulkEdit();
}

void BringSelectionToThird(RichTextBox* box, bool& coupling)
{
    QTextEdit* view = box->view();
    if (!view || !view->isVisible())
        return;
    const int height = view->viewport()->height();
    const int top = view->cursorRect(view->textCursor()).top();
    QTextCursor start = view->textCursor();
    start.setPosition(view->textCursor().selectionStart());
    const int selectionTop = view->cursorRect(start).top();
    if (selectionTop >= height / 6 && top <= height * 5 / 6)
        return;
    coupling = true;
    view->verticalScrollBar()->setValue(view->verticalScrollBar()->value() + selectionTop - height / 3);
    coupling = false;
}

void ColorizeWholeSection(clsRTBDocument& doc, RichTextBox* pane, qint32 first, qint32 last, const DiffFormat& f,
                          RichTextBox* filtered)
{
    doc.ColorizeParagraphs(first, last, f.color, f.backColor, f.bold, f.underline, f.strikeout, f.italic);
    doc.SelectParagraphs(first, last, true);
    filtered->setSelStart(0);
    filtered->setSelRTF(pane->SelRTF());
}

void FormatSelection(RichTextBox* rtb, const DiffFormat& f)
{
    rtb->setSelColor(f.color);
    rtb->setSelBold(f.bold);
    rtb->setSelUnderline(f.underline);
    rtb->setSelStrikeThru(f.strikeout);
    rtb->setSelItalic(f.italic);
    ClsAPIHighlight highlight;
    highlight.AssignControls(rtb);
    highlight.APIHighlightHard(f.backColor);
    rtb->setSelLength(0);
}

} // namespace filecompare

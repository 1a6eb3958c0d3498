// Moving between differences: the list of differences, the current one
// brought into view in every pane, its description in the status bar, and
// the buttons that move on.

#include "filecompare/FileCompareFormats.h"
#include "filecompare/FileCompareWidgets.h"
#include "filecompare/frmCompareFiles.h"
#include "filecompare/frmCompareFilesGoTo.h"
#include "shell/modMessageBox.h"
#include "shell/modModalDialog.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QScrollBar>
#include <QTextEdit>
#include <QStringList>

#include <array>

using filecompare::DoEvents;

namespace {

// Puts the selection of a shown box a third down its view when scrolling
// had left it at an edge, so that what comes before it is in sight too.
void bringSelectionToThird(RichTextBox* box, bool& coupling)
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

QString paragraphText(clsRTBDocument& doc, RichTextBox* box, qint32 paragraph)
{
    doc.SelectParagraphs(paragraph, paragraph, false);
    return box->SelText().left(100);
}

} // namespace

bool frmCompareFiles::WalkRecordsFromLast(const Skeinmatch& engine, int panel, const QString& caption,
                                          const QString& tail, const RecordStep& step)
{
    const int n = engine.DifferenceCount();
    for (int i = n - 1; i >= 0; --i) {
        DoEvents();
        if (mbAbort)
            return false;
        SetPanelText(panel, caption + filecompare::FormatPercent(filecompare::StepPercent(i, n)) + tail);
        int kind = 0, lf = 0, ll = 0, rf = 0, rl = 0;
        if (!engine.GetDifference(i, kind, lf, ll, rf, rl))
            return false;
        step(i, kind, lf, ll, rf, rl);
    }
    return true;
}

void frmCompareFiles::UpdateNavigationalDropDownListBox()
{
    QStringList rows;
    const QChar q(u'"');
    WalkRecordsFromLast(SkeinMacroDiff, 3, QStringLiteral("Updating List Box: "),
                        QStringLiteral("% Done. Click here to Abort."),
                        [&](int i, int kind, int lf, int ll, int rf, int rl) {
        const QString number = QStringLiteral("[") + QString::number(i + 1) + QStringLiteral("] ");
        if (kind == filecompare::kKindAddition) {
            const int k = rl + 1 - rf;
            const QString x = paragraphText(docModified, rtbModified, rf);
            rows << number + QStringLiteral("Addition of ") + QString::number(k)
                        + (k == 1 ? QStringLiteral(" line at paragraph (") : QStringLiteral(" lines at paragraph ("))
                        + QString::number(lf) + QStringLiteral(") : ") + q + x + q;
        } else if (kind == filecompare::kKindDeletion) {
            const int k = ll + 1 - lf;
            const QString x = paragraphText(docOriginal, rtbOriginal, lf);
            rows << number + QStringLiteral("Deletion of ") + QString::number(k)
                        + (k == 1 ? QStringLiteral(" line at paragraph (") : QStringLiteral(" lines at paragraph ("))
                        + QString::number(lf) + QStringLiteral(") : ") + q + x + q;
        } else if (kind == filecompare::kKindChange) {
            const int k = qMax(ll - lf, rl - rf) + 1;
            const QString x = paragraphText(docOriginal, rtbOriginal, lf);
            rows << number + QString::number(k)
                        + (k == 1 ? QStringLiteral(" change at paragraph (") : QStringLiteral(" changes at paragraph ("))
                        + QString::number(lf) + QStringLiteral(") :") + q + x + q;
        }
    });
    mbFillingChangeList = true;
    cmboChangeListing->clear();
    for (qsizetype r = rows.size() - 1; r >= 0; --r)
        cmboChangeListing->addItem(rows.at(r));
    mbFillingChangeList = false;
}

void frmCompareFiles::ShowCurrentDifference(bool bUpdateList)
{
    const int count = SkeinMacroDiff.DifferenceCount();
    if (mlCurrentDifference > count)
        mlCurrentDifference = count;
    if (mlCurrentDifference < 1) {
        if (count < 1) {
            UpdateDifferenceButtons();
            return;
        }
        mlCurrentDifference = 1;
    }
    if (bUpdateList) {
        mbFillingChangeList = true;
        cmboChangeListing->setCurrentIndex(mlCurrentDifference - 1);
        mbFillingChangeList = false;
    }
    if (!SideBySideShowing())
        ShowDifferenceAIO();
    else
        ShowDifferenceSBS();
    UpdateDifferenceButtons();
    UpdateStatusBar();
    mlPreviousDifference = mlCurrentDifference;
}

void frmCompareFiles::ShowDifferenceSBS()
{
    int kind = 0, lf = 0, ll = 0, rf = 0, rl = 0;
    if (!SkeinMacroDiff.GetDifference(mlCurrentDifference - 1, kind, lf, ll, rf, rl))
        return;
    // The views take the final selections once, so each scrolls once. In the
    // editors the paragraphs are selected without their last line end: a
    // selection that reaches into the next paragraph makes the view lay out
    // its whole document before it can show it, seconds for a long one.
    const std::array<RichTextBox*, 4> boxes{rtbOriginal, rtbModified, rtbOriginalDiffFinal, rtbModifiedDiffFinal};
    for (RichTextBox* box : boxes)
        box->setUpdatesLocked(true);
    docOriginal.SelectParagraphs(lf, ll, false);
    docModified.SelectParagraphs(rf, rl, false);
    docOriginalDiffFinal.SelectParagraphs(lf, ll, true);
    docModifiedDiffFinal.SelectParagraphs(rf, rl, true);
    if (!moFileOptions.bSelectTextInDiffViewer.Data()) {
        rtbOriginalDiffFinal->setSelLength(1);
        rtbModifiedDiffFinal->setSelLength(1);
    }
    for (RichTextBox* box : boxes) {
        box->setUpdatesLocked(false);
        bringSelectionToThird(box, couplingScroll_);
    }
}

void frmCompareFiles::ShowDifferenceAIO()
{
    int kind = 0, lf = 0, ll = 0, rf = 0, rl = 0;
    if (!SkeinMacroDiff.GetDifference(mlCurrentDifference - 1, kind, lf, ll, rf, rl))
        return;
    const std::array<RichTextBox*, 3> boxes{rtbOriginal, rtbModified, rtbAIODiff};
    for (RichTextBox* box : boxes)
        box->setUpdatesLocked(true);
    docOriginal.SelectParagraphs(lf, ll, false);
    docModified.SelectParagraphs(rf, rl, false);
    if (kind != filecompare::kKindAddition) {
        docAIODiff.SelectParagraphs(lf, ll, true);
    } else {
        try {
            // The added text lies in the seam behind paragraph lLeftLast.
            docAIODiff.SelectAllTextBetween(ll, ll + 1, false);
        } catch (const std::exception&) {
            docAIODiff.SetCursorAt(ll);
        }
    }
    if (!moFileOptions.bSelectTextInDiffViewer.Data())
        rtbAIODiff->setSelLength(1);
    for (RichTextBox* box : boxes) {
        box->setUpdatesLocked(false);
        bringSelectionToThird(box, couplingScroll_);
    }
}

void frmCompareFiles::UpdateDifferenceButtons()
{
    const int c = SkeinMacroDiff.DifferenceCount();
    const int m = mlCurrentDifference;
    bool unknown = false, first = false, previous = false, next = false, last = false;
    if (c == 1) {
        first = true;
    } else if (c > 1) {
        unknown = true;
        first = previous = m != 1;
        next = last = m != c;
    }
    tbShowDifferenceFirst->setEnabled(first);
    tbShowDifferencePrevious->setEnabled(previous);
    tbShowDifferenceNext->setEnabled(next);
    tbShowDifferenceLast->setEnabled(last);
    tbShowDifferenceUnknown->setEnabled(unknown);
}

void frmCompareFiles::UpdateStatusBar()
{
    int kind = 0, lf = 0, ll = 0, rf = 0, rl = 0;
    if (!SkeinMacroDiff.GetDifference(mlCurrentDifference - 1, kind, lf, ll, rf, rl))
        return;
    const QString number = QStringLiteral("[") + QString::number(mlCurrentDifference) + QStringLiteral("] ");
    if (kind == filecompare::kKindAddition) {
        const int k = rl + 1 - rf;
        SetPanelText(3, number + QStringLiteral("Addition of ") + QString::number(k)
                            + (k == 1 ? QStringLiteral(" line at paragraph: ") : QStringLiteral(" lines at paragraph: "))
                            + QString::number(lf));
    } else if (kind == filecompare::kKindDeletion) {
        const int k = ll + 1 - lf;
        SetPanelText(3, number + QStringLiteral("Deletion of ") + QString::number(k)
                            + (k == 1 ? QStringLiteral(" line at paragraph: ") : QStringLiteral(" lines at paragraph: "))
                            + QString::number(lf));
    } else if (kind == filecompare::kKindChange) {
        SetPanelText(3, number + QStringLiteral("Change at paragraph: ") + QString::number(lf));
    }
}

void frmCompareFiles::RefreshStatusBarItems()
{
    clsRTBDocument* doc = EditorDocument(mlActiveEditor);
    if (!doc || !doc->RichTB())
        return;
    qint32 column = 0, line = 0;
    doc->GetEditStatus(column, line);
    if (column >= 0 && line >= 0)
        SetPanelText(1, QStringLiteral("Row: ") + QString::number(line) + QStringLiteral("  Column: ")
                            + QString::number(column));
    else
        SetPanelText(1, QString());
}

void frmCompareFiles::ChangeCurrentLine(bool bUp)
{
    docOriginal.ScrollRTB(bUp);
    docModified.ScrollRTB(bUp);
    if (!SideBySideShowing()) {
        docAIODiff.ScrollRTB(bUp);
    } else {
        docOriginalDiffFinal.ScrollRTB(bUp);
        docModifiedDiffFinal.ScrollRTB(bUp);
    }
}

void frmCompareFiles::tbShowDifferenceFirst_Click()
{
    if (SkeinMacroDiff.DifferenceCount() < 1)
        return;
    mlCurrentDifference = 1;
    ShowCurrentDifference(true);
}

void frmCompareFiles::tbShowDifferencePrevious_Click()
{
    if (SkeinMacroDiff.DifferenceCount() < 1)
        return;
    --mlCurrentDifference;
    ShowCurrentDifference(true);
}

void frmCompareFiles::tbShowDifferenceNext_Click()
{
    if (SkeinMacroDiff.DifferenceCount() < 1)
        return;
    ++mlCurrentDifference;
    ShowCurrentDifference(true);
}

void frmCompareFiles::tbShowDifferenceLast_Click()
{
    if (SkeinMacroDiff.DifferenceCount() < 1)
        return;
    mlCurrentDifference = SkeinMacroDiff.DifferenceCount();
    ShowCurrentDifference(true);
}

void frmCompareFiles::tbShowDifferenceUnknown_Click()
{
    // The menu entry and F4 come here even while the button is off.
    const int count = SkeinMacroDiff.DifferenceCount();
    if (count < 1) {
        MsgBox(this, QStringLiteral("No differences to go to"), MsgButtons::OK, MsgIcon::None,
               QStringLiteral("Error"));
        return;
    }
    frmCompareFilesGoTo dialog(this);
    dialog.txtGoTo->setText(QString::number(mlCurrentDifference));
    dialog.txtGoTo->selectAll();
    ShowModal(dialog);
    if (dialog.bCancelled)
        return;
    // A text that is no whole number goes nowhere, like a number outside
    // the list.
    bool ok = false;
    const qint32 n = dialog.txtGoTo->text().trimmed().toInt(&ok);
    if (ok && n > 0 && n < count + 1) {
        mlCurrentDifference = n;
        ShowCurrentDifference(true);
    }
}

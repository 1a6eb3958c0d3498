// Moving between differences: the list of differences, the current one
// brought into view in every pane, its description in the status bar, and
// the buttons that move on.

#include "filecompare/DiffRenderer.h"
#include "filecompare/FileCompareFormats.h"
#include "filecompare/FileCompareWidgets.h"
#include "filecompare/frmCompareFiles.h"
#include "filecompare/frmCompareFilesGoTo.h"
#include "forms/modMessageBox.h"
#include "forms/modModalDialog.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QScrollBar>
#include <QTextEdit>
#include <QStringList>

#include <algorithm>
#include <array>

using filecompare::DoEvents;

namespace {

QString selectedParagraphText(clsRTBDocument& doc, RichTextBox* box, qint32 paragraph)
{
    doc.SelectParagraphs(paragraph, paragraph, false);
    return box->SelText().left(100);
}

// The text selectedParagraphText would give, read with the same bounds,
// without two cursor moves and a copy per difference. Paragraphs
// outside the index take the old road, beep included.
QString paragraphText(clsRTBDocument& doc, RichTextBox* box, qint32 paragraph)
{
    if (paragraph < 0 || paragraph > doc.ParagraphCount())
        return selectedParagraphText(doc, box, paragraph);
    const int length = box->TextLength();
    int start = 0;
    qint64 end = 1;
    if (paragraph != 0) {
        start = std::clamp(doc.GetFirstCharLocationOfParagraph(paragraph), 0, length);
        end = doc.GetLastCharLocationOfParagraph(paragraph);
        if (end < start)
            end = start; // a negative length leaves the selection empty
    }
    end = std::min<qint64>(end, length);
    // Read from the document as far as the row shows: the whole text of a
    // long document is not kept once it has been compared.
    if (end > start && box->characterAt(int(end) - 1) == u'\n')
        --end;
    const int n = int(std::min<qint64>(end - start, 100));
    QString row;
    row.reserve(n);
    for (int i = 0; i < n; ++i)
        row += box->characterAt(start + i);
    return row;
}

} // namespace

void frmCompareFiles::UpdateNavigationalDropDownListBox()
{
    QStringList rows;
    const QChar q(u'"');
    filecompare::RenderRun run;
    run.progress = [this](int panel, const QString& text) { SetPanelText(panel, text); };
    run.stopRequested = [this] {
        DoEvents();
        return session_.aborted();
    };
    filecompare::WalkFromLast(Result(), run, 3, QStringLiteral("Updating List Box: "),
                              QStringLiteral("% Done. Click here to Abort."),
                              [&](int i, const filecompare::Difference& d) {
        const int kind = d.kind, lf = d.lf, ll = d.ll, rf = d.rf, rl = d.rl;
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
    // The walk goes from the last difference to the first; the list shows them
    // in document order. One insertion of all rows costs the combo box's model
    // and view one update instead of one per difference.
    std::reverse(rows.begin(), rows.end());
    mbFillingChangeList = true;
    cmboChangeListing->clear();
    cmboChangeListing->addItems(rows);
    mbFillingChangeList = false;
}

void frmCompareFiles::ShowCurrentDifference(bool bUpdateList)
{
    const int count = Result().count();
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
    if (const filecompare::Difference* d = Result().at(mlCurrentDifference - 1))
        renderer().showDifference(*d);
    UpdateDifferenceButtons();
    UpdateStatusBar();
    mlPreviousDifference = mlCurrentDifference;
}

void frmCompareFiles::UpdateDifferenceButtons()
{
    const int c = Result().count();
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
    const filecompare::Difference* d = Result().at(mlCurrentDifference - 1);
    if (!d)
        return;
    const int kind = d->kind, lf = d->lf, ll = d->ll, rf = d->rf, rl = d->rl;
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
    renderer().scroll(bUp);
}

void frmCompareFiles::ShowDifference(qint32 n)
{
    mlCurrentDifference = n;
    ShowCurrentDifference(true);
}

void frmCompareFiles::tbShowDifferenceFirst_Click()
{
    if (Result().count() < 1)
        return;
    mlCurrentDifference = 1;
    ShowCurrentDifference(true);
}

void frmCompareFiles::tbShowDifferencePrevious_Click()
{
    if (Result().count() < 1)
        return;
    --mlCurrentDifference;
    ShowCurrentDifference(true);
}

void frmCompareFiles::tbShowDifferenceNext_Click()
{
    if (Result().count() < 1)
        return;
    ++mlCurrentDifference;
    ShowCurrentDifference(true);
}

void frmCompareFiles::tbShowDifferenceLast_Click()
{
    if (Result().count() < 1)
        return;
    mlCurrentDifference = Result().count();
    ShowCurrentDifference(true);
}

void frmCompareFiles::tbShowDifferenceUnknown_Click()
{
    // The menu entry and F4 come here even while the button is off.
    const int count = Result().count();
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

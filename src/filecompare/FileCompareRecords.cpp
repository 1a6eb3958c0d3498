// The difference records as the viewer reads them: the filtered views with
// their buttons, and which paragraph of one side stands beside a paragraph of
// the other. The records themselves stay in the engine.

#include "filecompare/FileCompareFormats.h"
#include "filecompare/frmCompareFiles.h"

#include <QRadioButton>
#include <QTextEdit>

void frmCompareFiles::rbShowAll_Click()
{
    rtbAdditions->view()->hide();
    rtbChanges->view()->hide();
    rtbDeletions->view()->hide();
    if (!SideBySideShowing())
        rtbAIODiff->view()->setFocus();
    else
        rtbOriginal->view()->setFocus();
    UpdateStatusBar();
}

void frmCompareFiles::rbShowAdditions_Click()
{
    rtbAdditions->view()->show();
    rtbAdditions->view()->raise();
    rtbAdditions->view()->setFocus();
    SetPanelText(3, QStringLiteral("Number of additions: ") + QString::number(mlAdditionCount));
}

void frmCompareFiles::rbShowChanges_Click()
{
    rtbChanges->view()->show();
    rtbChanges->view()->raise();
    rtbChanges->view()->setFocus();
    SetPanelText(3, QStringLiteral("Number of changes: ") + QString::number(mlChangeCount));
}

void frmCompareFiles::rbShowDeletions_Click()
{
    rtbDeletions->view()->show();
    rtbDeletions->view()->raise();
    rtbDeletions->view()->setFocus();
    SetPanelText(3, QStringLiteral("Number of deletions: ") + QString::number(mlDeletionCount));
}

qint32 frmCompareFiles::CounterpartParagraph(qint32 p, bool fromOriginal) const
{
    const Skeinmatch& e = SkeinMacroDiff;
    const int n = e.DifferenceCount();
    // The last record that ends before p on this side.
    int lo = 0, hi = n - 1, found = -1;
    while (lo <= hi) {
        const int mid = (lo + hi) / 2;
        int kind = 0, lf = 0, ll = 0, rf = 0, rl = 0;
        e.GetDifference(mid, kind, lf, ll, rf, rl);
        // Where the record starts on this side: an addition on the Original
        // side (and a deletion on the Modified side) occupies no paragraph.
        const int start = fromOriginal ? (kind == filecompare::kKindAddition ? lf + 1 : lf)
                                       : (kind == filecompare::kKindDeletion ? rf + 1 : rf);
        if (start <= p) {
            found = mid;
            lo = mid + 1;
        } else {
            hi = mid - 1;
        }
    }
    if (found < 0)
        return p;
    int kind = 0, lf = 0, ll = 0, rf = 0, rl = 0;
    e.GetDifference(found, kind, lf, ll, rf, rl);
    // Equal text starts again behind the record's last paragraph on each
    // side (for an addition that is the Original paragraph it stands behind).
    const qint32 afterLeft = ll + 1;
    const qint32 afterRight = rl + 1;
    const qint32 from = fromOriginal ? afterLeft : afterRight;
    const qint32 to = fromOriginal ? afterRight : afterLeft;
    if (p >= from)
        return to + (p - from);
    // Inside the record's own range on this side.
    if (fromOriginal) {
        if (kind == filecompare::kKindChange)
            return qMin(rf + (p - lf), rl);
        return qMax(1, rf + 1);  // a deletion: the Modified paragraph behind the gap
    }
    if (kind == filecompare::kKindChange)
        return qMin(lf + (p - rf), ll);
    return qMax(1, lf + 1);  // an addition: the Original paragraph behind the gap
}

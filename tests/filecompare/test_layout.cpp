// The viewer's dividers, word wrap, menu states and what a new viewer shows;
// the split of the window is kept in the viewer's INI section.

#include "filecompare/FileCompareWidgets.h"
#include "filecompare/viewer_fixture.h"
#include "settings/IniStore.h"

#include <QAction>
#include <QCheckBox>
#include <QStatusBar>
#include <QComboBox>
#include <QMenu>
#include <QTabWidget>
#include <QTextEdit>
#include <QToolButton>

using tvtest::ViewerTest;

namespace {

TEST_F(ViewerTest, ANewViewerShowsTheGuide)
{
    EXPECT_TRUE(viewer->rtbAIODiff->Text().startsWith("How to use Tallyvane"));
    EXPECT_TRUE(viewer->rtbAIODiff->view()->isVisible());
    EXPECT_EQ(viewer->ts->count(), 3);
    EXPECT_EQ(viewer->ts->tabText(0), "Compare Files");
    EXPECT_EQ(viewer->ts->tabText(1), "Compare Options");
    EXPECT_EQ(viewer->ts->tabText(2), "Report Options");
    EXPECT_EQ(viewer->PanelText(3), "Load the Original and Modified files, then press F5 to compare.");
    EXPECT_EQ(viewer->windowTitle(), "(1) Compare Files");
    EXPECT_FALSE(viewer->tbAbort->isVisible());
}

TEST_F(ViewerTest, TheHorizontalDividerStopsAtTheFileRow)
{
    const int H = viewer->frameCF->height();
    ASSERT_GT(H, 300);
    EXPECT_EQ(viewer->lblDividerH->y(), int(H * 0.35));
    const int filesBottom = viewer->cmdBrowseOriginal->geometry().bottom() + 1;
    viewer->dRatioTopEditor = 0.01;
    viewer->Form_Resize();
    EXPECT_EQ(viewer->lblDividerH->y(), filesBottom);
    EXPECT_FALSE(viewer->rtbOriginal->view()->isVisible());
    // The diff panes always lie under the line and reach the bottom.
    const QRect pane = viewer->rtbOriginalDiffFinal->view()->geometry();
    EXPECT_GT(pane.top(), viewer->lblDividerH->y());
    EXPECT_GT(pane.bottom(), H - 10);
    EXPECT_EQ(viewer->rtbAIODiff->view()->geometry(), viewer->rtbChanges->view()->geometry());
}

TEST_F(ViewerTest, HideShowEditorsTogglesTheRatio)
{
    const double r = double(viewer->lblDividerV->y()) / viewer->frameCF->height();
    viewer->mnuHideShowOriginalAndModified_Click();
    EXPECT_DOUBLE_EQ(viewer->dRatioTopEditor, r);
    EXPECT_FALSE(viewer->rtbOriginal->view()->isVisible());
    viewer->mnuHideShowOriginalAndModified_Click();
    EXPECT_DOUBLE_EQ(viewer->dRatioTopEditor, 0.25);
    EXPECT_TRUE(viewer->rtbOriginal->view()->isVisible());
}

TEST_F(ViewerTest, DividerDropsSetTheRatiosByWhereTheyLand)
{
    const double H = viewer->frameCF->height();
    const double W = viewer->frameCF->width();
    QTextEdit* lowerRight = viewer->rtbModifiedDiffFinal->view();
    viewer->DividerDropped(viewer->lblDividerH, lowerRight, QPoint(10, 20));
    EXPECT_DOUBLE_EQ(viewer->dRatioTopEditor, (lowerRight->y() + 20) / H);

    QTextEdit* upperRight = viewer->rtbModified->view();
    viewer->DividerDropped(viewer->lblDividerV, upperRight, QPoint(30, 5));
    EXPECT_DOUBLE_EQ(viewer->mdRatioLeftEditor, (upperRight->x() + 30 + 3) / W);
    viewer->DividerDropped(viewer->lblDividerV, viewer->rtbOriginal->view(), QPoint(200, 5));
    EXPECT_DOUBLE_EQ(viewer->mdRatioLeftEditor, 200 / W);

    // A drop on anything else leaves both alone.
    const double top = viewer->dRatioTopEditor, left = viewer->mdRatioLeftEditor;
    viewer->DividerDropped(viewer->lblDividerH, viewer->cmboChangeListing, QPoint(5, 5));
    viewer->DividerDropped(viewer->lblDividerV, viewer->sbStatus, QPoint(5, 5));
    EXPECT_EQ(viewer->dRatioTopEditor, top);
    EXPECT_EQ(viewer->mdRatioLeftEditor, left);

    viewer->Form_Resize();
    EXPECT_EQ(viewer->lblDividerV->x(), int(W * left));
}

TEST_F(ViewerTest, TheSplitIsKeptInTheViewersSection)
{
    viewer->dRatioTopEditor = 0.5;
    viewer->SaveIniFile();
    EXPECT_EQ(IniReadString(gsIniFile, "1_CompareFile", "dRatioTopEditor", ""), "0.5");
    frmCompareFiles again;
    again.Setup("1_CompareFile", false);
    EXPECT_DOUBLE_EQ(again.dRatioTopEditor, 0.5);
    frmCompareFiles other;
    other.Setup("2_CompareFile", false);
    EXPECT_DOUBLE_EQ(other.dRatioTopEditor, 0.35);
}

TEST_F(ViewerTest, TheOptionsPageWritesItsOptionsAndMarksTheViewStale)
{
    viewer->SetPanelText(2, "");
    viewer->mbOriginalDirty = viewer->mbModifiedDirty = false;
    viewer->cbIgnoreCase->setChecked(true);
    EXPECT_TRUE(viewer->moFileOptions.bIgnoreCase.Data());
    EXPECT_TRUE(viewer->mbOriginalDirty && viewer->mbModifiedDirty);
    EXPECT_EQ(viewer->PanelText(2), "Diff View not fresh");

    // Filling the page from the options writes nothing back.
    viewer->SetPanelText(2, "");
    viewer->moFileOptions.bIgnoreWhitespace = true;
    viewer->RefreshCompareOptionsGUI();
    EXPECT_TRUE(viewer->cbIgnoreWhiteSpace->isChecked());
    EXPECT_EQ(viewer->PanelText(2), "");
}

} // namespace

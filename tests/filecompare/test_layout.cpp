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
    EXPECT_TRUE(viewer->EditorBox(frmCompareFiles::kAIODiff)->Text().startsWith("How to use Tallyvane"));
    EXPECT_TRUE(viewer->EditorBox(frmCompareFiles::kAIODiff)->view()->isVisible());
    EXPECT_EQ(tvtest::child<QTabWidget>(viewer, "ts")->count(), 3);
    EXPECT_EQ(tvtest::child<QTabWidget>(viewer, "ts")->tabText(0), "Compare Files");
    EXPECT_EQ(tvtest::child<QTabWidget>(viewer, "ts")->tabText(1), "Compare Options");
    EXPECT_EQ(tvtest::child<QTabWidget>(viewer, "ts")->tabText(2), "Report Options");
    EXPECT_EQ(viewer->PanelText(3), "Load the Original and Modified files, then press F5 to compare.");
    EXPECT_EQ(viewer->windowTitle(), "(1) Compare Files");
    EXPECT_FALSE(tvtest::child<QAction>(viewer, "tbAbort")->isVisible());
}

TEST_F(ViewerTest, TheHorizontalDividerStopsAtTheFileRow)
{
    const int H = tvtest::child<QWidget>(viewer, "frameCF")->height();
    ASSERT_GT(H, 300);
    EXPECT_EQ(tvtest::child<QWidget>(viewer, "lblDividerH")->y(), int(H * 0.35));
    const int filesBottom = tvtest::child<QToolButton>(viewer, "cmdBrowseOriginal")->geometry().bottom() + 1;
    viewer->SetTopEditorRatio(0.01);
    viewer->Form_Resize();
    EXPECT_EQ(tvtest::child<QWidget>(viewer, "lblDividerH")->y(), filesBottom);
    EXPECT_FALSE(viewer->EditorBox(frmCompareFiles::kOriginal)->view()->isVisible());
    // The diff panes always lie under the line and reach the bottom.
    const QRect pane = viewer->EditorBox(frmCompareFiles::kOriginalDiffFinal)->view()->geometry();
    EXPECT_GT(pane.top(), tvtest::child<QWidget>(viewer, "lblDividerH")->y());
    EXPECT_GT(pane.bottom(), H - 10);
    EXPECT_EQ(viewer->EditorBox(frmCompareFiles::kAIODiff)->view()->geometry(), viewer->EditorBox(frmCompareFiles::kChanges)->view()->geometry());
}

TEST_F(ViewerTest, HideShowEditorsTogglesTheRatio)
{
    const double r = double(tvtest::child<QWidget>(viewer, "lblDividerV")->y()) / tvtest::child<QWidget>(viewer, "frameCF")->height();
    viewer->mnuHideShowOriginalAndModified_Click();
    EXPECT_DOUBLE_EQ(viewer->TopEditorRatio(), r);
    EXPECT_FALSE(viewer->EditorBox(frmCompareFiles::kOriginal)->view()->isVisible());
    viewer->mnuHideShowOriginalAndModified_Click();
    EXPECT_DOUBLE_EQ(viewer->TopEditorRatio(), 0.25);
    EXPECT_TRUE(viewer->EditorBox(frmCompareFiles::kOriginal)->view()->isVisible());
}

TEST_F(ViewerTest, DividerDropsSetTheRatiosByWhereTheyLand)
{
    const double H = tvtest::child<QWidget>(viewer, "frameCF")->height();
    const double W = tvtest::child<QWidget>(viewer, "frameCF")->width();
    QTextEdit* lowerRight = viewer->EditorBox(frmCompareFiles::kModifiedDiffFinal)->view();
    viewer->DividerDropped(tvtest::child<QWidget>(viewer, "lblDividerH"), lowerRight, QPoint(10, 20));
    EXPECT_DOUBLE_EQ(viewer->TopEditorRatio(), (lowerRight->y() + 20) / H);

    QTextEdit* upperRight = viewer->EditorBox(frmCompareFiles::kModified)->view();
    viewer->DividerDropped(tvtest::child<QWidget>(viewer, "lblDividerV"), upperRight, QPoint(30, 5));
    EXPECT_DOUBLE_EQ(viewer->LeftEditorRatio(), (upperRight->x() + 30 + 3) / W);
    viewer->DividerDropped(tvtest::child<QWidget>(viewer, "lblDividerV"), viewer->EditorBox(frmCompareFiles::kOriginal)->view(), QPoint(200, 5));
    EXPECT_DOUBLE_EQ(viewer->LeftEditorRatio(), 200 / W);

    // A drop on anything else leaves both alone.
    const double top = viewer->TopEditorRatio(), left = viewer->LeftEditorRatio();
    viewer->DividerDropped(tvtest::child<QWidget>(viewer, "lblDividerH"), tvtest::child<QComboBox>(viewer, "cmboChangeListing"), QPoint(5, 5));
    viewer->DividerDropped(tvtest::child<QWidget>(viewer, "lblDividerV"), tvtest::child<QStatusBar>(viewer, "sbStatus"), QPoint(5, 5));
    EXPECT_EQ(viewer->TopEditorRatio(), top);
    EXPECT_EQ(viewer->LeftEditorRatio(), left);

    viewer->Form_Resize();
    EXPECT_EQ(tvtest::child<QWidget>(viewer, "lblDividerV")->x(), int(W * left));
}

TEST_F(ViewerTest, TheSplitIsKeptInTheViewersSection)
{
    viewer->SetTopEditorRatio(0.5);
    viewer->SaveIniFile();
    EXPECT_EQ(IniReadString(gsIniFile, "1_CompareFile", "dRatioTopEditor", ""), "0.5");
    frmCompareFiles again;
    again.Setup("1_CompareFile", false);
    EXPECT_DOUBLE_EQ(again.TopEditorRatio(), 0.5);
    frmCompareFiles other;
    other.Setup("2_CompareFile", false);
    EXPECT_DOUBLE_EQ(other.TopEditorRatio(), 0.35);
}

TEST_F(ViewerTest, TheOptionsPageWritesItsOptionsAndMarksTheViewStale)
{
    compare(textFile("a.txt", {"a"}), textFile("b.txt", {"b"}));
    ASSERT_FALSE(viewer->EditorDirty(frmCompareFiles::kOriginal) || viewer->EditorDirty(frmCompareFiles::kModified));
    tvtest::child<QCheckBox>(viewer, "cbIgnoreCase")->setChecked(true);
    EXPECT_TRUE(viewer->Options().bIgnoreCase.Data());
    EXPECT_TRUE(viewer->EditorDirty(frmCompareFiles::kOriginal) && viewer->EditorDirty(frmCompareFiles::kModified));
    EXPECT_EQ(viewer->PanelText(2), "Diff View not fresh");

    // Filling the page from the options writes nothing back.
    viewer->SetPanelText(2, "");
    viewer->Options().bIgnoreWhitespace = true;
    viewer->RefreshCompareOptionsGUI();
    EXPECT_TRUE(tvtest::child<QCheckBox>(viewer, "cbIgnoreWhiteSpace")->isChecked());
    EXPECT_EQ(viewer->PanelText(2), "");
}

} // namespace

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
    EXPECT_TRUE(box(frmCompareFiles::kAIODiff)->Text().startsWith("How to use Tallyvane"));
    EXPECT_TRUE(box(frmCompareFiles::kAIODiff)->view()->isVisible());
    EXPECT_EQ(ui<QTabWidget>("ts")->count(), 3);
    EXPECT_EQ(ui<QTabWidget>("ts")->tabText(0), "Compare Files");
    EXPECT_EQ(ui<QTabWidget>("ts")->tabText(1), "Compare Options");
    EXPECT_EQ(ui<QTabWidget>("ts")->tabText(2), "Report Options");
    EXPECT_EQ(viewer->PanelText(3), "Load the Original and Modified files, then press F5 to compare.");
    EXPECT_EQ(viewer->windowTitle(), "(1) Compare Files");
    EXPECT_FALSE(ui<QAction>("tbAbort")->isVisible());
}

TEST_F(ViewerTest, TheHorizontalDividerStopsAtTheFileRow)
{
    const int H = ui<QWidget>("frameCF")->height();
    ASSERT_GT(H, 300);
    EXPECT_EQ(ui<QWidget>("lblDividerH")->y(), int(H * 0.35));
    const int filesBottom = ui<QToolButton>("cmdBrowseOriginal")->geometry().bottom() + 1;
    viewer->SetTopEditorRatio(0.01);
    viewer->Form_Resize();
    EXPECT_EQ(ui<QWidget>("lblDividerH")->y(), filesBottom);
    EXPECT_FALSE(box(frmCompareFiles::kOriginal)->view()->isVisible());
    // The diff panes always lie under the line and reach the bottom.
    const QRect pane = box(frmCompareFiles::kOriginalDiffFinal)->view()->geometry();
    EXPECT_GT(pane.top(), ui<QWidget>("lblDividerH")->y());
    EXPECT_GT(pane.bottom(), H - 10);
    EXPECT_EQ(box(frmCompareFiles::kAIODiff)->view()->geometry(), box(frmCompareFiles::kChanges)->view()->geometry());
}

TEST_F(ViewerTest, HideShowEditorsTogglesTheRatio)
{
    const double r = double(ui<QWidget>("lblDividerV")->y()) / ui<QWidget>("frameCF")->height();
    viewer->mnuHideShowOriginalAndModified_Click();
    EXPECT_DOUBLE_EQ(viewer->TopEditorRatio(), r);
    EXPECT_FALSE(box(frmCompareFiles::kOriginal)->view()->isVisible());
    viewer->mnuHideShowOriginalAndModified_Click();
    EXPECT_DOUBLE_EQ(viewer->TopEditorRatio(), 0.25);
    EXPECT_TRUE(box(frmCompareFiles::kOriginal)->view()->isVisible());
}

TEST_F(ViewerTest, DividerDropsSetTheRatiosByWhereTheyLand)
{
    const double H = ui<QWidget>("frameCF")->height();
    const double W = ui<QWidget>("frameCF")->width();
    QTextEdit* lowerRight = box(frmCompareFiles::kModifiedDiffFinal)->view();
    viewer->DividerDropped(ui<QWidget>("lblDividerH"), lowerRight, QPoint(10, 20));
    EXPECT_DOUBLE_EQ(viewer->TopEditorRatio(), (lowerRight->y() + 20) / H);

    QTextEdit* upperRight = box(frmCompareFiles::kModified)->view();
    viewer->DividerDropped(ui<QWidget>("lblDividerV"), upperRight, QPoint(30, 5));
    EXPECT_DOUBLE_EQ(viewer->LeftEditorRatio(), (upperRight->x() + 30 + 3) / W);
    viewer->DividerDropped(ui<QWidget>("lblDividerV"), box(frmCompareFiles::kOriginal)->view(), QPoint(200, 5));
    EXPECT_DOUBLE_EQ(viewer->LeftEditorRatio(), 200 / W);

    // A drop on anything else leaves both alone.
    const double top = viewer->TopEditorRatio(), left = viewer->LeftEditorRatio();
    viewer->DividerDropped(ui<QWidget>("lblDividerH"), ui<QComboBox>("cmboChangeListing"), QPoint(5, 5));
    viewer->DividerDropped(ui<QWidget>("lblDividerV"), ui<QStatusBar>("sbStatus"), QPoint(5, 5));
    EXPECT_EQ(viewer->TopEditorRatio(), top);
    EXPECT_EQ(viewer->LeftEditorRatio(), left);

    viewer->Form_Resize();
    EXPECT_EQ(ui<QWidget>("lblDividerV")->x(), int(W * left));
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
    ui<QCheckBox>("cbIgnoreCase")->setChecked(true);
    EXPECT_TRUE(viewer->Options().bIgnoreCase.Data());
    EXPECT_TRUE(viewer->EditorDirty(frmCompareFiles::kOriginal) && viewer->EditorDirty(frmCompareFiles::kModified));
    EXPECT_EQ(viewer->PanelText(2), "Diff View not fresh");

    // Filling the page from the options writes nothing back.
    viewer->SetPanelText(2, "");
    viewer->Options().bIgnoreWhitespace = true;
    viewer->RefreshCompareOptionsGUI();
    EXPECT_TRUE(ui<QCheckBox>("cbIgnoreWhiteSpace")->isChecked());
    EXPECT_EQ(viewer->PanelText(2), "");
}

} // namespace

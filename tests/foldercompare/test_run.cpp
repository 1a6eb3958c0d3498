// The run as the viewer drives it, over a scripted control: the folder
// checks, the batches that move records into the grid, the end and the
// abort, and the control's events arriving from its own threads.

#include "folder_fixture.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QTest>

namespace {

using tvtest::FolderViewerTest;

TEST_F(FolderViewerTest, FolderChecksStopARunBeforeItStarts)
{
    makeScripted();
    viewer->SetBatchFolders(at("nowhere"), at("B"));
    viewer->RefreshDiffViewer();
    viewer->SetBatchFolders(at("A"), at("gone"));
    viewer->RefreshDiffViewer();
    // Blanks after a path make no other folder (even where such a folder
    // exists); letter case does.
    QDir().mkpath(at("A") + "  ");
    viewer->SetBatchFolders(at("A") + "  ", at("A"));
    viewer->RefreshDiffViewer();
    EXPECT_EQ(dialogs.boxes,
              QStringList({"Pick a different directory | Folder:\r\r" + at("nowhere") + "\r\rdoes not exist",
                           "Pick a different directory | Folder:\r\r" + at("gone") + "\r\rdoes not exist",
                           "Pick a different directory | Original and Modified folders are the same"}));
    EXPECT_EQ(script->starts, 0);
    EXPECT_EQ(viewer->PanelText(3), "Ready To Compare Folders!");

    QDir().mkpath(at("a"));
    viewer->SetBatchFolders(at("A"), at("a"));
    viewer->RefreshDiffViewer();
    EXPECT_EQ(script->starts, 1);
    // What was handed over is what the options and boxes said.
    EXPECT_EQ(script->settings.folderOriginal, dir.path() + "/A");
    EXPECT_TRUE(script->settings.doSubDirectories);
}

TEST_F(FolderViewerTest, StreamingAddsTwentyRowsATickAndTheRestAtTheEnd)
{
    makeScripted();
    addRecords(41);
    start();
    ASSERT_TRUE(viewer->Timer1Active()) << "the started event switches the heartbeat on";
    EXPECT_EQ(viewer->PanelText(5), "---");
    QList<int> seen;
    for (int i = 0; i < 3; ++i) {
        viewer->Timer1_Timer();
        seen << rows();
    }
    EXPECT_EQ(seen, QList<int>({20, 40, 41}));
    addRecords(3, false);
    script->inProgress = false;
    viewer->Timer1_Timer();
    EXPECT_EQ(rows(), 44);
    EXPECT_FALSE(viewer->Timer1Active());
    EXPECT_EQ(viewer->PanelText(2), "Files: 41  Dirs: 3");
    EXPECT_EQ(viewer->PanelText(3), "Compare Completed");

    // A new run starts from an empty grid.
    script->records.clear();
    start();
    EXPECT_EQ(rows(), 0);
    script->inProgress = false;
    viewer->Timer1_Timer();
    EXPECT_EQ(viewer->PanelText(2), "Files: 0  Dirs: 0");
}

TEST_F(FolderViewerTest, WithoutStreamingNothingShowsUntilTheWalkEnds)
{
    makeScripted();
    viewer->findChild<QCheckBox*>("cbDontStreamResults")->setChecked(true);
    addRecords(30);
    start();
    viewer->Timer1_Timer();
    viewer->Timer1_Timer();
    EXPECT_EQ(rows(), 0);
    script->inProgress = false;
    viewer->Timer1_Timer();
    EXPECT_EQ(rows(), 30);
}

TEST_F(FolderViewerTest, AbortKeepsTheRowsShownAndEndsTheHeartbeat)
{
    makeScripted();
    addRecords(100);
    start();
    QAction* tbAbort = viewer->findChild<QAction*>("tbAbort");
    QAction* tbViewReport = viewer->findChild<QAction*>("tbViewReport");
    EXPECT_TRUE(tbAbort->isVisible());
    EXPECT_FALSE(tbViewReport->isVisible());
    for (int i = 0; i < 3; ++i)
        viewer->Timer1_Timer();
    // Escape is heard wherever the focus is.
    viewer->findChild<QWidget*>("cbFileExt")->setFocus();
    QApplication::setActiveWindow(viewer.get());
    QTest::keyClick(viewer->findChild<QWidget*>("fgFiles"), Qt::Key_Escape);
    EXPECT_EQ(script->aborts, 1);
    EXPECT_EQ(rows(), 60);
    EXPECT_FALSE(viewer->Timer1Active());
    EXPECT_FALSE(tbAbort->isVisible());
    EXPECT_FALSE(tbViewReport->isVisible()) << "only a completed run brings the report back";
    EXPECT_EQ(viewer->PanelText(3), "Compare Aborted");
}

TEST_F(FolderViewerTest, EventsFromTheControlsThreadsArriveOnTheWindowsThread)
{
    makeScripted();
    start();
    tvtest::ScriptedControl control(script);
    control.raise([](skeinmatch::FolderCompareEvents& e) { e.CompareError(1, "Cannot read folder /x"); });
    EXPECT_EQ(viewer->ErrorMessages(), QStringList({"Error Event Messages Received"})) << "queued, not direct";
    deliverEvents();
    EXPECT_EQ(viewer->ErrorMessages(), QStringList({"Error Event Messages Received", "Error: Cannot read folder /x"}));
    EXPECT_FALSE(viewer->findChild<QWidget*>("lstErrorMessages")->isVisible());

    control.raise([](skeinmatch::FolderCompareEvents& e) { e.CompareCompleted(); });
    deliverEvents();
    EXPECT_EQ(viewer->PanelText(3), "Directory Compare Completed");
    EXPECT_TRUE(viewer->PanelText(5).endsWith(" (Sec)")) << viewer->PanelText(5).toStdString();
    EXPECT_TRUE(viewer->findChild<QAction*>("tbViewReport")->isVisible());
    script->inProgress = false;
    viewer->Timer1_Timer();
    EXPECT_EQ(viewer->PanelText(3), "Compare Completed") << "the last tick has the last word";
}

} // namespace

// Automatic refresh and find in a whole viewer: a due tick compares once, a
// file saved elsewhere comes back into its editor unless the user has edited
// it, and a file that disappears is said plainly.

#include "filecompare/AutoRefresh.h"
#include "filecompare/frmCompareFilesFindReplace.h"
#include "filecompare/viewer_fixture.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>

using filecompare::AutoRefresh;
using tvtest::ViewerTest;

namespace {

TEST_F(ViewerTest, AutomaticRefreshComparesOnlyWhenTheViewIsStale)
{
    const QString a = textFile("a.txt", {"one", "two"});
    const QString b = textFile("b.txt", {"one", "2"});
    compare(a, b);
    QSignalSpy runs(viewer.get(), &frmCompareFiles::runFinished);
    AutoRefresh* refresh = viewer->AutoRefresher();
    EXPECT_EQ(refresh->state(), AutoRefresh::State::Off);

    ui<QCheckBox>("cbRefresh")->click();
    EXPECT_EQ(refresh->state(), AutoRefresh::State::Due);
    refresh->tick();
    EXPECT_EQ(runs.count(), 1);
    EXPECT_EQ(refresh->state(), AutoRefresh::State::Armed);
    refresh->tick();
    EXPECT_EQ(runs.count(), 1);

    // An edit, and the next tick shows it; the file is not read again.
    box(frmCompareFiles::kModified)->setSelection(4, 5);
    box(frmCompareFiles::kModified)->setSelText(QStringLiteral("two"));
    EXPECT_EQ(refresh->state(), AutoRefresh::State::Due);
    refresh->tick();
    EXPECT_EQ(runs.count(), 2);
    EXPECT_TRUE(records().isEmpty());

    // Loading by hand takes it off.
    viewer->LoadModifiedFile(b);
    EXPECT_EQ(refresh->state(), AutoRefresh::State::Off);
    EXPECT_FALSE(viewer->Options().bRefreshGUI.Data());
}

TEST_F(ViewerTest, AFileSavedElsewhereIsReloadedAndComparedOnceUnlessTheEditorHoldsEdits)
{
    const QString a = textFile("a.txt", {"one", "two"});
    const QString b = textFile("b.txt", {"one", "two"});
    compare(a, b);
    ui<QCheckBox>("cbRefresh")->click();
    viewer->AutoRefresher()->tick();
    QSignalSpy runs(viewer.get(), &frmCompareFiles::runFinished);

    textFile("b.txt", {"one", "three"});
    viewer->WatchedFilesChanged(false, true);
    EXPECT_EQ(runs.count(), 1);
    EXPECT_EQ(box(frmCompareFiles::kModified)->Text(), "one\nthree");
    EXPECT_EQ(records(), QStringList{"c 2 2 2 2"});
    EXPECT_TRUE(viewer->Options().bRefreshGUI.Data());

    // The user's own edit of the Original stays.
    box(frmCompareFiles::kOriginal)->view()->setFocus();
    box(frmCompareFiles::kOriginal)->view()->textCursor().insertText(QStringLiteral("mine "));
    textFile("a.txt", {"from disk"});
    viewer->WatchedFilesChanged(true, false);
    EXPECT_TRUE(box(frmCompareFiles::kOriginal)->Text().startsWith("mine "));
    EXPECT_EQ(runs.count(), 1);
    EXPECT_TRUE(panel3.last().contains("keeps your edits")) << panel3.last().toStdString();
}

TEST_F(ViewerTest, AWatchedFileThatGoesIsSaidPlainly)
{
    const QString a = textFile("a.txt", {"one"});
    const QString b = textFile("b.txt", {"two"});
    compare(a, b);
    ui<QCheckBox>("cbRefresh")->click();
    const QString text = box(frmCompareFiles::kModified)->Text();
    QFile::remove(b);
    viewer->WatchedFileMissing(AutoRefresh::kModified, b);
    ASSERT_EQ(dialogs.boxes.size(), 1);
    EXPECT_TRUE(dialogs.boxes[0].contains("The Modified file is no longer there")) << dialogs.boxes[0].toStdString();
    EXPECT_EQ(box(frmCompareFiles::kModified)->Text(), text);
    EXPECT_NE(viewer->PanelText(3), "No differences");
}

TEST_F(ViewerTest, FindAgainSearchesTheEditorLastClicked)
{
    compare(textFile("a.txt", {"alpha beta"}), textFile("b.txt", {"beta gamma beta"}));
    auto clickModified = [this] {
        QTest::mouseClick(box(frmCompareFiles::kModified)->view()->viewport(), Qt::LeftButton);
        box(frmCompareFiles::kModified)->setSelStart(0);
    };
    clickModified();
    viewer->mnuFindAndReplace_Click();
    frmCompareFilesFindReplace* dialog = viewer->FindReplaceDialog();
    EXPECT_EQ(dialog->Target(), box(frmCompareFiles::kModified));
    dialog->findChild<QLineEdit*>(QStringLiteral("Text1"))->setText(QStringLiteral("beta"));
    dialog->hide();
    clickModified();
    const int originalSelection = box(frmCompareFiles::kOriginal)->SelStart();
    viewer->FindAgain();
    viewer->FindAgain();
    EXPECT_EQ(box(frmCompareFiles::kModified)->SelStart(), 11);
    EXPECT_EQ(box(frmCompareFiles::kModified)->SelText(), "beta");
    EXPECT_EQ(box(frmCompareFiles::kOriginal)->SelStart(), originalSelection);
}

} // namespace

// The compare run: records, the rendered side-by-side panes with their
// formats, the filtered views, the status bar at each stage, abort from each
// of its places, refusal of a nested request, and the one-time questions.

#include "filecompare/FileCompareWidgets.h"
#include "filecompare/viewer_fixture.h"
#include "settings/IniStore.h"
#include "filecompare/frmPleaseWait.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTextEdit>
#include <QToolBar>
#include <QToolButton>

#include <functional>
#include <memory>

using tvtest::ViewerTest;

namespace {

constexpr lexiform::Rgb kBlue = 0x0000FF;
constexpr lexiform::Rgb kGreen = 0x008000;
constexpr lexiform::Rgb kRed = 0xFF0000;

class RunTest : public ViewerTest {
protected:
    // Records of this pair: c 2 2 2 2, d 4 4 3 3, a 5 5 5 5.
    void comparePair()
    {
        compare(textFile("a.txt", kOriginal), textFile("b.txt", kModified));
    }
    const QStringList kOriginal{"alpha", "the quick brown fox", "middle", "gone line", "omega"};
    const QStringList kModified{"alpha", "the quick red fox", "middle", "omega", "new line"};
    const QStringList kRecords{"c 2 2 2 2", "d 4 4 3 3", "a 5 5 5 5"};

    // Compares the pair and does `act` once, when panel 3 first shows a text
    // starting with `stage`; true when the run came that far.
    bool compareAndActAt(const QString& stage, const std::function<void()>& act)
    {
        auto acted = std::make_shared<bool>(false);
        const auto connection = QObject::connect(viewer.get(), &frmCompareFiles::panelTextChanged, viewer.get(),
                                                 [=](int panel, const QString& text) {
                                                     if (panel == 3 && text.startsWith(stage) && !*acted) {
                                                         *acted = true;
                                                         act();
                                                     }
                                                 });
        comparePair();
        QObject::disconnect(connection);
        return *acted;
    }

    // Position of a text in a box, failing the test when it is missing.
    int at(RichTextBox* box, const QString& text)
    {
        const int p = int(box->Text().indexOf(text));
        EXPECT_GE(p, 0) << text.toStdString();
        return p;
    }
};

TEST_F(RunTest, SideBySidePanesCarryTheFormatsOfEachKind)
{
    comparePair();
    EXPECT_EQ(records(), kRecords);

    // Each side keeps its own paragraphs: no fillers.
    RichTextBox* left = box(frmCompareFiles::kOriginalDiffFinal);
    RichTextBox* right = box(frmCompareFiles::kModifiedDiffFinal);
    EXPECT_EQ(left->Text(), kOriginal.join("\n"));
    EXPECT_EQ(right->Text(), kModified.join("\n"));

    // The deleted paragraph on the left, bold blue struck through.
    const auto gone = left->formatAt(at(left, "gone line") + 3);
    EXPECT_EQ(gone.foreColor, kBlue);
    EXPECT_TRUE(gone.bold && gone.strike);
    // The added one on the right, bold green underlined.
    const auto added = right->formatAt(at(right, "new line") + 5);
    EXPECT_EQ(added.foreColor, kGreen);
    EXPECT_TRUE(added.bold && added.underline);

    // In the changed paragraph only the differing word and the blanks around
    // it carry the change formats; the rest is as the editor had it.
    const int brown = at(left, "brown");
    EXPECT_EQ(left->formatAt(brown).foreColor, kRed);
    EXPECT_TRUE(left->formatAt(brown).strike);
    EXPECT_TRUE(left->formatAt(brown - 1).strike) << "the blank in front";
    EXPECT_TRUE(left->formatAt(brown + 5).strike) << "the blank behind";
    EXPECT_FALSE(left->formatAt(brown - 2).bold) << "'quick' stays plain";
    EXPECT_FALSE(left->formatAt(brown + 6).bold) << "'fox' stays plain";
    const int red = at(right, "red");
    EXPECT_TRUE(right->formatAt(red).underline && right->formatAt(red).bold);
    // Unchanged paragraphs are untouched.
    EXPECT_FALSE(right->formatAt(at(right, "omega")).bold);

    EXPECT_FALSE(box(frmCompareFiles::kAIODiff)->view()->isVisible());
    EXPECT_TRUE(box(frmCompareFiles::kOriginalDiffFinal)->view()->isVisible());
}

TEST_F(RunTest, FilteredViewsHoldTheirSectionsInDocumentOrder)
{
    compare(textFile("a.txt", {"keep", "first gone", "keep too", "second gone", "keep three", "one two three", "end"}),
            textFile("b.txt", {"keep", "keep too", "keep three", "one TWO three", "end", "added one", "added two"}));
    EXPECT_EQ(box(frmCompareFiles::kDeletions)->Text(), "first gone\nsecond gone\n");
    EXPECT_EQ(box(frmCompareFiles::kAdditions)->Text(), "added one\nadded two");
    // The Original's text of a change, then the Modified's.
    EXPECT_EQ(box(frmCompareFiles::kChanges)->Text(), "one two three\none TWO three\n");
    EXPECT_EQ(box(frmCompareFiles::kDeletions)->formatAt(0).foreColor, kBlue);

    // The buttons of the kinds found are offered; a filter covers the view.
    EXPECT_TRUE(ui<QRadioButton>("rbShowAll")->isChecked());
    for (const char* rb : {"rbShowAdditions", "rbShowChanges", "rbShowDeletions"})
        EXPECT_TRUE(ui<QRadioButton>(rb)->isVisibleTo(ui<QWidget>("frameFilterButtons")));
    ui<QRadioButton>("rbShowDeletions")->setChecked(true);
    EXPECT_TRUE(box(frmCompareFiles::kDeletions)->view()->isVisible());
    EXPECT_EQ(viewer->PanelText(3), "Number of deletions: 2");
    ui<QRadioButton>("rbShowChanges")->setChecked(true);
    EXPECT_EQ(viewer->PanelText(3), "Number of changes: 1");
    EXPECT_TRUE(box(frmCompareFiles::kDeletions)->view()->isVisible()) << "an earlier filter stays under the new one";
    ui<QRadioButton>("rbShowAll")->setChecked(true);
    EXPECT_FALSE(box(frmCompareFiles::kDeletions)->view()->isVisible());
    EXPECT_FALSE(box(frmCompareFiles::kChanges)->view()->isVisible());
}

TEST_F(RunTest, StatusBarFollowsTheStagesOfARun)
{
    const QString a = textFile("a.txt", kOriginal);
    const QString b = textFile("b.txt", kModified);
    ui<QComboBox>("cbSelectOriginal")->setEditText(a);
    ui<QComboBox>("cbSelectModified")->setEditText(b);
    viewer->RefreshDisplay(true, true);

    auto indexOf = [this](const QString& text, int from = 0) { return int(panel3.indexOf(text, from)); };
    const int reloading = indexOf("Re-loading files...");
    const int comparing = indexOf("Comparing...");
    const int engine = indexOf("Compare In Process...");
    const int list = indexOf("Updating List Box: 33.3% Done. Click here to Abort.");
    const int listDone = indexOf("Updating List Box: 100.0% Done. Click here to Abort.");
    const int first = indexOf("Document 33.3% Done. Click here to Abort.");
    const int last = indexOf("Document 100.0% Done. Click here to Abort.");
    EXPECT_EQ(reloading, 0);
    EXPECT_LT(reloading, comparing);
    EXPECT_LT(comparing, engine);
    EXPECT_LT(engine, list);
    EXPECT_LT(list, listDone);
    EXPECT_LT(listDone, first);
    EXPECT_LT(first, last);
    // The end: the first difference described, the time in panel 5.
    EXPECT_EQ(viewer->PanelText(3), "[1] Change at paragraph: 2");
    EXPECT_TRUE(viewer->PanelText(5).endsWith(" (Sec)"));
    bool ok = false;
    viewer->PanelText(5).chopped(6).toDouble(&ok);
    EXPECT_TRUE(ok) << viewer->PanelText(5).toStdString();
    EXPECT_EQ(viewer->PanelText(4), "Total Time:");
    EXPECT_EQ(viewer->PanelText(2), "");
    EXPECT_FALSE(ui<QAction>("tbAbort")->isVisible());
    EXPECT_FALSE(ui<frmPleaseWait>("")->isVisible());
    EXPECT_FALSE(viewer->EditorDirty(frmCompareFiles::kOriginal) || viewer->EditorDirty(frmCompareFiles::kModified));
    EXPECT_EQ(viewer->windowTitle(), "(1) a.txt vs. b.txt");
}

TEST_F(RunTest, EqualFilesSayNoDifferences)
{
    const QString a = textFile("a.txt", {"same", "text"});
    compare(a, a);
    EXPECT_EQ(viewer->PanelText(3), "Compare Completed. No differences detected.");
    EXPECT_TRUE(ui<QRadioButton>("rbShowAll")->isChecked());
    for (const char* rb : {"rbShowAdditions", "rbShowChanges", "rbShowDeletions"})
        EXPECT_FALSE(ui<QRadioButton>(rb)->isVisibleTo(ui<QWidget>("frameFilterButtons")));
    EXPECT_EQ(ui<QComboBox>("cmboChangeListing")->count(), 0);
}

// A run that could not hand the texts to the engine compared nothing: it
// says what failed and never that the documents are equal, not even after a
// run that found differences and left its records behind.
TEST_F(RunTest, AFailedStepSaysWhatFailedAndNeverClaimsEquality)
{
    comparePair();
    ASSERT_EQ(records(), kRecords);
    const QString saved = gsSourceTextFile;
    gsSourceTextFile = dir.qpath() + "/gone/source.txt";
    panel3.clear();
    const QString a = textFile("same.txt", {"same", "text"});
    compare(a, a);
    gsSourceTextFile = saved;
    const QString failure = "Unable to write the Modified's text for comparison: " + dir.qpath() + "/gone/source.txt";
    EXPECT_EQ(viewer->PanelText(3), "Compare Failed: " + failure);
    EXPECT_FALSE(panel3.contains("Compare Completed. No differences detected."));
    EXPECT_EQ(dialogs.logged, QStringList({failure}));
    EXPECT_TRUE(records().isEmpty());
    EXPECT_FALSE(ui<QAction>("tbAbort")->isVisible());
    EXPECT_EQ(viewer->PanelText(5), "---");

    // The next run that can write its files works as before.
    compare(a, a);
    EXPECT_EQ(viewer->PanelText(3), "Compare Completed. No differences detected.");
}

TEST_F(RunTest, AClickOnTheStatusBarAbortsBetweenRecords)
{
    QWidget* statusPanel = ui<QWidget>("sbStatusPanel3");
    ASSERT_TRUE(compareAndActAt("Document ", [&] { QTest::mouseClick(statusPanel, Qt::LeftButton); }));
    EXPECT_EQ(viewer->PanelText(3), "Compare Aborted");
    // The record in hand when the click came was finished, no further one.
    EXPECT_EQ(box(frmCompareFiles::kAdditions)->Text(), "new line");
    EXPECT_EQ(box(frmCompareFiles::kChanges)->Text() + box(frmCompareFiles::kDeletions)->Text(), "");
    EXPECT_EQ(viewer->Result().count(), 3);
    EXPECT_FALSE(ui<QAction>("tbAbort")->isVisible());
    EXPECT_TRUE(ui<QPushButton>("cmdChangeViewFormat")->isVisible());
    // No time for an aborted run, and the editors stay marked for a new one.
    EXPECT_EQ(viewer->PanelText(5), "---");
    EXPECT_TRUE(viewer->EditorDirty(frmCompareFiles::kOriginal));
}

TEST_F(RunTest, EscapeInTheWaitWindowAbortsTheListStage)
{
    ASSERT_TRUE(compareAndActAt("Updating List Box", [&] {
        EXPECT_TRUE(ui<frmPleaseWait>("")->isVisible());
        QTest::keyClick(ui<frmPleaseWait>(""), Qt::Key_A);
        EXPECT_FALSE(viewer->AbortRequested()) << "other keys do nothing";
        QTest::keyClick(ui<frmPleaseWait>(""), Qt::Key_Escape);
    }));
    EXPECT_EQ(viewer->PanelText(3), "Compare Aborted");
    // The render stops at its first check: nothing was counted.
    for (qint32 filtered : {frmCompareFiles::kAdditions, frmCompareFiles::kChanges, frmCompareFiles::kDeletions})
        EXPECT_EQ(viewer->EditorBox(filtered)->Text(), "");
    EXPECT_FALSE(ui<frmPleaseWait>("")->isVisible());
}

TEST_F(RunTest, TheToolbarAbortGetsThroughWhileOtherInputIsHeldBack)
{
    ASSERT_TRUE(compareAndActAt("Document ", [&] {
        // A click on a button that would open the file picker must not get
        // in during the run.
        QTest::mouseClick(ui<QToolButton>("cmdBrowseOriginal"), Qt::LeftButton);
        QWidget* abort = ui<QToolBar>("tbMain")->widgetForAction(ui<QAction>("tbAbort"));
        ASSERT_NE(abort, nullptr);
        ASSERT_TRUE(abort->isVisible());
        QTest::mouseClick(abort, Qt::LeftButton);
    }));
    EXPECT_EQ(viewer->PanelText(3), "Compare Aborted");
    EXPECT_TRUE(dialogs.filePicks.empty());
    QTest::mouseClick(ui<QToolButton>("cmdBrowseOriginal"), Qt::LeftButton);
    EXPECT_EQ(dialogs.filePicks.size(), 1u) << "after the run the button works again";
}

TEST_F(RunTest, ARequestDuringARunWaitsAndRunsOnceAfterIt)
{
    int runs = 0;
    int nested = 0;
    QObject::connect(viewer.get(), &frmCompareFiles::runFinished, viewer.get(), [&] { ++runs; });
    QObject::connect(viewer.get(), &frmCompareFiles::panelTextChanged, viewer.get(),
                     [&](int panel, const QString& text) {
                         if (panel == 3 && text.startsWith("Document ")) {
                             // Refused while the run goes on, however often asked.
                             viewer->RefreshDisplay(false, false);
                             ++nested;
                             EXPECT_TRUE(viewer->IsBusy());
                         }
                     });
    comparePair();
    EXPECT_GE(nested, 4);
    EXPECT_EQ(runs, 2);
    EXPECT_EQ(panel3.count("Comparing..."), 2);
    EXPECT_FALSE(viewer->IsBusy());
    EXPECT_EQ(box(frmCompareFiles::kOriginalDiffFinal)->Text(), kOriginal.join("\n"));
}

TEST_F(RunTest, ARefreshWithoutChangesRendersTheSameAgain)
{
    comparePair();
    RichTextBox* right = box(frmCompareFiles::kModifiedDiffFinal);
    const auto before = right->formatAt(right->Text().indexOf("red"));
    viewer->RefreshDisplay(false, true);
    EXPECT_EQ(records(), kRecords);
    EXPECT_EQ(right->formatAt(right->Text().indexOf("red")), before);
    EXPECT_EQ(box(frmCompareFiles::kChanges)->Text(), "the quick brown fox\nthe quick red fox\n");

    // An edit makes the view stale; the next run sees the edit.
    QTextCursor c(box(frmCompareFiles::kOriginal)->document());
    c.movePosition(QTextCursor::End);
    c.insertText("\nextra");
    EXPECT_TRUE(viewer->EditorDirty(frmCompareFiles::kOriginal));
    EXPECT_EQ(viewer->PanelText(2), "Diff View not fresh");
    viewer->RefreshDisplay(false, true);
    EXPECT_EQ(records().size(), 3);
    EXPECT_EQ(records().last(), "c 6 6 5 5");
}

TEST_F(RunTest, AFailedReloadStopsTheRequest)
{
    const QString a = textFile("a.txt", {"one"});
    compare(a, a);
    ui<QComboBox>("cbSelectModified")->setEditText(dir.qpath() + "/missing.txt");
    panel3.clear();
    viewer->RefreshDisplay(true, true);
    ASSERT_FALSE(dialogs.boxes.isEmpty());
    EXPECT_EQ(dialogs.boxes.last(), "Error | File does not exist:\n\n" + dir.qpath() + "/missing.txt");
    EXPECT_FALSE(panel3.contains("Comparing..."));
    EXPECT_FALSE(ui<QWidget>("frameFilterButtons")->isVisible());
    EXPECT_FALSE(ui<frmPleaseWait>("")->isVisible());
}

TEST_F(RunTest, AnEditorEditedAfterAReloadIsRenderedAsItNowReads)
{
    // The Modified side reloads (with the copy its pane will show and the
    // index of its paragraphs), the Original fails; the Modified editor is
    // then edited to read as the Original behind a new first line, so that
    // only that line's section of the pane is rendered from the editor.
    compare(textFile("a.txt", {"one", "two"}), textFile("b.txt", {"one", "three"}));
    ui<QComboBox>("cbSelectOriginal")->setEditText(dir.qpath() + "/missing.txt");
    viewer->RefreshDisplay(true, true);
    box(frmCompareFiles::kModified)->setText("a\none\ntwo");
    viewer->RefreshDisplay(false, true);
    ASSERT_EQ(viewer->Result().count(), 1);
    EXPECT_EQ(box(frmCompareFiles::kModifiedDiffFinal)->Text(), "a\none\ntwo");
    EXPECT_TRUE(ui<QComboBox>("cmboChangeListing")->itemText(0).endsWith(QStringLiteral(": \"a\"")))
        << ui<QComboBox>("cmboChangeListing")->itemText(0).toStdString();
}

TEST_F(RunTest, TheViewSwitchRendersAStaleViewOnlyOnce)
{
    int runs = 0;
    QObject::connect(viewer.get(), &frmCompareFiles::runFinished, viewer.get(), [&] { ++runs; });
    comparePair();
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(ui<QPushButton>("cmdChangeViewFormat")->text(), frmCompareFiles::kViewAllInOne);

    viewer->cmdChangeViewFormat_Click();
    EXPECT_EQ(runs, 2) << "the all-in-one view had never been rendered";
    EXPECT_EQ(ui<QPushButton>("cmdChangeViewFormat")->text(), frmCompareFiles::kViewSideBySide);
    EXPECT_TRUE(box(frmCompareFiles::kAIODiff)->view()->isVisible());
    EXPECT_FALSE(box(frmCompareFiles::kOriginalDiffFinal)->view()->isVisible());

    viewer->cmdChangeViewFormat_Click();
    EXPECT_EQ(runs, 2) << "the side-by-side view was still fresh";
    EXPECT_TRUE(box(frmCompareFiles::kOriginalDiffFinal)->view()->isVisible());
    viewer->cmdChangeViewFormat_Click();
    EXPECT_EQ(runs, 2);
}

TEST_F(RunTest, AllInOneMergesTheTwoDocuments)
{
    viewer->SetViewMode(frmCompareFiles::ViewMode::AllInOne);
    comparePair();
    RichTextBox* aio = box(frmCompareFiles::kAIODiff);
    // Deleted text stays, added text is inserted with its line break, and a
    // changed word reads old then new.
    EXPECT_EQ(aio->Text(), "alpha\nthe quick brown red  fox\nmiddle\ngone line\nomega\nnew line");
    EXPECT_TRUE(aio->formatAt(at(aio, "brown")).strike);
    EXPECT_TRUE(aio->formatAt(at(aio, "red")).underline);
    EXPECT_EQ(box(frmCompareFiles::kChanges)->Text(), "the quick brown red  fox\n");
    // The added text lies in the seam behind the last paragraph.
    viewer->ShowDifference(3);
    EXPECT_EQ(aio->SelText(), "n") << "one character is selected unless the option asks for all";
    viewer->Options().bSelectTextInDiffViewer = true;
    viewer->ShowCurrentDifference(true);
    EXPECT_EQ(aio->SelText(), "new line");
}

TEST_F(RunTest, OneTimeQuestionsAreAskedOnceAndActOnYes)
{
    ui<QComboBox>("cbSelectOriginal")->setEditText(dir.qpath() + "/report.doc");
    ui<QComboBox>("cbSelectModified")->setEditText(dir.qpath() + "/report2.doc");
    dialogs.answers = {MsgAnswer::Yes};
    viewer->RefreshDisplay(true, true);
    ASSERT_GE(dialogs.boxes.size(), 3);
    EXPECT_TRUE(dialogs.boxes[0].startsWith("Compare | For extremely large MS Word files"));
    EXPECT_EQ(dialogs.boxes[1], "Compare Options Updated | Your view options have been updated");
    EXPECT_TRUE(ui<QCheckBox>("cbRemoveFormatting")->isChecked());
    EXPECT_TRUE(viewer->Options().bRemoveFormatting.Data());
    EXPECT_TRUE(viewer->WarnedAboutLargeWordDoc());

    dialogs.boxes.clear();
    ui<QCheckBox>("cbRemoveFormatting")->setChecked(false);
    viewer->RefreshDisplay(true, true);
    for (const QString& box : dialogs.boxes)
        EXPECT_FALSE(box.startsWith("Compare | For extremely")) << "asked a second time";

    // The flag is kept across runs of the program.
    viewer->SaveIniFile();
    EXPECT_EQ(IniReadString(gsIniFile, "1_CompareFile", "bWarnedAboutLargeWordDocAlready", ""), "TRUE");
}

TEST_F(RunTest, SpreadsheetQuestionTurnsWordWrapOff)
{
    ui<QComboBox>("cbSelectOriginal")->setEditText(dir.qpath() + "/book.xls");
    ui<QComboBox>("cbSelectModified")->setEditText(dir.qpath() + "/other.txt");
    dialogs.answers = {MsgAnswer::Yes};
    viewer->RefreshDisplay(true, true);
    ASSERT_FALSE(dialogs.boxes.isEmpty());
    EXPECT_EQ(dialogs.boxes[0], "Compare | When comparing XLS, it is best to turn the 'Word Wrap' view option "
                                "off.  Turn of 'Word Wrap'?");
    EXPECT_FALSE(ui<QAction>("mnuWordWrap")->isChecked());
    for (qint32 id : {frmCompareFiles::kOriginal, frmCompareFiles::kModified, frmCompareFiles::kOriginalDiffFinal,
                      frmCompareFiles::kModifiedDiffFinal, frmCompareFiles::kAIODiff})
        EXPECT_EQ(box(id)->RightMargin(), 1000000) << box(id)->objectName().toStdString();
}

TEST_F(RunTest, HtmlQuestionAnsweredNoChangesNothingButIsNotAskedAgain)
{
    ui<QComboBox>("cbSelectOriginal")->setEditText(dir.qpath() + "/page.html");
    ui<QComboBox>("cbSelectModified")->setEditText(dir.qpath() + "/page2.html");
    viewer->RefreshDisplay(true, true);
    ASSERT_FALSE(dialogs.boxes.isEmpty());
    EXPECT_TRUE(dialogs.boxes[0].startsWith("Compare | When comparing HTML"));
    EXPECT_FALSE(viewer->Options().bRemoveFormatting.Data());
    EXPECT_TRUE(viewer->WarnedAboutHTML());
}

} // namespace

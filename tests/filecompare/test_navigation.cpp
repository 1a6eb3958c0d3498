// Moving between differences: the rows of the list, clamping at both ends,
// the enabled buttons for each position, the status bar descriptions, the
// go-to dialog and the caret position in panel 1.

#include "filecompare/frmCompareFilesGoTo.h"
#include "filecompare/viewer_fixture.h"
#include "forms/modModalDialog.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTextEdit>

using tvtest::ViewerTest;

namespace {

class NavigationTest : public ViewerTest {
protected:
    void TearDown() override
    {
        setModalRunner({});
        ViewerTest::TearDown();
    }

    // Five records: a one-line addition, a two-line deletion, a change of
    // two paragraphs into one, a two-line addition, a one-line change.
    void compareFive()
    {
        compare(textFile("a.txt", {"keep 1", "gone a", "gone b", "keep 2", "old c1", "old c2", "keep 3", "keep 4",
                                   "tail old"}),
                textFile("b.txt", {"new top", "keep 1", "keep 2", "new c", "keep 3", "added x", "added y", "keep 4",
                                   "tail new"}));
        ASSERT_EQ(records(), QStringList({"a 0 0 1 1", "d 2 3 2 2", "c 5 6 4 4", "a 7 7 6 7", "c 9 9 9 9"}));
    }

    QStringList rows() const
    {
        QStringList out;
        for (int i = 0; i < ui<QComboBox>("cmboChangeListing")->count(); ++i)
            out << ui<QComboBox>("cmboChangeListing")->itemText(i);
        return out;
    }

    // "U F P N L": which of the five buttons are on.
    QString buttons() const
    {
        QString s;
        for (QAction* a : {ui<QAction>("tbShowDifferenceUnknown"), ui<QAction>("tbShowDifferenceFirst"),
                           ui<QAction>("tbShowDifferencePrevious"), ui<QAction>("tbShowDifferenceNext"),
                           ui<QAction>("tbShowDifferenceLast")})
            s += a->isEnabled() ? QLatin1Char('1') : QLatin1Char('0');
        return s;
    }

    // Answers the go-to dialog with a text and a button.
    void answerGoTo(const QString& text, bool ok)
    {
        setModalRunner([this, text, ok](QDialog& dialog) {
            auto& d = dynamic_cast<frmCompareFilesGoTo&>(dialog);
            offered = d.txtGoTo->text();
            selectedAll = d.txtGoTo->selectedText() == d.txtGoTo->text();
            d.txtGoTo->setText(text);
            (ok ? d.cmdOK : d.cmdCancel)->click();
        });
    }
    QString offered;
    bool selectedAll = false;
};

TEST_F(NavigationTest, ListRowsNameEachKindWithTheirOwnPunctuation)
{
    compareFive();
    const QString q = "\"";
    EXPECT_EQ(rows(), QStringList({
                          "[1] Addition of 1 line at paragraph (0) : " + q + "new top" + q,
                          "[2] Deletion of 2 lines at paragraph (2) : " + q + "gone a" + q,
                          // A change counts the larger side and has no blank behind the colon.
                          "[3] 2 changes at paragraph (5) :" + q + "old c1" + q,
                          "[4] Addition of 2 lines at paragraph (7) : " + q + "added x" + q,
                          "[5] 1 change at paragraph (9) :" + q + "tail old" + q,
                      }));
}

TEST_F(NavigationTest, RowsCutLongParagraphsAndShowEmptyOnesAsTwoQuotes)
{
    const QString longLine = QString(150, QLatin1Char('x'));
    compare(textFile("a.txt", {"same", longLine, "same 2", "", "end"}),
            textFile("b.txt", {"same", "same 2", "end"}));
    ASSERT_EQ(records(), QStringList({"d 2 2 1 1", "d 4 4 2 2"}));
    EXPECT_EQ(rows(), QStringList({"[1] Deletion of 1 line at paragraph (2) : \"" + longLine.left(100) + "\"",
                                   "[2] Deletion of 1 line at paragraph (4) : \"\""}));
}

TEST_F(NavigationTest, MovesClampAtBothEndsAndTheButtonsFollow)
{
    compareFive();
    // After the run the first difference is current.
    EXPECT_EQ(viewer->CurrentDifference(), 1);
    EXPECT_EQ(buttons(), "10011");
    EXPECT_EQ(ui<QComboBox>("cmboChangeListing")->currentIndex(), 0);

    viewer->tbShowDifferencePrevious_Click();
    EXPECT_EQ(viewer->CurrentDifference(), 1) << "0 is moved back to 1";
    viewer->tbShowDifferenceNext_Click();
    EXPECT_EQ(viewer->CurrentDifference(), 2);
    EXPECT_EQ(buttons(), "11111");
    EXPECT_EQ(ui<QComboBox>("cmboChangeListing")->currentIndex(), 1);
    EXPECT_EQ(viewer->PanelText(3), "[2] Deletion of 2 lines at paragraph: 2");

    viewer->tbShowDifferenceLast_Click();
    EXPECT_EQ(viewer->CurrentDifference(), 5);
    EXPECT_EQ(buttons(), "11100");
    viewer->tbShowDifferenceNext_Click();
    EXPECT_EQ(viewer->CurrentDifference(), 5) << "no wrap-around";
    EXPECT_EQ(viewer->PanelText(3), "[5] Change at paragraph: 9");
    EXPECT_EQ(viewer->PreviousDifference(), 5);

    viewer->tbShowDifferenceFirst_Click();
    EXPECT_EQ(viewer->PanelText(3), "[1] Addition of 1 line at paragraph: 0");
    viewer->ShowDifference(4);
    EXPECT_EQ(viewer->PanelText(3), "[4] Addition of 2 lines at paragraph: 7");

    // A pick in the list moves without refilling it.
    ui<QComboBox>("cmboChangeListing")->setCurrentIndex(2);
    emit ui<QComboBox>("cmboChangeListing")->activated(2);
    EXPECT_EQ(viewer->CurrentDifference(), 3);
    EXPECT_EQ(viewer->PanelText(3), "[3] Change at paragraph: 5");
}

TEST_F(NavigationTest, OneDifferenceLeavesOnlyTheFirstButtonAndNoneLeavesNothing)
{
    compare(textFile("a.txt", {"one", "two"}), textFile("b.txt", {"one", "TWO"}));
    EXPECT_EQ(buttons(), "01000");
    const QString same = textFile("c.txt", {"one"});
    compare(same, same);
    EXPECT_EQ(buttons(), "00000");
    // With nothing to go to the four moves say nothing and change nothing.
    viewer->tbShowDifferenceNext_Click();
    viewer->tbShowDifferenceLast_Click();
    EXPECT_EQ(viewer->PanelText(3), "Compare Completed. No differences detected.");
    EXPECT_TRUE(dialogs.boxes.isEmpty());
}

TEST_F(NavigationTest, AllInOneSelectsAnAdditionAtTheTopFromTheStart)
{
    viewer->SetViewMode(frmCompareFiles::ViewMode::AllInOne);
    viewer->Options().bSelectTextInDiffViewer = true;
    compareFive();
    viewer->tbShowDifferenceFirst_Click();
    EXPECT_EQ(box(frmCompareFiles::kAIODiff)->SelStart(), 0);
    const QString selected = box(frmCompareFiles::kAIODiff)->SelText();
    EXPECT_TRUE(selected.startsWith("new top\nkeep 1")) << selected.toStdString();
    viewer->tbShowDifferenceNext_Click();
    EXPECT_EQ(box(frmCompareFiles::kAIODiff)->SelText(), "gone a\ngone b\n");
}

TEST_F(NavigationTest, GoToMovesOnlyToANumberInTheList)
{
    compareFive();
    viewer->tbShowDifferenceNext_Click();

    answerGoTo("4", true);
    viewer->tbShowDifferenceUnknown_Click();
    EXPECT_EQ(offered, "2") << "the dialog starts on the current difference";
    EXPECT_TRUE(selectedAll);
    EXPECT_EQ(viewer->CurrentDifference(), 4);
    EXPECT_EQ(ui<QComboBox>("cmboChangeListing")->currentIndex(), 3);

    for (const QString& text : {QStringLiteral("0"), QStringLiteral("6"), QStringLiteral("-1"),
                                QStringLiteral("two"), QStringLiteral(""), QStringLiteral("2.5")}) {
        answerGoTo(text, true);
        viewer->tbShowDifferenceUnknown_Click();
        EXPECT_EQ(viewer->CurrentDifference(), 4) << text.toStdString();
    }
    answerGoTo("1", false);
    viewer->tbShowDifferenceUnknown_Click();
    EXPECT_EQ(viewer->CurrentDifference(), 4) << "cancelled";
    answerGoTo(" 5 ", true);
    viewer->tbShowDifferenceUnknown_Click();
    EXPECT_EQ(viewer->CurrentDifference(), 5);
    EXPECT_TRUE(dialogs.boxes.isEmpty());
}

TEST_F(NavigationTest, GoToWithoutDifferencesSaysSoThoughItsButtonIsOff)
{
    bool asked = false;
    setModalRunner([&](QDialog&) { asked = true; });
    const QString same = textFile("a.txt", {"x"});
    compare(same, same);
    EXPECT_FALSE(ui<QAction>("tbShowDifferenceUnknown")->isEnabled());
    ui<QAction>("mnuShowDifferenceSelected")->trigger();
    EXPECT_EQ(dialogs.boxes, QStringList({"Error | No differences to go to"}));
    EXPECT_FALSE(asked);
}

TEST_F(NavigationTest, PanelOneShowsRowAndColumnOfTheActiveEditor)
{
    compare(textFile("a.txt", {"first line", "second line"}), textFile("b.txt", {"first line", "other"}));
    viewer->SetActiveEditor(frmCompareFiles::kOriginal);
    box(frmCompareFiles::kOriginal)->setSelStart(int(QString("first line\nsec").size()));
    viewer->RefreshStatusBarItems();
    EXPECT_EQ(viewer->PanelText(1), "Row: 2  Column: 4");
    viewer->SetActiveEditor(frmCompareFiles::kModified);
    box(frmCompareFiles::kModified)->setSelStart(0);
    viewer->RefreshStatusBarItems();
    EXPECT_EQ(viewer->PanelText(1), "Row: 1  Column: 1");
}

TEST_F(NavigationTest, TheViewSwitchKeepsTheCurrentDifference)
{
    compareFive();
    viewer->ShowDifference(3);
    viewer->cmdChangeViewFormat_Click();
    EXPECT_EQ(ui<QPushButton>("cmdChangeViewFormat")->text(), frmCompareFiles::kViewSideBySide);
    EXPECT_EQ(viewer->CurrentDifference(), 3);
    EXPECT_EQ(viewer->PanelText(3), "[3] Change at paragraph: 5");
    EXPECT_TRUE(viewer->ViewFresh(frmCompareFiles::ViewMode::AllInOne));
    EXPECT_TRUE(viewer->ViewFresh(frmCompareFiles::ViewMode::SideBySide));
}

} // namespace

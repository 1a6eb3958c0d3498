// The whole-editor commands of the file viewer: saving over a compared file
// only when the user says so, swapping the two sides, and side-by-side panes
// that stand level with an overview that leads to a difference.

#include "document/ColorRef.h"
#include "filecompare/DifferenceOverviewBar.h"
#include "viewer_fixture.h"

#include <QAbstractTextDocumentLayout>
#include <QComboBox>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>

namespace {

using tvtest::ViewerTest;

class Editing : public ViewerTest {};

TEST_F(Editing, SavingOverAComparedFileNeedsAYesAndThenReplacesItWhole)
{
    const QString original = textFile("original.txt", {"alpha", "beta", "gamma"});
    const QString modified = textFile("modified.txt", {"alpha", "BETA", "gamma", "delta"});
    compare(original, modified);
    const std::string before = tvtest::sha256(original.toStdString());

    viewer->SetActiveEditor(frmCompareFiles::kModified);
    dialogs.nextFile = original;
    dialogs.nextFilterIndex = 2;  // text
    dialogs.answers = {MsgAnswer::No};
    EXPECT_FALSE(viewer->SaveActiveEditorAs());
    ASSERT_EQ(dialogs.boxes.size(), 1);
    EXPECT_TRUE(dialogs.boxes[0].contains("is the Original document of this comparison")) << dialogs.boxes[0].toStdString();
    EXPECT_EQ(tvtest::sha256(original.toStdString()), before);

    dialogs.answers = {MsgAnswer::Yes};
    EXPECT_TRUE(viewer->SaveActiveEditorAs());
    EXPECT_EQ(tvtest::readFile(original.toStdString()), "alpha\nBETA\ngamma\ndelta");
    ASSERT_EQ(dialogs.filePicks.size(), 2u);
    EXPECT_EQ(dialogs.filePicks[0].title, "Save MODIFIED Editor As");
}

TEST_F(Editing, SwapExchangesTheSidesAndComparesAgain)
{
    const QString original = textFile("original.txt", {"one", "two", "three"});
    const QString modified = textFile("modified.txt", {"one", "two", "three", "four"});
    compare(original, modified);
    ASSERT_EQ(records(), QStringList{"a 3 3 4 4"});
    ui<QComboBox>("cbSelectOriginal")->setEditText(original);
    ui<QComboBox>("cbSelectModified")->setEditText(modified);

    viewer->SwapOriginalAndModified();
    EXPECT_EQ(box(frmCompareFiles::kOriginal)->Text(), "one\ntwo\nthree\nfour");
    EXPECT_EQ(box(frmCompareFiles::kModified)->Text(), "one\ntwo\nthree");
    EXPECT_EQ(ui<QComboBox>("cbSelectOriginal")->currentText(), modified);
    EXPECT_EQ(ui<QComboBox>("cbSelectModified")->currentText(), original);
    EXPECT_EQ(records(), QStringList{"d 4 4 3 3"});
}

TEST_F(Editing, SideBySidePanesStandLevelAndTheOverviewLeadsToADifference)
{
    QStringList left, right;
    for (int i = 1; i <= 60; ++i)
        left << QStringLiteral("line %1").arg(i);
    right = left;
    for (const char* added : {"new d", "new c", "new b", "new a"})
        right.insert(10, QString::fromLatin1(added));
    right.removeAt(44);  // "line 41"
    right[52] = "changed";
    compare(textFile("l.txt", left), textFile("r.txt", right));
    ASSERT_EQ(records().size(), 3);
    ASSERT_EQ(viewer->CurrentViewMode(), frmCompareFiles::ViewMode::SideBySide);

    RichTextBox* l = viewer->EditorBox(frmCompareFiles::kOriginalDiffFinal);
    RichTextBox* r = viewer->EditorBox(frmCompareFiles::kModifiedDiffFinal);
    // The panes hold the editors' paragraphs, not one more or less.
    EXPECT_EQ(l->Text(), box(frmCompareFiles::kOriginal)->Text());
    EXPECT_EQ(r->Text(), box(frmCompareFiles::kModified)->Text());
    auto top = [](RichTextBox* box, int paragraph) {
        QTextDocument* d = box->view()->document();
        return d->documentLayout()->blockBoundingRect(d->findBlockByNumber(paragraph - 1)).top();
    };
    EXPECT_EQ(top(l, 11), top(r, 15)) << "behind the four added lines";
    EXPECT_EQ(top(l, 42), top(r, 45)) << "behind the deleted line";
    EXPECT_EQ(top(l, 60), top(r, 63));

    auto* bar = viewer->findChild<filecompare::DifferenceOverviewBar*>("overviewBar");
    ASSERT_NE(bar, nullptr);
    ASSERT_EQ(bar->marks().size(), 3u);
    // The options hold colours with red in the low byte; read the other way
    // round, the red of a change would show as blue in the bar.
    const clsCompareFileOptions& o = viewer->Options();
    EXPECT_EQ(bar->kindColor('c'), tv::colorFromColorref(o.lViewChangeForeColorModified.Data()));
    EXPECT_EQ(bar->kindColor('a'), tv::colorFromColorref(o.lViewAdditionForeColor.Data()));
    const int y = int(bar->marks()[2].top * (bar->height() - 1)) + 1;
    QTest::mouseClick(bar, Qt::LeftButton, {}, QPoint(bar->width() / 2, y));
    EXPECT_EQ(viewer->CurrentDifference(), 3);
}

} // namespace

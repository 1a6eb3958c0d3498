// Find and replace in an editor: whole words, case, wrapping, the message
// when nothing is there, and replaces that never touch a file.

#include "document/RichTextBox.h"
#include "filecompare/frmCompareFilesFindReplace.h"
#include "support/qstring_print.h"
#include "support/recordingdialogs.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTextEdit>
#include <gtest/gtest.h>

namespace {

using FR = frmCompareFilesFindReplace;

TEST(FindReplaceSearch, WholeWordsEndAtAHyphenButNotAtAnUnderscore)
{
    const QString text = QStringLiteral("my_name my-name name2 (name)");
    EXPECT_EQ(FR::Search(text, QStringLiteral("my"), 1, false), 1);
    EXPECT_EQ(FR::Search(text, QStringLiteral("my"), 1, true), 9);
    EXPECT_EQ(FR::Search(text, QStringLiteral("name"), 1, true), 12);
    EXPECT_EQ(FR::Search(text, QStringLiteral("name"), 13, true), 24);
    EXPECT_EQ(FR::Search(QStringLiteral("names"), QStringLiteral("name"), 1, true), 0);
    // A part of a word at the very end runs off it: an empty hit behind the text.
    EXPECT_EQ(FR::Search(QStringLiteral("xa"), QStringLiteral("a"), 1, true), 3);
    EXPECT_EQ(FR::Search(text, QStringLiteral("zz"), 1, false), 0);
    // Past the end starts again at the top.
    EXPECT_EQ(FR::Search(text, QStringLiteral("my"), 99, false), 1);
    EXPECT_FALSE(FR::IsWordChar(QLatin1Char('-')));
    EXPECT_TRUE(FR::IsWordChar(QLatin1Char('_')));
    EXPECT_TRUE(FR::IsWordChar(QChar(0xE9)));
}

class FindReplaceTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        view = box.createView();
        dialog.SetTarget(&box);
    }
    void setFind(const QString& find, const QString& replace = QString())
    {
        dialog.findChild<QLineEdit*>(QStringLiteral("Text1"))->setText(find);
        dialog.findChild<QLineEdit*>(QStringLiteral("Text2"))->setText(replace);
    }
    void load(const QString& text)
    {
        box.setText(text);
        box.setSelStart(0);
        dialog.Restore();
    }
    QString selected() const { return QString::number(box.SelStart()) + ":" + box.SelText(); }

    tvtest::RecordingDialogs dialogs;
    RichTextBox box;
    QTextEdit* view = nullptr;
    FR dialog;
};

TEST_F(FindReplaceTest, FindNextWrapsAndFollowsTheCaseSwitch)
{
    load(QStringLiteral("Alpha beta ALPHA gamma"));
    setFind(QStringLiteral("alpha"));
    ASSERT_TRUE(dialog.Command1_Click());
    EXPECT_EQ(selected(), "0:Alpha");
    ASSERT_TRUE(dialog.Command1_Click());
    EXPECT_EQ(selected(), "11:ALPHA");
    ASSERT_TRUE(dialog.Command1_Click());
    EXPECT_EQ(selected(), "0:Alpha");

    dialog.findChild<QCheckBox*>(QStringLiteral("Check2"))->click();
    setFind(QStringLiteral("ALPHA"));
    ASSERT_TRUE(dialog.Command1_Click());
    EXPECT_EQ(selected(), "11:ALPHA");
    // The only hit is found again and again.
    ASSERT_TRUE(dialog.Command1_Click());
    EXPECT_EQ(selected(), "11:ALPHA");

    setFind(QStringLiteral("Gamma"));
    EXPECT_FALSE(dialog.Command1_Click());
    EXPECT_EQ(dialogs.boxes.size(), 1);
    EXPECT_TRUE(dialogs.boxes.value(0).endsWith("| Nothing found"));
}

TEST_F(FindReplaceTest, ReplaceChangesOnlyTheEditorAndGoesOnBehindTheReplacement)
{
    QSignalSpy replaced(&dialog, &FR::textReplaced);
    load(QStringLiteral("a-b a_b a b"));
    dialog.findChild<QCheckBox*>(QStringLiteral("Check1"))->click();
    setFind(QStringLiteral("a"), QStringLiteral("aa"));
    ASSERT_TRUE(dialog.Command1_Click());
    EXPECT_EQ(selected(), "0:a");
    dialog.Command2_Click();
    // "a_b" is one word, so the next hit is the lone "a".
    EXPECT_EQ(box.Text(), "aa-b a_b a b");
    EXPECT_EQ(selected(), "9:a");
    dialog.Command2_Click();
    EXPECT_EQ(box.Text(), "aa-b a_b aa b");
    EXPECT_EQ(replaced.count(), 2);
}

TEST_F(FindReplaceTest, ReplaceAllIsOneUndoStep)
{
    load(QStringLiteral("one two one\nthree one"));
    setFind(QStringLiteral("ONE"), QStringLiteral("1"));
    EXPECT_EQ(dialog.cmdReplaceAll_Click(), 3);
    EXPECT_EQ(box.Text(), "1 two 1\nthree 1");
    box.Undo();
    EXPECT_EQ(box.Text(), "one two one\nthree one");
}

TEST_F(FindReplaceTest, AReplaceThatEmptiesTheEditorAsksFirst)
{
    load(QStringLiteral("gone"));
    setFind(QStringLiteral("gone"));
    dialogs.answers = {MsgAnswer::No};
    EXPECT_EQ(dialog.cmdReplaceAll_Click(), 0);
    EXPECT_EQ(box.Text(), "gone");
    ASSERT_EQ(dialogs.boxes.size(), 1);
    EXPECT_TRUE(dialogs.boxes[0].contains("leaves the editor empty"));

    ASSERT_TRUE(dialog.Command1_Click());
    dialogs.answers = {MsgAnswer::Yes};
    dialog.Command2_Click();
    EXPECT_EQ(box.Text(), "");
    // Nothing left to find says so rather than failing quietly.
    EXPECT_TRUE(dialogs.boxes.last().endsWith("| Nothing found"));
}

} // namespace

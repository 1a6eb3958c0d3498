// A shown box whose document is worked on at length: the view takes the
// selection only when a lock ends, a bulk edit takes the document off the
// view and gives it back, and two boxes exchange their documents whole.

#include "document/RichTextBox.h"
#include "support/qstring_print.h"

#include <QTest>
#include <QTextEdit>
#include <gtest/gtest.h>

namespace {

TEST(ShownBox, ALockedViewTakesTheSelectionWhenTheLockEnds)
{
    RichTextBox box;
    QTextEdit* view = box.createView();
    view->resize(300, 200);
    view->show();
    box.setText("one\ntwo\nthree");
    box.setUpdatesLocked(true);
    box.setSelection(4, 7);
    EXPECT_EQ(box.SelText(), "two");
    EXPECT_FALSE(view->textCursor().hasSelection()) << "the view waits";
    box.setUpdatesLocked(false);
    EXPECT_EQ(view->textCursor().selectedText(), "two");
    EXPECT_EQ(box.SelStart(), 4);
}

TEST(ShownBox, ABulkEditGivesTheViewTheResult)
{
    RichTextBox box;
    QTextEdit* view = box.createView();
    view->show();
    box.setText("first");
    box.setSelection(1, 3);
    box.beginBulkEdit();
    EXPECT_NE(view->document(), box.document());
    box.setSelStart(box.TextLength());
    box.setSelText(" and more");
    box.setSelection(0, 5);
    box.setSelBold(true);
    box.endBulkEdit();
    EXPECT_EQ(view->document(), box.document());
    EXPECT_EQ(view->toPlainText(), "first and more");
    EXPECT_EQ(box.SelText(), "first");
    EXPECT_TRUE(box.formatAt(2).bold);
    // The user's typing still reaches the box's text.
    box.setSelStart(box.TextLength());
    QTest::keyClicks(view, "!");
    EXPECT_EQ(box.Text(), "first and more!");
}

TEST(ShownBox, SwappedDocumentsKeepTheirFormatsAndViews)
{
    RichTextBox shown, work;
    QTextEdit* view = shown.createView();
    view->show();
    shown.setText("old shown text");
    work.setText("work result");
    work.setSelection(0, 4);
    work.setSelColor(255);
    shown.swapDocuments(work);
    EXPECT_EQ(shown.Text(), "work result");
    EXPECT_EQ(work.Text(), "old shown text");
    EXPECT_EQ(view->document(), shown.document());
    EXPECT_EQ(shown.formatAt(1).foreColor, lexiform::Rgb(0xFF0000));
    EXPECT_EQ(shown.SelLength(), 0);
    // Each box watches its own document again.
    shown.setSelStart(shown.TextLength());
    QTest::keyClicks(view, "s");
    EXPECT_EQ(shown.Text(), "work results");
    work.setText("");
    EXPECT_EQ(shown.Text(), "work results");
}

} // namespace

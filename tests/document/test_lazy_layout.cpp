// The layout of long plain documents: paragraphs stand where Qt's own layout
// puts them, a question about one paragraph lays out that one only, and a
// shown box uses it for long plain text and Qt's layout for anything else.

#include "document/LazyTextLayout.h"
#include "document/RichTextBox.h"

#include <QAbstractTextDocumentLayout>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextTable>
#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace {

constexpr int kLines = LazyTextLayout::kMinimumParagraphs + 500;

// Short lines, a long one that wraps at the page width, and empty ones.
QString sampleText()
{
    QString text;
    for (int i = 0; i < kLines; ++i) {
        if (i % 7 == 3)
            text += QStringLiteral("a paragraph long enough to wrap on a narrow page: ").repeated(4);
        else if (i % 5 != 4)
            text += QStringLiteral("line %1").arg(i);
        text += QLatin1Char('\n');
    }
    return text;
}

struct Pair {
    QTextDocument qt;
    QTextDocument lazy;
    LazyTextLayout* layout = nullptr;

    explicit Pair(qreal pageWidth = 300)
    {
        const QString text = sampleText();
        for (QTextDocument* d : {&qt, &lazy}) {
            d->setPlainText(text);
            d->setPageSize(QSizeF(pageWidth, -1));
        }
        layout = new LazyTextLayout(&lazy);
        lazy.setDocumentLayout(layout);
    }
};

TEST(LazyLayout, ParagraphsStandWhereQtsLayoutPutsThem)
{
    Pair p;
    QAbstractTextDocumentLayout* qt = p.qt.documentLayout();
    for (int n = 0; n < 60; ++n) {
        const QRectF a = qt->blockBoundingRect(p.qt.findBlockByNumber(n));
        const QRectF b = p.layout->blockBoundingRect(p.lazy.findBlockByNumber(n));
        ASSERT_DOUBLE_EQ(a.top(), b.top()) << "paragraph " << n;
        ASSERT_DOUBLE_EQ(a.left(), b.left()) << "paragraph " << n;
        ASSERT_EQ(p.qt.findBlockByNumber(n).layout()->lineCount(), p.lazy.findBlockByNumber(n).layout()->lineCount());
    }
    // A point on a paragraph's second line finds a character of that line.
    const QTextBlock wrapped = p.lazy.findBlockByNumber(3);
    const QRectF r = p.layout->blockBoundingRect(wrapped);
    const QTextLine second = wrapped.layout()->lineAt(1);
    const int hit = p.layout->hitTest(QPointF(r.left() + 2, r.top() + second.y() + 1), Qt::FuzzyHit);
    EXPECT_EQ(hit, wrapped.position() + second.textStart());
    EXPECT_EQ(hit, qt->hitTest(QPointF(r.left() + 2, r.top() + second.y() + 1), Qt::FuzzyHit));
}

// Checks both documents as laid out first, in a font twice as big, and on a
// page of the new width.
void throughFontAndWidth(Pair& p, qreal newWidth, const std::function<void(const char*)>& expect)
{
    expect("first layout");
    QFont big = p.lazy.defaultFont();
    big.setPointSizeF(big.pointSizeF() * 2);
    for (QTextDocument* d : {&p.qt, &p.lazy})
        d->setDefaultFont(big);
    expect("a bigger font");
    for (QTextDocument* d : {&p.qt, &p.lazy})
        d->setPageSize(QSizeF(newWidth, -1));
    expect("a wider page");
}

TEST(LazyLayout, ANewFontOrWidthMovesParagraphsAsQtsLayoutDoes)
{
    Pair p;
    QAbstractTextDocumentLayout* qt = p.qt.documentLayout();
    throughFontAndWidth(p, 600, [&](const char* after) {
        for (int n = 0; n < 60; ++n) {
            const QRectF a = qt->blockBoundingRect(p.qt.findBlockByNumber(n));
            const QRectF b = p.layout->blockBoundingRect(p.lazy.findBlockByNumber(n));
            ASSERT_DOUBLE_EQ(a.top(), b.top()) << after << ", paragraph " << n;
            ASSERT_DOUBLE_EQ(a.height(), b.height()) << after << ", paragraph " << n;
        }
    });
}

TEST(LazyLayout, AFarParagraphStaysWhereQtsLayoutPutsItAfterANewFontOrWidth)
{
    // Lines that do not wrap are as tall estimated as laid out, so a far
    // paragraph's place is exact; a hidden paragraph above it takes no room.
    Pair p(5000);
    const int far = kLines - 2;
    for (QTextDocument* d : {&p.qt, &p.lazy}) {
        QTextBlock hidden = d->findBlockByNumber(far - 10);
        hidden.setVisible(false);
        d->markContentsDirty(hidden.position(), hidden.length());
    }
    throughFontAndWidth(p, 6000, [&](const char* after) {
        const qreal a = p.qt.documentLayout()->blockBoundingRect(p.qt.findBlockByNumber(far)).top();
        const qreal b = p.layout->blockBoundingRect(p.lazy.findBlockByNumber(far)).top();
        EXPECT_NEAR(a, b, 0.5) << after;
    });
}

TEST(LazyLayout, AWalkTakenBeforeAnEditIsNotUsed)
{
    // The edit keeps the characters and the paragraphs, and moves the long
    // paragraph's text into a short one: only the lengths differ.
    QTextDocument doc;
    doc.setPlainText(sampleText());
    doc.setPageSize(QSizeF(300, -1));
    LazyTextLayout::Walk before = LazyTextLayout::walk(doc);
    QTextCursor c(doc.findBlockByNumber(3));
    c.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    const QString moved = c.selectedText();
    c.removeSelectedText();
    QTextCursor(doc.findBlockByNumber(4)).insertText(moved);

    const LazyTextLayout fresh(&doc);
    const LazyTextLayout given(&doc, std::move(before));
    EXPECT_EQ(given.linesAbove(4), 4) << "paragraph 3 no longer wraps";
    EXPECT_EQ(given.linesAbove(5), fresh.linesAbove(5));
    EXPECT_GT(fresh.linesAbove(5), 5) << "paragraph 4 wraps now";
}

TEST(LazyLayout, AFarParagraphIsFoundWithoutLayingOutTheOnesAboveIt)
{
    Pair p(5000);
    // Lines that do not wrap are as tall before layout as after it, so a
    // paragraph's place is exact while everything above it is estimated.
    const int far = kLines - 2;
    const QRectF b = p.layout->blockBoundingRect(p.lazy.findBlockByNumber(far));
    EXPECT_EQ(p.layout->laidOutCount(), 1);
    const QRectF a = p.qt.documentLayout()->blockBoundingRect(p.qt.findBlockByNumber(far));
    EXPECT_NEAR(a.top(), b.top(), 0.5);
    EXPECT_NEAR(p.layout->documentSize().height(), p.qt.documentLayout()->documentSize().height(), 0.5);
    const int hit = p.layout->hitTest(QPointF(b.left() + 1, b.center().y()), Qt::FuzzyHit);
    EXPECT_EQ(p.lazy.findBlock(hit).blockNumber(), far);

    // A paragraph put in at the top moves it down by one line.
    const qreal line = p.layout->blockBoundingRect(p.lazy.findBlockByNumber(1)).top()
                       - p.layout->blockBoundingRect(p.lazy.firstBlock()).top();
    QTextCursor(&p.lazy).insertText(QStringLiteral("new\n"));
    EXPECT_DOUBLE_EQ(p.layout->blockBoundingRect(p.lazy.findBlockByNumber(far + 1)).top(), b.top() + line);
}

TEST(LazyLayout, OnlyLongPlainDocumentsAreLaidOutLazily)
{
    QTextDocument doc;
    doc.setPlainText(sampleText());
    EXPECT_TRUE(LazyTextLayout::suits(doc));
    QTextCursor c(&doc);
    c.insertTable(2, 2);
    EXPECT_FALSE(LazyTextLayout::suits(doc)) << "a table";

    QTextDocument indented;
    indented.setPlainText(sampleText());
    QTextBlockFormat f;
    f.setIndent(2);
    QTextCursor(&indented).mergeBlockFormat(f);
    EXPECT_FALSE(LazyTextLayout::suits(indented));

    QTextDocument small;
    small.setPlainText(QStringLiteral("a\nb"));
    EXPECT_FALSE(LazyTextLayout::suits(small));

    // A shown box picks the layout when its document changes.
    RichTextBox box;
    QTextEdit* view = box.createView();
    box.setText(sampleText());
    EXPECT_NE(qobject_cast<LazyTextLayout*>(view->document()->documentLayout()), nullptr);
    box.setText(QStringLiteral("short"));
    EXPECT_EQ(qobject_cast<LazyTextLayout*>(view->document()->documentLayout()), nullptr);
}

TEST(LazyLayout, TheCaretsLineNearTheEndIsFoundWithoutLayingOutTheDocument)
{
    // The status bar asks for the caret's line twice a second.
    RichTextBox box;
    QTextEdit* view = box.createView();
    view->resize(400, 300);
    box.setRightMargin(1000000);
    box.setText(sampleText());
    const auto* layout = qobject_cast<LazyTextLayout*>(view->document()->documentLayout());
    ASSERT_NE(layout, nullptr);
    const QTextBlock far = box.document()->findBlockByNumber(kLines - 3);
    EXPECT_EQ(box.LineFromChar(far.position() + 2), kLines - 3);
    EXPECT_EQ(box.LineIndex(kLines - 3), far.position());
    EXPECT_EQ(box.LineIndex(kLines + 5), -1);
    EXPECT_LT(layout->laidOutCount(), 5);
}

} // namespace

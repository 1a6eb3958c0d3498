// Two documents kept level by spacing above paragraphs: each difference and
// the equal text behind it start at one height on both sides, while the
// characters, paragraph numbers and positions stay what the comparison saw.

#include "document/LevelSpacing.h"
#include "document/RichTextBox.h"

#include "support/qstring_print.h"

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>
#include <QTextDocument>
#include <gtest/gtest.h>

namespace {

QString paragraphs(const QString& prefix, int n)
{
    QStringList out;
    for (int i = 1; i <= n; ++i)
        out << prefix + QString::number(i);
    return out.join('\n');
}

double topOf(const QTextDocument& doc, int paragraph)
{
    return doc.documentLayout()->blockBoundingRect(doc.findBlockByNumber(paragraph - 1)).top();
}

// Original 12 paragraphs, Modified 13: paragraph 2 changed into three,
// 5 and 6 deleted, four added behind 9, the rest equal.
struct Pair {
    RichTextBox left, right;
    std::vector<tv::DifferenceSpan> records{
        {'c', 2, 2, 2, 4},
        {'d', 5, 6, 6, 6},
        {'a', 9, 9, 10, 13},
    };
    Pair()
    {
        left.setText(paragraphs("O", 12));
        QStringList r = {"O1", "M2a", "M2b with a long line that will wrap in a narrow pane", "M2c", "O3", "O4",
                         "O7", "O8", "O9", "A1", "A2", "A3", "A4", "O10", "O11", "O12"};
        right.setText(r.join('\n'));
        left.document()->setTextWidth(120);
        right.document()->setTextWidth(120);
    }
};

TEST(LevelSpacing, DifferencesAndTheTextBehindThemStartLevel)
{
    Pair p;
    tv::LevelDocuments(*p.left.document(), *p.right.document(), p.records);
    const QTextDocument& l = *p.left.document();
    const QTextDocument& r = *p.right.document();
    // (Original paragraph, Modified paragraph) that must stand side by side.
    const std::vector<std::pair<int, int>> level = {{2, 2}, {3, 5}, {7, 7}, {10, 14}, {12, 16}};
    for (auto [a, b] : level)
        EXPECT_DOUBLE_EQ(topOf(l, a), topOf(r, b)) << "Original " << a << " beside Modified " << b;
    EXPECT_GT(tv::LevelSpacingOf(l, 2), 0) << "the Original waits for the three changed lines";
    EXPECT_GT(tv::LevelSpacingOf(r, 6), 0) << "the Modified leaves room for the deleted two";
    EXPECT_GT(tv::LevelSpacingOf(l, 9), 0) << "the Original leaves room for the four added";
}

TEST(LevelSpacing, CharactersParagraphsAndPositionsStayAsCompared)
{
    Pair p;
    const QString leftText = p.left.Text();
    const QString rightText = p.right.Text();
    const int where = rightText.indexOf("A3");
    const int line = p.right.LineFromChar(where);
    tv::LevelDocuments(*p.left.document(), *p.right.document(), p.records);
    // Again, as a wrap or an option change asks: the spacing is replaced,
    // not piled up.
    const double once = tv::LevelSpacingOf(*p.left.document(), 9);
    tv::LevelDocuments(*p.left.document(), *p.right.document(), p.records);
    EXPECT_DOUBLE_EQ(tv::LevelSpacingOf(*p.left.document(), 9), once);

    EXPECT_EQ(p.left.Text(), leftText);
    EXPECT_EQ(p.right.Text(), rightText);
    EXPECT_EQ(p.left.document()->blockCount(), 12);
    EXPECT_EQ(p.right.document()->blockCount(), 16);
    EXPECT_EQ(p.right.LineFromChar(where), line);
    EXPECT_EQ(p.right.document()->characterCount(), rightText.size() + 1);
}

} // namespace

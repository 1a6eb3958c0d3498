// The word routines the section compare stands on: how a text is cut into
// words, the word file that keeps its line numbers equal to word numbers,
// where a word range lies and what gets formatted, and the number formats of
// the progress texts.

#include "filecompare/FileCompareFormats.h"
#include "filecompare/FileCompareWidgets.h"
#include "filecompare/viewer_fixture.h"
#include "filecompare/WordBounds.h"

using tvtest::ViewerTest;

namespace {

struct Bounds {
    qint32 first, last;
    bool operator==(const Bounds&) const = default;
};

std::ostream& operator<<(std::ostream& os, const Bounds& b)
{
    return os << "(" << b.first << ", " << b.last << ")";
}

Bounds bounds(const RichTextBox& box, qint32 word)
{
    Bounds b{-9, -9};
    EXPECT_TRUE(filecompare::FindWordBounds(&box, word, b.first, b.last));
    return b;
}

TEST(FindWordBounds, TakesInTheDelimitersAroundAWord)
{
    RichTextBox box;
    box.setText("ab cd\nef");
    EXPECT_EQ(bounds(box, 0), (Bounds{0, 0}));
    EXPECT_EQ(bounds(box, 1), (Bounds{1, 3}));   // "ab" and the blank behind
    EXPECT_EQ(bounds(box, 2), (Bounds{3, 6}));   // from the blank in front to the line feed
    EXPECT_EQ(bounds(box, 3), (Bounds{6, 9}));   // the last word runs to Len + 1
    EXPECT_EQ(bounds(box, 7), (Bounds{6, 9}));   // past the end: still the end

    // A bell starts a new word; two delimiters in a row make an empty word.
    box.setText(QString("x") + QChar(7) + "y  z");
    EXPECT_EQ(bounds(box, 2), (Bounds{2, 4}));
    EXPECT_EQ(bounds(box, 3), (Bounds{4, 5}));
    EXPECT_EQ(bounds(box, 4), (Bounds{5, 7}));

    // A new text in the same box is seen at once.
    box.setText("one");
    EXPECT_EQ(bounds(box, 1), (Bounds{1, 4}));
}

TEST(WriteWordLines, OneLinePerWordSoLineNumbersAreWordNumbers)
{
    tvtest::TempDir dir;
    const QString file = dir.qpath() + "/words.txt";
    ASSERT_TRUE(filecompare::WriteWordLines("the cat\n\nsat " + QString(QChar(7)) + "x", file));
    // "the ", "cat", "" (the empty paragraph), "sat ", bell, "x"
    EXPECT_EQ(tvtest::readFile(file.toStdString()), "the \r\ncat\r\n\r\nsat \r\n\a\r\nx\r\n");

    RichTextBox box;
    box.setText("the cat\n\nsat " + QString(QChar(7)) + "x");
    qint32 first = 0, last = 0;
    filecompare::FindWordBounds(&box, 4, first, last);
    EXPECT_EQ(box.Text().mid(first, last - first - 1), "sat") << "word 4 is line 4";

    EXPECT_TRUE(filecompare::WriteWordLines("", file));
    EXPECT_EQ(tvtest::readFile(file.toStdString()), "");
}

TEST(FormatWordRange, FormatsTheWordsWithTheirDelimiters)
{
    RichTextBox owned;
    RichTextBox* box = &owned;
    filecompare::WordIndexCache words;
    box->setText("one two three");
    filecompare::FormatWordRange(words, box, 2, 2, {255, 16777215, true, false, true, false});
    EXPECT_FALSE(box->formatAt(2).bold);
    for (int p = 3; p <= 7; ++p)   // " two "
        EXPECT_TRUE(box->formatAt(p).bold && box->formatAt(p).strike) << p;
    EXPECT_FALSE(box->formatAt(8).bold);
    EXPECT_EQ(box->formatAt(4).foreColor, lexiform::Rgb(0xFF0000));
    EXPECT_EQ(box->SelLength(), 0);

    // From word 0, the top of the section, the range starts at the first
    // character.
    box->setText("alpha beta");
    filecompare::FormatWordRange(words, box, 0, 1, {255, 16777215, false, true, false, false});
    EXPECT_TRUE(box->formatAt(0).underline);
    EXPECT_TRUE(box->formatAt(5).underline);
    EXPECT_FALSE(box->formatAt(7).underline);
}

TEST(ProgressTexts, PercentAndSecondsAreFormattedAsTheStatusBarShowsThem)
{
    EXPECT_EQ(filecompare::FormatPercent(100.0), "100.0");
    EXPECT_EQ(filecompare::FormatPercent(100.0 / 3), "33.3");
    EXPECT_EQ(filecompare::FormatPercent(0.5), ".5");
    EXPECT_EQ(filecompare::FormatPercent(filecompare::StepPercent(0, 1)), "100.0");
    EXPECT_EQ(filecompare::FormatPercent(filecompare::StepPercent(199, 200)), ".5");
    EXPECT_EQ(filecompare::FormatSeconds(2.0), "2");
    EXPECT_EQ(filecompare::FormatSeconds(0.25), "0.25");
    EXPECT_EQ(filecompare::FormatSeconds(1.234), "1.234");
}

TEST_F(ViewerTest, CounterpartParagraphsLineTheSidesUp)
{
    // c 2 2 2 2, d 4 4 3 3, a 5 5 5 5
    compare(textFile("a.txt", {"alpha", "the quick brown fox", "middle", "gone line", "omega"}),
            textFile("b.txt", {"alpha", "the quick red fox", "middle", "omega", "new line"}));
    // Original to Modified.
    EXPECT_EQ(viewer->CounterpartParagraph(1, true), 1);
    EXPECT_EQ(viewer->CounterpartParagraph(2, true), 2);
    EXPECT_EQ(viewer->CounterpartParagraph(3, true), 3);
    EXPECT_EQ(viewer->CounterpartParagraph(4, true), 4) << "a deleted paragraph stands beside what follows the gap";
    EXPECT_EQ(viewer->CounterpartParagraph(5, true), 4);
    // Modified to Original.
    EXPECT_EQ(viewer->CounterpartParagraph(4, false), 5);
    EXPECT_EQ(viewer->CounterpartParagraph(5, false), 6) << "added at the end: behind the last paragraph";
}

} // namespace

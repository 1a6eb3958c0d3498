// The all-in-one view at the edges of a document: additions behind the last
// paragraph, changes in it, change records without word differences, and
// several kinds at once. Each checks the merged text, its formats
// and that paragraph numbers of the Original still find their paragraphs.

#include "filecompare/viewer_fixture.h"

#include <QPushButton>

using tvtest::ViewerTest;

namespace {

constexpr lexiform::Rgb kGreen = 0x008000;
constexpr lexiform::Rgb kRed = 0xFF0000;
constexpr lexiform::Rgb kBlue = 0x0000FF;

class AllInOneTest : public ViewerTest {
protected:
    void SetUp() override
    {
        ViewerTest::SetUp();
        viewer->SetViewMode(frmCompareFiles::ViewMode::AllInOne);
        viewer->Options().bSelectTextInDiffViewer = true;
    }
    RichTextBox* aio() const { return box(frmCompareFiles::kAIODiff); }
    QString paragraph(qint32 n)
    {
        viewer->EditorDocument(frmCompareFiles::kAIODiff)->SelectParagraphs(n, n, false);
        return aio()->SelText();
    }
    int at(const QString& text) const
    {
        const int p = int(aio()->Text().indexOf(text));
        EXPECT_GE(p, 0) << text.toStdString();
        return p;
    }
};

TEST_F(AllInOneTest, AnAdditionBehindTheLastParagraphEndsTheDocument)
{
    compare(textFile("a.txt", {"one", "two"}), textFile("b.txt", {"one", "two", "three", "four"}));
    ASSERT_EQ(records(), QStringList({"a 2 2 3 4"}));
    EXPECT_EQ(aio()->Text(), "one\ntwo\nthree\nfour");
    EXPECT_EQ(aio()->formatAt(at("three")).foreColor, kGreen);
    EXPECT_EQ(aio()->formatAt(at("four")).foreColor, kGreen);
    EXPECT_NE(aio()->formatAt(at("two")).foreColor, kGreen);
    EXPECT_EQ(paragraph(2), "two");
    // Navigation selects the added text in the seam behind paragraph 2.
    viewer->tbShowDifferenceFirst_Click();
    EXPECT_EQ(aio()->SelText(), "three\nfour");
}

TEST_F(AllInOneTest, AChangeInTheLastParagraphKeepsEveryCharacter)
{
    compare(textFile("a.txt", {"head", "the end is near"}), textFile("b.txt", {"head", "the end is here"}));
    ASSERT_EQ(records(), QStringList({"c 2 2 2 2"}));
    EXPECT_EQ(aio()->Text(), "head\nthe end is near here");
    EXPECT_TRUE(aio()->formatAt(at("near")).strike);
    EXPECT_EQ(aio()->formatAt(at("here")).foreColor, kRed);
    EXPECT_TRUE(aio()->formatAt(at("here")).underline);
    EXPECT_FALSE(aio()->formatAt(at("end")).strike);
    EXPECT_EQ(paragraph(2), "the end is near here");
    EXPECT_EQ(box(frmCompareFiles::kChanges)->Text(), "the end is near here\n");
}

TEST_F(AllInOneTest, AChangeWithoutWordDifferencesKeepsItsOwnText)
{
    // Only the line break moved: with blanks ignored the words are the same
    // on both sides, though the lines are not.
    viewer->Options().bIgnoreWhitespace = true;
    compare(textFile("a.txt", {"start", "one two", "stop"}), textFile("b.txt", {"start", "one", "two", "stop"}));
    ASSERT_EQ(records(), QStringList({"c 2 2 2 3"}));
    EXPECT_EQ(aio()->Text(), "start\none two\nstop");
    EXPECT_FALSE(aio()->formatAt(at("one")).bold);
    EXPECT_FALSE(aio()->formatAt(at("two")).strike);
    EXPECT_EQ(paragraph(3), "stop");
}

TEST_F(AllInOneTest, SeveralKindsTogetherKeepLaterParagraphsAddressable)
{
    compare(textFile("a.txt", {"p1", "alpha beta", "p3", "gone", "p5", "p6"}),
            textFile("b.txt", {"new first", "p1", "alpha gamma", "extra", "p3", "p5", "p6", "last"}));
    ASSERT_EQ(records(), QStringList({"a 0 0 1 1", "c 2 2 3 4", "d 4 4 5 5", "a 6 6 8 8"}));
    EXPECT_EQ(aio()->Text(), "new first\np1\nalpha beta gamma\nextra\np3\ngone\np5\np6\nlast");
    // Old words in the Original's change format, new ones in the Modified's.
    EXPECT_TRUE(aio()->formatAt(at("beta")).strike);
    EXPECT_TRUE(aio()->formatAt(at("beta")).bold);
    EXPECT_TRUE(aio()->formatAt(at("gamma")).underline);
    EXPECT_EQ(aio()->formatAt(at("extra")).foreColor, kRed);
    EXPECT_EQ(paragraph(5), "p5");
    EXPECT_EQ(paragraph(6), "p6");
    EXPECT_EQ(paragraph(4), "gone");
    // Each record is found again by navigation.
    viewer->ShowDifference(3);
    EXPECT_EQ(aio()->SelText(), "gone\n");
    viewer->tbShowDifferenceLast_Click();
    EXPECT_EQ(aio()->SelText(), "last");
}

} // namespace

#include <sys/stat.h>
#include <unistd.h>
#include "document/clsRTBDocument.h"
#include "support/qstring_print.h"
#include "support/testsupport.h"
#include "support/unprivileged.h"

#include <QFile>
#include <gtest/gtest.h>

using lexiform::Rgb;

namespace {

// Replaces the desktop for one test: counts beeps and waits, keeps messages.
class DocumentTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        auto& pf = clsRTBDocument::platform();
        pf.wait = [this](int ms) { waits.push_back(ms); };
        pf.message = [this](const QString& m) { messages << m; };
        pf.beep = [this] { ++beeps; };
        pf.busyPointer = [this](bool busy) { busyDepth += busy ? 1 : -1; };
    }
    void TearDown() override { clsRTBDocument::resetPlatform(); }

    clsRTBDocument indexed(const QString& text)
    {
        box.setText(text);
        clsRTBDocument doc(&box);
        doc.ParagraphCollectionCreate();
        return doc;
    }

    std::vector<std::pair<int, int>> entries(const clsRTBDocument& doc)
    {
        std::vector<std::pair<int, int>> out;
        for (int i = 1; i <= doc.ParagraphCount(); ++i)
            out.emplace_back(doc.GetFirstCharLocationOfParagraph(i), doc.GetLastCharLocationOfParagraph(i));
        return out;
    }

    std::pair<int, int> selection() const { return {box.SelStart(), box.SelLength()}; }

    RichTextBox box;
    std::vector<int> waits;
    QStringList messages;
    int beeps = 0;
    int busyDepth = 0;
};

using Entries = std::vector<std::pair<int, int>>;

} // namespace

TEST_F(DocumentTest, IndexOfTypicalTexts)
{
    EXPECT_EQ(entries(indexed("")), (Entries{{0, 2}}));
    // CR LF is one break in a box, so only line feeds are left to count.
    EXPECT_EQ(entries(indexed("a\r\nb")), (Entries{{0, 2}, {2, 5}}));
    EXPECT_EQ(entries(indexed("a\nb")), (Entries{{0, 2}, {2, 5}}));
    EXPECT_EQ(entries(indexed("one\ntwo\n")), (Entries{{0, 4}, {4, 8}, {8, 10}}));
    EXPECT_EQ(entries(indexed("\n\n")), (Entries{{0, 1}, {1, 2}, {2, 4}}));

    clsRTBDocument doc = indexed("a\nb\nc");
    EXPECT_THROW(doc.GetFirstCharLocationOfParagraph(0), std::out_of_range);
    EXPECT_THROW(doc.GetLastCharLocationOfParagraph(4), std::out_of_range);
    EXPECT_THROW(doc.SetCursorAt(4), std::out_of_range);
    doc.SetLastCharLocationOfParagraph(2, 40);
    EXPECT_EQ(entries(doc), (Entries{{0, 2}, {2, 40}, {4, 7}}));
    doc.ParagraphCollectionEmpty();
    EXPECT_EQ(doc.ParagraphCount(), 0);
}

TEST_F(DocumentTest, SelectParagraphs)
{
    clsRTBDocument doc = indexed("aa\nbb\ncc\ndd");
    doc.SelectParagraphs(2, 3, true);
    EXPECT_EQ(box.SelText(), QStringLiteral("bb\ncc\n"));
    doc.SelectParagraphs(2, 3, false);
    EXPECT_EQ(box.SelText(), QStringLiteral("bb\ncc"));
    // The last paragraph's end overshoots and is clamped; it has no line feed.
    doc.SelectParagraphs(3, 4, false);
    EXPECT_EQ(box.SelText(), QStringLiteral("cc\ndd"));
    // From the top: the first character only, or through ParagraphEnd.
    doc.SelectParagraphs(0, 0, true);
    EXPECT_EQ(selection(), std::make_pair(0, 1));
    doc.SelectParagraphs(0, 2, false);
    EXPECT_EQ(box.SelText(), QStringLiteral("aa\nbb"));
    // Backwards: the control refuses the negative length.
    doc.SelectParagraphs(2, 1, true);
    EXPECT_EQ(selection(), std::make_pair(3, 0));
    // Not valid: only a beep.
    box.setSelection(1, 2);
    doc.SelectParagraphs(1, 5, true);
    doc.SelectParagraphs(-1, 2, true);
    EXPECT_EQ(beeps, 2);
    EXPECT_EQ(selection(), std::make_pair(1, 1));
}

TEST_F(DocumentTest, SelectAllTextBetween)
{
    clsRTBDocument doc = indexed("aa\nbb\ncc\ndd");
    doc.SelectAllTextBetween(1, 3, true);
    EXPECT_EQ(box.SelText(), QStringLiteral("bb\n"));
    doc.SelectAllTextBetween(1, 3, false);
    EXPECT_EQ(box.SelText(), QStringLiteral("bb"));
    doc.SelectAllTextBetween(1, 4, false);
    EXPECT_EQ(box.SelText(), QStringLiteral("bb\ncc"));
    // From the top ParagraphEnd is taken in.
    doc.SelectAllTextBetween(0, 2, false);
    EXPECT_EQ(box.SelText(), QStringLiteral("aa\nbb"));
    // Neighbours have nothing between them, and the search for the line feed
    // of an empty selection fails.
    EXPECT_THROW(doc.SelectAllTextBetween(2, 3, false), std::invalid_argument);
    // One above the count: through the end, after a beep.
    doc.SelectAllTextBetween(2, 5, false);
    EXPECT_EQ(box.SelText(), QStringLiteral("cc\ndd"));
    EXPECT_EQ(beeps, 1);
    // The text inserted between two paragraphs of an adjusted index is found.
    box.setSelStart(doc.GetLastCharLocationOfParagraph(2));
    box.setSelText("new\n");
    doc.ParagraphCollectionAdjust(3, 4);
    doc.SelectAllTextBetween(2, 3, false);
    EXPECT_EQ(box.SelText(), QStringLiteral("new"));
}

TEST_F(DocumentTest, ColorizeParagraphsFormatsThemWithTheirLineFeeds)
{
    clsRTBDocument doc = indexed("first\nsecond\nthird\nfourth");
    doc.ColorizeParagraphs(2, 3, 0x0000FF, 0x00FFFF, true, false, true, false);
    EXPECT_EQ(box.SelStart(), 6);
    EXPECT_EQ(box.SelLength(), 0);
    for (int pos : {6, 11, 12, 13, 18}) {
        const auto f = box.formatAt(pos);
        EXPECT_EQ(f.foreColor, Rgb(0xFF0000)) << pos;
        EXPECT_EQ(f.backColor, Rgb(0xFFFF00)) << pos;
        EXPECT_TRUE(f.bold && f.strike && !f.underline && !f.italic) << pos;
    }
    EXPECT_EQ(box.formatAt(5), lexiform::CharFormat{});
    EXPECT_EQ(box.formatAt(19), lexiform::CharFormat{});
    EXPECT_EQ(box.Text(), QStringLiteral("first\nsecond\nthird\nfourth"));

    // A second colouring of part of it wins there.
    doc.ColorizeParagraphs(3, 3, 0, 0xFFFFFF, false, true, false, true);
    EXPECT_EQ(box.formatAt(14).backColor, Rgb(0xFFFFFF));
    EXPECT_TRUE(box.formatAt(14).underline);
    EXPECT_EQ(box.formatAt(8).backColor, Rgb(0xFFFF00));

    doc.ColorizeAll(0x00FF00, 0x000000, false, false, false, true);
    EXPECT_EQ(box.formatAt(0).foreColor, Rgb(0x00FF00));
    EXPECT_EQ(box.formatAt(24).backColor, Rgb(0x000000));
    EXPECT_TRUE(box.formatAt(24).italic);
    EXPECT_EQ(box.SelStart(), 0);
}

TEST_F(DocumentTest, AdjustAfterInsertsFromTheEndBackwards)
{
    // Additions behind paragraphs 4, 2 and 0, last first, the way the
    // combined view is built: the index keeps addressing the old paragraphs.
    clsRTBDocument doc = indexed("p1\np2\np3\np4\np5");
    const std::vector<std::pair<int, QString>> inserts = {{4, "X4a\nX4b"}, {2, "X2"}, {0, "X0"}};
    for (const auto& [after, text] : inserts) {
        RichText piece = RichText::fromPlainText(after < 1 ? text + "\n" : "\n" + text);
        doc.SetCursorAt(after);
        if (after < 1)
            box.setSelStart(0);
        box.setSelRTF(piece);
        doc.ParagraphCollectionAdjust(after + 1, int(text.size()) + 1);
    }
    EXPECT_EQ(box.Text(), QStringLiteral("X0\np1\np2\nX2\np3\np4\nX4a\nX4b\np5"));
    const QString t = box.Text();
    for (int n = 1; n <= 5; ++n) {
        const int first = doc.GetFirstCharLocationOfParagraph(n);
        EXPECT_EQ(t.mid(first, 2), QStringLiteral("p%1").arg(n)) << n;
    }
    // The additions lie in the seams.
    doc.SelectAllTextBetween(4, 5, false);
    EXPECT_EQ(box.SelText(), QStringLiteral("X4a\nX4b"));

    // Starting behind the count changes nothing.
    const Entries before = entries(doc);
    doc.ParagraphCollectionAdjust(6, 100);
    EXPECT_EQ(entries(doc), before);
}

TEST_F(DocumentTest, CaretRoutines)
{
    clsRTBDocument doc = indexed("ab\ncde\nfg");
    doc.SetCursorAt(2);
    EXPECT_EQ(box.SelStart(), 6);
    EXPECT_EQ(box.characterAt(6), QChar(u'\n'));
    doc.SetCursorAt(3);
    EXPECT_EQ(box.SelStart(), 9);  // the overshoot, clamped
    doc.SetCursorAt(0);
    EXPECT_EQ(box.SelStart(), 0);
    box.setSelStart(5);
    doc.SetCursorAt(-5);
    EXPECT_EQ(box.SelStart(), 0);

    // Row 2, column 3, with the names crossed.
    box.setSelStart(5);
    std::int32_t lLine = 0, lCol = 0;
    doc.GetEditStatus(lLine, lCol);
    EXPECT_EQ(lLine, 3);
    EXPECT_EQ(lCol, 2);

    // Down to the start of the next paragraph, up to the one before.
    doc.ScrollRTB(false);
    EXPECT_EQ(selection(), std::make_pair(7, 1));
    doc.ScrollRTB(true);
    EXPECT_EQ(selection(), std::make_pair(3, 1));
    // In the second paragraph there is no line feed before the one above it.
    box.setSelStart(4);
    doc.ScrollRTB(true);
    EXPECT_EQ(selection(), std::make_pair(0, 3));
    // In the last paragraph there is nothing below.
    box.setSelStart(8);
    doc.ScrollRTB(false);
    EXPECT_EQ(selection(), std::make_pair(7, 2));
    box.setSelStart(1);
    doc.ScrollRTB(true);
    EXPECT_EQ(selection(), std::make_pair(0, 0));
}

TEST_F(DocumentTest, LoadFileDoesNotWaitForAFileItMayNotRead)
{
    tvtest::TempDir dir;
    const std::string path = dir.file("secret.txt");
    tvtest::writeFile(path, "private");
    ::chmod(path.c_str(), 0);
    // The folder must be open to the unprivileged user, the file not.
    tvtest::handToNobody(dir.path());
    const std::string out = tvtest::runUnprivileged([&] {
        clsRTBDocument doc(&box);
        box.setText("kept");
        doc.LoadFile(QString::fromStdString(path));
        return std::to_string(waits.size()) + "|" + messages.join(';').toStdString() + "|" +
               box.Text().toStdString();
    });
    EXPECT_EQ(out, "0|(70) Permission denied|kept");
}

TEST_F(DocumentTest, LoadFileWaitsForAFileItCannotOpenYet)
{
    clsRTBDocument doc(&box);
    box.setText("kept");
    doc.LoadFile(tvtest::qDataPath("missing.rtf"));
    EXPECT_TRUE(messages.isEmpty());
    EXPECT_EQ(box.Text(), QStringLiteral("kept"));

    // A folder cannot be opened as a file: the access error, retried.
    doc.LoadFile(tvtest::qDataPath(""));
    EXPECT_EQ(waits.size(), 119u);
    EXPECT_EQ(waits.front(), 500);
    EXPECT_EQ(messages, QStringList{"(75) Path/File access error"});
    EXPECT_EQ(busyDepth, 0);
    EXPECT_EQ(box.Text(), QStringLiteral("kept"));

    doc.LoadFile(tvtest::qDataPath("text-lf-original.txt"));
    EXPECT_TRUE(box.Text().startsWith("Packing list"));
    EXPECT_EQ(busyDepth, 0);
    EXPECT_EQ(messages.size(), 1);
}

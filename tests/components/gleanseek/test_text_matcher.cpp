// What a search text finds in a piece of text: literals with and without
// case, whole words, and the six symbols of the pattern syntax.

#include "components/gleanseek/TextMatcher.h"
#include "components/gleanseek/TextSearch.h"

#include <gtest/gtest.h>

using namespace gleanseek;

namespace {

// "line:col" of every hit, or "error: ..." when the text was refused.
std::vector<std::string> find(const std::string& text, const std::string& what, bool pattern = false,
                              bool caseSensitive = false, bool wholeWord = false)
{
    std::string error;
    const auto m = TextMatcher::Create({what, caseSensitive, wholeWord, pattern}, error);
    if (!m)
        return {"error: " + error};
    auto scratch = m->NewScratch();
    std::vector<Hit> hits;
    if (!SearchLines(*m, *scratch, text.data(), text.size(), 1, "f", hits, error))
        return {"gave up: " + error};
    std::vector<std::string> out;
    for (const Hit& h : hits)
        out.push_back(std::to_string(h.lLine) + ":" + std::to_string(h.lCol));
    return out;
}

using V = std::vector<std::string>;

} // namespace

TEST(TextMatcher, LiteralsWithAndWithoutCase)
{
    const std::string text = "foo Foo\nFOO\nbar\nfoofoo\n";
    EXPECT_EQ(find(text, "Foo", false, true), V({"1:5"}));
    // One hit per line, at the first match.
    EXPECT_EQ(find(text, "foo"), V({"1:1", "2:1", "4:1"}));
    EXPECT_EQ(find(text, "oo F", false, true), V({"1:2"}));
    // Non-ASCII letters fold too, and columns count characters.
    EXPECT_EQ(find("déjà vu ÉTÉ\n", "été"), V({"1:9"}));
    EXPECT_EQ(find("déjà vu ÉTÉ\n", "été", false, true), V{});
    // Punctuation is not special in a literal.
    EXPECT_EQ(find("a.c abc a*c\n", "a*c"), V({"1:9"}));
    EXPECT_EQ(find("x[1] (y)\n", "(y)", false, true), V({"1:6"}));
}

TEST(TextMatcher, LinesEndingsAndTheLastLine)
{
    EXPECT_EQ(find("one\r\ntwo\r\nthree", "three"), V({"3:1"}));
    EXPECT_EQ(find("", "x"), V{});
    EXPECT_EQ(find("\n\n\nx", "x"), V({"4:1"}));
    EXPECT_EQ(find("a\nb\n", "a\nb"), V({"error: a search string cannot hold a line break"}));
    EXPECT_EQ(find("a\n", ""), V({"error: empty"}));
}

TEST(TextMatcher, WholeWordMeansBlanksOrLineEndsOnBothSides)
{
    const std::string text = "cat\n"
                             "concat cat\n"
                             "the cat.\n"
                             " cat \n"
                             "\tcat\t\n"
                             "cats cat\r\n"
                             "cat-cat\n"
                             "Cat\n";
    for (bool pattern : {false, true})
        for (bool caseSensitive : {false, true}) {
            V expected = {"1:1", "2:8", "4:2", "5:2", "6:6"};
            if (!caseSensitive)
                expected.push_back("8:1");
            EXPECT_EQ(find(text, "cat", pattern, caseSensitive, true), expected)
                << "pattern " << pattern << " case " << caseSensitive;
        }
    // A word of several words is fine; the blanks inside are its own.
    EXPECT_EQ(find("a big cat\nbig cats\n", "big cat", false, false, true), V({"1:3"}));
    EXPECT_EQ(find("aXa a\n", "a", false, true, true), V({"1:5"}));
}

TEST(TextMatcher, QuestionMarkIsZeroOrOneCharacter)
{
    const std::string text = "color\ncolour\ncolouur\ncolo\nr\n";
    EXPECT_EQ(find(text, "colo?r", true), V({"1:1", "2:1"}));
    // One character, not one byte.
    EXPECT_EQ(find("naïve\n", "na?ve", true), V({"1:1"}));
}

TEST(TextMatcher, StarIsAnyRunOfCharactersWithinALine)
{
    const std::string text = "abcz\nazz\na\nz\nxyz\n";
    EXPECT_EQ(find(text, "a*z", true), V({"1:1", "2:1"}));
    EXPECT_EQ(find(text, "*", true), V({"1:1", "2:1", "3:1", "4:1", "5:1"}));
    EXPECT_EQ(find("no end", "d*", true), V({"1:6"}));
}

TEST(TextMatcher, BracketsAreOneCharacterOfTheSet)
{
    const std::string text = "gray\ngrey\ngroy\ngr-y\n";
    EXPECT_EQ(find(text, "gr[ae]y", true), V({"1:1", "2:1"}));
    EXPECT_EQ(find(text, "gr[!ae]y", true), V({"3:1", "4:1"}));
    EXPECT_EQ(find(text, "gr[^ae]y", true), V({"3:1", "4:1"}));
    EXPECT_EQ(find("r2d2 c3po\n", "[a-c][0-9]", true), V({"1:6"}));
    EXPECT_EQ(find("a-b\n", "a[-]b", true), V({"1:1"}));
    EXPECT_EQ(find("a]b\n", "a[\\]]b", true), V({"1:1"}));
    EXPECT_EQ(find("añb\n", "a[ñn]b", true), V({"1:1"}));
    // A negated set never takes a line end.
    EXPECT_EQ(find("x\nyx\n", "[!0-9]x", true), V({"2:1"}));
    EXPECT_EQ(find("x\n", "[abc", true), V({"error: missing ']'"}));
    EXPECT_EQ(find("x\n", "a[]", true), V({"error: no character between '[' and ']'"}));
    EXPECT_EQ(find("x\n", "[z-a]", true).at(0).rfind("error: ", 0), 0u);
}

TEST(TextMatcher, CaretAndDollarAnchorOnlyAtTheEnds)
{
    const std::string text = "abc def\nx abc\nabc\r\n";
    EXPECT_EQ(find(text, "^abc", true), V({"1:1", "3:1"}));
    EXPECT_EQ(find(text, "abc$", true), V({"2:3", "3:1"}));
    EXPECT_EQ(find(text, "^abc$", true), V({"3:1"}));
    EXPECT_EQ(find("a^b a$b\n", "a^b", true), V({"1:1"}));
    EXPECT_EQ(find("a^b a$b\n", "a$b", true), V({"1:5"}));
    EXPECT_EQ(find("one\n\nthree\n", "^$", true), V({"2:1"}));
}

TEST(TextMatcher, BackslashTakesTheNextCharacterLiterally)
{
    EXPECT_EQ(find("a?\nab\n", "a\\?", true), V({"1:1"}));
    EXPECT_EQ(find("x*y xyz\n", "x\\*y", true), V({"1:1"}));
    EXPECT_EQ(find("[x] x\n", "\\[x]", true), V({"1:1"}));
    EXPECT_EQ(find("a\\b\n", "a\\\\b", true), V({"1:1"}));
    EXPECT_EQ(find("C:\\ d\n", "C:\\", true), V({"1:1"}));  // a lone final backslash
    EXPECT_EQ(find("é\n", "\\é", true), V({"1:1"}));
}

TEST(MakeItem, TabsBecomeBlanksAndLongLinesAreCut)
{
    EXPECT_EQ(MakeItem("a\tb", 3, 0), "a b");
    EXPECT_EQ(MakeItem("caf\xe9", 4, 0), "café");  // Windows-1252
    const std::string longLine = std::string(5000, 'x') + "HIT" + std::string(5000, 'y');
    const std::string item = MakeItem(longLine.data(), longLine.size(), 5000);
    EXPECT_EQ(item.substr(0, 3), "...");
    EXPECT_EQ(item.substr(item.size() - 3), "...");
    EXPECT_EQ(item.size(), kMaxItemBytes + 6);
    EXPECT_NE(item.find("HIT"), std::string::npos);
    // Near the end the window is still full length.
    const std::string tail = MakeItem(longLine.data(), longLine.size(), longLine.size() - 1);
    EXPECT_EQ(tail.size(), kMaxItemBytes + 3);
    // Never cut inside a character.
    std::string wide;
    for (int i = 0; i < 1500; ++i)
        wide += "é";
    const std::string cut = MakeItem(wide.data(), wide.size(), 1001);
    EXPECT_EQ(cut.substr(0, 3), "...");
    EXPECT_EQ(cut.size() % 2, 0u);  // "..." twice plus whole two-byte characters
}

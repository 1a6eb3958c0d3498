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

TEST(TextMatcher, TheSixPatternSymbols)
{
    const struct {
        std::string text, pattern;
        V expected;
    } cases[] = {
        // "?" is zero or one character, not one byte.
        {"color\ncolour\ncolouur\ncolo\nr\n", "colo?r", {"1:1", "2:1"}},
        {"naïve\n", "na?ve", {"1:1"}},
        // "*" is any run of characters within a line.
        {"abcz\nazz\na\nz\nxyz\n", "a*z", {"1:1", "2:1"}},
        {"abcz\nazz\na\nz\nxyz\n", "*", {"1:1", "2:1", "3:1", "4:1", "5:1"}},
        {"no end", "d*", {"1:6"}},
        // "[...]" is one character of the set; "!" or "^" negates it, and a
        // negated set never takes a line end.
        {"gray\ngrey\ngroy\ngr-y\n", "gr[ae]y", {"1:1", "2:1"}},
        {"gray\ngrey\ngroy\ngr-y\n", "gr[!ae]y", {"3:1", "4:1"}},
        {"gray\ngrey\ngroy\ngr-y\n", "gr[^ae]y", {"3:1", "4:1"}},
        {"r2d2 c3po\n", "[a-c][0-9]", {"1:6"}},
        {"a-b\n", "a[-]b", {"1:1"}},
        {"a]b\n", "a[\\]]b", {"1:1"}},
        {"añb\n", "a[ñn]b", {"1:1"}},
        {"x\nyx\n", "[!0-9]x", {"2:1"}},
        {"x\n", "[abc", {"error: missing ']'"}},
        {"x\n", "a[]", {"error: no character between '[' and ']'"}},
        // "^" and "$" anchor only at the ends of the search text.
        {"abc def\nx abc\nabc\r\n", "^abc", {"1:1", "3:1"}},
        {"abc def\nx abc\nabc\r\n", "abc$", {"2:3", "3:1"}},
        {"abc def\nx abc\nabc\r\n", "^abc$", {"3:1"}},
        {"a^b a$b\n", "a^b", {"1:1"}},
        {"a^b a$b\n", "a$b", {"1:5"}},
        {"one\n\nthree\n", "^$", {"2:1"}},
        // "\" takes the next character literally; a lone final one is itself.
        {"a?\nab\n", "a\\?", {"1:1"}},
        {"x*y xyz\n", "x\\*y", {"1:1"}},
        {"[x] x\n", "\\[x]", {"1:1"}},
        {"a\\b\n", "a\\\\b", {"1:1"}},
        {"C:\\ d\n", "C:\\", {"1:1"}},
        {"é\n", "\\é", {"1:1"}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(find(c.text, c.pattern, true), c.expected) << c.pattern;
    EXPECT_EQ(find("x\n", "[z-a]", true).at(0).rfind("error: ", 0), 0u);
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

TEST(TextMatcher, CaseBlindLiteralsFindEveryPlaceAcrossBlockEdges)
{
    // A match may start or end anywhere in a block of sixteen bytes, or at the
    // very end of the text; every placement must be found exactly once.
    for (std::size_t lead = 0; lead < 40; ++lead) {
        SCOPED_TRACE(lead);
        const std::string line = std::string(lead, 'x') + "LiCeNsE";
        EXPECT_EQ(find(line + "\n", "license"), V({"1:" + std::to_string(lead + 1)}));
        EXPECT_EQ(find(line, "license"), V({"1:" + std::to_string(lead + 1)}));
        EXPECT_EQ(find(line, "licensed"), V{});
        EXPECT_EQ(find(line, "e"), V({"1:" + std::to_string(lead + 4)}));
    }
    // Near misses that share the first and last letters are not hits.
    EXPECT_EQ(find("lxcense lIcEnSe\n", "license"), V({"1:9"}));
    EXPECT_EQ(find("a-license b license\n", "license", false, false, true), V({"1:13"}));
    // Only ASCII letters fold in a case-blind byte search; other bytes are exact.
    EXPECT_EQ(find("[@] [`]\n", "[`]"), V({"1:5"}));
}

TEST(TextMatcher, APatternRunsOnlyOnLinesHoldingItsRequiredText)
{
    // The first line holds both parts in the wrong order, the second only one,
    // the third has the second part before the match starts.
    const std::string text = "cmp then str\nstr only\nxx cmp str_cmp\n";
    EXPECT_EQ(find(text, "str*cmp", true, true), V({"3:8"}));
    EXPECT_EQ(find(text, "STR*CMP", true, false), V({"3:8"}));
    EXPECT_EQ(find("ab\nxab\n", "^ab", true), V({"1:1"}));
    EXPECT_EQ(find("xab\nab\n", "^ab", true), V({"2:1"}));
    EXPECT_EQ(find("ab x\nx ab\n", "ab$", true), V({"2:3"}));
    EXPECT_EQ(find("a xstr_cmp b\n", "str*cmp", true, false, true), V{});
    EXPECT_EQ(find("a str_cmp\n", "str*cmp", true, false, true), V({"1:3"}));
    // A case-blind pattern with k or s also matches their Unicode twins.
    EXPECT_EQ(find("\xC5\xBFt?\n", "st?", true), V({"1:1"}));
}

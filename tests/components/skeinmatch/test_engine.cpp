// The engine as the viewers use it: files in, records out, options, and
// input that is odd or broken.

#include "diffcheck.h"
#include "support/testsupport.h"

#include <random>

using namespace diffcheck;

namespace {

struct Rec {
    int kind, lf, ll, rf, rl;
    bool operator==(const Rec&) const = default;
};

std::ostream& operator<<(std::ostream& os, const Rec& r)
{
    return os << char(r.kind) << " " << r.lf << "," << r.ll << " " << r.rf << "," << r.rl;
}

std::vector<Rec> readBack(const Skeinmatch& e)
{
    std::vector<Rec> out;
    for (int i = 0; i < e.DifferenceCount(); ++i) {
        Rec r{};
        EXPECT_TRUE(e.GetDifference(i, r.kind, r.lf, r.ll, r.rf, r.rl));
        out.push_back(r);
    }
    return out;
}

// Compares two texts through files, as the viewer does.
std::vector<Rec> compareFiles(Skeinmatch& e, const std::string& a, const std::string& b)
{
    tvtest::TempDir dir;
    tvtest::writeFile(dir.file("tv_master.TXT"), a);
    tvtest::writeFile(dir.file("tv_source.TXT"), b);
    e.setMasterFile(dir.file("tv_master.TXT"));
    e.setSourceFile(dir.file("tv_source.TXT"));
    e.setCompareMode(0);
    e.CompareFiles();
    EXPECT_EQ(e.loadStatus(), 0) << e.loadError();
    EXPECT_FALSE(e.CompareInProgress());
    return readBack(e);
}

std::vector<Rec> compare(const std::string& a, const std::string& b,
                         void (*setup)(Skeinmatch&) = nullptr)
{
    Skeinmatch e;
    if (setup)
        setup(e);
    return compareFiles(e, a, b);
}

} // namespace

TEST(EngineContract, RecordsAnchorAtTheEdgesAndLineEndsFollowTheFileRules)
{
    const struct {
        std::string a, b;
        std::vector<Rec> expected;
    } cases[] = {
        {"a\nb\nc\n", "a\nb\nc\n", {}},
        {"", "", {}},
        {"a\nb\n", "new\na\nb\n", {{'a', 0, 0, 1, 1}}},
        {"a\nb\n", "a\nb\nx\ny\n", {{'a', 2, 2, 3, 4}}},
        {"a\nb\n", "b\n", {{'d', 1, 1, 0, 0}}},
        {"a\nb\n", "a\n", {{'d', 2, 2, 1, 1}}},
        {"", "1\n2\n3\n4\n", {{'a', 0, 0, 1, 4}}},
        {"1\n2\n3\n", "", {{'d', 1, 3, 0, 0}}},
        // CR LF and LF compare equal; a final line end adds no line.
        {"a\r\nb\r\n", "a\nb\n", {}},
        {"a\nb", "a\nb\n", {}},
        // A lone "\n" is one empty line; two make two.
        {"\n", "\n\n", {{'a', 1, 1, 2, 2}}},
        // A CR that is not in front of a line feed is text.
        {"a\rb\n", "a\nb\n", {{'c', 1, 1, 1, 2}}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(compare(c.a, c.b), c.expected) << c.a << "|" << c.b;
}

TEST(EngineContract, GetDifferenceOutsideTheListLeavesFieldsAlone)
{
    Skeinmatch e;
    int k = 7, a = 7, b = 7, c = 7, d = 7;
    EXPECT_EQ(e.DifferenceCount(), 0);
    EXPECT_FALSE(e.GetDifference(0, k, a, b, c, d));
    compareFiles(e, "x\n", "y\n");
    ASSERT_EQ(e.DifferenceCount(), 1);
    EXPECT_FALSE(e.GetDifference(1, k, a, b, c, d));
    EXPECT_FALSE(e.GetDifference(-1, k, a, b, c, d));
    EXPECT_EQ(k + a + b + c + d, 35);
    EXPECT_TRUE(e.GetDifference(0, k, a, b, c, d));
    EXPECT_EQ((Rec{k, a, b, c, d}), (Rec{'c', 1, 1, 1, 1}));
    // The list stays until the next compare, which replaces it.
    compareFiles(e, "same\n", "same\n");
    EXPECT_EQ(e.DifferenceCount(), 0);
}

TEST(EngineInput, BinaryAndBrokenTextComparesAsBytes)
{
    std::string nul("x\0y\n", 4), nul2("x\0z\n", 4);
    EXPECT_EQ(compare(nul + "same\n", nul2 + "same\n"), (std::vector<Rec>{{'c', 1, 1, 1, 1}}));
    EXPECT_TRUE(compare(nul, nul).empty());
    // Invalid UTF-8 in both files, equal bytes: equal; also under the options.
    std::string bad = "\xff\xfe\xc3\n\xe2\x82\n";
    EXPECT_TRUE(compare(bad, bad).empty());
    EXPECT_TRUE(compare(bad, bad, [](Skeinmatch& e) {
                    e.setIgnoreCase(true);
                    e.setIgnoreWhitespace(true);
                }).empty());
    EXPECT_EQ(compare("\xff\n", "\xfe\n", [](Skeinmatch& e) { e.setIgnoreCase(true); }).size(), 1u);
}

TEST(EngineInput, NoLineEndAndHugeLines)
{
    EXPECT_EQ(compare("no line end at all", "no line end at ALL"),
              (std::vector<Rec>{{'c', 1, 1, 1, 1}}));
    std::string big(6 << 20, 'q');
    std::string big2 = big;
    big2[3 << 20] = 'r';
    EXPECT_EQ(compare("top\n" + big + "\nend\n", "top\n" + big2 + "\nend\n"),
              (std::vector<Rec>{{'c', 2, 2, 2, 2}}));
}

TEST(EngineInput, UnreadableFileLeavesAnEmptyList)
{
    tvtest::TempDir dir;
    tvtest::writeFile(dir.file("a.txt"), "a\n");
    Skeinmatch e;
    compareFiles(e, "1\n", "2\n");
    ASSERT_EQ(e.DifferenceCount(), 1);

    e.setMasterFile(dir.file("missing.txt"));
    e.setSourceFile(dir.file("a.txt"));
    e.CompareFiles();
    EXPECT_EQ(e.DifferenceCount(), 0);
    EXPECT_EQ(e.loadStatus(), -3);
    EXPECT_NE(e.loadError().find("missing.txt"), std::string::npos);

    e.setMasterFile(dir.file("a.txt"));
    e.setSourceFile(dir.path());  // a folder
    e.CompareFiles();
    EXPECT_EQ(e.DifferenceCount(), 0);
    EXPECT_EQ(e.loadStatus(), -4);

    e.setSourceFile("");
    e.CompareFiles();
    EXPECT_EQ(e.loadStatus(), -4);
    EXPECT_FALSE(e.CompareInProgress());
}

TEST(EngineOptions, IgnoreCaseFoldsLatinGreekCyrillic)
{
    const std::string a = "HELLO World\nÉCOLE À ÇA\nΟΔΟΣ ΣΟΦΊΑ\nЖУРНАЛ Ёлка\nStraße\n";
    const std::string b = "hello world\nécole à ça\nοδος σοφία\nжурнал ёлка\nSTRAẞE\n";
    auto ignore = [](Skeinmatch& e) { e.setIgnoreCase(true); };
    EXPECT_TRUE(compare(a, b, ignore).empty());
    EXPECT_EQ(compare(a, b), (std::vector<Rec>{{'c', 1, 5, 1, 5}}));
    // Different letters stay different.
    EXPECT_EQ(compare("ΑΒΓ\n", "αβδ\n", ignore).size(), 1u);
}

TEST(EngineOptions, IgnoreWhitespaceDropsBlanksOfEveryKind)
{
    auto ignore = [](Skeinmatch& e) { e.setIgnoreWhitespace(true); };
    const std::string a = "int x = 1;\n\tfoo( a, b );\nno\xc2\xa0" "break\nff\f vt\v\n";
    const std::string b = "intx=1;\n    foo(a,b);\nno break\nffvt\n";
    EXPECT_TRUE(compare(a, b, ignore).empty());
    EXPECT_EQ(compare(a, b).size(), 1u);
    EXPECT_EQ(compare("a b\n", "a c\n", ignore).size(), 1u);
    // Letters beside a blank are not whitespace: "à" ends in the byte A0.
    EXPECT_EQ(compare("\xc3\xa0\n", "\xc3\n", ignore).size(), 1u);
}

TEST(EngineOptions, IgnoreEmptyLinesKeepsLineNumbers)
{
    auto ignore = [](Skeinmatch& e) { e.setIgnoreEmptyLines(true); };
    EXPECT_TRUE(compare("a\n\n\nb\n", "a\nb\n\n", ignore).empty());
    // The change of "c" is line 5 on the left and 2 on the right, the empty
    // lines counted.
    EXPECT_EQ(compare("a\n\n\n\nc\n", "a\nC\n", ignore), (std::vector<Rec>{{'c', 5, 5, 2, 2}}));
    // An addition stands behind as many empty lines as precede it on the right.
    EXPECT_EQ(compare("a\n\nb\n", "a\n\nnew\nb\n", ignore), (std::vector<Rec>{{'a', 2, 2, 3, 3}}));
    EXPECT_EQ(compare("a\n\nb\n", "a\nnew\n\nb\n", ignore), (std::vector<Rec>{{'a', 1, 1, 2, 2}}));
    // Without the option empty lines are lines like any other.
    EXPECT_EQ(compare("a\nb\n", "a\n\nb\n"), (std::vector<Rec>{{'a', 1, 1, 2, 2}}));
    // With whitespace ignored too, a line of blanks is empty.
    EXPECT_TRUE(compare("a\n  \t\nb\n", "a\nb\n", [](Skeinmatch& e) {
                    e.setIgnoreEmptyLines(true);
                    e.setIgnoreWhitespace(true);
                }).empty());
}

TEST(EngineOptions, IgnoreEmptyLinesRandomRecordsSkipOnlyEmpties)
{
    // Applying the records must give the Modified once empty lines are
    // dropped from both, and no record may start or end on an empty line.
    std::mt19937 rng(2024);
    for (int round = 0; round < 400; ++round) {
        std::vector<std::string> a, b;
        for (int i = 0; i < 25; ++i) {
            a.push_back(rng() % 3 == 0 ? "" : std::string(1, char('a' + rng() % 4)));
            b.push_back(rng() % 3 == 0 ? "" : std::string(1, char('a' + rng() % 4)));
        }
        Skeinmatch e;
        e.setIgnoreEmptyLines(true);
        e.compareTexts(joinLines(a), joinLines(b));
        std::vector<DiffRecord> recs = e.records();
        ASSERT_TRUE(recordsWellFormed(recs, 25, 25));
        for (const DiffRecord& r : recs) {
            if (r.kind != 'a') {
                EXPECT_FALSE(a[r.leftFirst - 1].empty());
                EXPECT_FALSE(a[r.leftLast - 1].empty());
            }
            if (r.kind != 'd') {
                EXPECT_FALSE(b[r.rightFirst - 1].empty());
                EXPECT_FALSE(b[r.rightLast - 1].empty());
            }
        }
        auto dropEmpty = [](std::vector<std::string> v) {
            std::erase(v, std::string());
            return v;
        };
        ASSERT_EQ(dropEmpty(applyRecords(a, b, recs)), dropEmpty(b)) << "round " << round;
    }
}

TEST(EngineOptions, PropertiesReachTheCompare)
{
    std::string a = "1\n2\n3\n4\n5\n6\n7\n8\n";
    std::string b = "1\n5\n6\n7\n8\n2\n3\n4\n";
    EXPECT_EQ(compare(a, b).size(), 2u);
    auto bracket = compare(a, b, [](Skeinmatch& e) {
        e.setUseLineBracket(true);
        e.setLineBracket(1);
    });
    EXPECT_EQ(bracket, (std::vector<Rec>{{'c', 2, 8, 2, 8}}));
    // A bracket below 1 counts as 1.
    EXPECT_EQ(compare(a, b, [](Skeinmatch& e) {
                  e.setUseLineBracket(true);
                  e.setLineBracket(-5);
              }),
              bracket);
    auto larger = compare("1\n2\n3\n4\n", "x\n2\ny\n4\n",
                          [](Skeinmatch& e) { e.setShowChangesInLargerSections(true); });
    EXPECT_EQ(larger, (std::vector<Rec>{{'c', 1, 3, 1, 3}}));
}


// The matching itself: valid records, minimal edits, readable placement,
// and the fallbacks that keep large or very different inputs cheap.

#include "diffcheck.h"

#include "components/skeinmatch/SequenceMatch.h"
#include "support/testsupport.h"

#include <cstdio>
#include <iterator>

#include <random>

using namespace diffcheck;
using skeinmatch::DiffOptions;

namespace {

std::vector<std::string> randomLines(std::mt19937& rng, int maxLen, int alphabet)
{
    std::uniform_int_distribution<int> len(0, maxLen), sym(0, alphabet - 1);
    std::vector<std::string> v(static_cast<std::size_t>(len(rng)));
    for (auto& s : v)
        s = std::string(1, char('a' + sym(rng)));
    return v;
}

// A copy of `a` with a few random edits, so pairs look like real revisions.
std::vector<std::string> mutate(std::mt19937& rng, std::vector<std::string> a, int alphabet)
{
    std::uniform_int_distribution<int> edits(1, 4), sym(0, alphabet - 1), what(0, 2);
    int n = edits(rng);
    for (int e = 0; e < n; ++e) {
        std::size_t pos = a.empty() ? 0 : rng() % (a.size() + 1);
        int w = what(rng);
        if (w == 0 || a.empty())
            a.insert(a.begin() + static_cast<long>(pos), std::string(1, char('a' + sym(rng))));
        else if (pos < a.size() && w == 1)
            a.erase(a.begin() + static_cast<long>(pos));
        else if (pos < a.size())
            a[pos] = std::string(1, char('a' + sym(rng)));
    }
    return a;
}

void expectValid(const std::vector<std::string>& a, const std::vector<std::string>& b,
                 const std::vector<DiffRecord>& recs)
{
    ASSERT_TRUE(recordsWellFormed(recs, static_cast<int>(a.size()), static_cast<int>(b.size())));
    ASSERT_EQ(applyRecords(a, b, recs), b);
}

} // namespace

TEST(LineDiffMinimal, RandomPairsMatchBruteForce)
{
    std::mt19937 rng(12345);
    for (int round = 0; round < 3000; ++round) {
        int alphabet = 2 + round % 6;
        auto a = randomLines(rng, 24, alphabet);
        auto b = round % 2 ? mutate(rng, a, alphabet) : randomLines(rng, 24, alphabet);
        auto recs = diffTexts(joinLines(a), joinLines(b));
        SCOPED_TRACE("round " + std::to_string(round));
        expectValid(a, b, recs);
        ASSERT_EQ(changedLines(recs), minimalChangedLines(a, b));
    }
}

TEST(LineDiffFallbacks, RandomPairsStayValidUnderEveryOption)
{
    // A cut-short search (no budget: every search stops after one round and
    // the splits do all the work), the faster mode, and every horizon: still
    // a correct edit, never worse than deleting and adding everything.
    std::mt19937 rng(99);
    std::vector<DiffOptions> variants(4);
    variants[0].forceTinyBudget = true;
    variants[1].forceTinyBudget = variants[1].faster = true;
    variants[2].faster = true;
    variants[3].useHorizon = true;
    for (int round = 0; round < 3000; ++round) {
        DiffOptions o = variants[static_cast<std::size_t>(round % 4)];
        o.horizon = 1 + round % 7;
        const int alphabet = 2 + round % 9;
        auto a = randomLines(rng, 40, alphabet);
        auto b = round % 3 ? mutate(rng, a, alphabet) : randomLines(rng, 40, alphabet);
        auto recs = diffTexts(joinLines(a), joinLines(b), o);
        SCOPED_TRACE("round " + std::to_string(round));
        expectValid(a, b, recs);
        ASSERT_LE(changedLines(recs), static_cast<long>(a.size() + b.size()));
    }
}

TEST(LineDiffFallbacks, AnchorsKeepLargeMovesNearMinimal)
{
    // Unique lines shuffled in blocks: a heavy edit where the cut-short
    // search leans on lines that occur once on each side.
    std::vector<std::string> a, b;
    for (int i = 0; i < 3000; ++i)
        a.push_back("line " + std::to_string(i) + (i % 7 == 0 ? "" : " x"));
    for (int blk = 0; blk < 30; ++blk) {
        int from = ((blk * 17) % 30) * 100;
        for (int i = from; i < from + 100; ++i)
            b.push_back(a[static_cast<std::size_t>(i)]);
    }
    DiffOptions tiny;
    tiny.forceTinyBudget = true;
    tiny.faster = true;
    auto exact = diffTexts(joinLines(a), joinLines(b));
    auto cut = diffTexts(joinLines(a), joinLines(b), tiny);
    expectValid(a, b, exact);
    expectValid(a, b, cut);
    EXPECT_LE(changedLines(cut), changedLines(exact) * 11 / 10);
}

TEST(LineDiffSequences, SecondThreadGivesTheSameMatch)
{
    // A budget that runs out early leaves many ranges for the two workers;
    // which worker takes which must not change the answer.
    std::mt19937 rng(11);
    for (bool anchors : {false, true}) {
        std::vector<std::uint32_t> x(20000), y(20000);
        for (auto& v : x)
            v = rng() % 300;
        for (auto& v : y)
            v = rng() % 300;
        skeinmatch::MatchBudget b;
        b.total = 200000;
        b.cutoff = 32;
        b.anchors = anchors;
        std::vector<std::uint8_t> c1x(x.size()), c1y(y.size()), c2x(x.size()), c2y(y.size());
        skeinmatch::matchSequences(x.data(), x.size(), y.data(), y.size(), 300, b, c1x.data(),
                                   c1y.data(), 1);
        skeinmatch::matchSequences(x.data(), x.size(), y.data(), y.size(), 300, b, c2x.data(),
                                   c2y.data(), 2);
        EXPECT_EQ(c1x, c2x);
        EXPECT_EQ(c1y, c2y);
        // Matched elements pair up equal and in order.
        std::vector<std::uint32_t> keptX, keptY;
        for (std::size_t i = 0; i < x.size(); ++i)
            if (!c2x[i])
                keptX.push_back(x[i]);
        for (std::size_t j = 0; j < y.size(); ++j)
            if (!c2y[j])
                keptY.push_back(y[j]);
        EXPECT_EQ(keptX, keptY);
        EXPECT_GT(keptX.size(), 500u);
    }
}

TEST(LineDiffSequences, HalvesOnTwoThreadsMatchOneThreadForEveryBudget)
{
    // A light edit of a long sequence: the first split's halves go to two
    // threads, and whether the budget lasts (kept) or runs out on the way
    // (done over on one thread) the answer must be the single thread's.
    std::mt19937 rng(21);
    std::vector<std::uint32_t> x(40000);
    for (auto& v : x)
        v = rng() % 2000;
    std::vector<std::uint32_t> y;
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (rng() % 40 == 0)
            y.push_back(rng() % 2000);
        if (rng() % 40 != 0)
            y.push_back(x[i]);
    }
    for (std::uint64_t total : {20000ull, 200000ull, 1000000ull, 3000000ull, 10000000ull, 1000000000ull}) {
        skeinmatch::MatchBudget b;
        b.total = total;
        b.cutoff = 64;
        std::vector<std::uint8_t> c1x(x.size()), c1y(y.size()), c2x(x.size()), c2y(y.size());
        skeinmatch::matchSequences(x.data(), x.size(), y.data(), y.size(), 2000, b, c1x.data(),
                                   c1y.data(), 1);
        skeinmatch::matchSequences(x.data(), x.size(), y.data(), y.size(), 2000, b, c2x.data(),
                                   c2y.data(), 2);
        EXPECT_EQ(c1x, c2x) << "budget " << total;
        EXPECT_EQ(c1y, c2y) << "budget " << total;
    }
}

TEST(LineDiffPlacement, EditsSitAtReadableBoundaries)
{
    const struct {
        const char* a;
        const char* b;
        DiffRecord expected;
    } cases[] = {
        // An inserted function starts at its header and ends with its blank line.
        {"int a() {\n    return 1;\n}\n\nint c() {\n    return 3;\n}\n",
         "int a() {\n    return 1;\n}\n\nint b() {\n    return 1;\n}\n\nint c() {\n    return 3;\n}\n",
         {'a', 4, 4, 5, 8}},
        // An inserted paragraph ends with its blank line.
        {"First.\n\nThird.\n", "First.\n\nSecond.\n\nThird.\n", {'a', 2, 2, 3, 4}},
        // An inserted block keeps its closing brace inside.
        {"if (x) {\n    go();\n}\nend();\n", "if (x) {\n    go();\n}\nif (y) {\n    go();\n}\nend();\n",
         {'a', 3, 3, 4, 6}},
        // Either "q" may be the lost one; the lower one makes a single change
        // record with "r" that became "R".
        {"p\nq\nq\nr\n", "p\nq\nR\n", {'c', 3, 4, 3, 3}},
    };
    for (const auto& c : cases) {
        auto recs = diffTexts(c.a, c.b);
        ASSERT_EQ(recs.size(), 1u) << c.b;
        EXPECT_EQ(recs[0], c.expected) << c.b;
    }
}

TEST(LineDiffLargerSections, JoinsRecordsAtMostThreeLinesApart)
{
    std::string a = "1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n";
    // Changes at 2, 6 (three equal lines between) and 11 (four between).
    std::string b = "1\nB\n3\n4\n5\nF\n7\n8\n9\n10\nK\n12\n";
    DiffOptions o;
    auto plain = diffTexts(a, b, o);
    EXPECT_EQ(plain.size(), 3u);
    o.largerSections = true;
    auto joined = diffTexts(a, b, o);
    ASSERT_EQ(joined.size(), 2u);
    EXPECT_EQ(joined[0], (DiffRecord{'c', 2, 6, 2, 6}));
    EXPECT_EQ(joined[1], (DiffRecord{'c', 11, 11, 11, 11}));
}

TEST(LineDiffLargerSections, RandomJoinsStayValid)
{
    std::mt19937 rng(5);
    DiffOptions o;
    o.largerSections = true;
    for (int round = 0; round < 800; ++round) {
        auto a = randomLines(rng, 40, 4);
        auto b = mutate(rng, mutate(rng, a, 4), 4);
        auto recs = diffTexts(joinLines(a), joinLines(b), o);
        SCOPED_TRACE("round " + std::to_string(round));
        expectValid(a, b, recs);
        for (std::size_t i = 1; i < recs.size(); ++i) {
            int gapA = recs[i].leftFirst - (recs[i - 1].kind == 'a' ? recs[i - 1].leftFirst + 1
                                                                    : recs[i - 1].leftLast + 1);
            int gapB = recs[i].rightFirst - (recs[i - 1].kind == 'd' ? recs[i - 1].rightFirst + 1
                                                                     : recs[i - 1].rightLast + 1);
            if (recs[i].kind == 'a')
                gapA += 1;
            if (recs[i].kind == 'd')
                gapB += 1;
            ASSERT_TRUE(gapA > 3 || gapB > 3) << "records " << i - 1 << " and " << i;
        }
    }
}

TEST(LineDiffHorizon, FindsCounterpartsOnlyWithinTheBracket)
{
    // Lines 2-4 moved to the end. A bracket of 3 reaches the resumed match
    // at "5" and finds the minimal edit; a bracket of 2 does not, and every
    // line after the first is paired off as changed.
    std::string a = "1\n2\n3\n4\n5\n6\n7\n8\n";
    std::string b = "1\n5\n6\n7\n8\n2\n3\n4\n";
    DiffOptions o;
    EXPECT_EQ(changedLines(diffTexts(a, b, o)), 6);
    o.useHorizon = true;
    o.horizon = 3;
    auto wide = diffTexts(a, b, o);
    expectValid(splitLines(a), splitLines(b), wide);
    EXPECT_EQ(changedLines(wide), 6);
    o.horizon = 2;
    auto narrow = diffTexts(a, b, o);
    expectValid(splitLines(a), splitLines(b), narrow);
    EXPECT_EQ(changedLines(narrow), 14);
}

TEST(LineDiffHorizon, ALoneCommonLineDoesNotLeadAstray)
{
    // The nearest equal pair is a brace, but only "a } b" agrees in a row:
    // the walk resumes there and the edit stays minimal.
    DiffOptions o;
    o.useHorizon = true;
    o.horizon = 5;
    std::string a = "a\n}\nb\nc\nx\n", b = "}\nx\na\n}\nb\nc\n";
    auto recs = diffTexts(a, b, o);
    expectValid(splitLines(a), splitLines(b), recs);
    EXPECT_EQ(changedLines(recs), 3);
}

namespace {

// A source-like text: braces, blank lines and a few common statements recur
// everywhere, some calls recur a few dozen times, most other lines occur once.
std::vector<std::string> sourceLike(std::mt19937& rng, int lines)
{
    static const char* const common[] = {"}", "", "    }", "        break;", "    return 0;", "{", "#endif",
                                         "        }", "    else", "/*", " */"};
    std::vector<std::string> v;
    for (int i = 0; i < lines; ++i) {
        const unsigned r = rng() % 100;
        if (r < 30)
            v.emplace_back(common[rng() % std::size(common)]);
        else if (r < 50)
            v.push_back("    shared_" + std::to_string(rng() % 600) + "();");
        else
            v.push_back("    value_" + std::to_string(rng() % 20000) + " = call(" + std::to_string(i % 97) + ");");
    }
    return v;
}

// About `rate` of the lines edited in scattered places: changed lines,
// deleted and inserted blocks, and blocks moved further down.
std::vector<std::string> scatteredEdits(std::mt19937& rng, const std::vector<std::string>& a, double rate)
{
    std::vector<std::string> b;
    std::vector<std::pair<std::size_t, std::vector<std::string>>> moves;
    std::uniform_real_distribution<double> u(0, 1);
    auto between = [&rng](unsigned lo, unsigned hi) { return lo + unsigned(rng() % (hi - lo + 1)); };
    for (std::size_t i = 0; i < a.size();) {
        while (!moves.empty() && moves.front().first <= i) {
            b.insert(b.end(), moves.front().second.begin(), moves.front().second.end());
            moves.erase(moves.begin());
        }
        const double r = u(rng);
        if (r < rate * 0.55) {
            b.push_back(a[i++] + " // edited");
        } else if (r < rate * 0.7) {
            i += between(1, 20);
        } else if (r < rate * 0.85) {
            for (unsigned k = between(1, 30); k > 0; --k)
                b.push_back(k % 3 ? "    inserted_" + std::to_string(rng() % 5000) + "();" : "}");
            b.push_back(a[i++]);
        } else if (r < rate) {
            const std::size_t size = std::min<std::size_t>(between(5, 40), a.size() - i);
            moves.emplace_back(i + size + between(50, 3000), std::vector<std::string>(a.begin() + long(i), a.begin() + long(i + size)));
            std::stable_sort(moves.begin(), moves.end(), [](const auto& x, const auto& y) { return x.first < y.first; });
            i += size;
        } else {
            b.push_back(a[i++]);
        }
    }
    for (const auto& m : moves)
        b.insert(b.end(), m.second.begin(), m.second.end());
    return b;
}

long gnuDiffChangedLines(const std::string& a, const std::string& b)
{
    const std::string cmd = "diff '" + a + "' '" + b + "' | grep -c '^[<>]'";
    FILE* p = ::popen(cmd.c_str(), "r");
    if (!p)
        return -1;
    long n = -1;
    if (std::fscanf(p, "%ld", &n) != 1)
        n = -1;
    ::pclose(p);
    return n;
}

} // namespace

TEST(LineDiffFallbacks, ScatteredEditsOfLargeSourcesNeverTakeMoreLinesThanGnuDiff)
{
    // Large enough that the exact search is out of reach and the runs
    // through unique lines, the windows searched again around them and the
    // cut-short searches decide the result.
    tvtest::TempDir dir;
    std::mt19937 rng(2026);
    for (double rate : {0.03, 0.05, 0.1, 0.2, 0.2, 0.35}) {
        const auto a = sourceLike(rng, 60000);
        const auto b = scatteredEdits(rng, a, rate);
        const std::string fa = dir.file("a.txt"), fb = dir.file("b.txt");
        tvtest::writeFile(fa, joinLines(a));
        tvtest::writeFile(fb, joinLines(b));
        const long gnu = gnuDiffChangedLines(fa, fb);
        ASSERT_GT(gnu, 0) << "GNU diff is part of every Debian system";
        const auto recs = diffTexts(joinLines(a), joinLines(b));
        expectValid(a, b, recs);
        EXPECT_LE(changedLines(recs), gnu) << "rate " << rate;
    }
}

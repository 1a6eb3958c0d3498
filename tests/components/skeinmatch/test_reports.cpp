// Reports: the HTML is valid HTML5 and shows what differs, the text report
// is a patch that turns the Original into the Modified, the CSV is RFC 4180
// with one row per record, and failures give their result codes.

#include "diffcheck.h"
#include "support/testsupport.h"

#include <cstdlib>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

using namespace diffcheck;

namespace {

int run(const std::string& cmd)
{
    int st = std::system(cmd.c_str());
    return WIFEXITED(st) ? WEXITSTATUS(st) : -1;
}

std::string quote(const std::string& s)
{
    std::string q = "'";
    for (char c : s)
        q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

// The files of one compare in a folder of their own.
struct Pair {
    tvtest::TempDir dir;
    Skeinmatch engine;

    Pair(const std::string& a, const std::string& b)
    {
        tvtest::writeFile(dir.file("original.txt"), a);
        tvtest::writeFile(dir.file("modified.txt"), b);
        engine.setMasterFile(dir.file("original.txt"));
        engine.setSourceFile(dir.file("modified.txt"));
        engine.setCompareMode(0);
    }
    std::string report(int type, int style, const std::string& name = "report")
    {
        std::string path = dir.file(name);
        EXPECT_EQ(engine.CreateFileReport(path, type, style), 0);
        return tvtest::readFile(path);
    }
};

// A strict parse by the WHATWG algorithm: any parse error fails.
::testing::AssertionResult parsesAsHtml5(const std::string& path)
{
    int rc = run("/usr/bin/python3 -c 'import html5lib,sys; "
                 "html5lib.HTMLParser(strict=True).parse(open(sys.argv[1],\"rb\"))' "
                 + quote(path) + " 2>" + quote(path + ".err"));
    if (rc == 0)
        return ::testing::AssertionSuccess();
    std::string err;
    try {
        err = tvtest::readFile(path + ".err");
    } catch (...) {
    }
    return ::testing::AssertionFailure() << "html5lib rejects " << path << ": " << err;
}

std::size_t count(const std::string& hay, const std::string& needle)
{
    std::size_t n = 0;
    for (std::size_t p = hay.find(needle); p != std::string::npos; p = hay.find(needle, p + 1))
        ++n;
    return n;
}

const std::string nastyA = "Title <b> & \"q\"\n\tindented\nsame\nsame 2\nold word here\n"
                           "gone line\nthe end\n";
const std::string nastyB = "Title <b> & \"q\"\n\tindented\nsame\nsame 2\nnew word here\n"
                           "ctrl \x01 nul " + std::string(1, '\0') + " bad \xff\xc2\x85 end\nthe end\n";

} // namespace

TEST(HtmlReport, BothStylesAreValidHtml5)
{
    Pair p(nastyA, nastyB);
    p.engine.CompareFiles();
    p.engine.setReportTitle("Report <1> & more");
    for (int style : {1, 2}) {
        std::string name = "r" + std::to_string(style) + ".html";
        std::string html = p.report(1, style, name);
        EXPECT_TRUE(parsesAsHtml5(p.dir.file(name)));
        EXPECT_NE(html.find("<title>Report &lt;1&gt; &amp; more</title>"), std::string::npos);
        // No script is needed, and nothing is fetched.
        EXPECT_EQ(html.find("<script"), std::string::npos);
        EXPECT_EQ(html.find("http"), std::string::npos);
    }
    // With empty lines ignored the equal stretches of the two sides can
    // differ in length; the pages stay valid and show both sides' lines.
    Pair blanks("a\n\n\nb\nc\n\n\nd\n", "a\nb\n\nC\nd\n\n");
    blanks.engine.setIgnoreEmptyLines(true);
    blanks.engine.CompareFiles();
    ASSERT_EQ(blanks.engine.DifferenceCount(), 1);
    for (int style : {1, 2}) {
        std::string name = "b" + std::to_string(style) + ".html";
        std::string html = blanks.report(1, style, name);
        EXPECT_TRUE(parsesAsHtml5(blanks.dir.file(name)));
        // "b" and "d" face their counterparts, the empty lines stand alone.
        const char* b = style == 2 ? "<td class=\"n\">4</td><td class=\"t\">b</td><td class=\"n\">2</td>"
                                   : "<td class=\"n\">4</td><td class=\"n\">2</td><td class=\"t\">b</td>";
        const char* d = style == 2 ? "<td class=\"n\">8</td><td class=\"t\">d</td><td class=\"n\">5</td>"
                                   : "<td class=\"n\">8</td><td class=\"n\">5</td><td class=\"t\">d</td>";
        EXPECT_NE(html.find(b), std::string::npos) << html;
        EXPECT_NE(html.find(d), std::string::npos) << html;
    }
    // Identical files make a valid report too.
    Pair same("x\n", "x\n");
    same.engine.CompareFiles();
    std::string html = same.report(1, 2, "same.html");
    EXPECT_TRUE(parsesAsHtml5(same.dir.file("same.html")));
    EXPECT_NE(html.find("no differences"), std::string::npos);
}

TEST(HtmlReport, ShowsCountsLinksAndWordFormats)
{
    Pair p("keep\nalpha beta gamma\nkeep 2\nlost\nkeep 3\n", "keep\nalpha BETA gamma\nkeep 2\nkeep 3\nnew\n");
    p.engine.CompareFiles();
    ASSERT_EQ(p.engine.DifferenceCount(), 3);
    std::string sbs = p.report(1, 2);
    for (int i = 1; i <= 3; ++i) {
        EXPECT_EQ(count(sbs, "href=\"#d" + std::to_string(i) + "\""), 1u);
        EXPECT_EQ(count(sbs, "id=\"d" + std::to_string(i) + "\""), 1u);
    }
    EXPECT_EQ(count(sbs, "id=\"d4\""), 0u);
    // Only the changed word is marked, on each side in its own format.
    EXPECT_NE(sbs.find("alpha <span class=\"co\">beta</span> gamma"), std::string::npos);
    EXPECT_NE(sbs.find("alpha <span class=\"cm\">BETA</span> gamma"), std::string::npos);
    EXPECT_NE(sbs.find("<span class=\"del\">lost</span>"), std::string::npos);
    EXPECT_NE(sbs.find("<span class=\"add\">new</span>"), std::string::npos);

    // All in one: the old word, then the new one, in one row numbered 2 / 2.
    std::string aio = p.report(1, 1);
    EXPECT_NE(aio.find("<td class=\"n\">2</td><td class=\"n\">2</td><td class=\"t\">alpha "
                       "<span class=\"co\">beta</span><span class=\"cm\">BETA</span> gamma"),
              std::string::npos);
}

TEST(HtmlReport, EditedLinesOfAChangeFaceEachOther)
{
    // A function inserted in front of an edited one: the edited line is
    // paired with its new version, not with the inserted header.
    Pair p("}\n\nint c(int x) {\n    return x * 3;\n}\n",
           "}\n\nint b() {\n    return 2;\n}\n\nint c(long x) {\n    return x * 4;\n}\n");
    p.engine.CompareFiles();
    ASSERT_EQ(p.engine.DifferenceCount(), 1);
    std::string sbs = p.report(1, 2);
    EXPECT_NE(sbs.find("<td class=\"n\">3</td><td class=\"t\">int c(<span class=\"co\">int</span> x) "
                       "{</td><td class=\"n\">7</td><td class=\"t\">int c(<span class=\"cm\">long</span>"),
              std::string::npos);
    EXPECT_NE(sbs.find("<td class=\"n\"></td><td class=\"t\"></td><td class=\"n\">3</td><td "
                       "class=\"t\"><span class=\"add\">int b() {</span>"),
              std::string::npos);
    std::string aio = p.report(1, 1);
    EXPECT_NE(aio.find("<td class=\"n\">4</td><td class=\"n\">8</td><td class=\"t\">    return x * "
                       "<span class=\"co\">3</span><span class=\"cm\">4</span>;"),
              std::string::npos);
}

TEST(HtmlReport, LongEqualStretchesAreFolded)
{
    std::string a, b;
    for (int i = 0; i < 200000; ++i) {
        std::string line = "line number " + std::to_string(i) + " of a long file\n";
        a += line;
        b += i == 100000 ? "this one changed\n" : line;
    }
    Pair p(a, b);
    p.engine.CompareFiles();
    ASSERT_EQ(p.engine.DifferenceCount(), 1);
    for (int style : {1, 2}) {
        std::string html = p.report(1, style);
        EXPECT_LT(html.size(), 20000u);
        EXPECT_NE(html.find("99997 unchanged lines"), std::string::npos);
        EXPECT_NE(html.find("99996 unchanged lines"), std::string::npos);
        // Three lines of context on each side of the change.
        EXPECT_NE(html.find("line number 99999 of"), std::string::npos);
        EXPECT_NE(html.find("line number 100003 of"), std::string::npos);
        EXPECT_EQ(html.find("line number 100004 of"), std::string::npos);
    }
}

TEST(TextReport, PatchTurnsOriginalIntoModified)
{
    std::mt19937 rng(17);
    int checked = 0;
    for (int round = 0; round < 120; ++round) {
        std::vector<std::string> a, b;
        for (int i = 0; i < 10 + round % 40; ++i)
            a.push_back("w" + std::to_string(rng() % 9));
        b = a;
        for (int e = 0; e < 1 + round % 6; ++e) {
            std::size_t pos = rng() % (b.size() + 1);
            if (rng() % 2 && pos < b.size())
                b.erase(b.begin() + static_cast<long>(pos));
            else
                b.insert(b.begin() + static_cast<long>(pos), "n" + std::to_string(rng() % 5));
        }
        std::string ta = joinLines(a), tb = joinLines(b);
        // Some pairs lack the last line end on one side or both.
        if (round % 4 == 1)
            ta.pop_back();
        if (round % 4 == 2)
            tb.pop_back();
        if (round % 4 == 3) {
            ta.pop_back();
            tb.pop_back();
        }
        Pair p(ta, tb);
        p.engine.CompareFiles();
        if (p.engine.DifferenceCount() == 0 && ta == tb)
            continue;
        p.report(2, 0, "report.txt");
        ASSERT_EQ(run("patch -s -o " + quote(p.dir.file("patched.txt")) + " "
                      + quote(p.dir.file("original.txt")) + " " + quote(p.dir.file("report.txt"))),
                  0)
            << tvtest::readFile(p.dir.file("report.txt"));
        ASSERT_EQ(tvtest::readFile(p.dir.file("patched.txt")), tb)
            << "round " << round << "\n" << tvtest::readFile(p.dir.file("report.txt"));
        ++checked;
    }
    EXPECT_GT(checked, 100);
}

TEST(CsvReport, StandardReaderSeesOneRowPerRecord)
{
    Pair p(nastyA + "x,y\n", nastyB + "\"quoted\", too\n");
    p.engine.CompareFiles();
    const int records = p.engine.DifferenceCount();
    ASSERT_GE(records, 2);
    p.report(3, 0, "report.csv");
    // Python's csv module reads it back; each row must have eight fields
    // and the numbers must be the records'.
    std::string out = p.dir.file("rows.txt");
    ASSERT_EQ(run("/usr/bin/python3 -c 'import csv,sys\n"
                  "rows=list(csv.reader(open(sys.argv[1],newline=\"\",encoding=\"utf-8\",errors=\"replace\"),strict=True))\n"
                  "o=open(sys.argv[2],\"w\")\n"
                  "for r in rows: o.write(str(len(r))+\"|\"+\"|\".join(r[:6])+\"\\n\")' "
                  + quote(p.dir.file("report.csv")) + " " + quote(out)),
              0);
    std::vector<std::string> rows = splitLines(tvtest::readFile(out));
    ASSERT_EQ(static_cast<int>(rows.size()), records + 1);
    EXPECT_EQ(rows[0], "8|Number|Kind|Original First|Original Last|Modified First|Modified Last");
    for (int i = 0; i < records; ++i) {
        int k, lf, ll, rf, rl;
        ASSERT_TRUE(p.engine.GetDifference(i, k, lf, ll, rf, rl));
        std::string kind = k == 'a' ? "Addition" : k == 'd' ? "Deletion" : "Change";
        EXPECT_EQ(rows[static_cast<std::size_t>(i) + 1],
                  "8|" + std::to_string(i + 1) + "|" + kind + "|" + std::to_string(lf) + "|"
                      + std::to_string(ll) + "|" + std::to_string(rf) + "|" + std::to_string(rl));
    }
    std::string csv = tvtest::readFile(p.dir.file("report.csv"));
    EXPECT_NE(csv.find("\"\"\"quoted\"\", too\""), std::string::npos);
}

TEST(ReportResults, FailuresGiveTheirCodes)
{
    Pair p("a\n", "b\n");
    // No compare yet: the report compares first.
    EXPECT_EQ(p.engine.CreateFileReport(p.dir.file("first.txt"), 2, 0), 0);
    EXPECT_NE(tvtest::readFile(p.dir.file("first.txt")).find("-a\n+b\n"), std::string::npos);
    // A folder that does not exist, or no name: the file cannot be created.
    EXPECT_EQ(p.engine.CreateFileReport(p.dir.file("no/such/folder/r.htm"), 1, 1), -5);
    EXPECT_EQ(p.engine.CreateFileReport("", 1, 1), -5);
    // An unknown type.
    EXPECT_EQ(p.engine.CreateFileReport(p.dir.file("r.x"), 4, 0), -2);
    // Unreadable inputs of the last compare.
    p.engine.setMasterFile(p.dir.file("missing"));
    p.engine.CompareFiles();
    EXPECT_EQ(p.engine.CreateFileReport(p.dir.file("r.htm"), 1, 1), -3);
    p.engine.setMasterFile(p.dir.file("original.txt"));
    p.engine.setSourceFile(p.dir.file("missing"));
    p.engine.CompareFiles();
    EXPECT_EQ(p.engine.CreateFileReport(p.dir.file("r.htm"), 1, 1), -4);
}

TEST(ReportResults, ReportUsesTheTextsOfTheLastCompare)
{
    // The viewers rewrite the shared text files for other compares; the
    // report must not read them again.
    Pair p("one\ntwo\n", "one\nTWO\n");
    p.engine.CompareFiles();
    tvtest::writeFile(p.dir.file("original.txt"), "something else entirely\n");
    std::string txt = p.report(2, 0);
    EXPECT_NE(txt.find("-two\n+TWO\n"), std::string::npos);
}

TEST(ReportResults, AFullDiskOrACompareFileAsTargetKeepsEveryFile)
{
    std::string big, changed;
    for (int i = 0; i < 5000; ++i) {
        big += "line " + std::to_string(i) + "\n";
        changed += (i % 2 ? "line " : "LINE ") + std::to_string(i) + "\n";
    }
    Pair p(big, changed);
    p.engine.CompareFiles();
    const std::string old = p.dir.file("old-report");
    tvtest::writeFile(old, "last week's report");
    // Each type, cut short by the disk: the old report stays, the caller
    // hears why.
    for (int type = 1; type <= 3; ++type) {
        const int rc = tvtest::runWithFileSizeLimit(4096, [&] {
            const int r = p.engine.CreateFileReport(old, type, 1);
            return r == -5 && !p.engine.reportError().empty() ? 0 : 1;
        });
        EXPECT_EQ(rc, 0) << "type " << type;
        EXPECT_EQ(tvtest::readFile(old), "last week's report");
    }
    // Named as its own input, by another spelling, or through a link.
    const std::string original = tvtest::readFile(p.dir.file("original.txt"));
    ASSERT_EQ(::symlink(p.dir.file("modified.txt").c_str(), p.dir.file("link").c_str()), 0);
    EXPECT_EQ(p.engine.CreateFileReport(p.dir.path() + "/./original.txt", 1, 1), -5);
    EXPECT_EQ(p.engine.CreateFileReport(p.dir.file("link"), 2, 0), -5);
    EXPECT_FALSE(p.engine.reportError().empty());
    EXPECT_EQ(tvtest::readFile(p.dir.file("original.txt")), original);
    EXPECT_EQ(tvtest::readFile(p.dir.file("modified.txt")), changed);
}

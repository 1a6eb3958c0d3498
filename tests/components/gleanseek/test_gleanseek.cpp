// The find-in-files engine on temporary folders: refused requests, what is
// searched and in what order, encodings and binary files, and a search that
// is stopped or restarted while it runs.

#include "components/gleanseek/Gleanseek.h"
#include "components/gleanseek/SearchRun.h"
#include "support/testsupport.h"
#include "support/unprivileged.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <mutex>
#include <sys/stat.h>
#include <thread>

using namespace gleanseek;
namespace fs = std::filesystem;

namespace {

void put(const std::string& path, const std::string& bytes)
{
    fs::create_directories(fs::path(path).parent_path());
    tvtest::writeFile(path, bytes);
}

struct Events : GleanseekEvents {
    std::mutex m;
    std::vector<std::string> log;
    void SearchStarted() override
    {
        std::lock_guard l(m);
        log.push_back("started");
    }
    void SearchCompleted() override
    {
        std::lock_guard l(m);
        log.push_back("completed");
    }
    void SearchError(std::int32_t code, const std::string& message) override
    {
        std::lock_guard l(m);
        log.push_back(std::to_string(code) + " " + message);
    }
    std::vector<std::string> take()
    {
        std::lock_guard l(m);
        return std::move(log);
    }
};

std::vector<Hit> allHits(const Gleanseek& g)
{
    std::vector<Hit> out;
    Hit h;
    for (std::int32_t i = 0; g.GetHit(i, h); ++i)
        out.push_back(h);
    return out;
}

// "relative/path line:col item" for each hit.
std::vector<std::string> search(Gleanseek& g, const std::string& root)
{
    g.StartSearch();
    EXPECT_TRUE(tvtest::waitIdle(g));
    std::vector<std::string> out;
    for (const Hit& h : allHits(g)) {
        std::string f = h.sFile;
        if (f.rfind(root + "/", 0) == 0)
            f = f.substr(root.size() + 1);
        out.push_back(f + " " + std::to_string(h.lLine) + ":" + std::to_string(h.lCol) + " " + h.sItem);
    }
    return out;
}

using V = std::vector<std::string>;

} // namespace

TEST(Gleanseek, RefusesABadRequestWithEveryReasonAtOnce)
{
    tvtest::TempDir tmp;
    put(tmp.file("a.txt"), "needle\n");
    Events ev;
    Gleanseek g;
    g.setEvents(&ev);
    g.setSearchFolder(tmp.path());
    g.setSearchText("needle");
    EXPECT_EQ(search(g, tmp.path()), V({"a.txt 1:1 needle"}));
    ev.take();

    g.setSearchText("");
    g.setSearchFolder("");
    g.setSearchFileTypes("   ");
    g.StartSearch();
    EXPECT_FALSE(g.InProgress());
    EXPECT_EQ(ev.take(), V({"507 Search string is empty", "508 Folder not specified", "509 No file type given:"}));
    EXPECT_EQ(g.HitCount(), 0);  // the earlier hits are gone

    g.setSearchText("ab[c");
    g.setRegularExpression(true);
    g.setSearchFolder(tmp.file("missing"));
    g.setSearchFileTypes("*.txt docs/*.doc");
    g.StartSearch();
    EXPECT_EQ(ev.take(), V({"507 Search string is not valid (missing ']'):",
                            "508 Folder does not exist: " + tmp.file("missing"),
                            "509 A file type is a name pattern, not a path:"}));

    g.setSearchText("needle");
    g.setSearchFolder(tmp.file("a.txt"));  // a file is not a folder
    g.setSearchFileTypes("*.*");
    g.StartSearch();
    EXPECT_EQ(ev.take(), V({"508 Folder does not exist: " + tmp.file("a.txt")}));
}

TEST(Gleanseek, WalksFilesByNameThenSubfoldersAndKeepsToTheFileTypes)
{
    tvtest::TempDir tmp;
    const std::string r = tmp.file("root");
    put(r + "/b.txt", "needle\n");
    put(r + "/A.TXT", "x\tneedle\n");
    put(r + "/c.log", "needle\n");
    put(r + "/sub/d.txt", "one\ntwo needle\n");
    put(r + "/Sub2/e.txt", "needle");
    put(r + "/sub/deeper/f.txt", "needle\n");
    fs::create_symlink("b.txt", r + "/link.txt");
    fs::create_directory_symlink("..", r + "/sub/loop");

    Events ev;
    Gleanseek g;
    g.setEvents(&ev);
    g.setSearchFolder(r + "/");
    g.setSearchText("needle");
    g.setSearchFileTypes("*.txt");
    EXPECT_EQ(search(g, r), V({"A.TXT 1:3 x needle", "b.txt 1:1 needle", "sub/d.txt 2:5 two needle",
                               "sub/deeper/f.txt 1:1 needle", "Sub2/e.txt 1:1 needle"}));
    EXPECT_EQ(ev.take(), V({"started", "completed"}));

    g.setLookInSubfolders(false);
    g.setSearchFileTypes("*.LOG   *.txt");
    EXPECT_EQ(search(g, r), V({"A.TXT 1:3 x needle", "b.txt 1:1 needle", "c.log 1:1 needle"}));
    EXPECT_EQ(g.HitCount(), 3);
}

TEST(Gleanseek, OptionsReachTheMatcher)
{
    tvtest::TempDir tmp;
    put(tmp.file("t.txt"), "Needle\nneedles\n a needle \ncolour\n");
    Gleanseek g;
    g.setSearchFolder(tmp.path());
    g.setSearchText("needle");
    g.setCaseSensitive(true);
    g.setWholeWordOnly(true);
    EXPECT_EQ(search(g, tmp.path()), V({"t.txt 3:4  a needle "}));
}

TEST(Gleanseek, EncodingsAndBinaryFiles)
{
    tvtest::TempDir tmp;
    const std::string r = tmp.path();
    put(r + "/bin.dat", std::string("needle\0\x01\x02", 9));
    std::string utf16 = "\xFF\xFE";
    for (char16_t c : std::u16string(u"line one\r\nthe café needle\r\n")) {
        utf16 += static_cast<char>(c & 0xFF);
        utf16 += static_cast<char>(c >> 8);
    }
    put(r + "/utf16.txt", utf16);
    put(r + "/bom8.txt", "\xEF\xBB\xBFneedle first\n");
    put(r + "/latin.txt", "un caf\xE9 needle\n");
    put(r + "/utf8.txt", "un café needle\n");

    Gleanseek g;
    g.setSearchFolder(r);
    g.setSearchText("needle");
    EXPECT_EQ(search(g, r), V({"bom8.txt 1:1 needle first", "latin.txt 1:9 un café needle",
                               "utf16.txt 2:10 the café needle", "utf8.txt 1:9 un café needle"}));
    g.setSearchText("CAFÉ");
    EXPECT_EQ(search(g, r), V({"latin.txt 1:4 un café needle", "utf16.txt 2:5 the café needle",
                               "utf8.txt 1:4 un café needle"}));
    g.setRegularExpression(true);
    g.setSearchText("^caf? needle");
    EXPECT_EQ(search(g, r), V{});
    g.setSearchText("c?f[éè] n");
    EXPECT_EQ(search(g, r).size(), 3u);
}

TEST(Gleanseek, LargeFilesAreReadInPiecesWithoutLosingLines)
{
    tvtest::TempDir tmp;
    std::string big;
    const std::string filler = "just some ordinary text on a line of its own\n";
    while (big.size() < (9u << 20))
        big += filler;
    const std::int64_t linesBefore = static_cast<std::int64_t>(big.size() / filler.size());
    big += "here is the needle\n";
    big += filler;
    put(tmp.file("big.txt"), big);
    // The same, but a NUL byte far into the file makes it binary after all.
    put(tmp.file("late-binary.txt"), "needle early\n" + big + std::string(1, '\0'));

    // UTF-16 is decoded whole, even when it is larger than a piece of a
    // plain file.
    std::string wide = "\xFF\xFE";
    std::u16string text;
    for (int i = 0; i < 20000; ++i)
        text += u"filler line\n";
    text += u"wide needle\n";
    for (char16_t c : text) {
        wide += static_cast<char>(c & 0xFF);
        wide += static_cast<char>(c >> 8);
    }
    put(tmp.file("wide.txt"), wide);

    Gleanseek g;
    g.setSearchFolder(tmp.path());
    g.setSearchText("needle");
    EXPECT_EQ(search(g, tmp.path()), V({"big.txt " + std::to_string(linesBefore + 1) + ":13 here is the needle",
                                        "wide.txt 20001:6 wide needle"}));
}

TEST(Gleanseek, UnreadableFilesAndFoldersAreReportedAndTheSearchGoesOn)
{
    tvtest::TempDir tmp;
    const std::string r = tmp.file("t");
    put(r + "/a.txt", "needle\n");
    put(r + "/locked.txt", "needle\n");
    put(r + "/closed/c.txt", "needle\n");
    put(r + "/z/z.txt", "needle\n");
    for (const auto& p : fs::recursive_directory_iterator(r))
        tvtest::handToNobody(p.path());
    tvtest::handToNobody(r);
    chmod(tmp.path().c_str(), 0755);
    chmod((r + "/locked.txt").c_str(), 0);
    chmod((r + "/closed").c_str(), 0);

    const std::string out = tvtest::runUnprivileged([&] {
        Events ev;
        Gleanseek g;
        g.setEvents(&ev);
        g.setSearchFolder(r);
        g.setSearchText("needle");
        std::string s;
        for (const std::string& line : search(g, r))
            s += line + "\n";
        V log = ev.take();
        std::sort(log.begin(), log.end());
        for (const std::string& line : log)
            s += line + "\n";
        return s;
    });
    chmod((r + "/closed").c_str(), 0755);
    chmod((r + "/locked.txt").c_str(), 0644);
    EXPECT_EQ(out, "a.txt 1:1 needle\n"
                   "z/z.txt 1:1 needle\n"
                   "510 Cannot read folder " + r + "/closed/: Permission denied\n"
                   "511 Cannot open file " + r + "/locked.txt: Permission denied\n"
                   "completed\n"
                   "started\n");
}

namespace {

// Many hits, so that a search lasts long enough to be caught running.
struct BusyFolder {
    tvtest::TempDir tmp;
    int files = 0;
    const int lines;
    BusyFolder(int count, int linesPerFile) : lines(linesPerFile)
    {
        std::string body;
        for (int i = 0; i < lines; ++i)
            body += "needle " + std::to_string(i) + "\n";
        for (int i = 0; i < count; ++i, ++files)
            put(tmp.file("f" + std::to_string(1000 + i) + ".txt"), body);
    }
};

} // namespace

TEST(Gleanseek, AbortKeepsTheHitsSoFarAndAddsNoMore)
{
    BusyFolder f(200, 1000);
    const std::int32_t total = 200 * 1000;
    Events ev;
    Gleanseek g;
    g.setEvents(&ev);
    g.setSearchFolder(f.tmp.path());
    g.setSearchText("needle");
    // On a busy machine a search may end before the test sees it running;
    // try a few times.
    bool caught = false;
    for (int attempt = 0; attempt < 5 && !caught; ++attempt) {
        ev.take();
        g.StartSearch();
        while (g.InProgress() && g.HitCount() < 1000)
            std::this_thread::yield();
        if (!g.InProgress())
            continue;
        g.AbortSearch();
        const std::int32_t atAbort = g.HitCount();
        ASSERT_TRUE(tvtest::waitIdle(g));
        EXPECT_EQ(g.HitCount(), atAbort);
        if (ev.take() != V({"started"}) || atAbort == total)
            continue;  // everything was found just before the abort
        caught = true;
        // Whole files only, in order.
        const auto hits = allHits(g);
        ASSERT_EQ(hits.size() % 1000, 0u);
        for (std::size_t i = 0; i < hits.size(); i += 1000)
            ASSERT_EQ(hits[i].sFile, f.tmp.file("f" + std::to_string(1000 + i / 1000) + ".txt"));
    }

    // Starting again during a search starts over.
    g.StartSearch();
    while (g.InProgress() && g.HitCount() < 1000)
        std::this_thread::yield();
    g.setSearchText("needle 999");
    g.StartSearch();
    ASSERT_TRUE(tvtest::waitIdle(g));
    EXPECT_EQ(g.HitCount(), 200);
    Hit h;
    ASSERT_TRUE(g.GetHit(199, h));
    EXPECT_EQ(h.sFile, f.tmp.file("f1199.txt"));
    EXPECT_EQ(h.lLine, 1000);
    if (!caught)
        GTEST_SKIP() << "every search ended before it could be stopped";
}

TEST(Gleanseek, OrderDoesNotDependOnWhichWorkerFinishesFirst)
{
    // The first files are slow to search and the rest quick, so a worker
    // that takes a later batch finishes long before the first.
    tvtest::TempDir tmp;
    std::string slow;
    while (slow.size() < (2u << 20))
        slow += "nothing to see in this line of text here\n";
    slow += "needle\n";
    V expected;
    for (int i = 0; i < 20; ++i) {
        const std::string name = "a" + std::to_string(100 + i) + ".txt";
        put(tmp.file(name), slow);
        expected.push_back(name);
    }
    for (int i = 0; i < 150; ++i) {
        const std::string name = "b" + std::to_string(100 + i) + ".txt";
        put(tmp.file(name), "needle\n");
        expected.push_back(name);
    }
    Gleanseek g;
    g.setSearchFolder(tmp.path());
    g.setSearchText("needle");
    g.StartSearch();
    ASSERT_TRUE(tvtest::waitIdle(g));
    V names;
    for (const Hit& h : allHits(g))
        names.push_back(fs::path(h.sFile).filename().string());
    EXPECT_EQ(names, expected);
}

TEST(Gleanseek, ReportHasAHeaderAndOneRowPerHit)
{
    tvtest::TempDir tmp;
    put(tmp.file("in/a.txt"), "x\tneedle\nnothing\nneedle again\n");
    Gleanseek g;
    const std::string report = tmp.file("FindTextReport.CSV");
    ASSERT_TRUE(g.WriteReport(report));
    EXPECT_EQ(tvtest::readFile(report), "#\tFile\tLine\tCol\tItem Found\n");
    g.setSearchFolder(tmp.file("in"));
    g.setSearchText("needle");
    search(g, tmp.path());
    ASSERT_TRUE(g.WriteReport(report));
    EXPECT_EQ(tvtest::readFile(report), "#\tFile\tLine\tCol\tItem Found\n"
                                        "1\t" + tmp.file("in/a.txt") + "\t1\t3\tx needle\n"
                                        "2\t" + tmp.file("in/a.txt") + "\t3\t1\tneedle again\n");
    EXPECT_FALSE(g.WriteReport(tmp.file("no/such/folder/r.csv")));
    EXPECT_NE(g.LastReportError().find("no/such/folder"), std::string::npos);
    Hit h;
    EXPECT_FALSE(g.GetHit(2, h));
}

// Folder comparison on real temporary trees: which records come, in what
// order, with which fields, under each option; and how a run behaves when it
// is stopped, restarted or read while it goes on.

#include "components/skeinmatch/FileNamePattern.h"
#include "components/skeinmatch/FolderCompareEngine.h"
#include "components/skeinmatch/FolderWalk.h"
#include "support/testsupport.h"
#include "support/unprivileged.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <fcntl.h>
#include <mutex>
#include <sstream>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace skeinmatch;
namespace fs = std::filesystem;

namespace {

void put(const std::string& path, const std::string& bytes, std::int64_t mtime = 1'600'000'000)
{
    fs::create_directories(fs::path(path).parent_path());
    tvtest::writeFile(path, bytes);
    const timespec times[2] = {{mtime, 0}, {mtime, 0}};
    utimensat(AT_FDCWD, path.c_str(), times, 0);
}

struct Events : FolderCompareEvents {
    std::mutex m;
    int started = 0, completed = 0;
    std::vector<std::string> errors;
    std::function<void()> onCompleted;  // runs on the engine's thread
    void CompareStarted() override
    {
        std::lock_guard l(m);
        ++started;
    }
    void CompareError(std::int32_t, const std::string& message) override
    {
        std::lock_guard l(m);
        errors.push_back(message);
    }
    void CompareCompleted() override
    {
        {
            std::lock_guard l(m);
            ++completed;
        }
        if (onCompleted)
            onCompleted();
    }
    int completedCount()
    {
        std::lock_guard l(m);
        return completed;
    }
};

std::vector<FolderRecord> records(const FolderCompareEngine& e)
{
    std::vector<FolderRecord> out;
    FolderRecord r;
    for (std::int32_t i = 0; e.GetRecord(i, r); ++i)
        out.push_back(r);
    return out;
}

std::vector<FolderRecord> run(FolderCompareEngine& e)
{
    e.StartCompare();
    EXPECT_TRUE(tvtest::waitIdle(e));
    return records(e);
}

// One line per record: kind letter, name, and the three comparison fields;
// paths are checked separately where they matter.
std::string brief(const FolderRecord& r)
{
    std::ostringstream s;
    s << (r.lIsFile ? 'F' : 'D') << (r.lOnlyInOriginal ? "<" : r.lOnlyInModified ? ">" : "=") << ' ' << r.sName
      << ' ' << r.lSizeCompare << r.lDateCompare << r.lContentStatus;
    return s.str();
}

std::vector<std::string> briefs(const std::vector<FolderRecord>& rs)
{
    std::vector<std::string> out;
    for (const FolderRecord& r : rs)
        out.push_back(brief(r));
    return out;
}

// The tree most tests share. Times are equal unless a test says otherwise.
struct Trees {
    tvtest::TempDir tmp;
    std::string o = tmp.file("orig"), m = tmp.file("mod");
    Trees()
    {
        put(o + "/same.txt", "alpha");
        put(m + "/same.txt", "alpha");
        put(o + "/Edited.txt", "beta1");  // same size, other bytes
        put(m + "/Edited.txt", "beta2");
        put(o + "/grown.md", "gamma");
        put(m + "/grown.md", "gamma and more");
        put(o + "/gone.txt", "x");
        put(m + "/new.txt", "y");
        put(o + "/sub/deep.txt", "d");
        put(m + "/sub/deep.txt", "D");
        put(o + "/sub/keep.bin", "k");
        put(m + "/sub/keep.bin", "k");
        put(o + "/oldDir/f", "1");
        put(m + "/newDir/f", "1");
        put(o + "/clash", "a file here");
        put(m + "/clash/inner", "a folder there");
        fs::create_directories(o + "/emptyBoth");
        fs::create_directories(m + "/emptyBoth");
    }
    void setUp(FolderCompareEngine& e) const
    {
        e.setFolderOriginal(o);
        e.setFolderModified(m);
    }
};

} // namespace

TEST(FileNamePattern, MatchesWildcardsWithoutRegardToCase)
{
    const FileNamePattern p("*.TXT  report?.csv;*.Doc");
    EXPECT_TRUE(p.Matches("notes.txt"));
    EXPECT_TRUE(p.Matches("report1.CSV"));
    EXPECT_FALSE(p.Matches("report12.csv"));
    EXPECT_FALSE(p.Matches("report.csv"));
    EXPECT_TRUE(p.Matches("a.doc"));
    EXPECT_FALSE(p.Matches("a.docx"));
    EXPECT_FALSE(p.Matches("txt"));
    EXPECT_TRUE(FileNamePattern("*.*").Matches("Makefile"));
    EXPECT_TRUE(FileNamePattern("*").Matches(".hidden"));
    EXPECT_TRUE(FileNamePattern("ÉTÉ*").Matches("été.txt"));
    EXPECT_TRUE(FileNamePattern("*a*b*c").Matches("xxaxxbxxbxc"));
    EXPECT_FALSE(FileNamePattern("*a*b*c").Matches("xxaxxbxxbxcx"));
    EXPECT_TRUE(FileNamePattern("   ").Empty());
    EXPECT_FALSE(FileNamePattern("   ").Matches("a"));
    // Invalid UTF-8 in a name neither crashes nor matches a letter.
    EXPECT_TRUE(FileNamePattern("?.txt").Matches("\xff.txt"));
    EXPECT_FALSE(FileNamePattern("a.txt").Matches("\xc1.txt"));
}

TEST(FolderDates, EqualWithinTwoSecondsOrAtExactlyOneHour)
{
    EXPECT_EQ(CompareModificationTimes(100, 0, 100, 0), 0);
    EXPECT_EQ(CompareModificationTimes(102, 0, 100, 0), 0);
    EXPECT_EQ(CompareModificationTimes(102, 1, 100, 0), 1);
    EXPECT_EQ(CompareModificationTimes(100, 0, 103, 0), -1);
    EXPECT_EQ(CompareModificationTimes(3700, 0, 100, 0), 0);
    EXPECT_EQ(CompareModificationTimes(100, 0, 3701, 500'000'000), 0);
    EXPECT_EQ(CompareModificationTimes(3703, 0, 100, 0), 1);
    EXPECT_EQ(CompareModificationTimes(100, 0, 7300, 0), -1);
}

TEST(FolderCompare, ReportsEveryKindInWalkOrder)
{
    Trees t;
    FolderCompareEngine e;
    t.setUp(e);
    const auto rs = run(e);
    // Folder record, its files by name (any case), then subfolders by name.
    const std::vector<std::string> expected = {
        "D= orig 000",
        "F< clash 000",
        "F= Edited.txt 001",
        "F< gone.txt 000",
        "F= grown.md -101",
        "F> new.txt 000",
        "F= same.txt 000",
        "D> clash 000",
        "D> newDir 000",
        "D< oldDir 000",
        "D= sub 000",
        "F= deep.txt 001",
        "F= keep.bin 000",
    };
    EXPECT_EQ(briefs(rs), expected);
    ASSERT_EQ(rs.size(), expected.size());
    EXPECT_EQ(rs[0].sPathOriginal, t.o + "/");
    EXPECT_EQ(rs[0].sPathModified, t.m + "/");
    EXPECT_EQ(rs[2].sPathOriginal + rs[2].sName, t.o + "/Edited.txt");
    EXPECT_EQ(rs[5].sPathModified + rs[5].sName, t.m + "/new.txt");
    EXPECT_EQ(rs[5].sPathOriginal, t.o + "/");  // where it would be
    EXPECT_EQ(rs[9].sPathOriginal, t.o + "/oldDir/");
    EXPECT_EQ(rs[11].sPathOriginal, t.o + "/sub/");
    FolderRecord r;
    EXPECT_FALSE(e.GetRecord(e.RecordCount(), r));
    EXPECT_FALSE(e.GetRecord(-1, r));
}

TEST(FolderCompare, OptionsPickTheRecordsAndFolderHeadingsFollowThem)
{
    using Setup = std::function<void(FolderCompareEngine&)>;
    const std::pair<Setup, std::vector<std::string>> cases[] = {
        {[](FolderCompareEngine& e) { e.setShowSameInBothPlaces(false); },
         {"D= orig 000", "F< clash 000", "F= Edited.txt 001", "F< gone.txt 000", "F= grown.md -101",
          "F> new.txt 000", "D> clash 000", "D> newDir 000", "D< oldDir 000", "D= sub 000", "F= deep.txt 001"}},
        {[](FolderCompareEngine& e) {
             e.setShowDifferentInBothPlaces(false);
             e.setShowOnlyInMaster(false);
             e.setShowOnlyInSource(false);
         },
         {"D= orig 000", "F= same.txt 000", "D= sub 000", "F= keep.bin 000"}},
        // Nothing to report: not even the top folder's heading, so a batch
        // run's count is 0 for equal trees.
        {[](FolderCompareEngine& e) {
             e.setShowSameInBothPlaces(false);
             e.setShowDifferentInBothPlaces(false);
             e.setShowOnlyInMaster(false);
             e.setShowOnlyInSource(false);
         },
         {}},
        // The filter chooses files; folders are still walked.
        {[](FolderCompareEngine& e) { e.setFileFilter("*.TXT"); },
         {"D= orig 000", "F= Edited.txt 001", "F< gone.txt 000", "F> new.txt 000", "F= same.txt 000",
          "D> clash 000", "D> newDir 000", "D< oldDir 000", "D= sub 000", "F= deep.txt 001"}},
        // Without reading, only sizes decide: the same-size edits go unseen.
        {[](FolderCompareEngine& e) {
             e.setContentCompare(false);
             e.setShowOnlyInMaster(false);
             e.setShowOnlyInSource(false);
             e.setShowSameInBothPlaces(false);
         },
         {"D= orig 000", "F= grown.md -101"}},
        // Without subfolders, folders on one side are still findings.
        {[](FolderCompareEngine& e) { e.setDoSubDirectories(false); },
         {"D= orig 000", "F< clash 000", "F= Edited.txt 001", "F< gone.txt 000", "F= grown.md -101",
          "F> new.txt 000", "F= same.txt 000", "D> clash 000", "D> newDir 000", "D< oldDir 000"}},
    };
    Trees t;
    int n = 0;
    for (const auto& [setup, expected] : cases) {
        FolderCompareEngine e;
        t.setUp(e);
        setup(e);
        EXPECT_EQ(briefs(run(e)), expected) << "case " << n++;
        EXPECT_EQ(e.RecordCount(), static_cast<std::int32_t>(expected.size()));
    }
}

TEST(FolderCompare, DatesFollowTheRuleAndIgnoringThemOnlyChangesTheFilter)
{
    tvtest::TempDir tmp;
    const std::string o = tmp.file("o"), m = tmp.file("m");
    put(o + "/a-hour", "same", 1'600'000'000);
    put(m + "/a-hour", "same", 1'600'003'600);
    put(o + "/b-fat", "same", 1'600'000'001);
    put(m + "/b-fat", "same", 1'600'000'000);
    put(o + "/c-newer", "same", 1'600'000'100);
    put(m + "/c-newer", "same", 1'600'000'000);
    put(o + "/d-older", "same", 1'600'000'000);
    put(m + "/d-older", "same", 1'600'000'100);
    FolderCompareEngine e;
    e.setFolderOriginal(o);
    e.setFolderModified(m);
    e.setShowSameInBothPlaces(false);
    EXPECT_EQ(briefs(run(e)), (std::vector<std::string>{"D= o 000", "F= c-newer 010", "F= d-older 0-10"}));

    e.setIgnoreDateDifferences(true);
    EXPECT_TRUE(run(e).empty());
    e.setShowSameInBothPlaces(true);
    e.setShowDifferentInBothPlaces(false);
    // Still told, for the viewer to show or hide.
    EXPECT_EQ(briefs(run(e)), (std::vector<std::string>{"D= o 000", "F= a-hour 000", "F= b-fat 000",
                                                         "F= c-newer 010", "F= d-older 0-10"}));
}

TEST(FolderCompare, DeepNestingKeepsHeadingsOfAncestorsOnly)
{
    tvtest::TempDir tmp;
    const std::string o = tmp.file("o"), m = tmp.file("m");
    put(o + "/a/b/c/d/x.txt", "1");
    put(m + "/a/b/c/d/x.txt", "2");
    put(o + "/a/b2/same", "s");
    put(m + "/a/b2/same", "s");
    put(o + "/a/z.txt", "old");
    put(m + "/a/z.txt", "new");
    FolderCompareEngine e;
    e.setFolderOriginal(o + "///");
    e.setFolderModified(m);
    e.setShowSameInBothPlaces(false);
    const auto rs = run(e);
    EXPECT_EQ(briefs(rs), (std::vector<std::string>{"D= o 000", "D= a 000", "F= z.txt 001", "D= b 000",
                                                    "D= c 000", "D= d 000", "F= x.txt 001"}));
    EXPECT_EQ(rs[5].sPathOriginal, o + "/a/b/c/d/");
    EXPECT_EQ(rs[6].sPathModified + rs[6].sName, m + "/a/b/c/d/x.txt");
}

TEST(FolderCompare, SymbolicLinksAreComparedNotFollowed)
{
    tvtest::TempDir tmp;
    const std::string o = tmp.file("o"), m = tmp.file("m");
    put(o + "/real", "12345");
    put(m + "/real", "12345");
    fs::create_directories(o + "/sub");
    fs::create_directories(m + "/sub");
    // Loops back to the top of each tree.
    fs::create_directory_symlink("..", o + "/sub/loop");
    fs::create_directory_symlink("..", m + "/sub/loop");
    fs::create_symlink("real", o + "/moved");
    fs::create_symlink("elsewhere", m + "/moved");
    fs::create_symlink("real", o + "/kind");
    put(m + "/kind", "real");  // a file of the same size as the link
    FolderCompareEngine e;
    e.setFolderOriginal(o);
    e.setFolderModified(m);
    const auto rs = run(e);
    EXPECT_EQ(briefs(rs), (std::vector<std::string>{"D= o 000", "F= kind 0" + std::to_string(rs[1].lDateCompare) + "1",
                                                    "F= moved -1" + std::to_string(rs[2].lDateCompare) + "1",
                                                    "F= real 000", "D= sub 000",
                                                    "F= loop 0" + std::to_string(rs[5].lDateCompare) + "0"}));
}

TEST(FolderCompare, UnreadableFilesAndFoldersAreReportedAndTheWalkGoesOn)
{
    tvtest::TempDir tmp;
    const std::string base = tmp.file("t");
    const std::string o = base + "/o", m = base + "/m";
    put(o + "/locked.txt", "abc");
    put(m + "/locked.txt", "abd");
    put(o + "/open.txt", "abc");
    put(m + "/open.txt", "abd");
    put(o + "/closed/f", "1");
    put(m + "/closed/f", "1");
    put(o + "/z/after", "1");
    put(m + "/z/after", "2");
    for (const auto& p : fs::recursive_directory_iterator(base))
        tvtest::handToNobody(p.path());
    tvtest::handToNobody(base);
    chmod(tmp.path().c_str(), 0755);
    chmod(base.c_str(), 0755);
    chmod((m + "/locked.txt").c_str(), 0);
    chmod((o + "/closed").c_str(), 0);

    const std::string out = tvtest::runUnprivileged([&] {
        Events ev;
        FolderCompareEngine e;
        e.setEvents(&ev);
        e.setFolderOriginal(o);
        e.setFolderModified(m);
        e.setShowSameInBothPlaces(false);
        std::string s;
        for (const FolderRecord& r : run(e))
            s += brief(r) + "\n";
        // Folder errors come from the walker, file errors from the workers:
        // their relative order is not fixed.
        std::sort(ev.errors.begin(), ev.errors.end());
        for (const std::string& err : ev.errors)
            s += "error: " + err + "\n";
        s += "completed " + std::to_string(ev.completed) + "\n";
        return s;
    });
    chmod((o + "/closed").c_str(), 0755);
    chmod((m + "/locked.txt").c_str(), 0644);
    EXPECT_EQ(out, "D= o 000\n"
                   "F= locked.txt 002\n"
                   "F= open.txt 001\n"
                   "D= closed 002\n"
                   "D= z 000\n"
                   "F= after 001\n"
                   "error: Cannot open file " + m + "/locked.txt: Permission denied\n"
                   "error: Cannot read folder " + o + "/closed/: Permission denied\n"
                   "completed 1\n");
}

TEST(FolderCompare, MissingTopFolderIsAnErrorRecord)
{
    tvtest::TempDir tmp;
    put(tmp.file("m/a"), "1");
    Events ev;
    FolderCompareEngine e;
    e.setEvents(&ev);
    e.setFolderOriginal(tmp.file("nowhere"));
    e.setFolderModified(tmp.file("m"));
    const auto rs = run(e);
    EXPECT_EQ(briefs(rs), std::vector<std::string>{"D= nowhere 002"});
    ASSERT_EQ(ev.errors.size(), 1u);
    EXPECT_NE(ev.errors[0].find("nowhere"), std::string::npos);
    EXPECT_EQ(ev.started, 1);
    EXPECT_EQ(ev.completed, 1);
}

namespace {

// Files large enough that a walk with content comparison lasts a while
// (creating many small files is what is slow on a busy machine).
struct BigTrees {
    tvtest::TempDir tmp;
    std::string o = tmp.file("o"), m = tmp.file("m");
    int files = 0;
    explicit BigTrees(int folders, int perFolder = 21)
    {
        const std::string body(256 * 1024, 'q');
        const std::string other = body.substr(1) + "r";
        for (int d = 0; d < folders; ++d) {
            const std::string rel = "/d" + std::to_string(d) + "/";
            fs::create_directories(o + rel);
            fs::create_directories(m + rel);
            for (int f = 0; f < perFolder; ++f) {
                quickPut(o + rel + "f" + std::to_string(f), body);
                quickPut(m + rel + "f" + std::to_string(f), (f % 7 == 0) ? other : body);
                ++files;
            }
        }
    }
    static void quickPut(const std::string& path, const std::string& bytes)
    {
        const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
        ASSERT_GE(fd, 0);
        ASSERT_EQ(::write(fd, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
        const timespec times[2] = {{1'600'000'000, 0}, {1'600'000'000, 0}};
        futimens(fd, times);
        ::close(fd);
    }
};

} // namespace

TEST(FolderCompare, AbortKeepsDeliveredRecordsAndAddsNoMore)
{
    BigTrees t(12);
    Events ev;
    FolderCompareEngine e;
    e.setEvents(&ev);
    e.setFolderOriginal(t.o);
    e.setFolderModified(t.m);
    // On a busy machine a walk may end before the test sees it running; try
    // a few times.
    bool caught = false;
    for (int attempt = 0; attempt < 5 && !caught; ++attempt) {
        const int completedBefore = ev.completedCount();
        e.StartCompare();
        while (e.InProgress() && e.RecordCount() < 20)
            std::this_thread::yield();
        if (!e.InProgress())
            continue;
        e.AbortCompare();
        const std::int32_t atAbort = e.RecordCount();
        ASSERT_TRUE(tvtest::waitIdle(e));
        EXPECT_EQ(e.RecordCount(), atAbort);
        if (ev.completedCount() != completedBefore || atAbort == 1 + 12 + t.files)
            continue;  // everything was found just before the abort
        caught = true;
        EXPECT_GE(atAbort, 20);
        const auto rs = records(e);
        EXPECT_EQ(static_cast<std::int32_t>(rs.size()), atAbort);
        EXPECT_EQ(brief(rs[0]), "D= o 000");
    }

    // Starting again during a walk starts over, with the settings of then.
    const int startedBefore = ev.started;
    e.StartCompare();
    while (e.InProgress() && e.RecordCount() < 10)
        std::this_thread::yield();
    e.setShowSameInBothPlaces(false);
    const auto second = run(e);
    EXPECT_EQ(ev.started, startedBefore + 2);
    ASSERT_EQ(second.size(), 1u + 12u + 12u * 3u);
    EXPECT_EQ(brief(second[1]), "D= d0 000");
    EXPECT_EQ(brief(second[2]), "F= f0 001");

    e.ReleaseEngine();
    EXPECT_EQ(e.RecordCount(), 0);
    EXPECT_FALSE(e.InProgress());
    if (!caught)
        GTEST_SKIP() << "every walk ended before it could be stopped";
}

TEST(FolderCompare, RecordsReadDuringTheWalkNeverChange)
{
    BigTrees t(10);
    // The walk cannot end before the test has read every record while the
    // engine still says it is running.
    std::atomic<bool> completing{false}, release{false};
    Events ev;
    ev.onCompleted = [&] {
        completing = true;
        while (!release)
            std::this_thread::yield();
    };
    FolderCompareEngine e;
    // Whatever happens below, the engine's thread must not stay held.
    struct LetGo {
        std::atomic<bool>& flag;
        ~LetGo() { flag = true; }
    } letGo{release};
    e.setEvents(&ev);
    e.setFolderOriginal(t.o);
    e.setFolderModified(t.m);
    e.StartCompare();
    std::vector<FolderRecord> seen;
    FolderRecord r;
    while (e.InProgress()) {
        const std::int32_t n = e.RecordCount();
        while (static_cast<std::int32_t>(seen.size()) < n && e.GetRecord(static_cast<std::int32_t>(seen.size()), r))
            seen.push_back(r);
        // Re-read an early record to see that it stays as it was.
        if (!seen.empty()) {
            ASSERT_TRUE(e.GetRecord(0, r));
            ASSERT_EQ(r, seen[0]);
        }
        if (completing && static_cast<std::int32_t>(seen.size()) == e.RecordCount())
            release = true;
    }
    const auto all = records(e);
    EXPECT_EQ(all, seen);
    EXPECT_EQ(all.size(), 1u + 10u + 210u);
}

TEST(FolderCompare, ReportHasAHeaderAndOneRowPerRecord)
{
    Trees t;
    FolderCompareEngine e;
    t.setUp(e);
    e.setFileFilter("*.md gone.txt");
    e.setDoSubDirectories(false);
    e.setShowOnlyInSource(false);
    run(e);
    const std::string path = t.tmp.file("report.csv");
    ASSERT_TRUE(e.WriteReport(path));
    EXPECT_EQ(tvtest::readFile(path),
              "#\tName\tOriginal Folder\tModified Folder\tType\tFound In\tContents\tSize\tDate\n"
              "1\torig\t" + t.o + "/\t" + t.m + "/\tFolder\tBoth\t\t\t\n"
              "2\tgone.txt\t" + t.o + "/\t" + t.m + "/\tFile\tOriginal only\t\t\t\n"
              "3\tgrown.md\t" + t.o + "/\t" + t.m + "/\tFile\tBoth\tChanged\t[M]>[O]\tSame\n"
              "4\toldDir\t" + t.o + "/oldDir/\t" + t.m + "/oldDir/\tFolder\tOriginal only\t\t\t\n");

    EXPECT_FALSE(e.WriteReport(t.tmp.path()));  // a folder, not a file
    EXPECT_NE(e.LastReportError().find(t.tmp.path()), std::string::npos);

    FolderCompareEngine fresh;
    ASSERT_TRUE(fresh.WriteReport(path));
    EXPECT_EQ(tvtest::readFile(path), "#\tName\tOriginal Folder\tModified Folder\tType\tFound In\tContents\tSize\tDate\n");
}

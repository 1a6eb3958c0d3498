// tallyvane-diff as scripts use it: its normal-format output is a patch,
// its options reach the engine, its exit status says same / differ /
// trouble, and it writes reports.

#include "support/testsupport.h"

#include <QProcess>
#include <gtest/gtest.h>

#include <random>

namespace {

QString q(const std::string& s)
{
    return QString::fromStdString(s);
}

struct Result {
    int status = -1;
    std::string out;
};

Result tool(const QStringList& args)
{
    QProcess p;
    p.start(q(tvtest::binaryPath("tallyvane-diff")), args);
    Result r;
    if (p.waitForFinished(60000) && p.exitStatus() == QProcess::NormalExit)
        r.status = p.exitCode();
    r.out = p.readAllStandardOutput().toStdString();
    return r;
}

struct Files {
    tvtest::TempDir dir;
    std::string a, b;
    Files(const std::string& ta, const std::string& tb)
        : a(dir.file("a.txt")), b(dir.file("b.txt"))
    {
        tvtest::writeFile(a, ta);
        tvtest::writeFile(b, tb);
    }
    QStringList args(const QStringList& extra = {}) const { return QStringList{q(a), q(b)} + extra; }
};

} // namespace

TEST(DiffTool, ExitStatusSaysSameDifferOrTrouble)
{
    Files same("x\ny\n", "x\ny\n");
    Result r = tool(same.args());
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "");
    Files differ("x\ny\n", "x\nz\n");
    r = tool(differ.args());
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "2c2\n< y\n---\n> z\n");
    EXPECT_EQ(tool({q(differ.a), q(differ.dir.file("missing"))}).status, 2);
    EXPECT_EQ(tool({q(differ.a)}).status, 2);
    EXPECT_EQ(tool(differ.args({"--bogus"})).status, 2);
    EXPECT_EQ(tool(differ.args({"--horizon", "0"})).status, 2);
    EXPECT_EQ(tool(differ.args({"--horizon"})).status, 2);
    const Result help = tool({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("Usage: tallyvane-diff"), std::string::npos);
    Result brief = tool(differ.args({"-q"}));
    EXPECT_EQ(brief.status, 1);
    EXPECT_NE(brief.out.find("differ"), std::string::npos);
}

TEST(DiffTool, NormalOutputIsAPatch)
{
    std::mt19937 rng(3);
    for (int round = 0; round < 40; ++round) {
        std::string ta, tb;
        for (int i = 0; i < 30; ++i) {
            std::string line = "l" + std::to_string(rng() % 8) + "\n";
            ta += line;
            if (rng() % 5 == 0)
                tb += "new " + std::to_string(rng() % 4) + "\n";
            if (rng() % 6 != 0)
                tb += line;
        }
        if (round % 3 == 1)
            tb.pop_back();  // the last line without its line end
        Files f(ta, tb);
        Result r = tool(f.args());
        ASSERT_EQ(r.status, ta == tb ? 0 : 1);
        tvtest::writeFile(f.dir.file("n.diff"), r.out);
        ASSERT_EQ(QProcess::execute("patch", {"-s", "-o", q(f.dir.file("out.txt")), q(f.a), q(f.dir.file("n.diff"))}), 0)
            << r.out;
        ASSERT_EQ(tvtest::readFile(f.dir.file("out.txt")), tb) << "round " << round << "\n" << r.out;
    }
}

TEST(DiffTool, OptionsReachTheEngine)
{
    Files f("Alpha\n\n  beta  gamma\n", "alpha\nbeta gamma\n");
    EXPECT_EQ(tool(f.args()).status, 1);
    EXPECT_EQ(tool(f.args({"-i", "-w", "-B"})).status, 0);
    EXPECT_EQ(tool(f.args({"-i", "-w"})).status, 1);
    EXPECT_EQ(tool(f.args({"-i", "-B"})).status, 1);
    Files near("1\n2\n3\n4\n", "x\n2\ny\n4\n");
    EXPECT_EQ(tool(near.args()).out, "1c1\n< 1\n---\n> x\n3c3\n< 3\n---\n> y\n");
    EXPECT_EQ(tool(near.args({"--larger-sections"})).out, "1,3c1,3\n< 1\n< 2\n< 3\n---\n> x\n> 2\n> y\n");
    Files moved("1\n2\n3\n4\n5\n6\n7\n8\n", "1\n5\n6\n7\n8\n2\n3\n4\n");
    EXPECT_EQ(tool(moved.args({"--horizon", "1"})).out.substr(0, 8), "2,8c2,8\n");
    EXPECT_EQ(tool(moved.args({"--faster"})).status, 1);
}

TEST(DiffTool, WritesReports)
{
    Files f("one\ntwo\n", "one\nthree\n");
    const std::string path = f.dir.file("report.html");
    EXPECT_EQ(tool(f.args({"--report", q(path), "--type", "1", "--title", "My <title>"})).status, 1);
    EXPECT_NE(tvtest::readFile(path).find("<title>My &lt;title&gt;</title>"), std::string::npos);
    EXPECT_EQ(tool(f.args({"--report", q(path), "--type", "3"})).status, 1);
    EXPECT_NE(tvtest::readFile(path).find("1,Change,2,2,2,2,two,three"), std::string::npos);
    EXPECT_EQ(tool(f.args({"--report", q(f.dir.file("no/dir/r.html"))})).status, 2);
}

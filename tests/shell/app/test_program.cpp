// The built program from the command line, without a display: --help and
// --version, exit status, report files of each type and style, the log
// file's last message, silence about bad arguments unless asked, a locked
// PDF that nobody can be asked about, and the interactive start's refusal.

#include "shell/modMain.h"
#include "support/qstring_print.h"
#include "support/testsupport.h"

#include <QDir>
#include <algorithm>
#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

using tvtest::readFile;
using tvtest::writeFile;

namespace {

class ProgramRun : public ::testing::Test {
protected:
    struct Result {
        int status = -1;
        QString out, err;
    };
    Result run(const QStringList& args)
    {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove("DISPLAY");
        env.remove("WAYLAND_DISPLAY");
        env.remove("QT_QPA_PLATFORM");
        env.insert("XDG_CONFIG_HOME", dir.qpath() + "/config");
        env.insert("XDG_DATA_HOME", dir.qpath() + "/data");
        p.setProcessEnvironment(env);
        p.setWorkingDirectory(dir.qpath());
        p.start(QString::fromStdString(tvtest::binaryPath("tallyvane")), args);
        if (!p.waitForFinished(60000)) {
            p.kill();
            p.waitForFinished();
            return {};
        }
        return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -2,
                QString::fromLocal8Bit(p.readAllStandardOutput()), QString::fromLocal8Bit(p.readAllStandardError())};
    }
    QString data(const char* name) const { return tvtest::qDataPath(name); }
    QString at(const QString& name) const { return dir.qpath() + "/" + name; }
    std::string text(const QString& name) const { return readFile(at(name).toStdString()); }
    static bool has(const std::string& s, const std::string& part) { return s.find(part) != std::string::npos; }

    tvtest::TempDir dir;
};

TEST_F(ProgramRun, AFileComparisonWritesEachReportAndEndsWithZero)
{
    writeFile(dir.file("a.txt"), "alpha\nbeta\ngamma\n");
    writeFile(dir.file("b.txt"), "alpha\nBETA\ngamma\ndelta\n");
    const QStringList files{"a.txt", "b.txt"};
    // -G has no effect on a file comparison: differences or not, 0.
    const Result aio = run(files + QStringList{"-T", "aio.htm", "-R1", "-F1", "-X", "-G", "-L", "run.log"});
    EXPECT_EQ(aio.status, 0);
    EXPECT_TRUE(aio.err.isEmpty()) << aio.err.toStdString();
    EXPECT_EQ(text("run.log"), "Successfully Compared " + at("a.txt").toStdString() + " to "
                                   + at("b.txt").toStdString() + "\n");
    EXPECT_EQ(run(files + QStringList{"-T", "sbs.htm", "-F2", "-X", "-G"}).status, 0);
    EXPECT_EQ(run(files + QStringList{"-T", "r.txt", "-R2", "-X"}).status, 0);
    EXPECT_EQ(run(files + QStringList{"-T", "r.csv", "-R3"}).status, 0) << "without a display it ends anyway";
    EXPECT_NE(text("aio.htm"), text("sbs.htm"));
    EXPECT_TRUE(has(text("r.txt"), "\n-beta\n+BETA\n"));
    EXPECT_TRUE(has(text("r.csv"), "delta"));
    // Ending at once closes no window: nothing of the run is saved.
    EXPECT_FALSE(QFile::exists(at("config/Tallyvane/Tallyvane.INI")));
}

TEST_F(ProgramRun, HelpAndVersionAnswerAtOnce)
{
    const Result help = run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.out.startsWith("Usage: tallyvane")) << help.out.toStdString();
    EXPECT_TRUE(help.out.contains("  -M PATH"));

    const Result version = run({"-V", "--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, QString("tallyvane ") + TALLYVANE_VERSION + "\n");
    EXPECT_TRUE(version.err.isEmpty()) << version.err.toStdString();
}

TEST_F(ProgramRun, BadArgumentsAreSilentUnlessLoggedOrVerbose)
{
    const Result quiet = run({"missing.txt", "gone.txt", "-T", "r.htm", "-X"});
    EXPECT_EQ(quiet.status, 0);
    EXPECT_TRUE(quiet.err.isEmpty()) << quiet.err.toStdString();
    EXPECT_FALSE(QFile::exists(at("r.htm")));

    const Result logged = run({"missing.txt", "gone.txt", "-L", "run.log"});
    EXPECT_EQ(logged.status, 0);
    EXPECT_TRUE(logged.err.isEmpty()) << logged.err.toStdString();
    EXPECT_EQ(text("run.log"), "Missing required command line argument(s)\n");

    // Verbose: every message in order, on standard error for want of a display.
    const Result verbose = run({"-V"});
    QStringList lines;
    for (const QString& l : verbose.err.split('\n', Qt::SkipEmptyParts))
        if (!l.startsWith("QStandardPaths"))  // Qt's own warnings
            lines << l;
    EXPECT_EQ(lines, (QStringList{"Invalid Source file specified", "Invalid Master file specified",
                                  "Missing required command line argument(s)"}));
}

TEST_F(ProgramRun, InteractiveStartNeedsADisplay)
{
    const Result r = run({});
    EXPECT_EQ(r.status, 2);
    EXPECT_TRUE(r.err.contains("display")) << r.err.toStdString();
}

TEST_F(ProgramRun, AFolderComparisonCountsItsFindingsReportsAndLogs)
{
    QDir().mkpath(at("A/sub"));
    QDir().mkpath(at("B/sub"));
    writeFile(dir.file("A/same.txt"), "x\n");
    writeFile(dir.file("B/same.txt"), "x\n");
    writeFile(dir.file("A/gone.txt"), "old\n");
    writeFile(dir.file("B/new.txt"), "new\n");
    writeFile(dir.file("A/sub/deep.txt"), "a\n");
    writeFile(dir.file("B/sub/deep.txt"), "b\n");
    {
        QFile a(at("A/same.txt")), b(at("B/same.txt"));
        ASSERT_TRUE(a.open(QIODevice::ReadOnly) && b.open(QIODevice::ReadWrite));
        b.setFileTime(a.fileTime(QFileDevice::FileModificationTime), QFileDevice::FileModificationTime);
    }
    // Without -C only the top folder; the status counts the report's rows.
    const Result top = run({"-D", "-M", "A", "-S", "B", "-X", "-G", "-T", "f.txt", "-L", "run.log"});
    const std::string report = text("f.txt");
    const auto rows = int(std::count(report.begin(), report.end(), '\n')) - 1;
    EXPECT_GE(rows, 3) << report;
    EXPECT_EQ(top.status, rows) << top.err.toStdString();
    EXPECT_TRUE(has(report, "gone.txt") && has(report, "new.txt")) << report;
    EXPECT_FALSE(has(report, "deep.txt")) << report;
    EXPECT_EQ(text("run.log"), "Successfully Compared " + dir.file("A") + " to " + dir.file("B") + "\n");

    // -C goes down: the sub-folder's heading and its changed file.
    EXPECT_EQ(run({"-D", "-M", "A", "-S", "B", "-C", "-X", "-G"}).status, rows + 2);
    // Without -G the count stays out of the status.
    EXPECT_EQ(run({"-D", "-M", "A", "-S", "B", "-X"}).status, 0);
    // Two folders without -D are a folder comparison too (git difftool --dir-diff).
    EXPECT_EQ(run({"A", "B", "-X", "-G"}).status, rows);
    // A folder that is not there ends the run before anything is compared.
    const Result missing = run({"-D", "-M", "A", "-S", "nowhere", "-X", "-G", "-L", "bad.log"});
    EXPECT_EQ(missing.status, 0);
    EXPECT_EQ(text("bad.log"), "Missing required command line argument(s)\n");
}

TEST_F(ProgramRun, ALockedPdfIsReportedWithoutAQuestion)
{
    // Nobody can be asked for the password: the run ends instead of waiting.
    const Result locked = run({data("letter-password.pdf"), data("letter-original.pdf"), "-X", "-V"});
    EXPECT_EQ(locked.status, 0);
    EXPECT_TRUE(locked.err.contains("password", Qt::CaseInsensitive)) << locked.err.toStdString();
}

} // namespace

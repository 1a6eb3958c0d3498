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
#include <unistd.h>
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
    // `fileSizeLimit` bytes, when given, is all the program may write to any
    // one file: a full disk, made certain.
    Result run(const QStringList& args, long fileSizeLimit = 0)
    {
        QProcess p;
        if (fileSizeLimit > 0)
            p.setChildProcessModifier([fileSizeLimit] { tvtest::limitFileSize(fileSizeLimit); });
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

TEST_F(ProgramRun, NoReportReplacesAnInputOrEndsHalfWrittenOnAFullDisk)
{
    std::string original, modified;
    for (int i = 0; i < 20000; ++i) {
        original += "line " + std::to_string(i) + "\n";
        modified += (i % 2 ? "line " : "LINE ") + std::to_string(i) + "\n";
    }
    writeFile(dir.file("orig.txt"), original);
    writeFile(dir.file("mod.txt"), modified);
    writeFile(dir.file("old.htm"), "last week's report");
    ASSERT_EQ(::link(dir.file("mod.txt").c_str(), dir.file("hard.txt").c_str()), 0);
    const std::vector<std::string> inputs{dir.file("orig.txt"), dir.file("mod.txt"),
                                          tvtest::dataPath("letter-original.docx"),
                                          tvtest::dataPath("letter-modified.docx")};
    std::vector<std::string> before;
    for (const auto& f : inputs)
        before.push_back(tvtest::sha256(f));
    const QStringList files{"orig.txt", "mod.txt"};

    // Onto either input, however spelled: refused, said, and not a success.
    for (const QString& target : {QString("orig.txt"), at("./mod.txt"), QString("hard.txt")}) {
        const Result r = run(files + QStringList{"-T", target, "-R2", "-X"});
        EXPECT_NE(r.status, 0) << target.toStdString();
        EXPECT_TRUE(r.err.contains("Report Creation Error")) << r.err.toStdString();
        EXPECT_TRUE(r.err.contains("overwrite")) << r.err.toStdString();
    }
    const Result converted = run({data("letter-original.docx"), data("letter-modified.docx"), "-T",
                                  data("letter-modified.docx"), "-X"});
    EXPECT_NE(converted.status, 0);

    // A disk that fills half-way: each type says so and leaves the old file.
    // The limit lets the inputs and their work files through (about 209 KB
    // each) and stops every report (343 KB and more).
    for (const char* type : {"-R1", "-R2", "-R3"}) {
        const Result full = run(files + QStringList{"-T", "old.htm", type, "-X"}, 300000);
        EXPECT_NE(full.status, 0) << type;
        EXPECT_TRUE(full.err.contains("Report Creation Error")) << full.err.toStdString();
        EXPECT_TRUE(full.err.contains("too large", Qt::CaseInsensitive)) << full.err.toStdString();
        EXPECT_EQ(text("old.htm"), "last week's report");
    }
    EXPECT_EQ(QDir(dir.qpath()).entryList(QDir::Files | QDir::Hidden).size(), 4) << "no temporary file left";

    for (std::size_t i = 0; i < inputs.size(); ++i)
        EXPECT_EQ(tvtest::sha256(inputs[i]), before[i]) << inputs[i];
}

} // namespace

// The command line: switches and their globals, the positional form, path
// rules, validation messages and their order, and the log file.

#include "core/modGlobal.h"
#include "core/modParseCommandLine.h"
#include "support/qstring_print.h"
#include "support/recordinglauncher.h"
#include "support/testsupport.h"

#include <QDir>
#include <QFileInfo>
#include <gtest/gtest.h>

using tvtest::readFile;
using tvtest::writeFile;

namespace {

class CommandLine : public ::testing::Test {
protected:
    void SetUp() override
    {
        writeFile(dir.file("a.txt"), "a\n");
        writeFile(dir.file("b.txt"), "b\n");
        writeFile(dir.file("-dash.txt"), "d\n");
        QDir().mkpath(dir.qpath() + "/A");
        QDir().mkpath(dir.qpath() + "/B");
        previousDir = QDir::currentPath();
        QDir::setCurrent(dir.qpath());
        cwd = QDir::currentPath();
        previousPresenter = setMessagePresenter([this](const QString& m) { shown << m; });
    }
    void TearDown() override
    {
        setMessagePresenter(previousPresenter);
        QDir::setCurrent(previousDir);
    }

    QString at(const QString& name) { return cwd + "/" + name; }

    tvtest::TempDir dir;
    tvtest::RecordingLauncher launcher;
    QString previousDir, cwd;
    MessagePresenter previousPresenter;
    QStringList shown;
};

TEST_F(CommandLine, EmptyLineIsTheSilentInteractiveStart)
{
    gbClVerbose = true;
    gsClLogFile = at("stale.log");
    EXPECT_FALSE(ParseCommandLine({}));
    EXPECT_TRUE(shown.isEmpty());
    EXPECT_FALSE(gbClVerbose);
    EXPECT_TRUE(gsClLogFile.isEmpty());
    EXPECT_FALSE(QFileInfo::exists(at("stale.log")));
}

TEST_F(CommandLine, EverySwitchReachesItsGlobal)
{
    ASSERT_TRUE(ParseCommandLine({"-m", "a.txt", "/S", "b.txt", "-c", "-Tout.html", "-R3", "-f", "1",
                                  "-i", "-W", "-q", "-B", "-x", "-O", "-e", "-A", "-h", "-Y", "1-2, 12, *",
                                  "-Z3", "-1", "1, 12, 30-50", "-2B-C", "-3 7 ", "-4", "", "-G",
                                  "-Lrun.log", "/v"}));
    EXPECT_EQ(gsClMaster, at("a.txt"));
    EXPECT_EQ(gsClSource, at("b.txt"));
    EXPECT_TRUE(gbClSubFolders);
    EXPECT_FALSE(gbClCompareFolders);
    EXPECT_EQ(gsClReportFile, at("out.html"));
    EXPECT_EQ(glClReportType, 3);
    EXPECT_EQ(glClReportStyle, 1);
    EXPECT_TRUE(gbClIgnoreCase && gbClIgnoreWhitespace && gbClQuickCompare && gbClBeepWhenDone);
    EXPECT_TRUE(gbClExitWhenDone && gbClOpenReport && gbClRemoveBlankLines);
    EXPECT_TRUE(gbClExcelCompareFormulas && gbClHTMLCompareSource && gbClUseExitStatus && gbClVerbose);
    EXPECT_EQ(gsClExcelSheetMaster, "1-2, 12, *");
    EXPECT_EQ(gsClExcelSheetSource, "3");
    EXPECT_EQ(gsClExcelRowsMaster, "1, 12, 30-50");
    EXPECT_EQ(gsClExcelColsMaster, "B-C");
    EXPECT_EQ(gsClExcelRowsSource, "7");
    EXPECT_EQ(gsClExcelColsSource, "");
    EXPECT_EQ(gsClLogFile, at("run.log"));
    EXPECT_TRUE(shown.isEmpty());

    // The next parse starts again from the defaults.
    ASSERT_TRUE(ParseCommandLine({"a.txt", "b.txt"}));
    EXPECT_EQ(glClReportType, 1);
    EXPECT_TRUE(gsClReportFile.isEmpty() && gsClLogFile.isEmpty() && gsClExcelRowsMaster.isEmpty());
    EXPECT_FALSE(gbClSubFolders || gbClIgnoreCase || gbClExitWhenDone || gbClVerbose || gbClUseExitStatus);
}

TEST_F(CommandLine, LaterSwitchesOverwriteAndBadNumbersKeepThePreviousValue)
{
    ASSERT_TRUE(ParseCommandLine({"-Mb.txt", "-Ma.txt", "-Sb.txt", "-R2", "-R", "two", "-F3", "-Fx", "-R"}));
    EXPECT_EQ(gsClMaster, at("a.txt"));
    EXPECT_EQ(glClReportType, 2);
    EXPECT_EQ(glClReportStyle, 3);

    ASSERT_TRUE(ParseCommandLine({"a.txt", "b.txt", "-R9", "-F 1.5"}));
    EXPECT_EQ(glClReportType, 9);
    EXPECT_EQ(glClReportStyle, 2);
}

TEST_F(CommandLine, UnknownSwitchesAndFlagValuesAreIgnored)
{
    ASSERT_TRUE(ParseCommandLine({"-K", "a.txt", "--bogus", "-Vnonsense", "-Pzz", "b.txt", "-Xtra"}));
    EXPECT_EQ(gsClMaster, at("a.txt"));
    EXPECT_EQ(gsClSource, at("b.txt"));
    EXPECT_TRUE(gbClVerbose);
    EXPECT_TRUE(gbClExitWhenDone);
    EXPECT_TRUE(shown.isEmpty());
}

TEST_F(CommandLine, ValueSwitchTakesTheNextArgumentWhole)
{
    ASSERT_TRUE(ParseCommandLine({"-M", "a.txt", "-S", "b.txt", "-T", "-X", "-Y", "  spaced  "}));
    EXPECT_EQ(gsClReportFile, at("-X"));
    EXPECT_FALSE(gbClExitWhenDone);
    EXPECT_EQ(gsClExcelSheetMaster, "  spaced  ");
}

TEST_F(CommandLine, PathsRelativeToTheCurrentFolderAndQuotesOnlyOffMasterAndSource)
{
    ASSERT_TRUE(ParseCommandLine({"-M\"a.txt\"", "-S", "\"" + at("b.txt") + "\"", "-T\"report.html\"",
                                  "-L", "\"" + at("x.log") + "\""}));
    EXPECT_EQ(gsClMaster, at("a.txt"));
    EXPECT_EQ(gsClSource, at("b.txt"));
    EXPECT_EQ(gsClReportFile, at("\"report.html\""));
    EXPECT_EQ(gsClLogFile, "\"" + at("x.log") + "\"");

    // An empty path is the current folder itself.
    ParseCommandLine({"-S", "b.txt", "-M"});
    EXPECT_EQ(gsClMaster, cwd + "/");
    ParseCommandLine({"-M", "", "-S", "/abs/b.txt"});
    EXPECT_EQ(gsClMaster, cwd + "/");
    EXPECT_EQ(gsClSource, "/abs/b.txt");
}

TEST_F(CommandLine, TwoPlainPathsAreOriginalAndModified)
{
    ASSERT_TRUE(ParseCommandLine({"a.txt", at("b.txt")}));
    EXPECT_EQ(gsClMaster, at("a.txt"));
    EXPECT_EQ(gsClSource, at("b.txt"));

    // They replace a lone -M; with both -M and -S given they are not used.
    ASSERT_TRUE(ParseCommandLine({"-M", "missing.txt", "b.txt", "a.txt"}));
    EXPECT_EQ(gsClMaster, at("b.txt"));
    EXPECT_EQ(gsClSource, at("a.txt"));
    ASSERT_TRUE(ParseCommandLine({"-M", "a.txt", "-S", "b.txt", "x", "y"}));
    EXPECT_EQ(gsClMaster, at("a.txt"));

    // After "--" even a name starting with "-" is a path.
    ASSERT_TRUE(ParseCommandLine({"-V", "--", "-dash.txt", "b.txt"}));
    EXPECT_EQ(gsClMaster, at("-dash.txt"));

    EXPECT_FALSE(ParseCommandLine({"a.txt"}));
    EXPECT_FALSE(ParseCommandLine({"a.txt", "b.txt", "a.txt"}));
    EXPECT_FALSE(ParseCommandLine({"a.txt", "missing.txt"}));
}

TEST_F(CommandLine, BothPathsAreValidatedSourceFirst)
{
    EXPECT_FALSE(ParseCommandLine({"-V"}));
    EXPECT_EQ(shown, (QStringList{"Invalid Source file specified", "Invalid Master file specified"}));

    shown.clear();
    EXPECT_FALSE(ParseCommandLine({"a.txt", "missing.txt", "-v"}));
    EXPECT_EQ(shown, QStringList{"Invalid Source file specified"});

    shown.clear();
    EXPECT_FALSE(ParseCommandLine({"-M", "A", "-S", "b.txt", "-V"}));
    EXPECT_EQ(shown, QStringList{"Invalid Master file specified"});

    // Without -V nothing is shown.
    shown.clear();
    EXPECT_FALSE(ParseCommandLine({"missing.txt", "gone.txt"}));
    EXPECT_TRUE(shown.isEmpty());
}

TEST_F(CommandLine, FolderModeTestsFolders)
{
    EXPECT_TRUE(ParseCommandLine({"-D", "-M", "A", "-S", at("B") + "/", "-R3", "-I"}));
    EXPECT_TRUE(gbClCompareFolders);
    EXPECT_TRUE(shown.isEmpty());

    EXPECT_FALSE(ParseCommandLine({"-d", "-V", "-M", "a.txt", "-S", "B"}));
    EXPECT_EQ(shown, QStringList{"Invalid Master folder specified"});

    shown.clear();
    EXPECT_FALSE(ParseCommandLine({"-D", "-V"}));
    // With no paths at all both are empty, which is no folder either.
    EXPECT_EQ(shown, (QStringList{"Invalid Source folder specified", "Invalid Master folder specified"}));

    shown.clear();
    EXPECT_TRUE(ParseCommandLine({"-D", "-V", "A", "B"}));
    EXPECT_TRUE(shown.isEmpty());
}

TEST_F(CommandLine, LogFileKeepsOnlyTheLastMessage)
{
    EXPECT_FALSE(ParseCommandLine({"-Lrun.log"}));
    EXPECT_EQ(readFile(dir.file("run.log")), "Invalid Master file specified\n");
    EXPECT_TRUE(shown.isEmpty());

    LogMessage("Successfully Compared x to y", at("run.log"), false);
    EXPECT_EQ(readFile(dir.file("run.log")), "Successfully Compared x to y\n");

    // A log that cannot be written is passed over; the message still shows.
    LogMessage("still shown", at("no/such/folder/run.log"), true);
    LogMessage("into a folder", cwd + "/", true);
    EXPECT_EQ(shown, (QStringList{"still shown", "into a folder"}));
}

TEST_F(CommandLine, QuestionMarkOpensTheManualAndParsingGoesOn)
{
    EXPECT_FALSE(ParseCommandLine({"-?"}));
    EXPECT_EQ(launcher.requests, QStringList{"manual:command-line"});
    EXPECT_TRUE(ParseCommandLine({"/?", "a.txt", "b.txt", "-I"}));
    EXPECT_TRUE(gbClIgnoreCase);
    EXPECT_EQ(launcher.requests.size(), 2);
}

TEST(CommandLineInfo, HelpAndVersionAreFoundBeforeAnythingElse)
{
    EXPECT_EQ(HelpOrVersionRequested({"-M", "a", "--help"}), InfoRequest::Help);
    EXPECT_EQ(HelpOrVersionRequested({"--version", "--help"}), InfoRequest::Version);
    EXPECT_EQ(HelpOrVersionRequested({"--", "--help"}), InfoRequest::None);
    EXPECT_EQ(HelpOrVersionRequested({"-help"}), InfoRequest::None);
}

} // namespace

// The batch drivers in this process: what the file driver gives viewer 1,
// what it reads back, the report and its launch, the log line and the -X and
// -F rules; the folder driver against a stand-in folder viewer, and its
// refusal when the build has none.

#include "filecompare/frmCompareFiles.h"
#include "foldercompare/frmCompareDir.h"
#include "settings/IniStore.h"
#include "forms/FolderBatchViewer.h"
#include "forms/ViewerForm.h"
#include "core/modGlobal.h"
#include "core/modParseCommandLine.h"
#include "shell/frmMainMDI.h"
#include "filecompare/frmPleaseWait.h"
#include "shell/modMain.h"
#include "support/findchild.h"
#include "support/qstring_print.h"
#include "support/recordingdialogs.h"
#include "support/recordinglauncher.h"
#include "support/testsupport.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QMenu>
#include <QPushButton>
#include <QSettings>
#include <QTabWidget>
#include <gtest/gtest.h>

#include <memory>

using tvtest::readFile;
using tvtest::writeFile;

namespace {

class BatchTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        savedIni_ = gsIniFile;
        gsIniFile = dir.qpath() + "/Tallyvane.INI";
        QSettings("Tallyvane", "Tallyvane").clear();
        writeFile(dir.file("a.txt"), "alpha\nbeta\ngamma\n");
        writeFile(dir.file("b.txt"), "alpha\nBETA\ngamma\ndelta\n");
        frame = std::make_unique<frmMainMDI>();
        frame->Form_Load();
    }
    void TearDown() override
    {
        frame.reset();
        ResetCommandLineGlobals();
        gsIniFile = savedIni_;
    }
    // Parses a command line (the two files first) as the program would.
    void parse(QStringList switches)
    {
        ASSERT_TRUE(ParseCommandLine(QStringList{at("a.txt"), at("b.txt")} + switches));
        // The recording dialogs keep messages off the screen.
        gbClVerbose = false;
    }
    QString at(const char* name) const { return dir.qpath() + "/" + name; }
    frmCompareFiles* viewer1() { return frame->frmGetCFNumber(1); }

    tvtest::TempDir dir;
    tvtest::RecordingDialogs dialogs;
    tvtest::RecordingLauncher launched;
    std::unique_ptr<frmMainMDI> frame;

private:
    QString savedIni_;
};

TEST_F(BatchTest, TheFileDriverComparesCountsReportsAndLogs)
{
    parse({"-T", at("r.htm"), "-L", at("run.log"), "-X"});
    EXPECT_TRUE(CompareFilesFromCommandLine(*frame)) << "-X ends the program";
    EXPECT_EQ(glExitStatus, 2);
    EXPECT_NE(readFile(dir.file("r.htm")).find("<html"), std::string::npos);
    EXPECT_EQ(readFile(dir.file("run.log")),
              "Successfully Compared " + dir.file("a.txt") + " to " + dir.file("b.txt") + "\n");
    frmCompareFiles* v = viewer1();
    EXPECT_EQ(v->Options().sFileOriginal.Data(), at("a.txt"));
    EXPECT_EQ(v->Options().sFileModified.Data(), at("b.txt"));
    EXPECT_EQ(tvtest::child<QTabWidget>(v, "ts")->currentIndex(), 0);
    EXPECT_TRUE(v->CurrentViewMode() == frmCompareFiles::ViewMode::SideBySide) << "style 2 is the default";
    EXPECT_FALSE(tvtest::child<frmPleaseWait>(v, "")->isVisible());
    EXPECT_TRUE(launched.requests.isEmpty()) << "no -O, nothing opened";
    // The report names the files, not the work files the engine read.
    const std::string html = readFile(dir.file("r.htm"));
    EXPECT_NE(html.find(dir.file("a.txt")), std::string::npos);
    EXPECT_EQ(html.find("tv_master"), std::string::npos);
}

TEST_F(BatchTest, SwitchesReachTheOptionsOfViewerOne)
{
    // What the last interactive session left behind.
    frmCompareFiles* v = viewer1();
    v->Options().bIgnoreEmptyLines = true;
    v->Options().sExcelRowsMaster = "5-9";
    v->Options().bExcelUseRowsMaster = true;
    v->Options().sExcelColsSource = "2";
    parse({"-I", "-W", "-B", "-Q", "-E", "-A", "-H", "-Y", "2", "-Z3", "-2", "1-3", "-3", "4,6"});
    CompareFilesFromCommandLine(*frame);
    const clsCompareFileOptions& o = v->Options();
    EXPECT_FALSE(o.bIgnoreEmptyLines.Data()) << "no switch for it: always off";
    EXPECT_TRUE(o.bIgnoreCase.Data() && o.bIgnoreWhitespace.Data() && o.bBeepWhenDone.Data() && o.bQuickCompare.Data()
                && o.bRemoveBlankLines.Data() && o.bExcelCompareFormulas.Data() && o.bHTMLCompareSource.Data());
    EXPECT_EQ(o.sExcelSheetNumberMaster.Data(), "2");
    EXPECT_EQ(o.sExcelSheetNumberSource.Data(), "3");
    // A list not given turns its use off and keeps the stored text.
    EXPECT_FALSE(o.bExcelUseRowsMaster.Data());
    EXPECT_EQ(o.sExcelRowsMaster.Data(), "5-9");
    EXPECT_TRUE(o.bExcelUseColsMaster.Data());
    EXPECT_EQ(o.sExcelColsMaster.Data(), "1-3");
    EXPECT_TRUE(o.bExcelUseRowsSource.Data());
    EXPECT_EQ(o.sExcelRowsSource.Data(), "4,6");
    EXPECT_FALSE(o.bExcelUseColsSource.Data());
    EXPECT_EQ(o.sExcelColsSource.Data(), "2");
    // Ignoring case, the only difference left is the added line.
    EXPECT_EQ(glExitStatus, 1);
    EXPECT_TRUE(tvtest::child<QCheckBox>(v, "cbIgnoreCase")->isChecked()) << "the options page shows what the run used";
}

TEST_F(BatchTest, OpenedReportsGoToTheBrowserOrTheTextViewer)
{
    parse({"-T", at("r.htm"), "-O", "-X"});
    CompareFilesFromCommandLine(*frame);
    parse({"-T", at("r.txt"), "-R2", "-O", "-X"});
    CompareFilesFromCommandLine(*frame);
    parse({"-T", at("r.csv"), "-R3", "-O", "-X"});
    CompareFilesFromCommandLine(*frame);
    // An unknown type writes nothing and opens nothing.
    parse({"-T", at("r.xyz"), "-R9", "-O", "-X"});
    CompareFilesFromCommandLine(*frame);
    // A report that could not be written is not opened.
    parse({"-T", at("missing/r.htm"), "-O", "-X"});
    CompareFilesFromCommandLine(*frame);
    EXPECT_EQ(launched.requests,
              QStringList({"document:" + at("r.htm"), "text:" + at("r.txt"), "text:" + at("r.csv")}));
    EXPECT_FALSE(QFile::exists(at("r.xyz")));
    ASSERT_EQ(dialogs.boxes.size(), 1);
    EXPECT_TRUE(dialogs.boxes[0].startsWith("Report Creation Error | Unable to create target file: "));
    EXPECT_NE(readFile(dir.file("r.txt")).find("+BETA"), std::string::npos);
}

TEST_F(BatchTest, WithoutExitTheViewerStaysInTheViewTheSwitchReaches)
{
    parse({"-F1"});
    EXPECT_FALSE(CompareFilesFromCommandLine(*frame));
    frmCompareFiles* v = viewer1();
    // The run showed all in one; the switch afterwards shows side by side.
    EXPECT_TRUE(v->ViewFresh(frmCompareFiles::ViewMode::AllInOne));
    EXPECT_TRUE(v->CurrentViewMode() == frmCompareFiles::ViewMode::SideBySide);
    EXPECT_EQ(tvtest::child<QPushButton>(v, "cmdChangeViewFormat")->text(), frmCompareFiles::kViewAllInOne);
    EXPECT_TRUE(v->EditorBox(frmCompareFiles::kOriginalDiffFinal)->Text().startsWith("alpha\nbeta\ngamma"));

    // Closing the frame normally keeps what the batch run set.
    parse({"-I"});
    CompareFilesFromCommandLine(*frame);
    frame->close();
    EXPECT_EQ(IniReadString(gsIniFile, "1_CompareFile", "bIgnoreCase", ""), "TRUE");
}

TEST_F(BatchTest, AFileThatCannotBeLoadedStillEndsTheRunAndLogsIt)
{
    writeFile(dir.file("c.txt"), std::string("bin\0ary", 7));
    ASSERT_TRUE(ParseCommandLine({at("a.txt"), at("c.txt"), "-L", at("run.log"), "-X"}));
    gbClVerbose = false;
    EXPECT_TRUE(CompareFilesFromCommandLine(*frame));
    EXPECT_EQ(glExitStatus, 0);
    // The log keeps the last message only, and that one says the same.
    EXPECT_EQ(readFile(dir.file("run.log")),
              "Successfully Compared " + dir.file("a.txt") + " to " + dir.file("c.txt") + "\n");
    EXPECT_FALSE(tvtest::child<frmPleaseWait>(viewer1(), "")->isVisible());
}

// A folder viewer that only records what the driver does with it.
class StandInFolderViewer : public ViewerForm, public FolderBatchViewer {
public:
    void Setup(const QString& description, bool) override { sDescription = description; }
    QList<QMenu*> Menus() const override { return {}; }
    void SetBatchFolders(const QString& a, const QString& b) override { calls << "folders " + a + " " + b; }
    void SetBatchOptions(bool beep, bool sub) override
    {
        calls << QStringLiteral("options %1 %2").arg(beep).arg(sub);
    }
    void RefreshCompareOptionsGUI() override { calls << "gui"; }
    void ShowComparePage() override { calls << "page"; }
    void RefreshDiffViewer() override
    {
        calls << "start";
        polls = 2;
    }
    bool CompareInProgress() const override { return polls-- > 0; }
    bool WriteReport(const QString& path) override
    {
        calls << "report " + path;
        return true;
    }
    qint32 RecordCount() const override { return 7; }

    static inline QStringList calls;
    mutable int polls = 0;
};

TEST_F(BatchTest, TheFolderDriverRunsTheFolderViewerAndCountsItsFindings)
{
    StandInFolderViewer::calls.clear();
    frmMainMDI::RegisterViewerKind(frmMainMDI::ViewerKind::CompareDir, [] { return new StandInFolderViewer; });
    QDir().mkpath(at("A"));
    QDir().mkpath(at("B"));
    ASSERT_TRUE(ParseCommandLine({"-D", "-C", "-B", "-M", at("A"), "-S", at("B"), "-T", at("f.txt"), "-O", "-R2",
                                  "-L", at("run.log")}));
    gbClVerbose = false;
    const bool ran = CompareFoldersFromCommandLine(*frame);
    frmMainMDI::RegisterViewerKind(frmMainMDI::ViewerKind::CompareDir, [] { return new frmCompareDir; });
    EXPECT_TRUE(ran);
    EXPECT_EQ(glExitStatus, 7);
    EXPECT_EQ(StandInFolderViewer::calls, QStringList({"folders " + at("A") + " " + at("B"), "options 1 1", "gui",
                                                       "page", "start", "report " + at("f.txt")}));
    // The folder report opens in the text viewer whatever -R says.
    EXPECT_EQ(launched.requests, QStringList({"text:" + at("f.txt")}));
    EXPECT_EQ(readFile(dir.file("run.log")),
              "Successfully Compared " + dir.file("A") + " to " + dir.file("B") + "\n");
}

} // namespace

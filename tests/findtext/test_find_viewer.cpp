// The find viewer over a search whose hits and progress the test sets, so
// that the order of ticks, hits and errors is certain.

#include "findtext/FindHitsModel.h"
#include "findtext/frmFindTextInFiles.h"

#include "core/modGlobal.h"
#include "settings/IniStore.h"
#include "support/qstring_print.h"
#include "support/recordingdialogs.h"
#include "support/recordinglauncher.h"
#include "support/testsupport.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QTableWidget>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

#include <vector>

namespace {

class StandInSession : public FindTextSession {
public:
    FindTextOptions Options() const override { return options; }
    void SetOptions(const FindTextOptions& o) override { options = o; }
    void StartSearch() override
    {
        ++starts;
        inProgress = true;
        emit searchStarted();
    }
    void AbortSearch() override
    {
        ++aborts;
        inProgress = false;
    }
    bool InProgress() const override { return inProgress; }
    qint32 HitCount() const override { return qint32(hits.size()); }
    bool GetHit(qint32 i, FindHit& hit) const override
    {
        if (i < 0 || i >= qint32(hits.size()))
            return false;
        hit = hits[size_t(i)];
        return true;
    }
    bool WriteReport(const QString& path) const override
    {
        tvtest::writeFile(path.toStdString(), "report\n");
        return true;
    }

    void addHits(int n, const QString& file = "/tmp/a.txt")
    {
        for (int i = 0; i < n; ++i)
            hits.push_back(FindHit{file, qint32(hits.size() + 1), 1, QString("hit %1").arg(hits.size())});
    }

    FindTextOptions options;
    std::vector<FindHit> hits;
    bool inProgress = false;
    int starts = 0;
    int aborts = 0;
};

class FindViewerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        savedIni_ = gsIniFile;
        gsIniFile = dir.qpath() + "/Tallyvane.INI";
    }
    void TearDown() override { gsIniFile = savedIni_; }

    // A viewer over a stand-in search, set up as the frame sets one up.
    frmFindTextInFiles& viewer(const QString& description = "1_FindText")
    {
        auto* s = new StandInSession;
        s->options.bLookInSubfolders = true;
        forms.push_back(std::make_unique<frmFindTextInFiles>(nullptr, s));
        sessions.push_back(s);
        forms.back()->setManualTicks(true);
        forms.back()->Setup(description, true);
        return *forms.back();
    }
    StandInSession& session(int i = 0) { return *sessions[size_t(i)]; }

    tvtest::TempDir dir;
    tvtest::RecordingDialogs dialogs;
    std::vector<std::unique_ptr<frmFindTextInFiles>> forms;
    std::vector<StandInSession*> sessions;

private:
    QString savedIni_;
};

TEST_F(FindViewerTest, ErrorsBecomeRowsAndTheGridOpensOnceAtTheFirst)
{
    auto& v = viewer();
    v.cbSearchFor->setEditText("");
    v.cbDirectory->setEditText("");
    v.cbFileExt->setEditText("");
    v.SetupAndBeginSearch();
    EXPECT_EQ(v.cbFileExt->currentText(), "*.*") << "an empty file type becomes every file";
    v.cbFileExt->setEditText("");
    EXPECT_FALSE(v.ErrorGridOpen());

    emit session().searchError(507, "Not a valid pattern:");
    EXPECT_TRUE(v.ErrorGridOpen());
    EXPECT_EQ(v.PanelText(3), "Scan Aborted");
    EXPECT_EQ(session().aborts, 1) << "the refused search is stopped before its row is made";
    emit session().searchError(508, "The folder does not exist:");
    emit session().searchError(509, "No file types:");
    v.cbSearchFor->setEditText("a(b");
    v.cbDirectory->setEditText("/no/such");
    v.cbFileExt->setEditText("*.txt");
    emit session().searchError(507, "Not a valid pattern:");
    emit session().searchError(508, "The folder does not exist: /no/such");
    emit session().searchError(509, "No file types:");
    emit session().searchError(511, "Cannot read /x/locked.txt");
    EXPECT_EQ(v.ErrorRows(), QStringList({
        "Error: Search string is empty, change 'What To Find' entry",
        "Error: Folder not specified. Change 'Folder' entry",
        "Error: File Type not specified. Change 'File Types' entry. i.e. '*.DOC'",
        "Error: Not a valid pattern: a(b",
        "Error: The folder does not exist: /no/such",
        "Error: No file types: *.txt",
        "Error: Cannot read /x/locked.txt",
    }));
    EXPECT_EQ(v.ErrorGridOpenings(), 1);
    EXPECT_EQ(session().aborts, 6) << "only the three refusals stop the search";
    EXPECT_EQ(v.fgErrorMessages->item(6, 0)->text(), "7");

    // A new search closes the grid; its first error opens it again where the
    // user left it.
    const double open = v.DividerPrimaryRatio();
    v.SetupAndBeginSearch();
    EXPECT_FALSE(v.ErrorGridOpen());
    EXPECT_TRUE(v.ErrorRows().isEmpty());
    emit session().searchError(512, "Cannot read the text of /x/bad.docx");
    EXPECT_DOUBLE_EQ(v.DividerPrimaryRatio(), open);
    EXPECT_EQ(v.fgErrorMessages->item(0, 0)->text(), "1");
}

TEST_F(FindViewerTest, StreamingMovesAHundredHitsATickAndTheRestAtTheEnd)
{
    auto& v = viewer();
    qint64 now = 1000;
    v.setTickSource([&] { return now; });
    v.cbSearchFor->setEditText("hit");
    v.SetupAndBeginSearch();
    EXPECT_EQ(v.PanelText(5), "...");
    EXPECT_EQ(v.PanelText(3), "Search In Process...");
    EXPECT_TRUE(v.IsBusy());
    session().addHits(250);
    v.Timer1_Timer();
    EXPECT_EQ(v.Hits().Count(), 100);
    v.Timer1_Timer();
    EXPECT_EQ(v.Hits().Count(), 200);
    EXPECT_EQ(v.PanelText(2), "200");
    session().addHits(10);
    session().inProgress = false;
    now = 13345;
    v.Timer1_Timer();
    EXPECT_EQ(v.Hits().Count(), 260);
    EXPECT_EQ(v.PanelText(2), "260");
    EXPECT_EQ(v.PanelText(3), "Scan Completed");
    EXPECT_EQ(v.PanelText(5), "12.3 (Sec)");
    EXPECT_FALSE(v.IsBusy());
    EXPECT_EQ(v.Hits().CellText(259, FindHitsModel::ColNumber), "260");
    EXPECT_EQ(v.Hits().CellText(259, FindHitsModel::ColItem), "hit 259");

    // Shown all at the end: nothing until the last tick, then every hit.
    v.cbDontStreamResults->setChecked(true);
    session().hits.clear();
    now = 0;
    v.SetupAndBeginSearch();
    session().addHits(250);
    for (int tick = 0; tick < 20; ++tick)
        v.Timer1_Timer();
    EXPECT_EQ(v.Hits().Count(), 0);
    session().inProgress = false;
    now = 2000;
    v.Timer1_Timer();
    EXPECT_EQ(v.Hits().Count(), 250);
    EXPECT_EQ(v.PanelText(5), "2.0 (Sec)") << "one decimal always";
}

TEST_F(FindViewerTest, EscapeAbortsARunningSearchAndLeavesUnreadHitsOut)
{
    auto& v = viewer();
    v.show();
    v.cbSearchFor->setEditText("hit");
    v.SetupAndBeginSearch();
    session().addHits(150);
    v.Timer1_Timer();
    QTest::keyClick(&v, Qt::Key_Escape);
    EXPECT_EQ(session().aborts, 1);
    EXPECT_EQ(v.PanelText(3), "Scan Aborted");
    EXPECT_FALSE(v.IsBusy());
    EXPECT_EQ(v.Hits().Count(), 100);
    // Escape with nothing running stops nothing.
    QTest::keyClick(&v, Qt::Key_Escape);
    EXPECT_EQ(session().aborts, 1);
}

TEST_F(FindViewerTest, HitViewerShowsTheLinesAroundTheHitAndMarksIt)
{
    std::string text;
    for (int i = 1; i <= 1200; ++i)
        text += "line " + std::to_string(i) + (i == 1000 ? "\t\"q\"" : "") + "\r\n";
    const std::string file = dir.file("long.txt");
    tvtest::writeFile(file, text);
    auto& v = viewer();
    v.resize(900, 700);
    v.show();
    for (int line : {2, 50, 1000})
        session().hits.push_back(FindHit{QString::fromStdString(file), line, 1, "line"});

    struct Case {
        int hit, rows, first, marked, top;
    };
    for (const Case c : {Case{0, 101, 1, 1, 0}, Case{1, 149, 1, 49, 46}, Case{2, 199, 901, 99, 96}}) {
        SCOPED_TRACE(c.hit);
        v.ShowHit(c.hit);
        const QStringList rows = v.FileWithHitRows();
        ASSERT_EQ(rows.size(), c.rows);
        EXPECT_EQ(rows.first(), QString("\"line %1\"").arg(c.first));
        EXPECT_EQ(v.FileWithHitMarkedRow(), c.marked);
        EXPECT_EQ(v.FileWithHitTopRow(), c.top);
        EXPECT_TRUE(v.fgFileWithHit->item(c.marked, 0)->font().bold());
    }
    EXPECT_EQ(v.FileWithHitRows()[99], "\"line 1000\" &   \"\"\"q\"\"\"");
    EXPECT_TRUE(v.windowTitle().startsWith("FILE: " + QString::fromStdString(file) + " LINE: 1000 COL: 1"));
    EXPECT_TRUE(dialogs.boxes.isEmpty());

    // No hit, no change; a file that has gone says so.
    v.ShowHit(-1);
    v.ShowHit(7);
    EXPECT_EQ(v.FileWithHitRows().size(), 199);
    session().hits.push_back(FindHit{dir.qpath() + "/gone.txt", 3, 1, "x"});
    v.ShowHit(3);
    ASSERT_EQ(dialogs.boxes.size(), 1);
    EXPECT_TRUE(dialogs.boxes[0].contains("gone.txt  Not Found or can't open!"));
}

TEST_F(FindViewerTest, AOneLineFileOfManyMegabytesIsShownCut)
{
    const std::string file = dir.file("one-line.txt");
    tvtest::writeFile(file, std::string(3 << 20, 'x') + "needle");
    auto& v = viewer();
    session().hits.push_back(FindHit{QString::fromStdString(file), 1, 3145729, "needle"});
    v.ShowHit(0);
    const QStringList rows = v.FileWithHitRows();
    ASSERT_EQ(rows.size(), 1);
    EXPECT_LT(rows[0].size(), 20000);
    EXPECT_TRUE(rows[0].endsWith("...\""));
}

TEST_F(FindViewerTest, RecentListsAreSharedByEveryFindViewer)
{
    auto& a = viewer("1_FindText");
    for (const char* text : {"alpha", "beta", "alpha"}) {
        a.cbSearchFor->setEditText(text);
        a.cbDirectory->setEditText(dir.qpath());
        a.cbFileExt->setEditText("*.txt");
        a.SetupAndBeginSearch();
    }
    auto& b = viewer("2_FindText");
    ASSERT_EQ(b.cbSearchFor->count(), 2);
    EXPECT_EQ(b.cbSearchFor->itemText(0), "alpha") << "the newest first";
    EXPECT_EQ(b.cbSearchFor->itemText(1), "beta");
    EXPECT_EQ(b.cbSearchFor->currentText(), "alpha");
    EXPECT_EQ(b.cbDirectory->currentText(), dir.qpath());
    EXPECT_EQ(b.cbFileExt->currentText(), "*.txt");
    // The second viewer's search reaches the lists a third one reads.
    b.cbSearchFor->setEditText("gamma");
    b.SetupAndBeginSearch();
    EXPECT_EQ(viewer("3_FindText").cbSearchFor->itemText(0), "gamma");
}

TEST_F(FindViewerTest, SettingsComeBackFromTheViewersSection)
{
    IniWriteString(gsIniFile, "1_FindText", "dDividerSecondaryRatio", "0.3");
    IniWriteString(gsIniFile, "1_FindText", "dDividerPrimaryRatioLast", "0.6");
    {
        auto& a = viewer();
        a.cbDontStreamResults->setChecked(true);
        a.cbBeepWhenDone->setChecked(true);
        a.txtDefaultReportCSV->setText(dir.qpath() + "/hits.CSV");
        a.fgFiles->setColumnWidth(1, 200);
        QFont f("DejaVu Sans Mono");
        f.setPointSize(11);
        f.setItalic(true);
        a.fgFiles->setFont(f);
        a.SaveIniFile();
    }
    auto& b = viewer();
    EXPECT_TRUE(b.cbDontStreamResults->isChecked());
    EXPECT_TRUE(b.cbBeepWhenDone->isChecked());
    EXPECT_EQ(b.txtDefaultReportCSV->text(), dir.qpath() + "/hits.CSV");
    EXPECT_EQ(b.fgFiles->columnWidth(1), 200);
    EXPECT_EQ(b.fgFileWithHit->font().pointSize(), 11);
    EXPECT_TRUE(b.fgErrorMessages->font().italic());
    EXPECT_DOUBLE_EQ(b.DividerSecondaryRatio(), 0.3);
    emit session(1).searchError(511, "x");
    EXPECT_DOUBLE_EQ(b.DividerPrimaryRatio(), 0.6);
    EXPECT_EQ(IniReadString(gsIniFile, "1_FindText", "cbBeepWhenDone", "?"), "TRUE");

    // Only "FALSE" clears the streaming box; only "TRUE" sets the beep.
    IniWriteString(gsIniFile, "2_FindText", "cbDontStreamResults", "no");
    IniWriteString(gsIniFile, "2_FindText", "cbBeepWhenDone", "yes");
    auto& c = viewer("2_FindText");
    EXPECT_TRUE(c.cbDontStreamResults->isChecked());
    EXPECT_FALSE(c.cbBeepWhenDone->isChecked());
}

TEST_F(FindViewerTest, ThePickerPutsEachSymbolIntoTheSearchText)
{
    auto& v = viewer();
    v.show();
    const QStringList expected{"ab?", "ab*", "ab[]", "^ab", "ab$", "ab\\"};
    for (int row = 0; row < 6; ++row) {
        v.cbRegularExpression->setChecked(false);
        v.cbSearchFor->setEditText("ab");
        v.cmdRegularExpression_Click();
        EXPECT_TRUE(v.lbRegular->isVisible());
        v.lbRegular_Click(row);
        EXPECT_EQ(v.cbSearchFor->currentText(), expected[row]);
        EXPECT_TRUE(v.cbRegularExpression->isChecked());
        EXPECT_FALSE(v.lbRegular->isVisible());
        EXPECT_EQ(v.cbSearchFor->lineEdit()->cursorPosition(), expected[row].size());
    }
    EXPECT_TRUE(session().options.bRegularExpression) << "the box's state reaches the search at once";
}

TEST_F(FindViewerTest, TheReportIsWrittenAndShownInTheTextViewer)
{
    tvtest::RecordingLauncher launcher;
    auto& v = viewer();
    v.txtDefaultReportCSV->setText(dir.qpath() + "/r.CSV");
    v.mnuReportTabDelimitedFile_Click();
    EXPECT_EQ(launcher.requests, QStringList({"text:" + dir.qpath() + "/r.CSV"}));
    EXPECT_EQ(tvtest::readFile(dir.file("r.CSV")), "report\n");
}

} // namespace

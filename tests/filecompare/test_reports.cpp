// Reports from the viewer: the Report Options page and its INI keys, the
// result codes of CreateReport with their messages, and the View Report
// command with its titles and launch.

#include "filecompare/viewer_fixture.h"
#include "settings/IniStore.h"
#include "support/recordinglauncher.h"

#include <QAction>
#include <QGroupBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QTabWidget>
#include <QToolButton>

using tvtest::readFile;
using tvtest::ViewerTest;

namespace {

class ReportTest : public ViewerTest {
protected:
    void comparePair()
    {
        original = textFile("original.txt", {"alpha", "beta", "gamma"});
        modified = textFile("modified.txt", {"alpha", "BETA", "gamma", "delta"});
        compare(original, modified);
    }
    std::string report(const QString& name) { return readFile((dir.qpath() + "/" + name).toStdString()); }
    QString original, modified;
    tvtest::RecordingLauncher launched;
};

TEST_F(ReportTest, SettingsComeFromTheViewersSectionAndUnknownChoicesAreIgnored)
{
    const QString s = "1_CompareFile";
    IniWriteString(gsIniFile, s, "msgReportFileHTM_TV", "/reports/r.htm");
    IniWriteString(gsIniFile, s, "msgReportTitleHTM_TV", "Contract review");
    IniWriteString(gsIniFile, s, "txtReportMasterTitleHTML", "Draft");
    IniWriteString(gsIniFile, s, "mlReportDefaultFileType_TV", "3");
    IniWriteString(gsIniFile, s, "mlReportDefaultStyle_TV", "2");
    viewer->ReadReportSettings();
    EXPECT_EQ(ui<QLineEdit>("txtDefaultReportHTM")->text(), "/reports/r.htm");
    EXPECT_EQ(ui<QLineEdit>("txtReportTitleHTML")->text(), "Contract review");
    EXPECT_EQ(ui<QLineEdit>("txtReportMasterTitleHTML")->text(), "Draft");
    EXPECT_EQ(viewer->SelectedReportFormat(), frmCompareFiles::kReportCSV);
    EXPECT_EQ(viewer->SelectedReportStyle(), frmCompareFiles::kStyleSideBySide);

    for (const char* bad : {"4", "0", "x"}) {
        IniWriteString(gsIniFile, s, "mlReportDefaultFileType_TV", bad);
        IniWriteString(gsIniFile, s, "mlReportDefaultStyle_TV", bad);
        viewer->ReadReportSettings();
        EXPECT_EQ(viewer->SelectedReportFormat(), frmCompareFiles::kReportCSV) << bad;
        EXPECT_EQ(viewer->SelectedReportStyle(), frmCompareFiles::kStyleSideBySide) << bad;
    }

    ui<QRadioButton>("rbDefaultReport_2")->setChecked(true);
    ui<QRadioButton>("rbDefaultReportStyle_1")->setChecked(true);
    ui<QLineEdit>("txtDefaultReportTXT")->setText("/elsewhere/r.txt");
    viewer->SaveIniFile();
    EXPECT_EQ(IniReadString(gsIniFile, s, "mlReportDefaultFileType_TV", ""), "2");
    EXPECT_EQ(IniReadString(gsIniFile, s, "mlReportDefaultStyle_TV", ""), "1");
    EXPECT_EQ(IniReadString(gsIniFile, s, "msgReportFileTXT_TV", ""), "/elsewhere/r.txt");
    EXPECT_EQ(IniReadString(gsIniFile, s, "msgReportTitleHTM_TV", ""), "Contract review");
}

TEST_F(ReportTest, TheReportComparesTheEditorsAsTheyAreNow)
{
    comparePair();
    box(frmCompareFiles::kModified)->setText("alpha\nbeta\ngamma\nedited in the viewer");
    ASSERT_TRUE(viewer->CreateReport(dir.qpath() + "/r.txt", 2, 0));
    const std::string text = report("r.txt");
    EXPECT_NE(text.find("+edited in the viewer"), std::string::npos) << text;
    EXPECT_EQ(text.find("BETA"), std::string::npos) << text;
}

TEST_F(ReportTest, FailuresShowTheirMessageUnderOneTitle)
{
    comparePair();
    const QString missing = dir.qpath() + "/no such folder/r.htm";
    EXPECT_FALSE(viewer->CreateReport(missing, 1, 1));
    EXPECT_FALSE(viewer->CreateReport(QString(), 1, 1));
    EXPECT_FALSE(viewer->CreateReport(dir.qpath() + "/r.htm", 7, 0)) << "an unknown type has no message";
    const QString tail = "\r\n\r\nCheck to make sure path exists in the 'Report Options' tab";
    EXPECT_EQ(dialogs.boxes, QStringList({"Report Creation Error | Unable to create target file: " + missing + tail,
                                          "Report Creation Error | Unable to create target file: " + tail}));
    EXPECT_FALSE(QFile::exists(dir.qpath() + "/no such folder")) << "the folder is never made";

    // The engine's own files cannot be written: the side that failed is
    // named, and no report is made of what an earlier compare left there.
    dialogs.boxes.clear();
    const QString savedMaster = gsMasterTextFile;
    gsMasterTextFile = dir.qpath() + "/gone/master.txt";
    EXPECT_FALSE(viewer->CreateReport(dir.qpath() + "/r.htm", 1, 1));
    gsMasterTextFile = savedMaster;
    const QString savedSource = gsSourceTextFile;
    gsSourceTextFile = dir.qpath() + "/gone/source.txt";
    EXPECT_FALSE(viewer->CreateReport(dir.qpath() + "/r.htm", 1, 1));
    gsSourceTextFile = savedSource;
    EXPECT_EQ(dialogs.boxes,
              QStringList({"Report Creation Error | Unable to write the Original's text for comparison: "
                               + dir.qpath() + "/gone/master.txt",
                           "Report Creation Error | Unable to write the Modified's text for comparison: "
                               + dir.qpath() + "/gone/source.txt"}));
    EXPECT_FALSE(QFile::exists(dir.qpath() + "/r.htm"));
}

// A report is something a user applies or files away: it holds the lines of
// the two documents and not one more, whether or not they end in a line end,
// just as the engine reports on the files themselves.
TEST_F(ReportTest, ReportsHoldNoLineThatIsInNeitherDocument)
{
    struct Pair {
        const char* original;
        const char* modified;
    };
    for (const Pair& p : {Pair{"a\nb\n", "a\nb\nc\n"}, Pair{"a\n\n", "a\n\nb\n"}}) {
        SCOPED_TRACE(p.modified);
        const QString o = dir.qpath() + "/o.txt", m = dir.qpath() + "/m.txt";
        tvtest::writeFile(o.toStdString(), p.original);
        tvtest::writeFile(m.toStdString(), p.modified);
        compare(o, m);
        ASSERT_TRUE(viewer->CreateReport(dir.qpath() + "/r.txt", 2, 0));

        Skeinmatch direct;
        direct.setMasterFile(o.toStdString());
        direct.setSourceFile(m.toStdString());
        ASSERT_EQ(direct.CreateFileReport((dir.qpath() + "/direct.txt").toStdString(), 2, 0), 0);
        const std::string text = report("r.txt"), expected = report("direct.txt");
        ASSERT_NE(expected.find("@@"), std::string::npos);
        ASSERT_NE(text.find("@@"), std::string::npos) << text;
        EXPECT_EQ(text.substr(text.find("@@")), expected.substr(expected.find("@@")));
        int k = 0, lf = 0, ll = 0, rf = 0, rl = 0;
        ASSERT_TRUE(direct.GetDifference(0, k, lf, ll, rf, rl));
        EXPECT_EQ(records(), QStringList({QString("a %1 %2 %3 %4").arg(lf).arg(ll).arg(rf).arg(rl)}));
    }
}

TEST_F(ReportTest, ViewReportWritesTheChosenReportAndOpensIt)
{
    comparePair();
    ui<QLineEdit>("txtDefaultReportHTM")->setText(dir.qpath() + "/default.htm");
    ui<QLineEdit>("txtDefaultReportTXT")->setText(dir.qpath() + "/default.txt");
    ui<QLineEdit>("txtDefaultReportCSV")->setText(dir.qpath() + "/default.csv");
    panel3.clear();
    viewer->cmdViewReport_Click();
    EXPECT_EQ(launched.requests, QStringList({"document:" + dir.qpath() + "/default.htm"}));
    EXPECT_EQ(panel3.first(), "Creating Report");
    EXPECT_TRUE(panel3.contains("Launching Report"));
    EXPECT_EQ(viewer->PanelText(3), "Ready");
    // Blank title boxes: the side titles are the two paths.
    std::string html = report("default.htm");
    EXPECT_NE(html.find(original.toStdString()), std::string::npos);
    EXPECT_NE(html.find(modified.toStdString()), std::string::npos);

    ui<QLineEdit>("txtReportTitleHTML")->setText("Review <draft>");
    ui<QLineEdit>("txtReportMasterTitleHTML")->setText("Last week");
    ui<QRadioButton>("rbDefaultReportStyle_2")->setChecked(true);
    viewer->cmdViewReport_Click();
    html = report("default.htm");
    EXPECT_NE(html.find("Review &lt;draft&gt;"), std::string::npos);
    EXPECT_NE(html.find("Last week"), std::string::npos);
    EXPECT_NE(html.find(modified.toStdString()), std::string::npos);
    EXPECT_EQ(html.find(original.toStdString()), std::string::npos);

    // Text and comma delimited reports always carry the paths, and open in
    // the text viewer.
    launched.requests.clear();
    ui<QRadioButton>("rbDefaultReport_2")->setChecked(true);
    viewer->findChild<QAction*>("mnuReport")->trigger();
    ui<QRadioButton>("rbDefaultReport_3")->setChecked(true);
    ui<QAction>("tbViewReport")->trigger();
    EXPECT_EQ(launched.requests, QStringList({"text:" + dir.qpath() + "/default.txt",
                                              "text:" + dir.qpath() + "/default.csv"}));
    EXPECT_NE(report("default.txt").find(original.toStdString()), std::string::npos);
    EXPECT_EQ(report("default.txt").find("Last week"), std::string::npos);
    EXPECT_NE(report("default.csv").find(original.toStdString()), std::string::npos);
}

TEST_F(ReportTest, AFailedReportIsStillLaunched)
{
    comparePair();
    const QString missing = dir.qpath() + "/missing/default.htm";
    ui<QLineEdit>("txtDefaultReportHTM")->setText(missing);
    viewer->cmdViewReport_Click();
    ASSERT_EQ(dialogs.boxes.size(), 1);
    EXPECT_TRUE(dialogs.boxes[0].startsWith("Report Creation Error | Unable to create target file: " + missing));
    EXPECT_EQ(launched.requests, QStringList({"document:" + missing}));
}

} // namespace

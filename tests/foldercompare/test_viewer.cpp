// The viewer over the real engine and real trees: a finished run, the
// drill-down into a file viewer, launch, the report, swap, what the viewer
// keeps in its INI section, and trees that fight back (a symlink loop, an
// unreadable folder) without anything being written into them.

#include "folder_fixture.h"

#include "settings/IniStore.h"
#include "shell/frmMainMDI.h"
#include "support/unprivileged.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCryptographicHash>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QTableView>
#include <QTest>
#include <QDateTime>

#include <unistd.h>

namespace {

using tvtest::FolderViewerTest;
using tvtest::writeFile;

class RealTrees : public FolderViewerTest {
protected:
    void SetUp() override
    {
        FolderViewerTest::SetUp();
        QDir().mkpath(at("A/sub"));
        QDir().mkpath(at("B/sub"));
        QDir().mkpath(at("A/oldonly"));
        writeFile(dir.file("A/same.txt"), "same\n");
        writeFile(dir.file("B/same.txt"), "same\n");
        writeFile(dir.file("A/changed.txt"), "one\ntwo\n");
        writeFile(dir.file("B/changed.txt"), "one\nTWO\n");
        writeFile(dir.file("A/gone.txt"), "x\n");
        writeFile(dir.file("B/new.txt"), "y\n");
        writeFile(dir.file("A/sub/deep.txt"), "a\n");
        writeFile(dir.file("B/sub/deep.txt"), "bb\n");
        const QDateTime t = QFile(at("A/same.txt")).fileTime(QFileDevice::FileModificationTime);
        for (const char* f : {"same.txt", "changed.txt", "sub/deep.txt"}) {
            QFile a(at(QStringLiteral("A/") + f)), b(at(QStringLiteral("B/") + f));
            a.open(QIODevice::ReadWrite);
            b.open(QIODevice::ReadWrite);
            a.setFileTime(t, QFileDevice::FileModificationTime);
            b.setFileTime(t, QFileDevice::FileModificationTime);
        }
    }
    // Every path under the test's two trees with its bytes' hash and time.
    QStringList snapshot() const
    {
        QStringList all;
        for (const char* root : {"A", "B"}) {
            QDirIterator it(at(root), QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                            QDirIterator::Subdirectories);
            while (it.hasNext()) {
                const QString p = it.next();
                const QFileInfo fi(p);
                QString line = p + ' ' + fi.lastModified().toString(Qt::ISODateWithMs);
                QFile f(p);
                if (fi.isFile() && !fi.isSymLink() && f.open(QIODevice::ReadOnly))
                    line += ' ' + QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha1).toHex();
                all << line;
            }
        }
        all.sort();
        return all;
    }
    // The grid's first two columns of every row, trimmed and joined by "|".
    QStringList shown() const
    {
        QStringList list;
        const auto& g = viewer->Grid();
        for (int r = 0; r < g.rowCount(); ++r)
            list << g.data(g.index(r, 0)).toString().trimmed() + "|" + g.data(g.index(r, 1)).toString().trimmed() + "|"
                    + g.data(g.index(r, 2)).toString().trimmed();
        return list;
    }
};

TEST_F(RealTrees, AFinishedRunShowsEveryFindingAndTouchesNoTree)
{
    makeReal();
    const QStringList before = snapshot();
    runToEnd();
    const QStringList list = shown();
    EXPECT_TRUE(list.contains("changed.txt|changed.txt|CHANGED")) << list.join('\n').toStdString();
    EXPECT_TRUE(list.contains("same.txt|same.txt|")) << list.join('\n').toStdString();
    EXPECT_TRUE(list.contains("gone.txt||")) << list.join('\n').toStdString();
    EXPECT_TRUE(list.contains("|new.txt|")) << list.join('\n').toStdString();
    EXPECT_TRUE(list.contains("deep.txt|deep.txt|CHANGED")) << list.join('\n').toStdString();
    EXPECT_TRUE(list.contains(at("A/oldonly/") + "||")) << list.join('\n').toStdString();
    EXPECT_EQ(viewer->PanelText(3), "Compare Completed");
    EXPECT_EQ(rows(), viewer->RecordCount());
    EXPECT_EQ(snapshot(), before);
    EXPECT_EQ(viewer->windowTitle(), "(1) " + at("A") + " vs. " + at("B"));
}

TEST_F(RealTrees, ALoopingLinkAndAnUnreadableFolderGiveRowsAndTheWalkGoesOn)
{
    ASSERT_EQ(symlink("..", dir.file("B/sub/loop").c_str()), 0);
    ASSERT_EQ(symlink("..", dir.file("A/sub/loop").c_str()), 0);
    QDir().mkpath(at("A/locked"));
    QDir().mkpath(at("B/locked"));
    writeFile(dir.file("A/locked/in.txt"), "1\n");
    writeFile(dir.file("B/locked/in.txt"), "2\n");
    makeReal();
    const QStringList before = snapshot();
    const bool locks = tvtest::permissionsApply();
    if (locks)
        QFile::setPermissions(at("B/locked"), QFileDevice::Permissions());
    runToEnd();
    if (locks)
        QFile::setPermissions(at("B/locked"), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    const QStringList list = shown();
    EXPECT_TRUE(list.contains("loop|loop|")) << "a link is compared as what it points to, never followed";
    EXPECT_TRUE(list.contains("deep.txt|deep.txt|CHANGED")) << list.join('\n').toStdString();
    if (locks) {
        EXPECT_TRUE(list.contains(at("A/locked/") + "|" + at("B/locked/") + "|ERR: File")) << list.join('\n').toStdString();
        EXPECT_EQ(viewer->ErrorMessages().size(), 2) << viewer->ErrorMessages().join('\n').toStdString();
    }
    EXPECT_EQ(snapshot(), before);
}

TEST_F(RealTrees, ARowOpensInAFileViewerAndOnlyExistingFilesDo)
{
    frmMainMDI frame;
    frame.Form_Load();
    auto* v = qobject_cast<frmCompareDir*>(frame.CreateNewCompareFoldersForm());
    ASSERT_TRUE(v);
    v->SetBatchFolders(at("A"), at("B"));
    v->RefreshDiffViewer();
    waitForRun(v);
    auto find = [v](const QString& start) {
        const auto& g = v->Grid();
        for (int r = 0; r < g.rowCount(); ++r)
            if (g.data(g.index(r, 0)).toString().trimmed().startsWith(start)
                || g.data(g.index(r, 1)).toString().trimmed().startsWith(start))
                return r;
        return -1;
    };
    auto fileViewers = [&frame] {
        QStringList d;
        for (ViewerForm* f : frame.LoadedForms())
            if (f->sDescription.endsWith("_CompareFile"))
                d << f->sDescription;
        return d;
    };
    const QStringList viewersBefore = fileViewers();

    // Enter on the grid is a double click.
    v->SelectCell(find("changed.txt"), 0);
    QTest::keyClick(v->findChild<QTableView*>("fgFiles"), Qt::Key_Return);
    ASSERT_EQ(fileViewers().size(), std::max<qsizetype>(1, viewersBefore.size()));
    ViewerForm* fileViewer = nullptr;
    for (ViewerForm* f : frame.LoadedForms())
        if (f->sDescription == "1_CompareFile")
            fileViewer = f;
    ASSERT_TRUE(fileViewer);
    EXPECT_EQ(fileViewer->findChild<QComboBox*>("cbSelectOriginal")->currentText(), at("A/changed.txt"));
    EXPECT_EQ(fileViewer->findChild<QComboBox*>("cbSelectModified")->currentText(), at("B/changed.txt"));
    EXPECT_FALSE(fileViewer->IsBusy()) << "the comparison has finished";

    v->SelectCell(find("deep.txt"), 0);
    v->CompareSelectedFiles(true);
    EXPECT_EQ(fileViewers().size(), std::max<qsizetype>(1, viewersBefore.size()) + 1);

    // A file of one side, and a folder row, answer with the missing path.
    v->SelectCell(find("gone.txt"), 0);
    v->CompareSelectedFiles(false);
    v->SelectCell(find(at("A/sub/")), 0);
    v->CompareSelectedFiles(false);
    EXPECT_EQ(dialogs.boxes.join("\n").toStdString(), QStringList({"Error | File does not exist:\r\n\r\n" + at("B/gone.txt"),
                                          "Error | File does not exist:\r\n\r\n" + at("A/sub/sub")}).join("\n").toStdString());

    // Launch opens the file of the column last clicked.
    v->SelectCell(find("changed.txt"), 1);
    v->mnuPopupLaunch_Click();
    v->SelectCell(find(at("A/sub/")), 0);
    v->mnuPopupLaunch_Click();
    EXPECT_EQ(launched.requests, QStringList({"document:" + at("B/changed.txt")}));
}

TEST_F(RealTrees, TheReportIsWrittenAndShownAndSwapComparesTheOtherWay)
{
    IniWriteString(gsIniFile, "1_CompareDir", "txtDefaultReportCSV", at("report.tsv"));
    makeReal();
    runToEnd();
    viewer->mnuReportTabDelimitedFile_Click();
    EXPECT_EQ(launched.requests, QStringList({"text:" + at("report.tsv")}));
    const std::string report = tvtest::readFile(dir.file("report.tsv"));
    EXPECT_NE(report.find("changed.txt"), std::string::npos) << report;

    viewer->mnuSwap_Click();
    waitToEnd();
    EXPECT_TRUE(shown().contains("new.txt||")) << shown().join('\n').toStdString();
    EXPECT_EQ(viewer->windowTitle(), "(1) " + at("B") + " vs. " + at("A"));

    // A report that cannot be written says so and opens nothing.
    viewer->findChild<QLineEdit*>("txtDefaultReportCSV")->setText(at("no/such/folder/r.tsv"));
    viewer->mnuReportTabDelimitedFile_Click();
    EXPECT_EQ(launched.requests.size(), 1);
    ASSERT_EQ(dialogs.boxes.size(), 1);
    EXPECT_TRUE(dialogs.boxes[0].startsWith("Error | The report could not be written")) << dialogs.boxes[0].toStdString();
}

TEST_F(FolderViewerTest, TheViewersSectionComesBackAsItWasLeft)
{
    makeScripted();
    viewer->findChild<QCheckBox*>("cbCompareFileContents")->setChecked(false);
    viewer->findChild<QComboBox*>("cbFileExt")->setEditText("*.h *.c");
    viewer->mnuViewLegend_Click();
    viewer->findChild<QLineEdit*>("txtDefaultReportCSV")->setText(at("r.tsv"));
    frmCompareDir::FontChooser previous = frmCompareDir::setFontChooser([](QFont& f, QWidget*) {
        f = QFont("DejaVu Sans Mono", 11);
        f.setBold(true);
        return true;
    });
    viewer->Change_Font(true);
    frmCompareDir::setFontChooser(previous);
    start();
    script->inProgress = false;
    viewer->Timer1_Timer();
    viewer->findChild<QTableView*>("fgFiles")->setColumnWidth(0, 333);
    viewer->close();

    makeScripted();
    EXPECT_FALSE(viewer->findChild<QCheckBox*>("cbCompareFileContents")->isChecked());
    EXPECT_EQ(viewer->findChild<QComboBox*>("cbFileExt")->currentText(), "*.h *.c");
    EXPECT_EQ(viewer->findChild<QComboBox*>("cbSelectOriginal")->currentText(), at("A"));
    EXPECT_TRUE(viewer->findChild<QWidget*>("tbLegend")->isHidden());
    EXPECT_EQ(viewer->findChild<QLineEdit*>("txtDefaultReportCSV")->text(), at("r.tsv"));
    EXPECT_EQ(viewer->findChild<QTableView*>("fgFiles")->columnWidth(0), 333);
    EXPECT_TRUE(viewer->findChild<QTableView*>("fgFiles")->font().bold());
    EXPECT_EQ(viewer->findChild<QTableView*>("fgFiles")->font().pointSize(), 11);
}

} // namespace

// The frame window: viewers brought back from the INI counts, found by
// number, numbered by count, the counts written at the end (those of viewer
// kinds this build cannot make included), closing in the middle of a run,
// and the window routines.

#include "filecompare/frmCompareFiles.h"
#include "settings/IniStore.h"
#include "settings/clsMRU.h"
#include "core/modGlobal.h"
#include "shell/frmMainMDI.h"
#include "forms/modPickFile.h"
#include "forms/modUtilityForm.h"
#include "support/qstring_print.h"
#include "support/recordingdialogs.h"
#include "support/testsupport.h"

#include <QComboBox>
#include <QLabel>
#include <QSettings>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>

namespace {

class FrameTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        savedIni_ = gsIniFile;
        gsIniFile = dir.qpath() + "/Tallyvane.INI";
        QSettings("Tallyvane", "Tallyvane").clear();
    }
    void TearDown() override
    {
        frame.reset();
        gsIniFile = savedIni_;
    }
    void main(const char* key, const char* value) { IniWriteString(gsIniFile, "Main", key, value); }
    QString mainValue(const char* key) { return IniReadString(gsIniFile, "Main", key, "?"); }
    void load()
    {
        frame = std::make_unique<frmMainMDI>();
        frame->Form_Load();
        frame->show();
    }
    QStringList descriptions() const
    {
        QStringList out;
        for (ViewerForm* v : frame->LoadedForms())
            out << v->sDescription;
        return out;
    }
    void closeFrame()
    {
        frame->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    tvtest::TempDir dir;
    tvtest::RecordingDialogs dialogs;
    std::unique_ptr<frmMainMDI> frame;

private:
    QString savedIni_;
};

TEST_F(FrameTest, ViewersOfTheLastRunComeBackAndTheActiveOneGetsTheFocus)
{
    main("numCFForms", "3");
    main("ActiveForm", "2_CompareFile");
    IniWriteString(gsIniFile, "2_CompareFile", "bIgnoreCase", "TRUE");
    load();
    EXPECT_EQ(descriptions(), QStringList({"1_CompareFile", "2_CompareFile", "3_CompareFile"}));
    ViewerForm* active = frame->ActiveViewer();
    ASSERT_NE(active, nullptr);
    EXPECT_EQ(active->sDescription, "2_CompareFile");
    // Each viewer read its own section.
    auto* second = qobject_cast<frmCompareFiles*>(active);
    ASSERT_NE(second, nullptr);
    EXPECT_TRUE(second->Options().bIgnoreCase.Data());
    EXPECT_FALSE(qobject_cast<frmCompareFiles*>(frame->LoadedForms()[0])->Options().bIgnoreCase.Data());
}

TEST_F(FrameTest, ActiveFormNamingNoViewerLeavesTheLastOneActive)
{
    main("numCFForms", "2");
    main("ActiveForm", "7_CompareFile");
    load();
    EXPECT_EQ(frame->ActiveViewer()->sDescription, "2_CompareFile");
}

TEST_F(FrameTest, ZeroViewersGiveAnEmptyFrame)
{
    main("numCFForms", "0");
    load();
    EXPECT_TRUE(frame->LoadedForms().isEmpty());
    // The File menu's entry finds viewer 1, making it.
    IniWriteString(gsIniFile, "1_CompareFile", "bIgnoreEmptyLines", "TRUE");
    frame->mnuCompareFiles_Click();
    ASSERT_EQ(descriptions(), QStringList({"1_CompareFile"}));
    EXPECT_TRUE(qobject_cast<frmCompareFiles*>(frame->LoadedForms()[0])->Options().bIgnoreEmptyLines.Data());
    frame->mnuCompareFiles_Click();
    EXPECT_EQ(descriptions().size(), 1) << "found, not made again";
}

TEST_F(FrameTest, ViewersOfEveryKindComeBackAndTheirCountsAreWritten)
{
    main("numCFForms", "1");
    main("numCDForms", "2");
    main("numFTForms", "1");
    load();
    EXPECT_EQ(descriptions(), QStringList({"1_CompareFile", "1_CompareDir", "2_CompareDir", "1_FindText"}));
    EXPECT_EQ(frame->CreateNewCompareFoldersForm()->sDescription, "3_CompareDir");
    closeFrame();
    EXPECT_EQ(mainValue("numCDForms"), "3");
    EXPECT_EQ(mainValue("numFTForms"), "1");
}

TEST_F(FrameTest, NumbersComeFromACountAndTheLookupIsAContainmentTest)
{
    main("numCFForms", "2");
    load();
    // Closing viewer 1 of two: the next new viewer is again number 2.
    frame->LoadedForms()[0]->parentWidget()->close();
    frmCompareFiles* next = frame->CreateNewCompareFilesForm();
    EXPECT_EQ(next->sDescription, "2_CompareFile");
    EXPECT_FALSE(next->isMaximized());

    for (int i = 0; i < 9; ++i)
        frame->CreateNewCompareFilesForm();
    ASSERT_EQ(frame->LoadedForms().last()->sDescription, "11_CompareFile");
    // "1_CompareFile" is found in "11_CompareFile", and the newest wins.
    EXPECT_EQ(frame->frmGetCFNumber(1)->sDescription, "11_CompareFile");
    EXPECT_EQ(frame->frmGetCFNumber(3)->sDescription, "3_CompareFile");
}

TEST_F(FrameTest, ClosingSavesEachViewerAndTheCounts)
{
    main("numCFForms", "3");
    load();
    auto* second = qobject_cast<frmCompareFiles*>(frame->LoadedForms()[1]);
    second->Options().bIgnoreCase = true;
    frame->ActivateViewer(second);
    frame->LoadedForms()[2]->parentWidget()->close();
    closeFrame();
    EXPECT_TRUE(gbFrameClosing);
    EXPECT_EQ(mainValue("numCFForms"), "2");
    EXPECT_EQ(mainValue("ActiveForm"), "2_CompareFile");
    EXPECT_EQ(IniReadString(gsIniFile, "2_CompareFile", "bIgnoreCase", ""), "TRUE");
    gbFrameClosing = false;
}

TEST_F(FrameTest, ClosingDuringARunStopsTheRunFirst)
{
    load();
    auto* viewer = qobject_cast<frmCompareFiles*>(frame->LoadedForms()[0]);
    const QString a = dir.qpath() + "/a.txt", b = dir.qpath() + "/b.txt";
    tvtest::writeFile(a.toStdString(), "1\n2\n3\n4\n5\n6\n");
    tvtest::writeFile(b.toStdString(), "1\nx\n3\ny\n5\nz\n");
    ASSERT_TRUE(viewer->LoadOriginalFile(a));
    ASSERT_TRUE(viewer->LoadModifiedFile(b));
    bool asked = false;
    QObject::connect(viewer, &frmCompareFiles::panelTextChanged, viewer, [&](int panel, const QString& text) {
        if (panel == 3 && text.startsWith("Document ") && !asked) {
            asked = true;
            frame->close();
            EXPECT_TRUE(frame->isVisible()) << "the frame waits for the run";
        }
    });
    viewer->RefreshDisplay(false, true);
    EXPECT_TRUE(asked);
    EXPECT_EQ(viewer->PanelText(3), "Compare Aborted");
    QTest::qWait(100);
    EXPECT_FALSE(frame->isVisible());
    EXPECT_EQ(mainValue("numCFForms"), "1");
    gbFrameClosing = false;
}

// --- window routines ---------------------------------------------------------------------

TEST(FormPlacement, MaximisedKeepsTheNormalRectangleAndBadValuesChangeNothing)
{
    QSettings store("Tallyvane", "Tallyvane");
    store.clear();
    QWidget w;
    w.setObjectName("frmTestWindow");
    RestoreFormPlacement(&w);
    EXPECT_EQ(w.windowState() & Qt::WindowMaximized, Qt::WindowMaximized) << "a first start is maximised";

    QWidget normal;
    normal.setObjectName("frmTestWindow");
    normal.setGeometry(30, 45, 600, 450);
    SaveFormPlacement(&normal);
    store.sync();

    QWidget maximised;
    maximised.setObjectName("frmTestWindow");
    maximised.resize(100, 100);
    maximised.setWindowState(Qt::WindowMaximized);
    SaveFormPlacement(&maximised);
    store.sync();

    QWidget restored;
    restored.setObjectName("frmTestWindow");
    RestoreFormPlacement(&restored);
    EXPECT_EQ(restored.size(), QSize(600, 450));

    store.setValue("frmTestWindowSettings/Height", "tall");
    store.sync();
    QWidget untouched;
    untouched.setObjectName("frmTestWindow");
    untouched.resize(123, 77);
    RestoreFormPlacement(&untouched);
    EXPECT_EQ(untouched.size(), QSize(123, 77));
    EXPECT_FALSE(untouched.isMaximized());
}

TEST(FillComboFromMRU, NewestOnTopSelected)
{
    tvtest::TempDir dir;
    const QString ini = dir.qpath() + "/t.INI";
    clsMRU mru;
    mru.Setup(20, ini, "mruTest");
    QComboBox combo;
    combo.addItem("stale");
    FillComboFromMRU(&combo, mru);
    EXPECT_EQ(combo.count(), 0);
    mru.AddUniqueItemToCollection("/a");
    mru.AddUniqueItemToCollection("/b");
    mru.AddUniqueItemToCollection("/c");
    bool refreshingSeen = false;
    QObject::connect(&combo, &QComboBox::currentIndexChanged, &combo, [&] { refreshingSeen = gbRefreshingControls; });
    FillComboFromMRU(&combo, mru);
    EXPECT_EQ(combo.itemText(0), "/c");
    EXPECT_EQ(combo.itemText(2), "/a");
    EXPECT_EQ(combo.currentIndex(), 0);
    EXPECT_TRUE(refreshingSeen);
    EXPECT_FALSE(gbRefreshingControls);
}

TEST(Pickers, TheTitleDecidesSaveOrOpenAndFiltersMatchEitherCase)
{
    tvtest::RecordingDialogs dialogs;
    qint32 index = 3;
    dialogs.nextFile = "/tmp/x.rtf";
    dialogs.nextFilterIndex = 1;
    EXPECT_EQ(PickFile(nullptr, "Save ORIGINAL Editor As", "Rich Text Format(*.RTF)|*.RTF|All|*.*", index),
              "/tmp/x.rtf");
    ASSERT_EQ(dialogs.filePicks.size(), 1u);
    EXPECT_TRUE(dialogs.filePicks[0].save);
    EXPECT_EQ(dialogs.filePicks[0].filterIndex, 3);
    EXPECT_EQ(dialogs.filePicks[0].nameFilters,
              QStringList({"Rich Text Format(*.RTF) (*.RTF *.rtf)", "All (*)"}));
    EXPECT_EQ(index, 1);
    PickFile(nullptr, "Load File", "All|*.*", index);
    EXPECT_FALSE(dialogs.filePicks[1].save);

    QString startSeen;
    FolderPicker previous = setFolderPicker([&](QWidget*, const QString&, const QString& start) {
        startSeen = start;
        return QString("/chosen");
    });
    EXPECT_EQ(PickFolder(nullptr, "/home/user/"), "/chosen");
    EXPECT_EQ(startSeen, "/home/user");
    PickFolder(nullptr, "/");
    EXPECT_EQ(startSeen, "/");
    setFolderPicker(previous);
}

TEST_F(FrameTest, AFirstStartOpensOneViewerInAMaximisedFrame)
{
    load();
    // A maximised viewer's caption joins the frame's, as the desktop shows it.
    EXPECT_EQ(frame->windowTitle(), "'Tallyvane' - [(1) Compare Files]");
    EXPECT_EQ(descriptions(), QStringList({"1_CompareFile"}));
    EXPECT_TRUE(frame->isMaximized());
}

} // namespace

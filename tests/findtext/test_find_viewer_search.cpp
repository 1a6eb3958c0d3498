// The find viewer over the real search: events come from the engine's
// threads through the queued signals, office documents are shown through
// their extracted text, and bad files become rows while the search goes on.

#include "findtext/FindHitsModel.h"
#include "findtext/frmFindTextInFiles.h"

#include "core/modGlobal.h"
#include "support/qstring_print.h"
#include "support/recordingdialogs.h"
#include "support/testsupport.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace {

class FindViewerSearchTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        savedIni_ = gsIniFile;
        gsIniFile = dir.qpath() + "/Tallyvane.INI";
        tree = dir.qpath() + "/tree";
        QDir().mkpath(tree);
        form = std::make_unique<frmFindTextInFiles>();
        form->Setup("1_FindText", false);
    }
    void TearDown() override
    {
        form.reset();
        gsIniFile = savedIni_;
    }
    void copyFixture(const char* name)
    {
        ASSERT_TRUE(QFile::copy(tvtest::qDataPath(name), tree + "/" + name));
    }
    // Starts a search and lets events through until the viewer has followed
    // it to its end, or a refused search has left its error row.
    bool search(const QString& text, const QString& folder)
    {
        form->cbSearchFor->setEditText(text);
        form->cbDirectory->setEditText(folder);
        form->cbFileExt->setEditText("*.*");
        form->SetupAndBeginSearch();
        QDeadlineTimer deadline(60000);
        bool sawBusy = false;
        while (!deadline.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            sawBusy = sawBusy || form->IsBusy();
            if (!form->IsBusy() && (sawBusy || !form->ErrorRows().isEmpty()))
                break;
        }
        return !form->IsBusy();
    }

    tvtest::TempDir dir;
    tvtest::RecordingDialogs dialogs;
    QString tree;
    std::unique_ptr<frmFindTextInFiles> form;

private:
    QString savedIni_;
};

TEST_F(FindViewerSearchTest, EntriesTheSearchRefusesComeBackAsRows)
{
    ASSERT_TRUE(search("", tree));
    EXPECT_EQ(form->ErrorRows(), QStringList({"Error: Search string is empty, change 'What To Find' entry"}));
    EXPECT_EQ(form->PanelText(3), "Scan Aborted");
    ASSERT_TRUE(search("x", tree + "/missing"));
    ASSERT_EQ(form->ErrorRows().size(), 1);
    EXPECT_TRUE(form->ErrorRows()[0].contains("missing")) << form->ErrorRows()[0].toStdString();
}

TEST_F(FindViewerSearchTest, HitsInsideOfficeDocumentsAreShownInTheirText)
{
    copyFixture("letter-original.docx");
    copyFixture("letter-original.pdf");
    tvtest::writeFile((tree + "/broken.xlsx").toStdString(), "PK\x03\x04 not really a workbook");
    tvtest::writeFile((tree + "/binary.dat").toStdString(), std::string("Whitfield\0\x01\x02", 12));
    form->cbSupportOfficeDocs->setChecked(true);
    ASSERT_TRUE(search("Whitfield", tree));
    EXPECT_EQ(form->PanelText(3), "Scan Completed");

    const FindHitsModel& hits = form->Hits();
    ASSERT_EQ(hits.Count(), 2) << "one hit in each letter; the binary file is passed over";
    for (int row = 0; row < 2; ++row) {
        SCOPED_TRACE(hits.File(row).toStdString());
        form->ShowHit(row);
        const QStringList lines = form->FileWithHitRows();
        ASSERT_GT(form->FileWithHitMarkedRow(), -1);
        EXPECT_TRUE(lines[form->FileWithHitMarkedRow()].contains("Dear Ms Whitfield"));
    }
    EXPECT_TRUE(dialogs.boxes.isEmpty()) << dialogs.boxes.join('\n').toStdString();
    ASSERT_EQ(form->ErrorRows().size(), 1) << "the corrupt workbook, and the search went on";
    EXPECT_TRUE(form->ErrorRows()[0].contains("broken.xlsx"));
}

} // namespace

// Office documents through the viewer: the letter and workbook pairs made by
// office software load into the editors through LoadFileIntoEditor and
// compare to the differences they are known to have; a PDF that needs a
// password is asked for it once.

#include "conversion/ConverterRoutines.h"
#include "filecompare/viewer_fixture.h"
#include "core/Places.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QTextCursor>
#include <QPushButton>
#include <QTextDocument>

using tvtest::ViewerTest;

namespace {

class DocumentTest : public ViewerTest {
protected:
    void TearDown() override
    {
        setPasswordPrompt({});
        ViewerTest::TearDown();
    }
    void compareData(const QString& original, const QString& modified)
    {
        ASSERT_TRUE(viewer->LoadFileIntoEditor(tvtest::qDataPath(original), frmCompareFiles::kOriginal));
        ASSERT_TRUE(viewer->LoadFileIntoEditor(tvtest::qDataPath(modified), frmCompareFiles::kModified));
        viewer->RefreshDisplay(false, true);
    }
    // The kinds of the records in order, as "cda".
    QString kinds() const
    {
        QString out;
        for (const QString& r : records())
            out += r.at(0);
        return out;
    }
};

TEST_F(DocumentTest, LettersOfEachWordProcessorFormatShowTheirThreeEdits)
{
    for (const char* ext : {"docx", "odt", "rtf", "html"}) {
        compareData(QString("letter-original.%1").arg(ext), QString("letter-modified.%1").arg(ext));
        // The changed paragraph and the deleted one behind it make one
        // change; then the added paragraph.
        EXPECT_EQ(records(), QStringList({"c 6 7 6 6", "a 9 9 9 9"})) << ext;
        EXPECT_TRUE(viewer->rtbOriginal->Text().contains("Dear Ms Whitfield,")) << ext;
        EXPECT_TRUE(viewer->rtbModified->Text().contains("In addition, the fire alarm test")) << ext;
        EXPECT_FALSE(viewer->rtbOriginal->Text().contains("<p")) << ext << ": text, not markup";
    }
}

TEST_F(DocumentTest, PdfLettersCompareByTheirText)
{
    compareData("letter-original.pdf", "letter-modified.pdf");
    EXPECT_TRUE(viewer->rtbOriginal->Text().contains("Enclosure: visit schedule"));
    // Lines as laid out on the page: the re-wrapped and deleted paragraphs
    // in one change, the new one as an addition.
    EXPECT_EQ(kinds(), "ca") << records().join(", ").toStdString();
    EXPECT_TRUE(viewer->rtbModified->Text().contains("In addition, the fire alarm"));
}

TEST_F(DocumentTest, ALockedPdfIsOpenedWithThePasswordGivenOnce)
{
    int asked = 0;
    setPasswordPrompt([&](const QString&, const QString&) {
        ++asked;
        return QStringLiteral("secret");
    });
    compareData("letter-password.pdf", "letter-original.pdf");
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(records().isEmpty()) << "the same letter: " << records().join(", ").toStdString();
}

TEST_F(DocumentTest, SheetListsAndFormulasComeFromTheOptions)
{
    viewer->moFileOptions.sExcelSheetNumberMaster = "2";
    viewer->moFileOptions.sExcelSheetNumberSource = "2";
    viewer->moFileOptions.bExcelCompareFormulas = true;
    compareData("book-original.xlsx", "book-modified.xlsx");
    EXPECT_TRUE(viewer->rtbOriginal->Text().contains("=SUM(")) << viewer->rtbOriginal->Text().toStdString();
    EXPECT_FALSE(viewer->rtbOriginal->Text().contains("Northwind"));
    EXPECT_TRUE(viewer->rtbModified->Text().contains("Final"));
    EXPECT_FALSE(records().isEmpty());
}

TEST_F(DocumentTest, PlainTextIsShownInAFixedPitchFontAndRichTextKeepsItsOwn)
{
    const QString fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
    auto shownFont = [](RichTextBox* box) { return box->view()->document()->defaultFont().family(); };
    compareData("book-original.xlsx", "book-modified.xlsx");
    EXPECT_EQ(shownFont(viewer->rtbOriginal), fixed);
    EXPECT_EQ(shownFont(viewer->rtbModifiedDiffFinal), fixed) << "the panes take the editors' look";
    viewer->cmdChangeViewFormat_Click();
    EXPECT_EQ(shownFont(viewer->rtbAIODiff), fixed);
    viewer->cmdChangeViewFormat_Click();
    compareData("letter-original.docx", "letter-modified.docx");
    EXPECT_NE(shownFont(viewer->rtbOriginal), fixed);
    EXPECT_NE(shownFont(viewer->rtbOriginalDiffFinal), fixed);
}

TEST_F(DocumentTest, AReloadBuildsBothEditorsAndTheyStillReportEdits)
{
    const QString a = textFile("a.txt", {"one", "two", "three"});
    const QString b = textFile("b.txt", {"one", "2", "three"});
    viewer->cbSelectOriginal->setEditText(a);
    viewer->cbSelectModified->setEditText(b);
    viewer->RefreshDisplay(true, true);
    EXPECT_EQ(viewer->rtbOriginal->Text(), "one\ntwo\nthree");
    EXPECT_EQ(viewer->rtbModified->Text(), "one\n2\nthree");
    EXPECT_EQ(records(), QStringList({"c 2 2 2 2"}));
    EXPECT_FALSE(viewer->mbOriginalDirty || viewer->mbModifiedDirty);
    // The editors hold documents built elsewhere; typing still marks them.
    QTextCursor c(viewer->rtbModified->document());
    c.movePosition(QTextCursor::End);
    c.insertText(" more");
    EXPECT_TRUE(viewer->mbModifiedDirty);
    EXPECT_FALSE(viewer->mbOriginalDirty);
    EXPECT_EQ(viewer->PanelText(2), "Diff View not fresh");
    EXPECT_TRUE(QDir(QFileInfo(tempRtfPath()).absolutePath()).entryList({"Temp.RTF.*"}, QDir::Files).isEmpty())
        << "the staged copies are gone";

    // A reload whose Original is missing keeps the Modified it loaded.
    const QString c2 = textFile("c.txt", {"new modified"});
    viewer->cbSelectModified->setEditText(c2);
    viewer->cbSelectOriginal->setEditText(dir.qpath() + "/missing.txt");
    viewer->RefreshDisplay(true, true);
    EXPECT_EQ(viewer->rtbModified->Text(), "new modified");
    EXPECT_EQ(viewer->rtbOriginal->Text(), "one\ntwo\nthree");
}

} // namespace

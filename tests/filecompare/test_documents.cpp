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
        EXPECT_TRUE(box(frmCompareFiles::kOriginal)->Text().contains("Dear Ms Whitfield,")) << ext;
        EXPECT_TRUE(box(frmCompareFiles::kModified)->Text().contains("In addition, the fire alarm test")) << ext;
        EXPECT_FALSE(box(frmCompareFiles::kOriginal)->Text().contains("<p")) << ext << ": text, not markup";
    }
}

TEST_F(DocumentTest, PdfLettersCompareByTheirText)
{
    compareData("letter-original.pdf", "letter-modified.pdf");
    EXPECT_TRUE(box(frmCompareFiles::kOriginal)->Text().contains("Enclosure: visit schedule"));
    // Lines as laid out on the page: the re-wrapped and deleted paragraphs
    // in one change, the new one as an addition.
    EXPECT_EQ(kinds(), "ca") << records().join(", ").toStdString();
    EXPECT_TRUE(box(frmCompareFiles::kModified)->Text().contains("In addition, the fire alarm"));
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
    viewer->Options().sExcelSheetNumberMaster = "2";
    viewer->Options().sExcelSheetNumberSource = "2";
    viewer->Options().bExcelCompareFormulas = true;
    compareData("book-original.xlsx", "book-modified.xlsx");
    const QString original = box(frmCompareFiles::kOriginal)->Text();
    EXPECT_TRUE(original.contains("=SUM(")) << original.toStdString();
    EXPECT_FALSE(box(frmCompareFiles::kOriginal)->Text().contains("Northwind"));
    EXPECT_TRUE(box(frmCompareFiles::kModified)->Text().contains("Final"));
    EXPECT_FALSE(records().isEmpty());
}

TEST_F(DocumentTest, PlainTextIsShownInAFixedPitchFontAndRichTextKeepsItsOwn)
{
    const QString fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
    auto shownFont = [](RichTextBox* box) { return box->view()->document()->defaultFont().family(); };
    compareData("book-original.xlsx", "book-modified.xlsx");
    EXPECT_EQ(shownFont(box(frmCompareFiles::kOriginal)), fixed);
    EXPECT_EQ(shownFont(box(frmCompareFiles::kModifiedDiffFinal)), fixed) << "the panes take the editors' look";
    viewer->cmdChangeViewFormat_Click();
    EXPECT_EQ(shownFont(box(frmCompareFiles::kAIODiff)), fixed);
    viewer->cmdChangeViewFormat_Click();
    compareData("letter-original.docx", "letter-modified.docx");
    EXPECT_NE(shownFont(box(frmCompareFiles::kOriginal)), fixed);
    EXPECT_NE(shownFont(box(frmCompareFiles::kOriginalDiffFinal)), fixed);
}

TEST_F(DocumentTest, AReloadBuildsBothEditorsAndTheyStillReportEdits)
{
    const QString a = textFile("a.txt", {"one", "two", "three"});
    const QString b = textFile("b.txt", {"one", "2", "three"});
    ui<QComboBox>("cbSelectOriginal")->setEditText(a);
    ui<QComboBox>("cbSelectModified")->setEditText(b);
    viewer->RefreshDisplay(true, true);
    EXPECT_EQ(box(frmCompareFiles::kOriginal)->Text(), "one\ntwo\nthree");
    EXPECT_EQ(box(frmCompareFiles::kModified)->Text(), "one\n2\nthree");
    EXPECT_EQ(records(), QStringList({"c 2 2 2 2"}));
    EXPECT_FALSE(viewer->EditorDirty(frmCompareFiles::kOriginal) || viewer->EditorDirty(frmCompareFiles::kModified));
    // The editors hold documents built elsewhere; typing still marks them.
    QTextCursor c(box(frmCompareFiles::kModified)->document());
    c.movePosition(QTextCursor::End);
    c.insertText(" more");
    EXPECT_TRUE(viewer->EditorDirty(frmCompareFiles::kModified));
    EXPECT_FALSE(viewer->EditorDirty(frmCompareFiles::kOriginal));
    EXPECT_EQ(viewer->PanelText(2), "Diff View not fresh");
    EXPECT_TRUE(QDir(QFileInfo(tempRtfPath()).absolutePath()).entryList({"Temp.RTF.*"}, QDir::Files).isEmpty())
        << "the staged copies are gone";

    // A reload whose Original is missing keeps the Modified it loaded.
    const QString c2 = textFile("c.txt", {"new modified"});
    ui<QComboBox>("cbSelectModified")->setEditText(c2);
    ui<QComboBox>("cbSelectOriginal")->setEditText(dir.qpath() + "/missing.txt");
    viewer->RefreshDisplay(true, true);
    EXPECT_EQ(box(frmCompareFiles::kModified)->Text(), "new modified");
    EXPECT_EQ(box(frmCompareFiles::kOriginal)->Text(), "one\ntwo\nthree");
}

} // namespace

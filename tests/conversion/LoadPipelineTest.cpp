// The load road of the file viewer: which road a name takes, what lands in
// the temporary file, the password round, and the messages users meet.

#include "conversion/LoadPipeline.h"
#include "core/modGlobal.h"
#include "core/modParseCommandLine.h"
#include "support/qstring_print.h"
#include "support/testsupport.h"

#include <QCryptographicHash>
#include <QFile>
#include <gtest/gtest.h>

using tvtest::dataPath;

namespace {

QString q(const std::string& s)
{
    return QString::fromStdString(s);
}

// Collects what the routines report, and the password questions asked.
class Recorder : public ::testing::Test {
protected:
    void SetUp() override
    {
        gbClVerbose = true;
        gsClLogFile.clear();
        previousPresenter_ = setMessagePresenter([this](const QString& m) { messages.push_back(m); });
        previousPrompt_ = setPasswordPrompt([this](const QString& title, const QString& prompt) {
            prompts.push_back(title + "|" + prompt);
            return answer;
        });
    }
    void TearDown() override
    {
        setMessagePresenter(previousPresenter_);
        setPasswordPrompt(previousPrompt_);
        gbClVerbose = false;
    }
    std::string temp() const { return tmp.file("Temp.RTF"); }

    std::vector<QString> messages;
    std::vector<QString> prompts;
    QString answer;
    tvtest::TempDir tmp;
    ConversionControls controls;
    ConversionOptions options;

private:
    MessagePresenter previousPresenter_;
    PasswordPrompt previousPrompt_;
};

using Pipeline = Recorder;
using Messages = Recorder;

} // namespace

TEST(RoadForFile, FirstHitOfTheNameTableDecides)
{
    EXPECT_EQ(RoadForFile("/d/report.xls.doc", false), LoadRoad::Spreadsheet);
    EXPECT_EQ(RoadForFile("/d/report.doc.pdf", false), LoadRoad::WordDocument);
    EXPECT_EQ(RoadForFile("/old.docs/a.txt", false), LoadRoad::WordDocument);
    EXPECT_EQ(RoadForFile("/d/x.HTML", false), LoadRoad::WordDocument);
    EXPECT_EQ(RoadForFile("/d/x.HTML", true), LoadRoad::Copy);
    EXPECT_EQ(RoadForFile("/d/x.htm.asc", true), LoadRoad::WordDocument);
    EXPECT_EQ(RoadForFile("/d/noext", false), LoadRoad::Copy);
}

TEST_F(Pipeline, WordDocumentsArriveAsRichTextOrPlainText)
{
    ASSERT_TRUE(ConvertFileIfNecessary(controls, q(dataPath("letter-original.docx")), q(temp()), options, true));
    EXPECT_EQ(tvtest::readFile(temp()).rfind("{\\rtf", 0), 0u);

    options.bRemoveFormatting = true;
    ASSERT_TRUE(ConvertFileIfNecessary(controls, q(dataPath("letter-original.odt")), q(temp()), options, false));
    const std::string text = tvtest::readFile(temp());
    EXPECT_EQ(text.rfind("Lefèvre Facilities Ltd\n", 0), 0u);

    // RTF is copied as it stands, formatting and all, whatever the option says.
    ASSERT_TRUE(ConvertFileIfNecessary(controls, q(dataPath("letter-original.rtf")), q(temp()), options, true));
    EXPECT_EQ(tvtest::readFile(temp()), tvtest::readFile(dataPath("letter-original.rtf")));
    EXPECT_TRUE(messages.empty());
}

TEST_F(Pipeline, HtmlSourceIsCopiedAsItStands)
{
    options.bHTMLCompareSource = true;
    ASSERT_TRUE(ConvertFileIfNecessary(controls, q(dataPath("letter-original.html")), q(temp()), options, true));
    EXPECT_EQ(tvtest::readFile(temp()), tvtest::readFile(dataPath("letter-original.html")));
}

TEST_F(Pipeline, PasswordRoundGivesOneTry)
{
    // A PDF without a password is never asked about.
    ASSERT_TRUE(ConvertFileIfNecessary(controls, q(dataPath("letter-original.pdf")), q(temp()), options, true));
    EXPECT_TRUE(prompts.empty());
    EXPECT_NE(tvtest::readFile(temp()).find("Enclosure: visit schedule"), std::string::npos);

    const QString pdf = q(dataPath("letter-password.pdf"));
    answer = "secret";
    ASSERT_TRUE(ConvertFileIfNecessary(controls, pdf, q(temp()), options, true));
    ASSERT_EQ(prompts.size(), 1u);
    EXPECT_EQ(prompts[0], "Password|" + pdf + "\nis password protected.\nPlease enter a valid password");
    EXPECT_TRUE(messages.empty());

    prompts.clear();
    answer = "wrong";
    EXPECT_FALSE(ConvertFileIfNecessary(controls, pdf, q(temp()), options, true));
    EXPECT_EQ(prompts.size(), 1u);
    EXPECT_EQ(messages, (std::vector<QString>{"Folioform: File is password protected or invalid \n  " + pdf,
                                              "LoadFileIntoEditor(): Unable to convert PDF file.\n\n" + pdf}));

    // Cancel gives the empty password, which is tried once more, then reported.
    prompts.clear();
    messages.clear();
    answer.clear();
    EXPECT_FALSE(ConverterPDFDoc(controls, pdf, q(temp()), 1));
    EXPECT_EQ(prompts.size(), 1u);
    EXPECT_EQ(messages.size(), 1u);
}

TEST_F(Pipeline, CopyProtectedAndDamagedPdf)
{
    const QString nocopy = q(dataPath("letter-nocopy.pdf"));
    EXPECT_FALSE(ConverterPDFDoc(controls, nocopy, q(temp()), 1));
    EXPECT_TRUE(prompts.empty());
    EXPECT_EQ(messages, std::vector<QString>{"Folioform: File is password protected, or does not allow for text extraction\n  "
                                             + nocopy});
    messages.clear();
    tvtest::writeFile(tmp.file("bad.pdf"), "not a pdf");
    EXPECT_FALSE(ConverterPDFDoc(controls, q(tmp.file("bad.pdf")), q(temp()), 1));
    EXPECT_EQ(messages, std::vector<QString>{"Folioform: File is invalid or could not open\n  " + q(tmp.file("bad.pdf"))});
}

TEST_F(Pipeline, SpreadsheetRoadSquaresUpAndJoins)
{
    const QString book = q(dataPath("book-original.xlsx"));
    // One sheet: no joining, the conversion's own output.
    ASSERT_TRUE(ConvertFileIfNecessary(controls, book, q(temp()), options, true));
    std::string one = tvtest::readFile(temp());
    EXPECT_EQ(one.rfind("Order ,Customer         ,Date      ,", 0), 0u) << one;
    EXPECT_EQ(one.find("=== Sheet"), std::string::npos);

    // Several sheets on the modified side, rows then columns cropped.
    options.sExcelSheetNumberSource = "*";
    options.bExcelUseRowsSource = true;
    options.sExcelRowsSource = "1-2";
    options.bExcelUseColsSource = true;
    options.sExcelColsSource = "1";
    ASSERT_TRUE(ConvertFileIfNecessary(controls, book, q(temp()), options, false));
    // One column width over both sheets, taken before cropping.
    EXPECT_EQ(tvtest::readFile(temp()), "=== Sheet 1: Orders ===\nOrder           \nO-1001          \n"
                                        "=== Sheet 2: Summary ===\nMeasure         \nNumber of orders\n");
    // The master side still has its own options.
    ASSERT_TRUE(ConvertFileIfNecessary(controls, book, q(temp()), options, true));
    EXPECT_EQ(tvtest::readFile(temp()), one);

    EXPECT_TRUE(messages.empty());
}

TEST_F(Pipeline, SpreadsheetFailuresReportBothMessagesPerSide)
{
    const QString book = q(dataPath("book-original.ods"));
    options.sExcelSheetNumberMaster = "9";
    EXPECT_FALSE(ConvertFileIfNecessary(controls, book, q(temp()), options, true));
    EXPECT_EQ(messages, (std::vector<QString>{"Invalid sheet number specified",
                                              "LoadFileIntoEditor(): Unable to convert spreadsheet.\n\n" + book}));
    messages.clear();
    options.sExcelSheetNumberSource = "x";
    EXPECT_FALSE(ConvertFileIfNecessary(controls, book, q(temp()), options, false));
    EXPECT_EQ(messages, (std::vector<QString>{"Invalid sheet number specified",
                                              "LoadFileIntoEditor(): Unable to convert spreadsheet file. \n\n" + book}));
    // A bad row list comes back from the processing step with two messages.
    messages.clear();
    options.sExcelSheetNumberSource = "1";
    options.bExcelUseRowsSource = true;
    options.sExcelRowsSource = "";
    EXPECT_FALSE(ConvertFileIfNecessary(controls, book, q(temp()), options, false));
    EXPECT_EQ(messages, (std::vector<QString>{"SpecialProcessing: Extra Parameter not valid",
                                              "SP_CROP_CSV_TO_ROWS: Unable to process CSV file."}));
    messages.clear();
    options.bExcelUseRowsSource = false;
    options.bExcelUseColsSource = true;
    options.sExcelColsSource = "b";
    EXPECT_FALSE(ConvertFileIfNecessary(controls, book, q(temp()), options, false));
    EXPECT_EQ(messages.back(), "SP_CROP_CSV_TO_COLUMNS: Unable to process CSV file.");
}

TEST_F(Pipeline, FailuresLeaveTheUsersFileAlone)
{
    tvtest::writeFile(tmp.file("broken.docx"), "PK\x03\x04 not really");
    const QByteArray before = QCryptographicHash::hash(QByteArray::fromStdString(tvtest::readFile(tmp.file("broken.docx"))),
                                                       QCryptographicHash::Sha1);
    EXPECT_FALSE(ConvertFileIfNecessary(controls, q(tmp.file("broken.docx")), q(temp()), options, true));
    EXPECT_EQ(messages, (std::vector<QString>{"Source file is invalid \n  " + q(tmp.file("broken.docx")),
                                              "LoadFileIntoEditor(): Unable to convert Word file.\n\n"
                                                  + q(tmp.file("broken.docx"))}));
    EXPECT_EQ(QCryptographicHash::hash(QByteArray::fromStdString(tvtest::readFile(tmp.file("broken.docx"))),
                                       QCryptographicHash::Sha1),
              before);
    messages.clear();
    EXPECT_FALSE(ConvertFileIfNecessary(controls, q(tmp.file("gone.txt")), q(temp()), options, true));
    EXPECT_EQ(messages, std::vector<QString>{"LoadFileIntoEditor(): Unable to copy file.\n\n" + q(tmp.file("gone.txt"))});
}

TEST_F(Pipeline, BlankLinesGoFromTheStagedCopyOnly)
{
    tvtest::writeFile(tmp.file("a.txt"), "one\n\n  \ntwo\n");
    options.bRemoveBlankLines = true;
    ASSERT_TRUE(ConvertFileIfNecessary(controls, q(tmp.file("a.txt")), q(temp()), options, true));
    RemoveBlankLinesAfterLoad(controls, q(tmp.file("a.txt")), q(temp()), options);
    EXPECT_EQ(tvtest::readFile(temp()), "one\ntwo\n");
    EXPECT_EQ(tvtest::readFile(tmp.file("a.txt")), "one\n\n  \ntwo\n");

    // Spreadsheets: the blank rows of the CSV go (here a row of empty cells).
    const std::string csv = tmp.file("b.xls.csv");
    tvtest::writeFile(csv, "a,b\n,\nc,d\n");
    tvtest::writeFile(temp(), "a,b\n , \nc,d\n");
    RemoveBlankLinesAfterLoad(controls, q(csv), q(temp()), options);
    EXPECT_EQ(tvtest::readFile(temp()), "a,b\nc,d\n");
}

TEST_F(Pipeline, DiffPanesCopySourcesAndConvertTheRest)
{
    tvtest::writeFile(tmp.file("main.cpp"), "int main() {}\n");
    ASSERT_TRUE(StageFileForDiffPane(controls, q(tmp.file("main.cpp")), q(temp()), options));
    EXPECT_EQ(tvtest::readFile(temp()), "int main() {}\n");
    ASSERT_TRUE(StageFileForDiffPane(controls, q(dataPath("letter-original.docx")), q(temp()), options));
    EXPECT_EQ(tvtest::readFile(temp()).rfind("{\\rtf", 0), 0u);
    EXPECT_FALSE(StageFileForDiffPane(controls, q(tmp.file("gone.xyz")), q(temp()), options));
    EXPECT_EQ(messages.back(), "LoadFileIntoEditor(): Unable to convert Word file.\n\n" + q(tmp.file("gone.xyz")));
}

TEST_F(Messages, RoutinesReportThroughTheLog)
{
    // Messages also reach the log file named by -L, the last one kept.
    gsClLogFile = q(tmp.file("log.txt"));
    EXPECT_FALSE(ConverterWordDoc(controls, "", q(temp()), 6));
    EXPECT_FALSE(ConverterWordDoc(controls, q(dataPath("letter-original.docx")), q(dataPath("letter-original.docx")), 6));
    EXPECT_FALSE(ConverterWordDoc(controls, q(dataPath("letter-original.docx")), q(temp()), 3));
    EXPECT_EQ(messages, (std::vector<QString>{"Source or Target file path is empty", "Source and Target File are the same.",
                                              "Failed to Convert"}));
    EXPECT_NE(tvtest::readFile(tmp.file("log.txt")).find("Failed to Convert"), std::string::npos);
    gsClLogFile.clear();

    // Without an office suite a legacy workbook's formulas cannot be had.
    messages.clear();
    const QByteArray savedPath = qgetenv("PATH");
    qputenv("PATH", QByteArray::fromStdString(tmp.path()));
    EXPECT_FALSE(ConverterExcelSpreadSheetNumber(controls, q(dataPath("book-original.xls")), "1", q(temp()), 6, true));
    EXPECT_FALSE(ConverterWordDoc(controls, q(dataPath("letter-original.doc")), q(temp()), 6));
    qputenv("PATH", savedPath);
    EXPECT_EQ(messages, (std::vector<QString>{"Failed to Convert.  Check that MS Excel is installed",
                                              "Failed to Convert.  Check that MS Word is installed"}));
}

// The squaring-up steps on comma separated text, in the order the viewer
// runs them, and their result codes.

#include "LexiformTestUtil.h"
#include "components/lexiform/CsvProcessing.h"
#include "components/lexiform/Lexiform.h"
#include "components/lexiform/RtfReader.h"
#include "components/lexiform/RtfWriter.h"
#include "support/testsupport.h"

#include <QFile>
#include <gtest/gtest.h>
#include <sstream>

using namespace lexiform;
using namespace lexiformtest;
using tvtest::dataPath;

namespace {

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> out;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        out.push_back(line);
    return out;
}

// The road a spreadsheet takes into the viewer: convert, trim, pad, then join.
std::string squaredUp(Lexiform& lx, const std::string& file, const QString& sheets, const QString& target)
{
    EXPECT_EQ(lx.ConvertSpreadsheetValues(q(dataPath(file)), sheets, target, 6), 0);
    EXPECT_EQ(lx.SpecialProcessing(SP_TRIM_CSV_FILE, "", ""), 0);
    EXPECT_EQ(lx.SpecialProcessing(SP_PAD_CSV_FILE_WITH_SPACES, "", ""), 0);
    EXPECT_EQ(lx.SpecialProcessing(SP_CONCATENATE_ALL, target, "0"), 0);
    return tvtest::readFile(target.toStdString());
}

} // namespace

TEST(SpecialProcessing, PaddedSheetsOfTwoVersionsDifferOnlyWhereCellsChanged)
{
    tvtest::TempDir tmp;
    Lexiform lx;
    for (std::string ext : {".xlsx", ".ods"}) {
        SCOPED_TRACE(ext);
        auto a = linesOf(squaredUp(lx, "book-original" + ext, "*", q(tmp.file("a.csv"))));
        auto b = linesOf(squaredUp(lx, "book-modified" + ext, "*", q(tmp.file("b.csv"))));
        ASSERT_EQ(a.size() + 1, b.size());  // one order added
        // Orders rows 1-2 and 4 did not change and must be equal byte for byte,
        // although longer cells arrived elsewhere in their columns.
        EXPECT_EQ(a[1], b[1]);
        EXPECT_EQ(a[2], b[2]);
        EXPECT_EQ(a[4], b[4]);
        EXPECT_NE(a[3], b[3]);  // D3 12 -> 15
        // Order numbers are padded to the width of "Number of orders" on
        // the second sheet.
        EXPECT_EQ(a[2].find("O-1001          ,Northwind Traders,2024-01-08,"), 0u) << a[2];
        // Summary: rows 1 and 6 unchanged, row 7 (Draft -> Final) changed.
        // Widths taken per column would fail here: the modified average
        // 13.6666666666667 is wider than 14.6 and would move every row.
        std::size_t s1 = 8, s2 = 9;  // "=== Sheet 2" line follows the six order rows of the original
        ASSERT_EQ(a[7].rfind("=== Sheet 2: Summary", 0), 0u);
        ASSERT_EQ(b[8].rfind("=== Sheet 2: Summary", 0), 0u);
        EXPECT_EQ(a[s1], b[s2]);
        EXPECT_EQ(a[s1 + 5], b[s2 + 5]);
        EXPECT_NE(a[s1 + 6], b[s2 + 6]);
    }
}

TEST(SpecialProcessing, RowsAreCroppedBeforeColumnsAfterPadding)
{
    tvtest::TempDir tmp;
    Lexiform lx;
    const QString out = q(tmp.file("o.csv"));
    ASSERT_EQ(lx.ConvertSpreadsheetValues(q(dataPath("book-original.xlsx")), "1", out, 6), 0);
    ASSERT_EQ(lx.SpecialProcessing(SP_TRIM_CSV_FILE, "", ""), 0);
    ASSERT_EQ(lx.SpecialProcessing(SP_PAD_CSV_FILE_WITH_SPACES, "", ""), 0);
    ASSERT_EQ(lx.SpecialProcessing(SP_CROP_CSV_TO_ROWS, "", "1, 3-4, 40"), 0);
    ASSERT_EQ(lx.SpecialProcessing(SP_CROP_CSV_TO_COLUMNS, "", "2,6"), 0);
    auto cells = cellsOfFile(out.toStdString());
    ASSERT_EQ(cells.size(), 3u);
    EXPECT_EQ(cells[0], (QStringList{"Customer", "Total"}));
    EXPECT_EQ(cells[1], (QStringList{"Baker & Sons", "117.60"}));
    EXPECT_EQ(cells[2], (QStringList{"Café Lumière", "360.00"}));
    // Padding survives cropping: "Baker & Sons" still fills its column,
    // as wide as "Northwind Traders" in a row that cropping removed.
    EXPECT_NE(tvtest::readFile(out.toStdString()).find("Baker & Sons     ,"), std::string::npos);
}

TEST(SpecialProcessing, CropAppliesToEverySheetOfTheLastConversion)
{
    tvtest::TempDir tmp;
    Lexiform lx;
    const QString out = q(tmp.file("o.csv"));
    ASSERT_EQ(lx.ConvertSpreadsheetValues(q(dataPath("book-original.ods")), "*", out, 6), 0);
    ASSERT_EQ(lx.SpecialProcessing(SP_CROP_CSV_TO_COLUMNS, "", "1"), 0);
    ASSERT_EQ(lx.SpecialProcessing(SP_CROP_CSV_TO_ROWS, "", "1"), 0);
    ASSERT_EQ(lx.SpecialProcessing(SP_CONCATENATE_ALL, out, "1"), 0);
    EXPECT_EQ(tvtest::readFile(out.toStdString()), "Order\nMeasure\n");
}

TEST(SpecialProcessing, AFileChangedBetweenStepsIsReadAgain)
{
    tvtest::TempDir tmp;
    Lexiform lx;
    const QString out = q(tmp.file("o.csv"));
    ASSERT_EQ(lx.ConvertSpreadsheetValues(q(dataPath("book-original.xlsx")), "2", out, 6), 0);
    // Someone else rewrites the file: the next step works on what is there now.
    tvtest::writeFile(out.toStdString(), "  x  , y\n");
    ASSERT_EQ(lx.SpecialProcessing(SP_TRIM_CSV_FILE, "", ""), 0);
    EXPECT_EQ(tvtest::readFile(out.toStdString()), "x,y\n");
    QFile::remove(out);
    EXPECT_EQ(lx.SpecialProcessing(SP_TRIM_CSV_FILE, "", ""), SpCannotOpenFile);
}

TEST(SpecialProcessing, BlankParagraphsLeaveRichText)
{
    tvtest::TempDir tmp;
    Document doc;
    CharFormat bold;
    bold.bold = true;
    doc.paragraphs = {{{{"first", bold}}}, {}, {{{"  \t", {}}}}, {{{"second", {}}}}, {}};
    tvtest::writeFile(tmp.file("t.rtf"), writeRtf(doc).toStdString());
    Lexiform lx;
    ASSERT_EQ(lx.SpecialProcessing(SP_REMOVE_BLANK_LINES, q(tmp.file("t.rtf")), ""), 0);
    const Document back = readRtf(QByteArray::fromStdString(tvtest::readFile(tmp.file("t.rtf"))));
    EXPECT_EQ(back.plainText(), "first\nsecond");
    EXPECT_TRUE(back.paragraphs[0].runs[0].format.bold);
}

TEST(SpecialProcessing, ResultCodes)
{
    tvtest::TempDir tmp;
    Lexiform lx;
    // Nothing converted yet: no files to work on.
    EXPECT_EQ(lx.SpecialProcessing(SP_TRIM_CSV_FILE, "", ""), SpCannotOpenFile);
    EXPECT_EQ(lx.SpecialProcessing(SP_CONCATENATE_ALL, q(tmp.file("t.csv")), "0"), SpCannotOpenFile);
    EXPECT_EQ(lx.SpecialProcessing(2, "", ""), SpUnknownProcess);
    EXPECT_EQ(lx.SpecialProcessing(9, "", ""), SpUnknownProcess);
    EXPECT_EQ(lx.SpecialProcessing(0, "", ""), SpUnknownProcess);
    for (int id : {SP_CONCATENATE_ALL, SP_REMOVE_BLANK_LINES_CSV, SP_REMOVE_BLANK_LINES})
        EXPECT_EQ(lx.SpecialProcessing(id, "", "0"), SpTargetInvalid) << id;
    EXPECT_EQ(lx.SpecialProcessing(SP_REMOVE_BLANK_LINES, q(tmp.file("missing.txt")), ""), SpCannotOpenFile);

    const QString out = q(tmp.file("o.csv"));
    ASSERT_EQ(lx.ConvertSpreadsheetValues(q(dataPath("book-original.xlsx")), "*", out, 6), 0);
    for (const char* bad : {"", "x", "3-1", "*", "1,,a"})
        EXPECT_EQ(lx.SpecialProcessing(SP_CROP_CSV_TO_ROWS, "", bad), SpExtraParamInvalid) << bad;
    EXPECT_EQ(lx.SpecialProcessing(SP_CROP_CSV_TO_COLUMNS, "", "a-b"), SpExtraParamInvalid);
    EXPECT_EQ(lx.SpecialProcessing(SP_CONCATENATE_ALL, out, "7"), SpExtraParamInvalid);
    EXPECT_EQ(lx.SpecialProcessing(SP_CONCATENATE_ALL, q(tmp.file("no/such/folder/t.csv")), "0"), SpCannotOpenTarget);
}

TEST(SpecialProcessing, BlankLinesGoAndNothingElseChanges)
{
    tvtest::TempDir tmp;
    Lexiform lx;
    const std::string csv = tmp.file("b.csv");
    tvtest::writeFile(csv, "a,b\n,\n  ,\t\n\"x\ny\",\n\n,c\n");
    ASSERT_EQ(lx.SpecialProcessing(SP_REMOVE_BLANK_LINES_CSV, q(csv), ""), 0);
    ASSERT_EQ(lx.SpecialProcessing(SP_REMOVE_BLANK_LINES_CSV, q(csv), ""), 0);  // the viewer calls it twice
    EXPECT_EQ(tvtest::readFile(csv), "a,b\n\"x\ny\",\n,c\n");

    // Plain text keeps its bytes, encodings and line ends; only blank lines go.
    const std::string txt = tmp.file("t.txt");
    tvtest::writeFile(txt, "caf\xe9\r\n\r\n \t\r\nline 2\n\n\nend");
    ASSERT_EQ(lx.SpecialProcessing(SP_REMOVE_BLANK_LINES, q(txt), ""), 0);
    EXPECT_EQ(tvtest::readFile(txt), "caf\xe9\r\nline 2\nend");

    // UTF-16 is handled in its own encoding.
    const std::string u16 = tmp.file("u.txt");
    tvtest::writeFile(u16, std::string("\xFF\xFE" "a\0\n\0\n\0b\0", 10));
    ASSERT_EQ(lx.SpecialProcessing(SP_REMOVE_BLANK_LINES, q(u16), ""), 0);
    EXPECT_EQ(tvtest::readFile(u16), std::string("\xFF\xFE" "a\0\n\0b\0", 8));
}

TEST(CsvText, QuotingFollowsTheCommonRulesAndRoundTrips)
{
    EXPECT_EQ(csvLine({"plain", "with,comma", "say \"hi\"", "two\nlines", "", " padded "}),
              "plain,\"with,comma\",\"say \"\"hi\"\"\",\"two\nlines\",, padded ");
    const std::vector<CsvRecord> records = {{"a", "b,c", "\"q\""}, {"", "x\r\ny", ""}, {"only"}};
    EXPECT_EQ(parseCsv(csvText(records)), records);
    // Tolerant reading: CR LF ends, an unterminated quote, a quote inside a field.
    EXPECT_EQ(parseCsv("a,b\r\nc\"d,\"e"), (std::vector<CsvRecord>{{"a", "b"}, {"c\"d", "e"}}));
    EXPECT_EQ(parseCsv(""), std::vector<CsvRecord>{});
    EXPECT_EQ(parseCsv("\n"), (std::vector<CsvRecord>{{""}}));
}

TEST(CsvText, PaddingLinesUpEveryColumnAcrossAllSheets)
{
    // The second sheet has the widest cell of column 1, the first of column 2.
    std::vector<CsvRecord> a = {{"Northwind Traders", "1", "last"}, {"Baker & Sons", "", "x"}};
    std::vector<CsvRecord> b = {{"A much longer name here", "2"}, {"short"}};
    padCells({&a, &b});
    EXPECT_EQ(a[0], (CsvRecord{"Northwind Traders      ", "1", "last"}));
    EXPECT_EQ(a[1], (CsvRecord{"Baker & Sons           ", " ", "x"}));
    EXPECT_EQ(b[0], (CsvRecord{"A much longer name here", "2"}));
    EXPECT_EQ(b[1], (CsvRecord{"short"}));
    trimCells(a);
    EXPECT_EQ(a[0], (CsvRecord{"Northwind Traders", "1", "last"}));
}

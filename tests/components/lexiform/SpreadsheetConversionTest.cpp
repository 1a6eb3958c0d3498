// Spreadsheets to comma separated text: values and formulas of workbooks
// written by an office suite, sheet lists, and what hostile files give.

#include "LexiformTestUtil.h"
#include "components/lexiform/Lexiform.h"
#include "support/testsupport.h"

#include <QDate>
#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace lexiform;
using namespace lexiformtest;
using tvtest::dataPath;

namespace {

// Numbers compare by value: the binary workbook reader knows no display
// formats, so 9.80 may come out as 9.8, and a date that a formula computes
// comes out as its day number.
bool sameCell(const QString& a, const QString& b)
{
    if (a == b)
        return true;
    bool okA = false, okB = false;
    double x = a.toDouble(&okA), y = b.toDouble(&okB);
    if (okA && okB)
        return std::abs(x - y) < 1e-9;
    QDate d = QDate::fromString(b, Qt::ISODate);
    return okA && d.isValid() && QDate(1899, 12, 30).addDays(qint64(x)) == d;
}

void expectSameCells(const std::vector<QStringList>& got, const std::vector<QStringList>& want, bool numeric)
{
    ASSERT_EQ(got.size(), want.size());
    for (std::size_t r = 0; r < got.size(); ++r) {
        ASSERT_EQ(got[r].size(), want[r].size()) << "row " << r + 1 << ": " << got[r].join('|').toStdString();
        for (qsizetype c = 0; c < got[r].size(); ++c) {
            if (numeric)
                EXPECT_TRUE(sameCell(got[r][c], want[r][c]))
                    << "row " << r + 1 << " col " << c + 1 << ": " << got[r][c].toStdString() << " vs "
                    << want[r][c].toStdString();
            else
                EXPECT_EQ(got[r][c], want[r][c]) << "row " << r + 1 << " col " << c + 1;
        }
    }
}

// Converts every sheet and joins them without naming lines, as the
// independent extraction did.
std::vector<QStringList> allSheets(Lexiform& lx, const std::string& file, bool formulas, const tvtest::TempDir& tmp)
{
    const QString out = q(tmp.file("all.csv"));
    int rc = formulas ? lx.ConvertSpreadsheetFormulas(q(dataPath(file)), "*", out, 6)
                      : lx.ConvertSpreadsheetValues(q(dataPath(file)), "*", out, 6);
    EXPECT_EQ(rc, 0) << file;
    EXPECT_EQ(lx.SpecialProcessing(SP_CONCATENATE_ALL, out, "1"), 0);
    return cellsOfFile(out.toStdString());
}

} // namespace

TEST(SpreadsheetValues, MatchIndependentExtractionForEachFormat)
{
    tvtest::TempDir tmp;
    Lexiform lx;
    for (std::string file : {"book-original.xlsx", "book-original.ods"}) {
        SCOPED_TRACE(file);
        expectSameCells(allSheets(lx, file, false, tmp), cellsOfFile(dataPath(file + ".expected.txt")), false);
    }
    SCOPED_TRACE("xls");
    expectSameCells(allSheets(lx, "book-original.xls", false, tmp),
                    cellsOfFile(dataPath("book-original.xls.expected.txt")), true);
}

TEST(SpreadsheetFormulas, ShowFormulaTextInPlaceOfValues)
{
    tvtest::TempDir tmp;
    Lexiform lx;
    const auto want = cellsOfFile(dataPath("book-original.ods.formulas.expected.txt"));
    expectSameCells(allSheets(lx, "book-original.ods", true, tmp), want, false);

    // The XLSX file keeps references in its own notation (Orders!A2:A50).
    auto got = allSheets(lx, "book-original.xlsx", true, tmp);
    for (QStringList& row : got)
        for (QString& c : row)
            c.replace(QRegularExpression("(\\w+)!"), "$\\1.");
    expectSameCells(got, want, false);
    EXPECT_EQ(got[1][5], "=D2*E2");
}

TEST(SpreadsheetFormulas, LegacyWorkbookNeedsTheOfficeSuite)
{
    tvtest::TempDir tmp;
    const QByteArray savedPath = qgetenv("PATH");
    qputenv("PATH", QByteArray::fromStdString(tmp.path()));  // no office suite here
    Lexiform lx;
    int rc = lx.ConvertSpreadsheetFormulas(q(dataPath("book-original.xls")), "1", q(tmp.file("f.csv")), 6);
    qputenv("PATH", savedPath);
    EXPECT_EQ(rc, ProgramMissing);
}

TEST(SpreadsheetSheets, ListsSelectSheetsAndRejectNonsense)
{
    tvtest::TempDir tmp;
    Lexiform lx;
    const QString src = q(dataPath("book-original.xlsx"));
    const QString out = q(tmp.file("o.csv"));

    ASSERT_EQ(lx.ConvertSpreadsheetValues(src, "2", out, 6), 0);
    auto cells = cellsOfFile(out.toStdString());
    ASSERT_EQ(cells.size(), 7u);
    EXPECT_EQ(cells[0][0], "Measure");

    // Several sheets are joined with a naming line before each.
    ASSERT_EQ(lx.ConvertSpreadsheetValues(src, "1-2, 12, 20, *", out, 6), 0);
    ASSERT_EQ(lx.SpecialProcessing(SP_CONCATENATE_ALL, out, "0"), 0);
    const std::string joined = tvtest::readFile(out.toStdString());
    EXPECT_EQ(joined.find("=== Sheet 1: Orders ===\n"), 0u);
    EXPECT_NE(joined.find("\n=== Sheet 2: Summary ===\nMeasure,Value,Note\n"), std::string::npos);

    // Numbers past the end are ignored as long as one sheet exists.
    ASSERT_EQ(lx.ConvertSpreadsheetValues(src, "2, 7-9", out, 6), 0);
    EXPECT_EQ(cellsOfFile(out.toStdString()).size(), 7u);

    for (const char* bad : {"3", "12, 20", "", " , ", "x", "2-1", "0", "1;2", "-3"})
        EXPECT_EQ(lx.ConvertSpreadsheetValues(src, bad, out, 6), InvalidSheet) << bad;
}

TEST(SpreadsheetSheets, SingleSheetJoinedLeavesItAsItWas)
{
    tvtest::TempDir tmp;
    Lexiform lx;
    const QString out = q(tmp.file("o.csv"));
    ASSERT_EQ(lx.ConvertSpreadsheetValues(q(dataPath("book-original.ods")), "2-2", out, 6), 0);
    const std::string before = tvtest::readFile(out.toStdString());
    ASSERT_EQ(lx.SpecialProcessing(SP_CONCATENATE_ALL, out, "0"), 0);
    EXPECT_EQ(tvtest::readFile(out.toStdString()), before);
}

TEST(SpreadsheetErrors, PathsAndSameFile)
{
    tvtest::TempDir tmp;
    Lexiform lx;
    const QString src = q(dataPath("book-original.xlsx"));
    EXPECT_EQ(lx.ConvertSpreadsheetValues("", "1", q(tmp.file("o.csv")), 6), PathEmpty);
    EXPECT_EQ(lx.ConvertSpreadsheetValues(src, "1", "", 6), PathEmpty);
    EXPECT_EQ(lx.ConvertSpreadsheetValues(src, "1", src, 6), SameFile);
    EXPECT_EQ(lx.ConvertSpreadsheetValues(q(tmp.file("missing.xlsx")), "1", q(tmp.file("o.csv")), 6), SourceInvalid);
    EXPECT_EQ(lx.ConvertSpreadsheetValues(q(tmp.path()), "1", q(tmp.file("o.csv")), 6), SourceInvalid);
}

TEST(SpreadsheetErrors, DamagedWorkbooksGiveResultCodesAndStayUntouched)
{
    tvtest::TempDir tmp;
    Lexiform lx;
    const std::string good = tvtest::readFile(dataPath("book-original.xlsx"));
    const std::string goodOds = tvtest::readFile(dataPath("book-original.ods"));
    struct Case {
        std::string name;
        std::string bytes;
    };
    std::vector<Case> cases = {
        {"truncated.xlsx", good.substr(0, good.size() / 2)},
        {"truncated.ods", goodOds.substr(0, goodOds.size() / 3)},
        {"garbage.xlsx", std::string(5000, '\x07')},
        {"empty.xlsx", ""},
        // Found by fuzzing: strings whose code page FreeXL cannot convert.
        {"codepage.xls", tvtest::readFile(dataPath("damaged-codepage.xls"))},
        {"flipped.xlsx", [&] {
             std::string s = good;
             for (std::size_t i = 200; i < s.size() - 200; i += 97)
                 s[i] = char(s[i] ^ 0x5a);
             return s;
         }()},
    };
    for (const Case& c : cases) {
        const std::string path = tmp.file(c.name);
        tvtest::writeFile(path, c.bytes);
        const QByteArray digest = fileDigest(path);
        int rc = lx.ConvertSpreadsheetValues(q(path), "*", q(tmp.file("o.csv")), 6);
        EXPECT_TRUE(rc == SourceInvalid || rc == InvalidSheet) << c.name << " gave " << rc;
        EXPECT_EQ(fileDigest(path), digest) << c.name;
    }

    // A word processor file under a workbook's name is no workbook.
    QFile::copy(q(dataPath("letter-original.docx")), q(tmp.file("letter.xlsx")));
    EXPECT_EQ(lx.ConvertSpreadsheetValues(q(tmp.file("letter.xlsx")), "1", q(tmp.file("o.csv")), 6), SourceInvalid);
    QFile::copy(q(dataPath("letter-original.odt")), q(tmp.file("letter.ods")));
    EXPECT_EQ(lx.ConvertSpreadsheetValues(q(tmp.file("letter.ods")), "1", q(tmp.file("o.csv")), 6), SourceInvalid);

    // Well-formed zip, broken XML inside.
    const std::string broken = tmp.file("broken.xlsx");
    writeXlsx(broken, {{"S", "<row r=\"1\"><c r=\"A1\" t=\"inlineStr\"><is><t>x</t></is></c><row>"}});
    EXPECT_EQ(lx.ConvertSpreadsheetValues(q(broken), "1", q(tmp.file("o.csv")), 6), SourceInvalid);
}

TEST(SpreadsheetErrors, ZipBombStopsAtTheCap)
{
    tvtest::TempDir tmp;
    // 16 MiB of blank padding inside one sheet compresses to a few KiB.
    std::string sheet = "<row r=\"1\"><c r=\"A1\" t=\"inlineStr\"><is><t>x</t></is></c></row>";
    sheet += std::string(16 << 20, ' ');
    const std::string bomb = tmp.file("bomb.xlsx");
    writeXlsx(bomb, {{"S", sheet}});
    Lexiform lx;
    ReadLimits limits;
    limits.maxEntryBytes = 4 << 20;
    lx.setReadLimits(limits);
    EXPECT_EQ(lx.ConvertSpreadsheetValues(q(bomb), "1", q(tmp.file("o.csv")), 6), SourceInvalid);
    EXPECT_TRUE(lx.lastLimitReason().contains("one of its parts unpacks")) << lx.lastLimitReason().toStdString();
}

TEST(SpreadsheetErrors, SheetsTooLargeToWriteSaySoBeforeBuildingThem)
{
    tvtest::TempDir tmp;
    // Legal and sparse, but its padded rows would be 17 billion cells.
    const std::string far = tmp.file("far.xlsx");
    writeXlsx(far, {{"S", R"(<row r="1"><c r="A1" t="inlineStr"><is><t>first</t></is></c></row>)"
                          R"(<row r="1048576"><c r="XFD1048576" t="inlineStr"><is><t>last</t></is></c></row>)"}});
    Lexiform lx;
    EXPECT_EQ(lx.ConvertSpreadsheetValues(q(far), "1", q(tmp.file("o.csv")), 6), SourceInvalid);
    EXPECT_TRUE(lx.lastLimitReason().contains("1,048,576 rows by 16,384 columns")) << lx.lastLimitReason().toStdString();

    // One cell repeated over the whole sheet: refused before one row is built.
    const std::string repeated = tmp.file("repeated.ods");
    writeZip(repeated, {{"mimetype", "application/vnd.oasis.opendocument.spreadsheet"},
                        {"content.xml", R"(<?xml version="1.0"?><office:document-content xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0" xmlns:table="urn:oasis:names:tc:opendocument:xmlns:table:1.0" xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0"><office:body><office:spreadsheet><table:table table:name="A"><table:table-row table:number-rows-repeated="1048576"><table:table-cell table:number-columns-repeated="16384" office:value-type="string"><text:p>x</text:p></table:table-cell></table:table-row></table:table></office:spreadsheet></office:body></office:document-content>)"}});
    EXPECT_EQ(lx.ConvertSpreadsheetValues(q(repeated), "1", q(tmp.file("o.csv")), 6), SourceInvalid);
    EXPECT_FALSE(lx.lastLimitReason().isEmpty());

    // A package that unpacks to more than its size allows, all members
    // together.
    ReadLimits tight;
    tight.packageAllowanceBytes = 1000;
    tight.packageRatio = 0;
    lx.setReadLimits(tight);
    EXPECT_EQ(lx.ConvertSpreadsheetValues(tvtest::qDataPath("book-original.xlsx"), "1", q(tmp.file("o.csv")), 6),
              SourceInvalid);
    EXPECT_TRUE(lx.lastLimitReason().contains("unpacks")) << lx.lastLimitReason().toStdString();
    EXPECT_EQ(lx.ConvertDocument(tvtest::qDataPath("letter-original.docx"), q(tmp.file("o.txt")), TypePlainText),
              SourceInvalid);
    EXPECT_TRUE(lx.lastLimitReason().contains("unpacks"));
    // The reason is the last conversion's, not an old one.
    lx.setReadLimits({});
    EXPECT_EQ(lx.ConvertDocument(tvtest::qDataPath("letter-original.docx"), q(tmp.file("o.txt")), TypePlainText), Ok);
    EXPECT_TRUE(lx.lastLimitReason().isEmpty());
}

TEST(SpreadsheetValues, RepeatedBlankCellsAndRowsAreNotMaterialised)
{
    tvtest::TempDir tmp;
    const std::string ods = tmp.file("sparse.ods");
    writeZip(ods, {{"content.xml", R"(<?xml version="1.0"?><office:document-content xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0" xmlns:table="urn:oasis:names:tc:opendocument:xmlns:table:1.0" xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0"><office:body><office:spreadsheet><table:table table:name="A">
<table:table-row><table:table-cell table:number-columns-repeated="2" office:value-type="float" office:value="1"><text:p>1</text:p></table:table-cell><table:table-cell table:number-columns-repeated="16380"/></table:table-row>
<table:table-row table:number-rows-repeated="2"><table:table-cell table:number-columns-repeated="1024"/></table:table-row>
<table:table-row><table:table-cell/><table:table-cell office:value-type="boolean" office:boolean-value="true"><text:p>WAHR</text:p></table:table-cell><table:table-cell office:value-type="string"><text:p>a,"b"</text:p><text:p>c<text:s text:c="2"/>d</text:p></table:table-cell></table:table-row>
<table:table-row table:number-rows-repeated="1048571"><table:table-cell table:number-columns-repeated="1024"/></table:table-row>
</table:table></office:spreadsheet></office:body></office:document-content>)"}});
    Lexiform lx;
    const QString out = q(tmp.file("o.csv"));
    ASSERT_EQ(lx.ConvertSpreadsheetValues(q(ods), "1", out, 6), 0);
    EXPECT_EQ(tvtest::readFile(out.toStdString()), "1,1,\n,,\n,,\n,TRUE,\"a,\"\"b\"\"\nc  d\"\n");
}

TEST(SpreadsheetValues, FiftyThousandRowsConvert)
{
    tvtest::TempDir tmp;
    std::string rows;
    rows.reserve(50000 * 90);
    for (int r = 1; r <= 50000; ++r)
        rows += "<row r=\"" + std::to_string(r) + "\"><c r=\"A" + std::to_string(r) + "\"><v>" + std::to_string(r)
                + "</v></c><c r=\"B" + std::to_string(r) + "\" t=\"inlineStr\"><is><t>row " + std::to_string(r)
                + "</t></is></c></row>";
    const std::string big = tmp.file("big.xlsx");
    writeXlsx(big, {{"Big", rows}});
    Lexiform lx;
    const QString out = q(tmp.file("o.csv"));
    ASSERT_EQ(lx.ConvertSpreadsheetValues(q(big), "1", out, 6), 0);
    auto cells = cellsOfFile(out.toStdString());
    ASSERT_EQ(cells.size(), 50000u);
    EXPECT_EQ(cells[49999], (QStringList{"50000", "row 50000"}));
}

TEST(SpreadsheetValues, NumberFormatsOfCellStylesApply)
{
    tvtest::TempDir tmp;
    const std::string styles = R"(<styleSheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main"><numFmts count="2"><numFmt numFmtId="164" formatCode="yyyy\-mm\-dd\ hh:mm"/><numFmt numFmtId="165" formatCode="&quot;EUR &quot;#,##0.00"/></numFmts><cellXfs count="6"><xf numFmtId="0"/><xf numFmtId="2"/><xf numFmtId="14"/><xf numFmtId="164"/><xf numFmtId="165"/><xf numFmtId="10"/></cellXfs></styleSheet>)";
    const std::string book = tmp.file("fmt.xlsx");
    writeXlsx(book, {{"F", R"(<row r="1"><c r="A1"><v>0.1</v></c><c r="B1" s="1"><v>2.675</v></c><c r="C1" s="2"><v>45299</v></c><c r="D1" s="3"><v>45299.5</v></c><c r="E1" s="4"><v>1234567.891</v></c><c r="F1" s="5"><v>0.12345</v></c><c r="G1" t="b"><v>1</v></c><c r="H1" t="e"><v>#DIV/0!</v></c></row>
<row r="3"><c r="B3"><f t="shared" ref="B3:B5" si="0">A3*$C$1+Sheet2!A3</f><v>1</v></c></row>
<row r="4"><c r="B4"><f t="shared" si="0"/><v>2</v></c></row>)"}},
              styles);
    Lexiform lx;
    const QString out = q(tmp.file("o.csv"));
    ASSERT_EQ(lx.ConvertSpreadsheetValues(q(book), "1", out, 6), 0);
    auto cells = cellsOfFile(out.toStdString());
    ASSERT_EQ(cells.size(), 4u);
    EXPECT_EQ(cells[0], (QStringList{"0.1", "2.68", "2024-01-08", "2024-01-08 12:00:00", "EUR 1,234,567.89", "12.35%",
                                     "TRUE", "#DIV/0!"}));
    EXPECT_TRUE(cells[1].join("").isEmpty());
    ASSERT_EQ(lx.ConvertSpreadsheetFormulas(q(book), "1", out, 6), 0);
    cells = cellsOfFile(out.toStdString());
    EXPECT_EQ(cells[2][1], "=A3*$C$1+Sheet2!A3");
    EXPECT_EQ(cells[3][1], "=A4*$C$1+Sheet2!A4");
}

TEST(SpreadsheetValues, CsvAndTsvFilesAreTheirOwnSheet)
{
    tvtest::TempDir tmp;
    tvtest::writeFile(tmp.file("a.tsv"), "x\ty,z\n\"q\"\"\"\t2\n");
    Lexiform lx;
    const QString out = q(tmp.file("o.csv"));
    ASSERT_EQ(lx.ConvertSpreadsheetValues(q(tmp.file("a.tsv")), "1", out, 6), 0);
    EXPECT_EQ(tvtest::readFile(out.toStdString()), "x,\"y,z\"\n\"q\"\"\",2\n");
    EXPECT_EQ(lx.ConvertSpreadsheetValues(q(tmp.file("a.tsv")), "2", out, 6), InvalidSheet);
}

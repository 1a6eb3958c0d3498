// Legacy workbooks through the reader process: files that make FreeXL fault
// come back as invalid files, and so does anything a reader that died, hung
// or went astray sends back.

#include "components/lexiform/ChildProcess.h"
#include "components/lexiform/XlsFrames.h"
#include "components/lexiform/XlsReader.h"
#include "support/testsupport.h"

#include <QFile>
#include <cstring>
#include <gtest/gtest.h>
#include <csignal>
#include <sys/stat.h>

using namespace lexiform;
using tvtest::dataPath;

namespace {

QString q(const std::string& s)
{
    return QString::fromStdString(s);
}

SheetRequest allSheets(QString* reason)
{
    SheetRequest request;
    request.sheets = *parseRangeList(QStringLiteral("*"), true);
    request.limits.limitReason = reason;
    return request;
}

// Points the spreadsheet readers at another reader program while it lives.
class ReaderOverride {
public:
    explicit ReaderOverride(const std::string& program) { qputenv("TALLYVANE_XLS_READER", program.c_str()); }
    ~ReaderOverride() { qunsetenv("TALLYVANE_XLS_READER"); }
};

std::string script(const tvtest::TempDir& tmp, const std::string& name, const std::string& body)
{
    const std::string path = tmp.file(name);
    tvtest::writeFile(path, "#!/bin/sh\n" + body + "\n");
    ::chmod(path.c_str(), 0755);
    return path;
}

struct Frames {
    std::string bytes;
    template <typename T> Frames& put(T v)
    {
        bytes.append(reinterpret_cast<const char*>(&v), sizeof v);
        return *this;
    }
    Frames& tag(char t) { return put(t); }
    Frames& text(const std::string& s)
    {
        put(std::uint32_t(s.size()));
        bytes += s;
        return *this;
    }
    Frames& cell(char t, std::uint32_t row, std::uint16_t column) { return tag(t).put(row).put(column); }
};

// Two sheets with a cell of every kind; the second sheet is called "B".
std::string twoSheets()
{
    Frames f;
    f.tag(xlsframes::Book).put(std::uint32_t(2));
    f.tag(xlsframes::Sheet).put(std::uint32_t(1)).text("A");
    f.cell(xlsframes::Text, 0, 0).text("Zürich");
    f.cell(xlsframes::Integer, 0, 2).put(std::int64_t(-42));
    f.cell(xlsframes::Double, 1, 0).put(2.5);
    f.cell(xlsframes::NoValue, 1, 1);
    f.tag(xlsframes::Sheet).put(std::uint32_t(2)).text("B");
    f.cell(xlsframes::Text, 0, 0).text("x");
    f.tag(xlsframes::End);
    return f.bytes;
}

QString formula(int sheet, unsigned int row, unsigned short column)
{
    return QStringLiteral("=%1:%2:%3").arg(sheet).arg(row).arg(column);
}

} // namespace

TEST(XlsReader, FilesThatMakeFreeXlFaultAreInvalid)
{
    // Found by fuzzing: a heap over-read (a crash) and a stack over-read
    // inside freexl_open. In the program's own process either took it down
    // or read past its memory; now only the reader process meets them.
    for (const char* name : {"damaged-heap-overread.xls", "damaged-codepage.xls"}) {
        QString reason;
        WorkbookContent book;
        EXPECT_EQ(readXls(q(dataPath(name)), allSheets(&reason), book), SourceInvalid) << name;
        EXPECT_TRUE(book.sheets.empty()) << name;
    }
    // FreeXL leaks inside freexl_open on this one, and reads it; the leak
    // dies with the reader, and what it read is still a workbook.
    QString reason;
    WorkbookContent book;
    EXPECT_EQ(readXls(q(dataPath("damaged-leak.xls")), allSheets(&reason), book), Ok) << reason.toStdString();

    // A good workbook still reads, with the sheets asked for only.
    SheetRequest second = allSheets(&reason);
    second.sheets = *parseRangeList(QStringLiteral("2"), false);
    ASSERT_EQ(readXls(q(dataPath("book-original.xls")), second, book), Ok) << reason.toStdString();
    EXPECT_EQ(book.sheetCount, 2);
    ASSERT_EQ(book.sheets.size(), 1u);
    EXPECT_EQ(book.sheets[0].number, 2);
    EXPECT_FALSE(book.sheets[0].rows.empty());
}

TEST(XlsReader, AReaderThatFailsMeansAnInvalidFileAndSaysWhy)
{
    tvtest::TempDir tmp;
    const QString source = q(dataPath("book-original.xls"));
    struct Case {
        std::string name;
        std::string body;
        std::string reason;
    };
    const std::vector<Case> cases = {
        {"crashes", "kill -SEGV $$", "signal 11"},
        {"fails", "exit 3", "exit status 3"},
        {"cut-short", "printf 'B\\002\\000\\000\\000S\\001'", "not a whole workbook"},
        {"floods", "exec yes", "MB allowed"},
        {"refuses", "exit 1", ""},
    };
    for (const Case& c : cases) {
        ReaderOverride reader(script(tmp, c.name, c.body));
        QString reason;
        WorkbookContent book;
        EXPECT_EQ(readXls(source, allSheets(&reason), book), SourceInvalid) << c.name;
        if (c.reason.empty())
            EXPECT_TRUE(reason.isEmpty()) << c.name << ": " << reason.toStdString();
        else
            EXPECT_TRUE(reason.contains(q(c.reason))) << c.name << ": " << reason.toStdString();
    }
    ReaderOverride missing(tmp.file("not-there"));
    QString reason;
    WorkbookContent book;
    EXPECT_EQ(readXls(source, allSheets(&reason), book), SourceInvalid);
    EXPECT_TRUE(reason.contains(QStringLiteral("could not be started"))) << reason.toStdString();
}

TEST(XlsReader, FramesDecodeOnlyWhenWhole)
{
    const std::string whole = twoSheets();
    QString reason;
    WorkbookContent book;
    ASSERT_EQ(decodeXlsFrames(whole, allSheets(&reason), formula, book), Ok);
    ASSERT_EQ(book.sheets.size(), 2u);
    EXPECT_EQ(book.sheets[0].name, QStringLiteral("A"));
    ASSERT_EQ(book.sheets[0].rows.size(), 2u);
    EXPECT_EQ(book.sheets[0].rows[0], QStringList({QStringLiteral("Zürich"), QString(), QStringLiteral("-42")}));
    EXPECT_EQ(book.sheets[0].rows[1], QStringList({QStringLiteral("2.5"), QStringLiteral("=0:1:1"), QString()}));
    EXPECT_EQ(book.sheets[1].rows, std::vector<QStringList>{QStringList{QStringLiteral("x")}});

    // A reader that died part-way may have sent any prefix of it.
    for (std::size_t cut = 0; cut < whole.size(); ++cut) {
        reason.clear();
        EXPECT_EQ(decodeXlsFrames(whole.substr(0, cut), allSheets(&reason), formula, book), SourceInvalid) << cut;
        EXPECT_FALSE(reason.isEmpty()) << cut;
    }
    EXPECT_EQ(decodeXlsFrames(whole + "Z", allSheets(&reason), formula, book), SourceInvalid);

    // A sheet that was not asked for, or one asked for but missing.
    SheetRequest first = allSheets(&reason);
    first.sheets = *parseRangeList(QStringLiteral("1"), false);
    EXPECT_EQ(decodeXlsFrames(whole, first, formula, book), SourceInvalid);
    SheetRequest third = allSheets(&reason);
    third.sheets = *parseRangeList(QStringLiteral("1-3"), false);
    Frames one;
    one.tag(xlsframes::Book).put(std::uint32_t(3)).tag(xlsframes::Sheet).put(std::uint32_t(1)).text("A");
    one.tag(xlsframes::End);
    EXPECT_EQ(decodeXlsFrames(one.bytes, third, formula, book), SourceInvalid);

    // An unknown frame, and a text longer than what follows it.
    Frames odd;
    odd.tag(xlsframes::Book).put(std::uint32_t(1)).tag(xlsframes::Sheet).put(std::uint32_t(1)).text("A");
    Frames unknown = odd;
    unknown.cell('Q', 0, 0).tag(xlsframes::End);
    EXPECT_EQ(decodeXlsFrames(unknown.bytes, allSheets(&reason), formula, book), SourceInvalid);
    Frames longText = odd;
    longText.cell(xlsframes::Text, 0, 0).put(std::uint32_t(0xffffffff)).tag(xlsframes::End);
    EXPECT_EQ(decodeXlsFrames(longText.bytes, allSheets(&reason), formula, book), SourceInvalid);

    // Cells past the budget are refused like those of any other reader.
    SheetRequest small = allSheets(&reason);
    small.limits.maxCells = 4;
    EXPECT_EQ(decodeXlsFrames(whole, small, formula, book), SourceInvalid);
}

TEST(ChildProcess, EndsWhenTheChildExitsEvenIfItsOwnChildKeepsThePipe)
{
    // Like an office suite leaving a helper behind: the output is there and
    // the run is over once the program itself has exited.
    tvtest::TempDir tmp;
    const std::string pidFile = tmp.file("helper.pid");
    const std::string program = script(tmp, "leaves-helper", "sleep 600 & echo $! > " + pidFile + "\necho done");
    const ChildRun run = runChild(q(program), {}, 120'000, 1 << 20);
    ::kill(std::stoi(tvtest::readFile(pidFile)), SIGKILL);
    EXPECT_TRUE(run.succeeded()) << run.failure(QStringLiteral("it")).toStdString();
    EXPECT_EQ(run.output, "done\n");
}

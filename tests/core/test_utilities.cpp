// Text and file routines: number reading, the existence test and the copy
// over a read-only file.

#include "core/modUtilityFile.h"
#include "core/modUtilityString.h"
#include "support/qstring_print.h"
#include "support/testsupport.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

#include <cerrno>
#include <sys/stat.h>

using tvtest::readFile;
using tvtest::writeFile;

namespace {

mode_t modeOf(const std::string& path)
{
    struct stat st {};
    ::stat(path.c_str(), &st);
    return st.st_mode & 07777;
}

TEST(TextToLong, ReadsNumbersAsSettingsAlwaysHaveBeen)
{
    const std::pair<const char*, qint32> good[] = {
        {"12", 12}, {"  -7 ", -7}, {"+3", 3}, {"2.5", 2}, {"3.5", 4}, {"-2.5", -2},
        {"1e3", 1000}, {"&H10", 16}, {"&hFF", 255}, {"&HFFFFFFFF", -1}, {"&O17", 15},
        {"2147483647", 2147483647}, {"-2147483648", -2147483647 - 1},
    };
    for (const auto& [text, expected] : good) {
        qint32 v = 99;
        EXPECT_TRUE(TextToLong(text, v)) << text;
        EXPECT_EQ(v, expected) << text;
    }
    for (const char* text : {"", "   ", "abc", "12abc", "2147483648", "-2147483649", "inf", "nan",
                             "1,000", "&H", "&HFFFFFFFF0", "0x10"}) {
        qint32 v = 99;
        EXPECT_FALSE(TextToLong(text, v)) << text;
        EXPECT_EQ(v, 99) << text;
    }
}

class FileRoutines : public ::testing::Test {
protected:
    tvtest::TempDir dir;
    QString path(const char* name) { return dir.qpath() + "/" + name; }
};

TEST_F(FileRoutines, FileExistsOnlyForRegularFiles)
{
    writeFile(dir.file("a.txt"), "x");
    writeFile(dir.file("locked.txt"), "x");
    ::chmod(dir.file("locked.txt").c_str(), 0);
    QDir().mkpath(path("folder"));
    ::mkfifo(dir.file("pipe").c_str(), 0600);
    QFile::link(path("a.txt"), path("link.txt"));

    EXPECT_FALSE(FileExistsOnDisk(""));
    EXPECT_FALSE(FileExistsOnDisk("   "));
    EXPECT_TRUE(FileExistsOnDisk(path("a.txt")));
    EXPECT_TRUE(FileExistsOnDisk("  " + path("a.txt") + " "));
    EXPECT_TRUE(FileExistsOnDisk(path("locked.txt")));
    EXPECT_TRUE(FileExistsOnDisk(path("link.txt")));
    EXPECT_FALSE(FileExistsOnDisk(path("missing.txt")));
    EXPECT_FALSE(FileExistsOnDisk(path("folder")));
    EXPECT_FALSE(FileExistsOnDisk(path("a.txt") + "/"));
    EXPECT_FALSE(FileExistsOnDisk(path("pipe")));
    EXPECT_FALSE(FileExistsOnDisk(path("*.txt")));
}

TEST_F(FileRoutines, CopyReplacesCreatesAndLeavesAReadOnlyTargetReadOnly)
{
    writeFile(dir.file("src.txt"), "new content");
    writeFile(dir.file("old.txt"), "old content that is longer");
    ::chmod(dir.file("old.txt").c_str(), 0440);
    qint16 err = -1;
    EXPECT_TRUE(CopyFileOverReadOnly(path("src.txt"), path("old.txt"), err));
    EXPECT_EQ(readFile(dir.file("old.txt")), "new content");
    EXPECT_EQ(modeOf(dir.file("old.txt")), 0440u);
    EXPECT_TRUE(CopyFileOverReadOnly(path("src.txt"), path("fresh.txt"), err));
    EXPECT_EQ(readFile(dir.file("fresh.txt")), "new content");
    EXPECT_EQ(err, -1);
}

TEST_F(FileRoutines, FailedCopiesReportTheErrorAndSpareTheTarget)
{
    writeFile(dir.file("target.txt"), "keep me");
    qint16 err = 0;
    EXPECT_FALSE(CopyFileOverReadOnly(path("missing.txt"), path("target.txt"), err));
    EXPECT_EQ(err, ENOENT);
    EXPECT_EQ(readFile(dir.file("target.txt")), "keep me");

    err = 0;
    EXPECT_FALSE(CopyFileOverReadOnly(path("target.txt"), path("target.txt"), err));
    EXPECT_NE(err, 0);
    EXPECT_EQ(readFile(dir.file("target.txt")), "keep me");

    err = 0;
    EXPECT_FALSE(CopyFileOverReadOnly(path("target.txt"), path("no/such/folder.txt"), err));
    EXPECT_EQ(err, ENOENT);

    // A read-only target whose second attempt fails stays writable.
    QDir().mkpath(path("folder"));
    ::chmod(dir.file("target.txt").c_str(), 0444);
    err = 0;
    EXPECT_FALSE(CopyFileOverReadOnly(path("folder"), path("target.txt"), err));
    EXPECT_EQ(err, EISDIR);
    EXPECT_EQ(readFile(dir.file("target.txt")), "keep me");
    EXPECT_EQ(modeOf(dir.file("target.txt")), 0644u);
}

} // namespace

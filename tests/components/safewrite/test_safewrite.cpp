// Writes that replace a file only when the new content is whole, and the
// same-file test that keeps an output off the inputs.

#include "components/safewrite/SafeWrite.h"
#include "support/testsupport.h"

#include <QDir>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

int entriesIn(const std::string& folder)
{
    return int(QDir(QString::fromStdString(folder)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size());
}

} // namespace

TEST(SafeWrite, ReplacesThroughLinksKeepingPermissionsAndLeavingNoTemporary)
{
    tvtest::TempDir tmp;
    const std::string target = tmp.file("report.txt");
    tvtest::writeFile(target, "old");
    ASSERT_EQ(::chmod(target.c_str(), 0640), 0);
    ASSERT_EQ(::symlink("report.txt", tmp.file("link").c_str()), 0);

    std::string reason;
    ASSERT_TRUE(safewrite::writeWholeFile(tmp.file("link"), "new content", &reason)) << reason;
    EXPECT_EQ(tvtest::readFile(target), "new content");
    struct stat st {}, lst {};
    ASSERT_EQ(::stat(target.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0640u);
    ASSERT_EQ(::lstat(tmp.file("link").c_str(), &lst), 0);
    EXPECT_TRUE(S_ISLNK(lst.st_mode));
    EXPECT_EQ(entriesIn(tmp.path()), 2);

    // A device is written to, never replaced.
    EXPECT_TRUE(safewrite::writeWholeFile("/dev/null", "x"));
    struct stat dev {};
    ASSERT_EQ(::stat("/dev/null", &dev), 0);
    EXPECT_TRUE(S_ISCHR(dev.st_mode));
}

TEST(SafeWrite, AFullDiskKeepsTheOldFileAndSaysWhy)
{
    tvtest::TempDir tmp;
    const std::string target = tmp.file("out.txt");
    tvtest::writeFile(target, "the user's data");
    const std::string big(100000, 'x');
    const int rc = tvtest::runWithFileSizeLimit(4096, [&] {
        safewrite::SafeFile f(target);
        if (!f.open())
            return 10;
        // The writes may all look fine until the file is closed; whichever
        // step fails, the commit must not happen.
        f.write(big);
        if (f.commit())
            return 11;
        return f.reason().empty() ? 12 : 0;
    });
    EXPECT_EQ(rc, 0);
    EXPECT_EQ(tvtest::readFile(target), "the user's data");
    EXPECT_EQ(entriesIn(tmp.path()), 1);

    // An abandoned file is cleaned away as well.
    {
        safewrite::SafeFile f(target);
        ASSERT_TRUE(f.open());
        ASSERT_TRUE(f.write("half"));
    }
    EXPECT_EQ(tvtest::readFile(target), "the user's data");
    EXPECT_EQ(entriesIn(tmp.path()), 1);

    std::string reason;
    EXPECT_FALSE(safewrite::writeWholeFile(tmp.file("no/such/folder/x"), "x", &reason));
    EXPECT_FALSE(reason.empty());
    EXPECT_FALSE(safewrite::writeWholeFile(tmp.path(), "x", &reason));
}

TEST(SafeWrite, SameFileByInodeAndByResolvedFolder)
{
    tvtest::TempDir tmp;
    const std::string a = tmp.file("a.txt");
    tvtest::writeFile(a, "a");
    tvtest::writeFile(tmp.file("b.txt"), "a");
    ASSERT_EQ(::link(a.c_str(), tmp.file("hard").c_str()), 0);
    ASSERT_EQ(::symlink(a.c_str(), tmp.file("soft").c_str()), 0);
    ASSERT_EQ(::mkdir(tmp.file("sub").c_str(), 0700), 0);

    EXPECT_TRUE(safewrite::sameFile(a, tmp.file("hard")));
    EXPECT_TRUE(safewrite::sameFile(tmp.file("soft"), a));
    EXPECT_TRUE(safewrite::sameFile(tmp.file("sub/../a.txt"), a));
    EXPECT_FALSE(safewrite::sameFile(a, tmp.file("b.txt")));
    // Same bytes, same name elsewhere: different files.
    EXPECT_FALSE(safewrite::sameFile(a, tmp.file("sub/a.txt")));
    // Not there yet: the same place spelled two ways.
    EXPECT_TRUE(safewrite::sameFile(tmp.file("sub/../new"), tmp.file("new")));
    EXPECT_FALSE(safewrite::sameFile(tmp.file("new"), tmp.file("sub/new")));
    EXPECT_FALSE(safewrite::sameFile("", ""));
}

TEST(SafeWrite, DevicesAndNamedPipesAreNotRead)
{
    tvtest::TempDir tmp;
    tvtest::writeFile(tmp.file("f"), "x");
    ASSERT_EQ(::mkfifo(tmp.file("pipe").c_str(), 0600), 0);
    EXPECT_EQ(safewrite::notRegularFileReason(tmp.file("f")), "");
    EXPECT_EQ(safewrite::notRegularFileReason(tmp.file("missing")), "");
    EXPECT_NE(safewrite::notRegularFileReason(tmp.file("pipe")).find("pipe"), std::string::npos);
    EXPECT_NE(safewrite::notRegularFileReason("/dev/zero").find("device"), std::string::npos);
    EXPECT_EQ(safewrite::notRegularFileReason("/dev/null"), "");
    int fds[2];
    ASSERT_EQ(::pipe(fds), 0);
    EXPECT_EQ(safewrite::notRegularFileReason("/dev/fd/" + std::to_string(fds[0])), "");
    ::close(fds[0]);
    ::close(fds[1]);
}

// Recent-items lists: slots in the file, the 21st item, re-adding, case, and
// what a shorter list leaves behind.

#include "settings/IniStore.h"
#include "settings/clsMRU.h"
#include "support/testsupport.h"

#include <gtest/gtest.h>

using tvtest::readFile;
using tvtest::writeFile;

namespace {

class MruTest : public ::testing::Test {
protected:
    tvtest::TempDir dir;
    QString ini = dir.qpath() + "/Tallyvane.INI";
    const QString section = "1_CompareFilemruOriginal";

    QString slot(int n) { return IniReadString(ini, section, section + QString::number(n), "<empty>"); }

    clsMRU reload()
    {
        clsMRU m;
        m.Setup(20, ini, section);
        return m;
    }
};

QStringList numbered(int from, int to)
{
    QStringList l;
    for (int i = from; i <= to; ++i)
        l << QString("/docs/file%1.txt").arg(i);
    return l;
}

TEST_F(MruTest, NewestSitsInSlot20AndTheTwentyFirstPushesOutTheOldestOnlyWhenSaved)
{
    clsMRU m = reload();
    for (const QString& item : numbered(1, 3))
        m.AddUniqueItemToCollection(item);
    m.AddUniqueItemToCollection("");
    m.WriteCollectionToIniFile();
    EXPECT_EQ(slot(20), "/docs/file3.txt");
    EXPECT_EQ(slot(18), "/docs/file1.txt");
    EXPECT_EQ(slot(17), "<empty>");

    for (const QString& item : numbered(4, 21))
        m.AddUniqueItemToCollection(item);
    EXPECT_EQ(m.Count(), 21);
    EXPECT_EQ(m.Items().first(), "/docs/file1.txt");
    m.ShutDown();
    EXPECT_EQ(m.Count(), 0);
    EXPECT_EQ(slot(1), "/docs/file2.txt");
    EXPECT_EQ(reload().Items(), numbered(2, 21));
}

TEST_F(MruTest, ReaddingMovesToNewestAndCaseDoesNotMakeANewItem)
{
    clsMRU m = reload();
    for (const QString& item : numbered(1, 3))
        m.AddUniqueItemToCollection(item);
    m.AddUniqueItemToCollection("/docs/file3.txt");
    EXPECT_EQ(m.Items(), numbered(1, 3));
    m.AddUniqueItemToCollection("/DOCS/File1.TXT");
    EXPECT_EQ(m.Items(), (QStringList{"/docs/file2.txt", "/docs/file3.txt", "/DOCS/File1.TXT"}));
}

TEST_F(MruTest, StaleLowSlotsComeBackAsOlderItems)
{
    {
        clsMRU m = reload();
        for (const QString& item : numbered(1, 20))
            m.AddUniqueItemToCollection(item);
        m.ShutDown();
    }
    // A later run with a shorter list rewrites only the top slots.
    clsMRU m;
    m.Setup(20, dir.qpath() + "/elsewhere.INI", section);
    m.AddUniqueItemToCollection("/new/a.txt");
    m.AddUniqueItemToCollection("/docs/file5.txt");
    MruWriteSection(ini, section, m.Items());
    EXPECT_EQ(slot(19), "/new/a.txt");
    EXPECT_EQ(slot(20), "/docs/file5.txt");
    EXPECT_EQ(slot(18), "/docs/file18.txt");

    // Slot 5 still holds file5 too, but the higher one decides its place.
    QStringList expected = numbered(1, 18);
    expected.removeAll("/docs/file5.txt");
    expected << "/new/a.txt" << "/docs/file5.txt";
    EXPECT_EQ(reload().Items(), expected);
}

TEST_F(MruTest, MarkerAndEmptySlotsAreSkipped)
{
    writeFile(ini.toStdString(),
              "[1_CompareFilemruOriginal]\n"
              "1_CompareFilemruOriginal3=+-!#\n"
              "1_CompareFilemruOriginal7=\n"
              "1_CompareFilemruoriginal12=/a.txt\n"
              "1_CompareFilemruOriginal20=/b.txt\n"
              "1_CompareFilemruOriginal21=/never.txt\n");
    EXPECT_EQ(reload().Items(), (QStringList{"/a.txt", "/b.txt"}));
}

} // namespace

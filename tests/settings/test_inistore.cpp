// The INI store: what reads find, what writes change, and what they leave alone.

#include "settings/IniStore.h"
#include "support/testsupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

#include <random>
#include <sys/stat.h>

using tvtest::readFile;
using tvtest::writeFile;
using namespace std::string_literals;

namespace {

class IniStoreTest : public ::testing::Test {
protected:
    tvtest::TempDir dir;
    QString ini = dir.qpath() + "/Tallyvane.INI";
    std::string iniPath = ini.toStdString();

    QString get(const QString& section, const QString& key, const QString& def = "<none>")
    {
        return IniReadString(ini, section, key, def);
    }
};

TEST_F(IniStoreTest, MissingFileSectionOrKeyGivesTheDefault)
{
    EXPECT_EQ(get("Main", "numCFForms", "7"), "7");
    writeFile(iniPath, "[Main]\nnumCFForms=2\n");
    EXPECT_EQ(get("Other", "numCFForms", "7"), "7");
    EXPECT_EQ(get("Main", "numCDForms", "Uninitialized"), "Uninitialized");
    EXPECT_EQ(get("Main", "numCFForms", "7"), "2");
    // The default goes through the same buffer as a stored value.
    EXPECT_EQ(get("Main", "x", QString(600, 'd')).size(), 499);
    EXPECT_EQ(get("Main", "x", QString("ab") + QChar(0) + "cd"), "ab");
}

TEST_F(IniStoreTest, SectionsAndKeysMatchWithoutCaseAndFirstOccurrenceWins)
{
    writeFile(iniPath,
              "[1_compareFILE]\n"
              "  BIGNORECASE = FALSE  \n"
              "bIgnoreCase=TRUE\n"
              "[ Main ]\n"
              "numCFForms=1\n"
              "[1_CompareFile]\n"
              "sFileOriginal=/second/section\n");
    EXPECT_EQ(get("1_CompareFile", "bIgnoreCase"), "FALSE");
    EXPECT_EQ(get("main", "NUMCFFORMS"), "1");
    EXPECT_EQ(get("1_CompareFile", "sFileOriginal"), "<none>");

    ASSERT_TRUE(IniWriteString(ini, "1_COMPAREFILE", "bignorecase", "TRUE"));
    EXPECT_EQ(readFile(iniPath),
              "[1_compareFILE]\n"
              "bignorecase=TRUE\n"
              "bIgnoreCase=TRUE\n"
              "[ Main ]\n"
              "numCFForms=1\n"
              "[1_CompareFile]\n"
              "sFileOriginal=/second/section\n");
}

TEST_F(IniStoreTest, WriteCreatesFolderFileSectionAndKey)
{
    const QString deep = dir.qpath() + "/config/Tallyvane/Tallyvane.INI";
    ASSERT_TRUE(IniWriteString(deep, "Main", "numCFForms", "1"));
    ASSERT_TRUE(IniWriteString(deep, "Main", "numCDForms", "0"));
    ASSERT_TRUE(IniWriteString(deep, "1_CompareFile", "bIgnoreCase", "TRUE"));
    ASSERT_TRUE(IniWriteString(deep, "Main", "numCFForms", "3"));
    EXPECT_EQ(readFile(deep.toStdString()),
              "[Main]\nnumCFForms=3\nnumCDForms=0\n\n[1_CompareFile]\nbIgnoreCase=TRUE\n");
}

TEST_F(IniStoreTest, EverythingButTheChangedLineIsKeptByteForByte)
{
    const std::string before =
        "; hand-written notes\n"
        "stray line before any section\n"
        "[Main]\n"
        "numCFForms=2\n"
        "   weird line without equals\n"
        ";numCDForms=9\n"
        "unknownKey =  spaced  value \n"
        "\n"
        "[Other]\n"
        "numCDForms=4\n";
    writeFile(iniPath, before);

    ASSERT_TRUE(IniWriteString(ini, "Main", "numCFForms", "5"));
    ASSERT_TRUE(IniWriteString(ini, "Main", "numCDForms", "1"));
    EXPECT_EQ(readFile(iniPath),
              "; hand-written notes\n"
              "stray line before any section\n"
              "[Main]\n"
              "numCFForms=5\n"
              "   weird line without equals\n"
              ";numCDForms=9\n"
              "unknownKey =  spaced  value \n"
              "numCDForms=1\n"
              "\n"
              "[Other]\n"
              "numCDForms=4\n");
    // A commented-out key is no key.
    EXPECT_EQ(get("Main", ";numCDForms"), "<none>");
    EXPECT_EQ(get("Main", "unknownKey"), "spaced  value");
}

TEST_F(IniStoreTest, ValuesAreCutAt499CharactersAndAtNul)
{
    const QString longValue = QString(300, 'a') + QString(300, 'b');
    ASSERT_TRUE(IniWriteString(ini, "S", "long", longValue));
    EXPECT_EQ(get("S", "long"), longValue.left(499));

    // A character outside the basic plane is never split in half.
    const QString astral = QString(498, 'x') + QString::fromUcs4(U"\U0001F600") + "tail";
    ASSERT_TRUE(IniWriteString(ini, "S", "astral", astral));
    EXPECT_EQ(get("S", "astral"), QString(498, 'x'));

    writeFile(iniPath, "[S]\nnul=abc\0def\ntrailing=xyz\0\n"s);
    EXPECT_EQ(get("S", "nul"), "abc");
    EXPECT_EQ(get("S", "trailing"), "xyz");
}

TEST_F(IniStoreTest, AWriteKeepsTheFilesLineEnds)
{
    const struct {
        std::string before, section, key, value, after;
    } cases[] = {
        // No line end behind the last line: a new key gets one, a changed value does not.
        {"[Main]\nnumCFForms=2", "Main", "numCDForms", "1", "[Main]\nnumCFForms=2\nnumCDForms=1\n"},
        {"[Main]\nnumCFForms=2", "Main", "numCFForms", "4", "[Main]\nnumCFForms=4"},
        {"[Main]\nnumCFForms=2", "New", "k", "v", "[Main]\nnumCFForms=2\n\n[New]\nk=v\n"},
        // A CR LF file stays CR LF, new keys and sections included.
        {"[Main]\r\nnumCFForms=2\r\n\r\n[B]\r\nk=v\r\n", "Main", "numFTForms", "0",
         "[Main]\r\nnumCFForms=2\r\nnumFTForms=0\r\n\r\n[B]\r\nk=v\r\n"},
        {"[B]\r\nk=v\r\n", "C", "k", "w", "[B]\r\nk=v\r\n\r\n[C]\r\nk=w\r\n"},
        {"[Main]\r\nnumCFForms=2\r\n", "Main", "numCFForms", "3", "[Main]\r\nnumCFForms=3\r\n"},
    };
    for (const auto& c : cases) {
        writeFile(iniPath, c.before);
        ASSERT_TRUE(IniWriteString(ini, QString::fromStdString(c.section), QString::fromStdString(c.key),
                                   QString::fromStdString(c.value)));
        EXPECT_EQ(readFile(iniPath), c.after) << c.before;
    }
    // And a read of either kind finds clean values.
    writeFile(iniPath, "[Main]\r\nActiveForm=1_CompareFile\r\n[B]\nk=v");
    EXPECT_EQ(get("Main", "ActiveForm"), "1_CompareFile");
    EXPECT_EQ(get("B", "k"), "v");
}

TEST_F(IniStoreTest, BinaryGarbageAndHugeLinesAreSurvivedAndKept)
{
    std::mt19937 rng(42);
    std::string garbage(64 * 1024, '\0');
    for (char& c : garbage)
        c = char(rng() & 0xFF);
    // Make sure no stray "[" line inside the garbage could open a section of
    // the names used below.
    const std::string hugeLine(2 * 1024 * 1024, 'z');
    const std::string before = garbage + "\n" + hugeLine + "\n[Main]\nnumCFForms=3\n\xff\xfe=\x80\x81\n" + garbage;
    writeFile(iniPath, before);

    EXPECT_EQ(get("Main", "numCFForms"), "3");
    EXPECT_EQ(get("Nowhere", "numCFForms"), "<none>");
    // Bytes that are no UTF-8 come through one character per byte.
    EXPECT_EQ(get("Main", QString::fromLatin1("\xff\xfe")), QString::fromLatin1("\x80\x81"));

    ASSERT_TRUE(IniWriteString(ini, "Main", "numCFForms", "4"));
    std::string expected = before;
    expected.replace(expected.find("numCFForms=3"), 12, "numCFForms=4");
    EXPECT_EQ(readFile(iniPath), expected);
}

TEST_F(IniStoreTest, BlanksAndQuotesAroundValues)
{
    writeFile(iniPath, "[S]\na =  plain  \nb=\"  kept  \"\nc='single'\nd=\"unbalanced\ne=\n");
    EXPECT_EQ(get("S", "a"), "plain");
    EXPECT_EQ(get("S", "b"), "  kept  ");
    EXPECT_EQ(get("S", "c"), "single");
    EXPECT_EQ(get("S", "d"), "\"unbalanced");
    EXPECT_EQ(get("S", "e"), "");

    // Whatever the program writes reads back as it was written.
    for (const QString& v : {QString("  leading"), QString("trailing\t"), QString("\"quoted\""),
                            QString("'x'"), QString("\""), QString("a \"middle\" b"), QString()}) {
        ASSERT_TRUE(IniWriteString(ini, "S", "v", v));
        EXPECT_EQ(get("S", "v"), v);
    }
}

TEST_F(IniStoreTest, LineBreaksInAValueCannotBreakTheFile)
{
    ASSERT_TRUE(IniWriteString(ini, "S", "v", "first\nnumCFForms=99\r\n[Main]"));
    ASSERT_TRUE(IniWriteString(ini, "S", "w", "second"));
    EXPECT_EQ(get("S", "v"), "first");
    EXPECT_EQ(get("S", "w"), "second");
    EXPECT_EQ(get("S", "numCFForms"), "<none>");
    EXPECT_EQ(get("Main", "numCFForms"), "<none>");
}

TEST_F(IniStoreTest, UnwritablePlaceLosesTheValueQuietly)
{
    // A regular file where a folder should be stops even the superuser.
    writeFile(dir.file("blocker"), "not a folder");
    const QString blocked = dir.qpath() + "/blocker/Tallyvane/Tallyvane.INI";
    EXPECT_FALSE(IniWriteString(blocked, "Main", "numCFForms", "1"));
    EXPECT_EQ(IniReadString(blocked, "Main", "numCFForms", "d"), "d");
    EXPECT_EQ(readFile(dir.file("blocker")), "not a folder");

    // An INI path that cannot be read is never replaced.
    QDir().mkpath(ini);
    EXPECT_FALSE(IniWriteString(ini, "Main", "numCFForms", "1"));
    EXPECT_TRUE(QFileInfo(ini).isDir());
}

TEST_F(IniStoreTest, ReplacementIsAtomicAndKeepsPermissionsAndLinks)
{
    writeFile(iniPath, "[Main]\nnumCFForms=1\n");
    ::chmod(iniPath.c_str(), 0600);
    ASSERT_TRUE(IniWriteString(ini, "Main", "numCFForms", "2"));
    struct stat st {};
    ASSERT_EQ(::stat(iniPath.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0600u);
    // Nothing but the INI file is left in its folder.
    EXPECT_EQ(QDir(dir.qpath()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
              QStringList{"Tallyvane.INI"});

    // A settings file kept elsewhere and linked in stays linked.
    QDir().mkpath(dir.qpath() + "/real");
    const QString real = dir.qpath() + "/real/store.ini";
    const QString link = dir.qpath() + "/linked.INI";
    writeFile(real.toStdString(), "[Main]\nnumCFForms=1\n");
    ASSERT_TRUE(QFile::link(real, link));
    ASSERT_TRUE(IniWriteString(link, "Main", "numCFForms", "9"));
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(readFile(real.toStdString()), "[Main]\nnumCFForms=9\n");
}

TEST_F(IniStoreTest, BatchWritesOnceAtTheEnd)
{
    writeFile(iniPath, "[Main]\nnumCFForms=1\n");
    {
        IniBatch batch(ini);
        ASSERT_TRUE(IniWriteString(ini, "Main", "numCFForms", "2"));
        {
            IniBatch inner(ini);
            ASSERT_TRUE(IniWriteString(ini, "Main", "numCDForms", "3"));
        }
        // Reads inside the batch see its writes; the file does not yet.
        EXPECT_EQ(get("Main", "numCFForms"), "2");
        EXPECT_EQ(get("Main", "numCDForms"), "3");
        EXPECT_EQ(readFile(iniPath), "[Main]\nnumCFForms=1\n");
    }
    EXPECT_EQ(readFile(iniPath), "[Main]\nnumCFForms=2\nnumCDForms=3\n");

    // A batch that only reads leaves the file as it was, line ends and all.
    writeFile(iniPath, "[Main]\r\nnumCFForms=1");
    {
        IniBatch batch(ini);
        EXPECT_EQ(get("Main", "numCFForms"), "1");
    }
    EXPECT_EQ(readFile(iniPath), "[Main]\r\nnumCFForms=1");
}

} // namespace

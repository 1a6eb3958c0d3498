// What each kind of finding looks like in the grid: the cell texts with
// their blanks, the colours, the marked background and the icons, as the
// grid's model hands them to the view.

#include "folder_fixture.h"

#include <QCheckBox>
#include <QColor>
#include <QIcon>

namespace {

using skeinmatch::FolderRecord;
using tvtest::FolderViewerTest;

FolderRecord file(const char* name, int size, int date, int content)
{
    FolderRecord r;
    r.sName = name;
    r.sPathOriginal = "/o/";
    r.sPathModified = "/m/";
    r.lIsFile = 1;
    r.lSizeCompare = size;
    r.lDateCompare = date;
    r.lContentStatus = content;
    return r;
}

class GridRows : public FolderViewerTest {
protected:
    // Runs over the records and returns the grid afterwards.
    const foldercompare::FolderGridModel& show(const std::vector<FolderRecord>& records, bool ignoreDate = false)
    {
        makeScripted();
        viewer->findChild<QCheckBox*>("cbIgnoreDateDifferences")->setChecked(ignoreDate);
        script->records = records;
        start();
        script->inProgress = false;
        viewer->Timer1_Timer();
        return viewer->Grid();
    }
    static QStringList texts(const foldercompare::FolderGridModel& g, int row)
    {
        QStringList t;
        for (int c = 0; c < 5; ++c)
            t << g.data(g.index(row, c)).toString();
        return t;
    }
    // Per cell: "r" red, "b" blue, "g" green, "-" none; upper case when the
    // background is marked.
    static QString marks(const foldercompare::FolderGridModel& g, int row)
    {
        QString m;
        for (int c = 0; c < 5; ++c) {
            const QVariant fg = g.data(g.index(row, c), Qt::ForegroundRole);
            const QVariant bg = g.data(g.index(row, c), Qt::BackgroundRole);
            QChar ch = '-';
            if (fg.isValid()) {
                const QColor col = fg.value<QColor>();
                ch = col == QColor(255, 0, 0) ? 'r' : col == QColor(0, 0, 255) ? 'b' : col == QColor(0, 128, 0) ? 'g' : '?';
            }
            if (bg.isValid()) {
                EXPECT_EQ(bg.value<QColor>(), QColor(0xEF, 0xEF, 0xEF));
                ch = ch == '-' ? '#' : ch.toUpper();
            }
            m += ch;
        }
        return m;
    }
    static QString icons(const foldercompare::FolderGridModel& g, int row)
    {
        QString s;
        for (int c = 0; c < 2; ++c)
            s += g.data(g.index(row, c), Qt::DecorationRole).isValid() ? 'I' : '-';
        return s;
    }
};

TEST_F(GridRows, FilesInBothTreesAreMarkedWhereTheyDiffer)
{
    const auto& g = show({file("same.txt", 0, 0, 0), file("content.txt", 0, 0, 1), file("bigger.txt", 1, 0, 1),
                          file("older.txt", 0, -1, 0), file("broken.txt", 0, 0, 2)});
    EXPECT_EQ(texts(g, 0), QStringList({"       same.txt", "       same.txt", "  ", " ", " "}));
    EXPECT_EQ(marks(g, 0), "-----");
    EXPECT_EQ(icons(g, 0), "II");
    EXPECT_EQ(texts(g, 1).mid(2), QStringList({"CHANGED", " ", " "}));
    EXPECT_EQ(marks(g, 1), "RRR--");
    EXPECT_EQ(texts(g, 2).mid(2), QStringList({"CHANGED", "[O]>[M]", " "}));
    EXPECT_EQ(marks(g, 2), "RRRR-");
    EXPECT_EQ(texts(g, 3).mid(2), QStringList({"  ", " ", "[M]>[O]"}));
    EXPECT_EQ(marks(g, 3), "RR--R");
    EXPECT_EQ(texts(g, 4)[2], "ERR: File");
    EXPECT_EQ(marks(g, 4), "RRR--");
}

TEST_F(GridRows, IgnoringDatesUnmarksOnlyADateAlone)
{
    const auto& g = show({file("older.txt", 0, 1, 0), file("both.txt", -1, 1, 1)}, true);
    EXPECT_EQ(texts(g, 0), QStringList({"       older.txt", "       older.txt", "  ", " ", " "}));
    EXPECT_EQ(marks(g, 0), "-----");
    EXPECT_EQ(texts(g, 1).mid(2), QStringList({"CHANGED", "[M]>[O]", "[O]>[M]"}));
    EXPECT_EQ(marks(g, 1), "RRRRR") << "a date beside a real difference stays marked";
}

TEST_F(GridRows, EntriesOfOneTreeAndFoldersShowTheirSideOnly)
{
    FolderRecord onlyO = file("gone.txt", 0, 0, 0);
    onlyO.lOnlyInOriginal = 1;
    FolderRecord onlyM = file("new.txt", 0, 0, 0);
    onlyM.lOnlyInModified = 1;
    FolderRecord dirBoth;
    dirBoth.sName = "sub";
    dirBoth.sPathOriginal = "/o/sub/";
    dirBoth.sPathModified = "/m/sub/";
    FolderRecord dirO = dirBoth;
    dirO.lOnlyInOriginal = 1;
    FolderRecord dirM = dirBoth;
    dirM.lOnlyInModified = 1;
    FolderRecord dirErr = dirBoth;
    dirErr.lContentStatus = 2;
    const auto& g = show({onlyO, onlyM, dirBoth, dirO, dirM, dirErr});

    EXPECT_EQ(texts(g, 0).mid(0, 2), QStringList({"       gone.txt", "    "}));
    EXPECT_EQ(marks(g, 0), "B#---");
    EXPECT_EQ(icons(g, 0), "I-");
    EXPECT_EQ(texts(g, 1).mid(0, 2), QStringList({" ", "       new.txt"}));
    EXPECT_EQ(marks(g, 1), "#G---");
    EXPECT_EQ(icons(g, 1), "-I");
    EXPECT_EQ(texts(g, 2).mid(0, 2), QStringList({"     /o/sub/", "     /m/sub/"}));
    EXPECT_EQ(marks(g, 2), "-----");
    EXPECT_EQ(texts(g, 3).mid(0, 2), QStringList({"     /o/sub/", "     "}));
    EXPECT_EQ(marks(g, 3), "B#---");
    EXPECT_EQ(texts(g, 4).mid(0, 2), QStringList({"     ", "     /m/sub/"}));
    EXPECT_EQ(marks(g, 4), "#G---");
    // A folder that could not be read is coloured like a changed file.
    EXPECT_EQ(marks(g, 5), "RRR--");
    EXPECT_EQ(icons(g, 5), "II");
    // Files and folder icons differ.
    EXPECT_NE(g.data(g.index(0, 0), Qt::DecorationRole).value<QIcon>().cacheKey(),
              g.data(g.index(2, 0), Qt::DecorationRole).value<QIcon>().cacheKey());
}

} // namespace

// What each kind of finding looks like in the grid: the cell texts with
// their blanks, the colours and the marked background, as the
// grid's model hands them to the view.

#include "folder_fixture.h"

#include <QCheckBox>
#include <QColor>

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
};

TEST_F(GridRows, FilesInBothTreesAreMarkedWhereTheyDiffer)
{
    const auto& g = show({file("same.txt", 0, 0, 0), file("content.txt", 0, 0, 1), file("bigger.txt", 1, 0, 1),
                          file("older.txt", 0, -1, 0), file("broken.txt", 0, 0, 2)});
    EXPECT_EQ(texts(g, 0), QStringList({"       same.txt", "       same.txt", "  ", " ", " "}));
    EXPECT_EQ(marks(g, 0), "-----");
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

} // namespace

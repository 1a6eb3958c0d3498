// Automatic refresh: when a tick asks for a compare, and what a change of
// the files on disk gives once its burst of events has settled. The clock of
// the settling is the test's own, so no outcome depends on how fast the
// machine is; the waits below only let the kernel's file events arrive.

#include "filecompare/AutoRefresh.h"
#include "support/testsupport.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QSignalSpy>
#include <gtest/gtest.h>

using filecompare::AutoRefresh;

namespace {

TEST(AutoRefresh, OffArmedAndDue)
{
    bool stale = false;
    AutoRefresh r([&] { return stale; });
    QSignalSpy due(&r, &AutoRefresh::refreshDue);
    EXPECT_EQ(r.state(), AutoRefresh::State::Off);
    stale = true;
    r.tick();
    EXPECT_EQ(due.count(), 0);

    r.setOn(true);
    EXPECT_EQ(r.state(), AutoRefresh::State::Due);
    r.tick();
    EXPECT_EQ(due.count(), 1);

    stale = false;
    EXPECT_EQ(r.state(), AutoRefresh::State::Armed);
    r.tick();
    EXPECT_EQ(due.count(), 1);

    // A period of 0 would never fire.
    stale = true;
    r.setPeriodSeconds(0);
    EXPECT_EQ(r.state(), AutoRefresh::State::Off);
    r.setPeriodSeconds(5);
    EXPECT_EQ(r.state(), AutoRefresh::State::Due);
    r.setOn(false);
    EXPECT_EQ(r.state(), AutoRefresh::State::Off);
}

class FileWatchTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        original = write(QStringLiteral("a.txt"), "one\n");
        modified = write(QStringLiteral("b.txt"), "two\n");
        refresh.watchFiles(original, modified);
        refresh.setOn(true);
    }
    QString write(const QString& name, const QByteArray& bytes)
    {
        const QString path = dir.qpath() + QLatin1Char('/') + name;
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(bytes);
        return path;
    }
    // Lets the file events in, then lets the burst settle on the test's clock.
    void settle()
    {
        const QDeadlineTimer deadline(10000);
        while (!refresh.hasPendingFileEvents() && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        ASSERT_TRUE(refresh.hasPendingFileEvents()) << "no file event arrived";
        now += AutoRefresh::kSettleMs;
        refresh.settle();
    }

    tvtest::TempDir dir;
    qint64 now = 0;
    AutoRefresh refresh{[] { return false; }, nullptr, [this] { return now; }};
    QString original, modified;
};

TEST_F(FileWatchTest, ASaveByRenameIsOneRefreshOfItsSide)
{
    QSignalSpy changed(&refresh, &AutoRefresh::filesChanged);
    write(QStringLiteral("b.txt.new"), "two and more\n");
    ASSERT_TRUE(QFile::remove(modified));
    ASSERT_TRUE(QFile::rename(modified + QStringLiteral(".new"), modified));
    settle();
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0], (QList<QVariant>{false, true}));

    // The watch follows the path, not the file that was renamed away.
    write(QStringLiteral("b.txt"), "three\n");
    settle();
    ASSERT_EQ(changed.count(), 2);
    EXPECT_EQ(changed[1], (QList<QVariant>{false, true}));
}

TEST_F(FileWatchTest, ADeletedFileIsSaidOnceAndItsReturnIsAChange)
{
    QSignalSpy missing(&refresh, &AutoRefresh::fileMissing);
    QSignalSpy changed(&refresh, &AutoRefresh::filesChanged);
    ASSERT_TRUE(QFile::remove(original));
    settle();
    ASSERT_EQ(missing.count(), 1);
    EXPECT_EQ(missing[0], (QList<QVariant>{0, original}));
    EXPECT_EQ(changed.count(), 0);

    write(QStringLiteral("a.txt"), "back\n");
    settle();
    EXPECT_EQ(missing.count(), 1);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0], (QList<QVariant>{true, false}));
}

} // namespace

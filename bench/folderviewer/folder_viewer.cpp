// Runs one folder comparison through the real folder viewer.
//
//   tv-folder-viewer [--end] ORIGINAL MODIFIED       time to the last row in the grid
//   tv-folder-viewer --engine ORIGINAL MODIFIED      the same walk without a viewer
//   tv-folder-viewer --shots DIR ORIGINAL MODIFIED   pictures of a finished run
//
// The timing mode prints "rows N", "ms_to_last_row N", "longest_stall_ms N"
// and "rss_kb N"; --end fills the grid once at the end instead of streaming.
// The settings live in a throw-away INI file, so nothing of the user's is
// read or changed.

#include "core/modGlobal.h"
#include "foldercompare/FolderCompareSession.h"
#include "foldercompare/frmCompareDir.h"
#include "shell/frmMainMDI.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTableView>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <cstdio>
#include <fstream>
#include <string>

namespace {

long rssKb()
{
    std::ifstream status("/proc/self/status");
    std::string key;
    while (status >> key) {
        if (key == "VmRSS:") {
            long kb = 0;
            status >> kb;
            return kb;
        }
        std::getline(status, key);
    }
    return -1;
}

void waitFor(const std::function<bool()>& done)
{
    while (!done()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QThread::msleep(1);
    }
}

// A fine timer on the window's thread: the longest gap between two of its
// ticks is the longest time nothing else could run there.
struct StallProbe {
    QElapsedTimer clock;
    QTimer timer;
    qint64 longest = 0, last = -1, longestAt = 0;
    StallProbe()
    {
        timer.setInterval(2);
        QObject::connect(&timer, &QTimer::timeout, [this] {
            const qint64 now = clock.elapsed();
            if (last >= 0 && now - last > longest) {
                longest = now - last;
                longestAt = now;
            }
            last = now;
        });
        clock.start();
        timer.start();
    }
};

int engineOnly(const QString& a, const QString& b)
{
    foldercompare::FolderCompareSession session;
    foldercompare::FolderSettings s;
    s.folderOriginal = QFile::encodeName(a).toStdString();
    s.folderModified = QFile::encodeName(b).toStdString();
    // The same probe with no viewer at all: what the machine alone costs
    // the window's thread while the engine's workers run.
    StallProbe probe;
    session.Start(s);
    waitFor([&] { return !session.InProgress(); });
    std::printf("rows %d\nms_to_last_row %lld\nlongest_stall_ms %lld\nlongest_stall_ended_at_ms %lld\nrss_kb %ld\n",
                session.RecordCount(), probe.clock.elapsed(), probe.longest, probe.longestAt, rssKb());
    return 0;
}

int timed(const QString& a, const QString& b, bool atEnd)
{
    frmCompareDir viewer;
    viewer.resize(1200, 800);
    viewer.Setup(QStringLiteral("1_CompareDir"), false);
    viewer.findChild<QCheckBox*>(QStringLiteral("cbDontStreamResults"))->setChecked(atEnd);
    viewer.show();
    viewer.SetBatchFolders(a, b);
    // The window's first paint (fonts, styles) is not part of a run.
    QElapsedTimer settle;
    settle.start();
    while (settle.elapsed() < 300)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);

    StallProbe probe;
    viewer.RefreshDiffViewer();
    waitFor([&] { return !viewer.CompareInProgress() && !viewer.Timer1Active(); });
    const qint64 ms = probe.clock.elapsed();
    probe.timer.stop();
    std::printf("rows %d\nms_to_last_row %lld\nlongest_stall_ms %lld\nlongest_stall_ended_at_ms %lld\nrss_kb %ld\n",
                viewer.Grid().rowCount(), ms, probe.longest, probe.longestAt, rssKb());
    return viewer.Grid().rowCount() == viewer.RecordCount() ? 0 : 1;
}

int shots(const QString& dir, const QString& a, const QString& b)
{
    frmMainMDI frame;
    frame.Form_Load();
    frame.resize(1400, 900);
    frame.show();
    auto* viewer = qobject_cast<frmCompareDir*>(frame.frmGetCDNumber(1));
    if (!viewer)
        return 2;
    if (auto* sub = qobject_cast<QMdiSubWindow*>(viewer->parentWidget()))
        sub->showMaximized();
    viewer->SetBatchFolders(a, b);
    viewer->RefreshDiffViewer();
    waitFor([&] { return !viewer->CompareInProgress() && !viewer->Timer1Active(); });
    QCoreApplication::processEvents();
    const auto& g = viewer->Grid();
    int changed = -1;
    for (int r = 0; r < g.rowCount() && changed < 0; ++r)
        if (g.data(g.index(r, 2)).toString() == QLatin1String("CHANGED") && g.Row(r).icons[1] != foldercompare::RowIcon::Folder)
            changed = r;
    viewer->SelectCell(0, 0);
    viewer->findChild<QTableView*>(QStringLiteral("fgFiles"))->scrollToTop();
    QCoreApplication::processEvents();
    frame.grab().save(dir + QStringLiteral("/folder-viewer.png"));
    viewer->findChild<QTableView*>(QStringLiteral("fgFiles"))->scrollToBottom();
    QCoreApplication::processEvents();
    frame.grab().save(dir + QStringLiteral("/folder-viewer-end.png"));
    if (changed >= 0) {
        viewer->SelectCell(changed, 0);
        viewer->CompareSelectedFiles(false);
        QCoreApplication::processEvents();
        frame.grab().save(dir + QStringLiteral("/drill-down.png"));
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir settings;
    gsIniFile = settings.path() + QStringLiteral("/Tallyvane.INI");
    const QStringList args = app.arguments().mid(1);
    if (args.size() == 4 && args[0] == QLatin1String("--shots"))
        return shots(args[1], args[2], args[3]);
    if (args.size() == 3 && args[0] == QLatin1String("--engine"))
        return engineOnly(args[1], args[2]);
    if (args.size() == 3 && args[0] == QLatin1String("--end"))
        return timed(args[1], args[2], true);
    if (args.size() == 2)
        return timed(args[0], args[1], false);
    std::fprintf(stderr, "usage: tv-folder-viewer [--end|--engine|--shots DIR] ORIGINAL MODIFIED\n");
    return 2;
}

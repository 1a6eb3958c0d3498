#include "filecompare/AutoRefresh.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QTimer>

#include <memory>

#include <sys/stat.h>

namespace filecompare {

AutoRefresh::AutoRefresh(StalePredicate isStale, QObject* parent, Clock clock)
    : QObject(parent)
    , isStale_(std::move(isStale))
    , clock_(std::move(clock))
{
    if (!clock_) {
        auto started = std::make_shared<QElapsedTimer>();
        started->start();
        clock_ = [started] { return started->elapsed(); };
    }
    timer_ = new QTimer(this);
    timer_->setObjectName(QStringLiteral("timerRefresh"));
    connect(timer_, &QTimer::timeout, this, &AutoRefresh::tick);
    settleTimer_ = new QTimer(this);
    settleTimer_->setSingleShot(true);
    settleTimer_->setInterval(int(kSettleMs));
    connect(settleTimer_, &QTimer::timeout, this, &AutoRefresh::settle);
    watcher_ = new QFileSystemWatcher(this);
    connect(watcher_, &QFileSystemWatcher::fileChanged, this, &AutoRefresh::noteEvent);
    connect(watcher_, &QFileSystemWatcher::directoryChanged, this, &AutoRefresh::noteEvent);
}

AutoRefresh::~AutoRefresh() = default;

void AutoRefresh::setOn(bool on)
{
    // Saying "on" again (a slider move does) must not drop events that are
    // still settling.
    const bool changed = on != on_;
    on_ = on;
    applyTimer();
    if (changed)
        rewatch();
}

void AutoRefresh::setPeriodSeconds(int seconds)
{
    seconds_ = qMax(0, seconds);
    applyTimer();
}

void AutoRefresh::applyTimer()
{
    timer_->setInterval(seconds_ * 1000);
    if (on_ && seconds_ > 0)
        timer_->start();
    else
        timer_->stop();
}

AutoRefresh::State AutoRefresh::state() const
{
    if (!on_ || seconds_ <= 0)
        return State::Off;
    return isStale_ && isStale_() ? State::Due : State::Armed;
}

void AutoRefresh::tick()
{
    if (state() == State::Due)
        emit refreshDue();
}

void AutoRefresh::watchFiles(const QString& original, const QString& modified)
{
    // The same pair again keeps its stamps, so a change not yet handed on
    // is not forgotten.
    if (on_ && paths_[0] == original && paths_[1] == modified)
        return;
    paths_ = {original, modified};
    for (int i = 0; i < 2; ++i) {
        stamps_[i] = stampOf(paths_[i]);
        reportedMissing_[i] = false;
    }
    rewatch();
}

AutoRefresh::Stamp AutoRefresh::stampOf(const QString& path)
{
    Stamp s;
    struct stat st {};
    if (path.isEmpty() || ::stat(QFile::encodeName(path).constData(), &st) != 0 || !S_ISREG(st.st_mode))
        return s;
    s.exists = true;
    s.inode = quint64(st.st_ino);
    s.size = qint64(st.st_size);
    s.mtimeNs = qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
    return s;
}

void AutoRefresh::rewatch()
{
    if (!watcher_->files().isEmpty())
        watcher_->removePaths(watcher_->files());
    if (!watcher_->directories().isEmpty())
        watcher_->removePaths(watcher_->directories());
    pending_ = false;
    settleTimer_->stop();
    if (!on_)
        return;
    // The folders too: a file saved by rename, or deleted and written anew,
    // is a new file that a watch on the old one never hears of.
    QStringList files, dirs;
    for (const QString& p : paths_) {
        if (p.isEmpty())
            continue;
        const QFileInfo fi(p);
        if (fi.isFile())
            files << fi.absoluteFilePath();
        const QString dir = fi.absolutePath();
        if (QFileInfo(dir).isDir() && !dirs.contains(dir))
            dirs << dir;
    }
    files.removeDuplicates();
    if (!files.isEmpty())
        watcher_->addPaths(files);
    if (!dirs.isEmpty())
        watcher_->addPaths(dirs);
}

void AutoRefresh::noteEvent()
{
    if (!on_)
        return;
    pending_ = true;
    lastEventMs_ = clock_();
    settleTimer_->start();
}

void AutoRefresh::settle()
{
    if (!pending_ || !on_)
        return;
    if (clock_() - lastEventMs_ < kSettleMs) {
        settleTimer_->start();
        return;
    }
    pending_ = false;
    std::array<bool, 2> changed{};
    for (int i = 0; i < 2; ++i) {
        if (paths_[i].isEmpty())
            continue;
        const Stamp now = stampOf(paths_[i]);
        if (!now.exists) {
            stamps_[i] = now;
            if (!reportedMissing_[i]) {
                reportedMissing_[i] = true;
                emit fileMissing(i, paths_[i]);
            }
            continue;
        }
        changed[i] = reportedMissing_[i] || !(now == stamps_[i]);
        reportedMissing_[i] = false;
        stamps_[i] = now;
        if (changed[i]) {
            // A watch follows the file it was set on; after a rename-save
            // that is the old one, so set it again on what the path is now.
            const QString abs = QFileInfo(paths_[i]).absoluteFilePath();
            if (watcher_->files().contains(abs))
                watcher_->removePath(abs);
            watcher_->addPath(abs);
        }
    }
    if (changed[0] || changed[1])
        emit filesChanged(changed[0], changed[1]);
}

} // namespace filecompare

#pragma once
// Redoing a stale comparison by itself: a period in whole seconds, a switch,
// and, while the switch is on, a watch on the two files so that a save in
// another program shows up without a keystroke here.
//
// The viewer keeps the truth about staleness (its dirty flags); this object
// asks for it through a callback, so a tick on a fresh view costs nothing and
// looks at no file. File events come in bursts (an editor that saves by
// writing a new file and renaming it over the old one sends a removal and a
// creation), so they settle for a moment and are then handed on once, for
// the sides whose file really changed: what decides is the file's identity
// and time, not the event, so stragglers of a burst already handed on
// change nothing. The settling reads a clock that tests replace.

#include <QObject>
#include <QString>

#include <array>
#include <functional>

class QFileSystemWatcher;
class QTimer;

namespace filecompare {

class AutoRefresh : public QObject {
    Q_OBJECT

public:
    enum class State { Off, Armed, Due };
    enum Side { kOriginal = 0, kModified = 1 };

    // Milliseconds on a monotonic clock.
    using Clock = std::function<qint64()>;
    using StalePredicate = std::function<bool()>;

    explicit AutoRefresh(StalePredicate isStale, QObject* parent = nullptr, Clock clock = {});
    ~AutoRefresh() override;

    // The switch; off also stops watching the files.
    void setOn(bool on);
    bool isOn() const { return on_; }
    // The period; 0 never fires, as a timer of interval 0 never would.
    void setPeriodSeconds(int seconds);
    int periodSeconds() const { return seconds_; }
    State state() const;

    // What the timer calls: asks for a refresh when one is due.
    void tick();

    // The files to watch while the switch is on; an empty path is not watched.
    void watchFiles(const QString& original, const QString& modified);
    // Looks at what the file events left behind once they have settled;
    // the settle timer calls it, tests may call it after moving their clock.
    void settle();
    // Events waiting to settle.
    bool hasPendingFileEvents() const { return pending_; }
    // How long a burst of file events must be quiet before it counts.
    static constexpr qint64 kSettleMs = 300;

signals:
    // The timer found the view stale.
    void refreshDue();
    // One or both watched files have new contents on disk.
    void filesChanged(bool original, bool modified);
    // A watched file is gone (deleted, or moved away); said once until it
    // comes back.
    void fileMissing(int side, const QString& path);

private:
    // What tells one version of a file from the next: a rename-save gives
    // a new inode, a rewrite a new time (in nanoseconds) or size.
    struct Stamp {
        bool exists = false;
        quint64 inode = 0;
        qint64 size = -1;
        qint64 mtimeNs = 0;
        bool operator==(const Stamp&) const = default;
    };
    static Stamp stampOf(const QString& path);
    void rewatch();
    void noteEvent();
    void applyTimer();

    StalePredicate isStale_;
    Clock clock_;
    QTimer* timer_ = nullptr;
    QTimer* settleTimer_ = nullptr;
    QFileSystemWatcher* watcher_ = nullptr;
    bool on_ = false;
    int seconds_ = 10;

    std::array<QString, 2> paths_;
    std::array<Stamp, 2> stamps_;
    std::array<bool, 2> reportedMissing_{};
    bool pending_ = false;
    qint64 lastEventMs_ = 0;
};

} // namespace filecompare

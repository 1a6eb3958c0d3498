#include "core/Places.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cerrno>
#include <climits>
#include <cstring>
#include <csignal>
#include <filesystem>
#include <memory>
#include <mutex>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

QString iniFilePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/Tallyvane/Tallyvane.INI");
}

QString dataFolder()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QStringLiteral("/Tallyvane");
    QDir().mkpath(folder);
    return folder;
}

namespace {

const QLatin1String kFolderPrefix("tallyvane-");

// The bases a private folder may live under, best first.
QStringList folderBases()
{
    // The runtime folder is per user, in memory and cleaned at logout, which
    // suits scratch copies of documents; fall back to the temporary folder.
    QStringList bases;
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty() && QFileInfo(runtime).isDir() && QFileInfo(runtime).isWritable())
        bases << runtime;
    bases << QDir::tempPath();
    return bases;
}

std::unique_ptr<QTemporaryDir> makePrivateFolder()
{
    // The process id in the name lets a later copy tell a folder whose owner
    // died without cleaning up from one still in use.
    const QString name = kFolderPrefix + QString::number(::getpid()) + QStringLiteral("-XXXXXX");
    for (const QString& base : folderBases()) {
        // QTemporaryDir creates the folder with owner-only permissions.
        auto dir = std::make_unique<QTemporaryDir>(base + QLatin1Char('/') + name);
        if (dir->isValid())
            return dir;
    }
    return nullptr;
}

// The folder's path for the signal watcher, which must not take locks or
// allocate before it knows it has to act.
char gFolderPath[4096];

// A signal handler may do next to nothing; it hands the signal number to a
// thread that removes the folder with ordinary calls and then lets the
// signal end the process as it would have.
int gSignalPipe[2] = {-1, -1};

extern "C" void onEndingSignal(int sig)
{
    const int saved = errno;
    const unsigned char n = static_cast<unsigned char>(sig);
    if (::write(gSignalPipe[1], &n, 1) < 0) {
        // Nothing else is safe here; the default action follows.
        ::signal(sig, SIG_DFL);
        ::raise(sig);
    }
    errno = saved;
}

void removeOnEndingSignals()
{
    if (::pipe(gSignalPipe) != 0)
        return;
    std::thread([] {
        unsigned char n = 0;
        while (::read(gSignalPipe[0], &n, 1) < 0 && errno == EINTR) {
        }
        std::error_code ec;
        std::filesystem::remove_all(gFolderPath, ec);
        ::signal(n, SIG_DFL);
        ::raise(n);
    }).detach();
    struct sigaction sa {};
    sa.sa_handler = onEndingSignal;
    sigemptyset(&sa.sa_mask);
    sa.sa_flags = SA_RESTART;
    for (int sig : {SIGTERM, SIGINT, SIGHUP}) {
        struct sigaction old {};
        // A signal the parent told us to ignore stays ignored.
        if (::sigaction(sig, nullptr, &old) == 0 && old.sa_handler == SIG_IGN)
            continue;
        ::sigaction(sig, &sa, nullptr);
    }
}

bool processAlive(qint64 pid)
{
    if (pid <= 0 || pid > INT_MAX)
        return false;
    // EPERM means it exists but belongs to someone else.
    return ::kill(static_cast<pid_t>(pid), 0) == 0 || errno == EPERM;
}

} // namespace

int removeStaleWorkFolders()
{
    int removed = 0;
    for (const QString& base : folderBases()) {
        const QFileInfoList entries =
            QDir(base).entryInfoList({kFolderPrefix + QStringLiteral("*-*")}, QDir::Dirs | QDir::NoDotAndDotDot);
        for (const QFileInfo& entry : entries) {
            bool ok = false;
            const qint64 pid = entry.fileName().mid(kFolderPrefix.size()).section(QLatin1Char('-'), 0, 0).toLongLong(&ok);
            if (!ok || pid == ::getpid() || processAlive(pid))
                continue;
            // Only our own: the temporary folder is shared by every user.
            struct stat st {};
            if (::lstat(QFile::encodeName(entry.filePath()).constData(), &st) != 0 || st.st_uid != ::getuid()
                || !S_ISDIR(st.st_mode))
                continue;
            if (QDir(entry.filePath()).removeRecursively())
                ++removed;
        }
    }
    return removed;
}

QString tempFolder()
{
    // A function-local static is destroyed at normal exit, which removes the
    // folder and the work files in it; an ending signal is seen to apart.
    static std::once_flag once;
    static std::unique_ptr<QTemporaryDir> folder;
    std::call_once(once, [] {
        removeStaleWorkFolders();
        folder = makePrivateFolder();
        if (!folder)
            return;
        const QByteArray path = QFile::encodeName(folder->path());
        if (size_t(path.size()) >= sizeof gFolderPath)
            return;
        std::memcpy(gFolderPath, path.constData(), size_t(path.size()) + 1);
        removeOnEndingSignals();
    });
    return folder ? folder->path() : QString();
}

namespace {
QString inTemp(const char* name)
{
    const QString folder = tempFolder();
    return folder.isEmpty() ? QString() : folder + QLatin1Char('/') + QLatin1String(name);
}
} // namespace

QString tempRtfPath() { return inTemp("Temp.RTF"); }
QString rtbTempRtfPath() { return inTemp("rtbTemp.RTF"); }
QString masterTextPath() { return inTemp("tv_master.TXT"); }
QString sourceTextPath() { return inTemp("tv_source.TXT"); }
QString demoTempPath() { return inTemp("DemoTemp.TXT"); }

QString installedManualPath()
{
#ifdef TALLYVANE_MANUAL_FROM_BIN
    // The relative path keeps a package or a staged install relocatable.
    const QString path = QDir::cleanPath(QCoreApplication::applicationDirPath() + QLatin1Char('/')
                                         + QStringLiteral(TALLYVANE_MANUAL_FROM_BIN));
    if (QFileInfo(path).isFile())
        return path;
#endif
    return {};
}

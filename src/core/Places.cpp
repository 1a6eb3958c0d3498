#include "core/Places.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <memory>
#include <mutex>

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

std::unique_ptr<QTemporaryDir> makePrivateFolder()
{
    // The runtime folder is per user, in memory and cleaned at logout, which
    // suits scratch copies of documents; fall back to the temporary folder.
    QStringList bases;
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty() && QFileInfo(runtime).isDir() && QFileInfo(runtime).isWritable())
        bases << runtime;
    bases << QDir::tempPath();
    for (const QString& base : bases) {
        // QTemporaryDir creates the folder with owner-only permissions.
        auto dir = std::make_unique<QTemporaryDir>(base + QStringLiteral("/tallyvane-XXXXXX"));
        if (dir->isValid())
            return dir;
    }
    return nullptr;
}

} // namespace

QString tempFolder()
{
    // A function-local static is destroyed at normal exit, which removes the
    // folder and the work files in it.
    static std::once_flag once;
    static std::unique_ptr<QTemporaryDir> folder;
    std::call_once(once, [] { folder = makePrivateFolder(); });
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

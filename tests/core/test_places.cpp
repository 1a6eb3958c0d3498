// Where the program keeps its files, and the private folder's life.

#include "core/Places.h"
#include "support/qstring_print.h"
#include "support/testsupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

TEST(Places, SettingsAndDataFollowTheXdgFolders)
{
    const QString config = qEnvironmentVariable("XDG_CONFIG_HOME");
    const QString data = qEnvironmentVariable("XDG_DATA_HOME");
    ASSERT_FALSE(config.isEmpty());
    EXPECT_EQ(iniFilePath(), config + "/Tallyvane/Tallyvane.INI");
    EXPECT_EQ(dataFolder(), data + "/Tallyvane");
    EXPECT_TRUE(QFileInfo(dataFolder()).isDir());
}

// Run as a child process with TV_PRINT_TEMP_FOLDER set, this also prints the
// folder so the parent can check that it is gone after exit.
TEST(Places, WorkFilesLiveInAPrivateFolder)
{
    const QString folder = tempFolder();
    ASSERT_FALSE(folder.isEmpty());
    EXPECT_EQ(tempFolder(), folder);
    EXPECT_TRUE(folder.startsWith(qEnvironmentVariable("XDG_RUNTIME_DIR") + "/tallyvane-")) << folder.toStdString();
    struct stat st {};
    ASSERT_EQ(::stat(QFile::encodeName(folder).constData(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0700u);

    EXPECT_EQ(masterTextPath(), folder + "/tv_master.TXT");

    tvtest::writeFile(masterTextPath().toStdString(), "work file");
    if (qEnvironmentVariableIsSet("TV_PRINT_TEMP_FOLDER")) {
        std::printf("TEMP_FOLDER=%s\n", folder.toLocal8Bit().constData());
        std::fflush(stdout);
        // Asked to, it stays until a signal ends it.
        if (qEnvironmentVariableIsSet("TV_WAIT_FOR_SIGNAL"))
            for (;;)
                ::pause();
    }
}

QString runChild(QProcess& child, bool waitForSignal)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("TV_PRINT_TEMP_FOLDER", "1");
    if (waitForSignal)
        env.insert("TV_WAIT_FOR_SIGNAL", "1");
    child.setProcessEnvironment(env);
    child.start(QCoreApplication::applicationFilePath(),
                {"--gtest_filter=Places.WorkFilesLiveInAPrivateFolder"});
    QString out;
    auto lineEnd = [&out] {
        const qsizetype at = out.indexOf("TEMP_FOLDER=");
        return at < 0 ? -1 : out.indexOf('\n', at);
    };
    while (lineEnd() < 0 && child.waitForReadyRead(30000))
        out += QString::fromLocal8Bit(child.readAllStandardOutput());
    if (lineEnd() < 0)
        return QString();
    const qsizetype at = out.indexOf("TEMP_FOLDER=") + 12;
    return out.mid(at, lineEnd() - at);
}

TEST(Places, PrivateFolderIsPerProcessAndRemovedAtExit)
{
    QProcess child;
    const QString childFolder = runChild(child, false);
    ASSERT_TRUE(child.waitForFinished(30000));
    ASSERT_EQ(child.exitCode(), 0) << child.readAllStandardOutput().toStdString();
    ASSERT_FALSE(childFolder.isEmpty());
    EXPECT_NE(childFolder, tempFolder());
    EXPECT_FALSE(QFileInfo::exists(childFolder));
}

// Copies of the user's documents must not outlive a copy that was told to
// stop, and the signal still ends the process as it would have.
TEST(Places, PrivateFolderIsRemovedWhenASignalEndsTheProcess)
{
    for (int sig : {SIGTERM, SIGINT, SIGHUP}) {
        QProcess child;
        const QString childFolder = runChild(child, true);
        ASSERT_FALSE(childFolder.isEmpty()) << sig;
        ASSERT_TRUE(QFileInfo::exists(childFolder + "/tv_master.TXT"));
        ::kill(pid_t(child.processId()), sig);
        ASSERT_TRUE(child.waitForFinished(30000));
        EXPECT_EQ(child.exitStatus(), QProcess::CrashExit) << sig;
        EXPECT_FALSE(QFileInfo::exists(childFolder)) << sig;
    }
}

TEST(Places, StartClearsTheFoldersOfDeadCopiesOnly)
{
    // A process id that is certainly free: a child that has been reaped.
    const pid_t deadPid = ::fork();
    if (deadPid == 0)
        ::_exit(0);
    ASSERT_GT(deadPid, 0);
    ASSERT_EQ(::waitpid(deadPid, nullptr, 0), deadPid);
    const QString base = QFileInfo(tempFolder()).path();
    const QString dead = base + QString("/tallyvane-%1-abcdef").arg(deadPid);
    const QString alive = base + QString("/tallyvane-%1-ghijkl").arg(::getppid());
    const QString other = base + "/tallyvane-notes";
    for (const QString& folder : {dead, alive, other}) {
        ASSERT_TRUE(QDir().mkpath(folder + "/inner"));
        tvtest::writeFile((folder + "/inner/copy.TXT").toStdString(), "a copy of a document");
    }
    EXPECT_GE(removeStaleWorkFolders(), 1);
    EXPECT_FALSE(QFileInfo::exists(dead));
    EXPECT_TRUE(QFileInfo::exists(alive + "/inner/copy.TXT"));
    EXPECT_TRUE(QFileInfo::exists(other + "/inner/copy.TXT"));
    EXPECT_TRUE(QFileInfo::exists(tempFolder()));
    QDir(alive).removeRecursively();
    QDir(other).removeRecursively();
}

} // namespace

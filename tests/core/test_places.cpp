// Where the program keeps its files, and the private folder's life.

#include "core/Places.h"
#include "core/modGlobal.h"
#include "support/qstring_print.h"
#include "support/testsupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <gtest/gtest.h>

#include <cstdio>
#include <sys/stat.h>

namespace {

TEST(Places, SettingsAndDataFollowTheXdgFolders)
{
    const QString config = qEnvironmentVariable("XDG_CONFIG_HOME");
    const QString data = qEnvironmentVariable("XDG_DATA_HOME");
    ASSERT_FALSE(config.isEmpty());
    EXPECT_EQ(iniFilePath(), config + "/Tallyvane/Tallyvane.INI");
    EXPECT_EQ(dataFolder(), data + "/Tallyvane");
    EXPECT_TRUE(QFileInfo(dataFolder()).isDir());

    InitProgramPlaces();
    EXPECT_EQ(gsIniFile, iniFilePath());
    EXPECT_EQ(gsMasterTextFile, masterTextPath());
    EXPECT_EQ(gsSourceTextFile, sourceTextPath());
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
    if (qEnvironmentVariableIsSet("TV_PRINT_TEMP_FOLDER"))
        std::printf("TEMP_FOLDER=%s\n", folder.toLocal8Bit().constData());
}

TEST(Places, PrivateFolderIsPerProcessAndRemovedAtExit)
{
    QProcess child;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("TV_PRINT_TEMP_FOLDER", "1");
    child.setProcessEnvironment(env);
    child.start(QCoreApplication::applicationFilePath(),
                {"--gtest_filter=Places.WorkFilesLiveInAPrivateFolder"});
    ASSERT_TRUE(child.waitForFinished(30000));
    ASSERT_EQ(child.exitCode(), 0) << child.readAllStandardOutput().toStdString();
    const QString out = QString::fromLocal8Bit(child.readAllStandardOutput());
    const qsizetype at = out.indexOf("TEMP_FOLDER=");
    ASSERT_GE(at, 0) << out.toStdString();
    const QString childFolder = out.mid(at + 12).section('\n', 0, 0);
    ASSERT_FALSE(childFolder.isEmpty());
    EXPECT_NE(childFolder, tempFolder());
    EXPECT_FALSE(QFileInfo::exists(childFolder));
}

} // namespace

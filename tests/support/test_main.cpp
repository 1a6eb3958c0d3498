// Every test program starts here: a Qt application on the offscreen platform,
// and settings folders of its own so that no test touches the user's files.

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <cstdlib>

int main(int argc, char** argv)
{
    if (!std::getenv("QT_QPA_PLATFORM"))
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QTemporaryDir home;
    const QByteArray base = home.path().toLocal8Bit();
    setenv("XDG_CONFIG_HOME", (base + "/config").constData(), 1);
    setenv("XDG_DATA_HOME", (base + "/data").constData(), 1);
    setenv("XDG_RUNTIME_DIR", (base + "/runtime").constData(), 1);
    QDir().mkpath(home.path() + "/runtime");
    // Qt insists on a private runtime folder and warns about any other.
    QFile::setPermissions(home.path() + "/runtime",
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);

    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName("Tallyvane");
    QCoreApplication::setApplicationName("TallyvaneTests");
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

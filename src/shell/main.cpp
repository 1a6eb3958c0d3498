// Program entry: --help and --version, huge pages for the heap, the platform (offscreen without a
// display, so that batch runs work on servers), the icon, the desktop seams,
// then Main.

#include "shell/DesktopSeams.h"
#include "forms/Resources.h"
#include "shell/VanePicture.h"
#include "shell/frmMainMDI.h"
#include "shell/modMain.h"
#include "core/modParseCommandLine.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>

#include <unistd.h>

namespace {

// On the offscreen platform Qt warns about window operations it cannot do
// (raising, size hints) and about a missing runtime folder; a batch run on a
// server would print them for every window. Everything else gets through.
QtMessageHandler defaultHandler = nullptr;

void quietOffscreenHandler(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (type == QtWarningMsg
        && (message.startsWith(QLatin1String("This plugin does not support"))
            || message.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set"))))
        return;
    defaultHandler(type, context, message);
}

// Long documents are built of millions of small pieces spread over hundreds
// of megabytes, and the time goes into page faults and address lookups. On
// transparent huge pages the window of a 1,340,000-line pair settles on
// 17 s of processor time instead of 23, and its batch report takes 1.7 s
// instead of 2.2, for a few megabytes more. The C library's allocator asks
// for huge pages only when told so as the program starts: the program starts
// itself once more with the setting, where the system gives huge pages to
// programs that ask (its choice is the bracketed one). A setting of the
// user's own, either way, is left alone.
void restartOnHugePages(char** argv)
{
    const char* tunables = std::getenv("GLIBC_TUNABLES");
    if (tunables && std::strstr(tunables, "glibc.malloc.hugetlb"))
        return;
    std::ifstream modes("/sys/kernel/mm/transparent_hugepage/enabled");
    std::string chosen;
    if (!std::getline(modes, chosen) || chosen.find("[madvise]") == std::string::npos)
        return;
    const std::string previous = tunables ? tunables : "";
    const std::string value = previous.empty() ? "glibc.malloc.hugetlb=1" : previous + ":glibc.malloc.hugetlb=1";
    if (setenv("GLIBC_TUNABLES", value.c_str(), 1) != 0)
        return;
    execv("/proc/self/exe", argv);
    // Still here: carry on as started.
    if (tunables)
        setenv("GLIBC_TUNABLES", previous.c_str(), 1);
    else
        unsetenv("GLIBC_TUNABLES");
}

} // namespace

int main(int argc, char** argv)
{
    // Taken before Qt sees them: Qt removes arguments it recognises, and the
    // program's own grammar comes first.
    QStringList args;
    for (int i = 1; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);

    switch (HelpOrVersionRequested(args)) {
    case InfoRequest::Help:
        std::fputs(UsageText().toLocal8Bit().constData(), stdout);
        return 0;
    case InfoRequest::Version:
        std::printf("%s\n", VersionText().toLocal8Bit().constData());
        return 0;
    case InfoRequest::None:
        break;
    }
    restartOnHugePages(argv);

    const bool hasDisplay = !qEnvironmentVariableIsEmpty("DISPLAY")
        || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (!hasDisplay && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!hasDisplay)
        defaultHandler = qInstallMessageHandler(quietOffscreenHandler);

    QApplication app(argc, argv);
    InitProgramResources();
    QCoreApplication::setOrganizationName(QStringLiteral("Tallyvane"));
    QCoreApplication::setApplicationName(QStringLiteral("Tallyvane"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TALLYVANE_VERSION));
    // Ties the windows to the installed desktop entry, whose icon and name
    // the desktop shows in its task switcher.
    QGuiApplication::setDesktopFileName(QStringLiteral("tallyvane"));
    QApplication::setWindowIcon(ProgramIcon());
    InstallDesktopSeams(hasDisplay);

    std::unique_ptr<frmMainMDI> frame;
    const MainResult result = Main(args, hasDisplay, frame);
    if (!result.runEventLoop) {
        // The program ends at once, as a batch run always has: no window is
        // closed or even destroyed, so nothing of the run reaches the INI
        // file and no time goes into taking down documents nobody will see.
        // The process's work folder still goes with the static objects.
        (void)frame.release();
        return result.exitStatus;
    }
    return app.exec();
}

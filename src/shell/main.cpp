// Program entry: --help and --version, the platform (offscreen without a
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
#include <memory>

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

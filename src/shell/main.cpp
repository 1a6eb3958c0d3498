// Program entry. An empty command line opens the frame window with the
// viewers of the last run; the batch comparisons arrive with their drivers.
// The entry parses and validates the command line, reports bad arguments as a
// batch run would, and answers --help and --version.

#include "shell/DesktopSeams.h"
#include "shell/Resources.h"
#include "shell/frmMainMDI.h"
#include "shell/core/modGlobal.h"
#include "shell/core/modParseCommandLine.h"

#include <QApplication>

#include <cstdio>

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

    // Without a display, batch runs still work on the offscreen platform.
    const bool hasDisplay = !qEnvironmentVariableIsEmpty("DISPLAY")
        || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (!hasDisplay && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    QApplication app(argc, argv);
    InitProgramResources();
    QCoreApplication::setOrganizationName(QStringLiteral("Tallyvane"));
    QCoreApplication::setApplicationName(QStringLiteral("Tallyvane"));
    InstallDesktopSeams(hasDisplay);
    InitProgramPlaces();

    const bool usable = ParseCommandLine(args);
    if (!usable && args.isEmpty()) {
        gbClVerbose = true;
        if (!hasDisplay) {
            std::fputs("tallyvane: the viewers need a display (neither DISPLAY nor WAYLAND_DISPLAY is set);\n"
                       "comparisons from the command line work without one, see tallyvane --help\n",
                       stderr);
            return 2;
        }
        frmMainMDI frame;
        frame.Form_Load();
        frame.show();
        return app.exec();
    }
    if (!usable) {
        LogMessage(QStringLiteral("Missing required command line argument(s)"), gsClLogFile, gbClVerbose);
        return 0;
    }
    std::fputs("tallyvane: comparisons are not part of this build yet\n", stderr);
    return 1;
}

#include "forms/ViewerHost.h"

#include "forms/ViewerForm.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QPointer>

namespace {

ViewerHost* currentHost = nullptr;
ViewerHost::Availability availability = nullptr;

} // namespace

ViewerHost* ViewerHost::current()
{
    return currentHost;
}

void ViewerHost::SetCurrent(ViewerHost* host)
{
    currentHost = host;
}

void ViewerHost::SetAvailability(Availability a)
{
    availability = a;
}

bool ViewerHost::CommandAvailable(FrameCommand command)
{
    return availability ? availability(command) : true;
}

namespace {

QAction* addCommand(QMenu* menu, const char* name, const QString& caption, FrameCommand command)
{
    QAction* a = menu->addAction(caption);
    a->setObjectName(QLatin1String(name));
    a->setEnabled(ViewerHost::CommandAvailable(command));
    QObject::connect(a, &QAction::triggered, menu, [command] {
        if (ViewerHost* host = ViewerHost::current())
            host->RunCommand(command);
    });
    return a;
}

QMenu* namedMenu(QWidget* parent, const char* name, const QString& caption)
{
    auto* m = new QMenu(caption, parent);
    m->setObjectName(QLatin1String(name));
    m->menuAction()->setObjectName(QLatin1String(name));
    return m;
}

} // namespace

namespace FrameMenus {

void AddViewerEntries(QMenu* mnuFile)
{
    addCommand(mnuFile, "mnuCompareFiles", QStringLiteral("Compare Files"), FrameCommand::CompareFiles);
    addCommand(mnuFile, "mnuCompareFolders", QStringLiteral("Compare &Folders"), FrameCommand::CompareFolders);
    addCommand(mnuFile, "mnuFindTextInFiles", QStringLiteral("Find Text In Files"), FrameCommand::FindTextInFiles);
    QMenu* mnuNew = mnuFile->addMenu(QStringLiteral("&New"));
    mnuNew->setObjectName(QStringLiteral("mnuNew"));
    mnuNew->menuAction()->setObjectName(QStringLiteral("mnuNew"));
    addCommand(mnuNew, "mnuNewCompareFiles", QStringLiteral("Compare Files Viewer"), FrameCommand::NewCompareFiles);
    addCommand(mnuNew, "mnuNewCompareFolders", QStringLiteral("Compare Folders Viewer"),
               FrameCommand::NewCompareFolders);
    addCommand(mnuNew, "mnuNewFindTextInFiles", QStringLiteral("Find Text In Files Viewer"),
               FrameCommand::NewFindTextInFiles);
}

void AddExitEntry(QMenu* mnuFile)
{
    addCommand(mnuFile, "mnuExit", QStringLiteral("E&xit"), FrameCommand::Exit)->setShortcut(QKeySequence::Quit);
}

QMenu* BuildWindowMenu(QWidget* parent)
{
    QMenu* mnuWindow = namedMenu(parent, "mnuWindow", QStringLiteral("&Window"));
    addCommand(mnuWindow, "mnuWindowCascase", QStringLiteral("&Cascade"), FrameCommand::WindowCascade);
    addCommand(mnuWindow, "mnuWindowTileHorizontal", QStringLiteral("Tile &Horizontal"),
               FrameCommand::WindowTileHorizontal);
    addCommand(mnuWindow, "mnuWindowTileVertical", QStringLiteral("&Tile Vertical"), FrameCommand::WindowTileVertical);
    QMenu* mnuOpenWindows = mnuWindow->addMenu(QStringLiteral("Open &Windows"));
    mnuOpenWindows->setObjectName(QStringLiteral("mnuOpenWindows"));
    mnuOpenWindows->menuAction()->setObjectName(QStringLiteral("mnuOpenWindows"));
    QObject::connect(mnuOpenWindows, &QMenu::aboutToShow, mnuOpenWindows, [mnuOpenWindows] {
        mnuOpenWindows->clear();
        ViewerHost* host = ViewerHost::current();
        if (!host)
            return;
        int n = 0;
        for (ViewerForm* viewer : host->LoadedForms()) {
            ++n;
            QAction* a = mnuOpenWindows->addAction(QStringLiteral("&%1 %2").arg(n).arg(viewer->windowTitle()));
            a->setCheckable(true);
            a->setChecked(viewer == host->ActiveViewer());
            QObject::connect(a, &QAction::triggered, mnuOpenWindows, [v = QPointer<ViewerForm>(viewer)] {
                if (ViewerHost* h = ViewerHost::current(); h && v)
                    h->ActivateViewer(v);
            });
        }
    });
    return mnuWindow;
}

QMenu* BuildHelpMenu(QWidget* parent)
{
    QMenu* mnuHelp = namedMenu(parent, "mnuHelp", QStringLiteral("&Help"));
    addCommand(mnuHelp, "mnuHelpFile", QStringLiteral("Help &File"), FrameCommand::HelpFile);
    addCommand(mnuHelp, "mnuAbout", QStringLiteral("&About"), FrameCommand::About);
    return mnuHelp;
}

} // namespace FrameMenus

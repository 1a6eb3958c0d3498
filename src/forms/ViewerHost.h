#pragma once
// What a viewer may ask of the frame window that holds it. Viewers include
// this header and never the frame's own, so the frame can make the viewers
// without the two including each other.

#include <QList>
#include <QString>
#include <QtGlobal>

class QMenu;
class QWidget;
class ViewerForm;

// The frame's commands that every viewer repeats in its own menus.
enum class FrameCommand {
    CompareFiles,
    CompareFolders,
    FindTextInFiles,
    NewCompareFiles,
    NewCompareFolders,
    NewFindTextInFiles,
    Exit,
    WindowCascade,
    WindowTileHorizontal,
    WindowTileVertical,
    HelpFile,
    About,
};

// What a drill-down from another viewer (a double click on a folder
// comparison's row) needs of a file viewer.
class FileComparisonViewer {
public:
    virtual ~FileComparisonViewer() = default;
    virtual ViewerForm* Form() = 0;
    // Puts the two paths in the selection boxes, brings the first page and
    // the viewer to the front and compares them, reloading both files.
    virtual void CompareFiles(const QString& sOriginal, const QString& sModified) = 0;
};

class ViewerHost {
public:
    virtual ~ViewerHost() = default;

    // The frame of this process, or nullptr while a viewer stands alone.
    static ViewerHost* current();
    // False for a command whose kind of viewer cannot be made.
    static bool CommandAvailable(FrameCommand command);

    // The frame announces itself here, and which commands it can carry out,
    // so that viewers never include the frame itself. A viewer without a
    // frame finds every command available and nothing to run it.
    static void SetCurrent(ViewerHost* host);
    using Availability = bool (*)(FrameCommand);
    static void SetAvailability(Availability availability);

    virtual void RunCommand(FrameCommand command) = 0;
    virtual QList<ViewerForm*> LoadedForms() const = 0;
    virtual ViewerForm* ActiveViewer() const = 0;
    virtual void ActivateViewer(ViewerForm* viewer) = 0;
    // The file viewer whose number is given, made when there is none.
    virtual FileComparisonViewer* FileViewer(qint32 number) = 0;
    // A new file viewer.
    virtual FileComparisonViewer* NewFileViewer() = 0;
};

// The menu entries that every viewer shares with the frame, built in one
// place so the three viewers offer them alike. Each runs the frame's command
// when there is a frame and does nothing otherwise.
namespace FrameMenus {
// "Compare Files", "Compare Folders", "Find Text In Files" and the "New"
// submenu with its three viewers.
void AddViewerEntries(QMenu* mnuFile);
// "Exit", with the desktop's quit shortcut.
void AddExitEntry(QMenu* mnuFile);
// "Window": cascade, the two tilings and the list of open viewers.
QMenu* BuildWindowMenu(QWidget* parent);
// "Help": the manual and the About box.
QMenu* BuildHelpMenu(QWidget* parent);
} // namespace FrameMenus

#pragma once
// The one top-level window: a multiple-document frame whose children are the
// viewers. The frame keeps no list of its own: the viewers are its MDI
// children, in the order they were made, and each viewer's sDescription
// ("2_CompareFile") says what it is. At start the frame brings back the
// viewers counted in the INI section "Main"; at the end it closes them and
// writes the counts.

#include "forms/ViewerHost.h"

#include <QMainWindow>
#include <QPointer>

#include <array>
#include <functional>

class QMdiArea;
class QMdiSubWindow;
class QMenu;
class ViewerForm;
class frmCompareFiles;

class frmMainMDI : public QMainWindow, public ViewerHost {
    Q_OBJECT

public:
    enum class ViewerKind { CompareFiles = 0, CompareDir = 1, FindText = 2 };
    using ViewerFactory = std::function<ViewerForm*()>;

    // Addresses of the product's pages, opened from the Help menu.
    static constexpr const char* kProductHomePage = "https://www.merrowgate.example/tallyvane/";
    static constexpr const char* kProductUpdatesPage = "https://www.merrowgate.example/tallyvane/revisions/";

    explicit frmMainMDI(QWidget* parent = nullptr);
    ~frmMainMDI() override;

    // The frame of this process, if one exists; viewers reach the frame's
    // commands through it.
    static frmMainMDI* current();

    // Kinds of viewer the frame can make. The file viewer is always there;
    // the folder and find viewers register here when they exist. A kind
    // without a factory cannot be made, and its count in the INI file is
    // kept as it was read.
    static void RegisterViewerKind(ViewerKind kind, ViewerFactory factory);
    static bool ViewerKindAvailable(ViewerKind kind);

    // Load of the frame: not closing, then ReadIniFile.
    void Form_Load();
    // Restores the frame's placement and the viewers of the last run.
    void ReadIniFile();
    // Saves the placement and the active viewer, closes every viewer (each
    // saves its own section) and writes the counts.
    void SaveIniFile();

    frmCompareFiles* CreateNewCompareFilesForm();
    ViewerForm* CreateNewCompareFoldersForm();
    ViewerForm* CreateNewFindTextForm();
    // The viewer whose description contains the number and kind (newest
    // first, case aside), or a new one when none does.
    frmCompareFiles* frmGetCFNumber(qint32 number);
    ViewerForm* frmGetCDNumber(qint32 number);
    ViewerForm* frmGetFTNumber(qint32 number);

    // The viewers, oldest first.
    QList<ViewerForm*> LoadedForms() const override;
    ViewerForm* ActiveViewer() const override;
    QMdiArea* mdiArea() const { return mdiArea_; }
    void ActivateViewer(ViewerForm* viewer) override;

    // What the viewers ask of the frame (ViewerHost).
    void RunCommand(FrameCommand command) override;
    FileComparisonViewer* FileViewer(qint32 number) override;
    FileComparisonViewer* NewFileViewer() override;

    // Menu commands; public because the viewers' menus of the same names
    // call them.
    void mnuExit_Click();
    void mnuCompareFiles_Click();
    void mnuCompareFolders_Click();
    void mnuFindTextInFiles_Click();
    void mnuNewCompareFiles_Click();
    void mnuNewCompareFolders_Click();
    void mnuNewFindTextInFiles_Click();
    void mnuHelpFile_Click();
    void mnuAbout_Click();
    void mnuProductHomePage_Click();
    void mnuProductUpdates_Click();
    void mnuWindowCascase_Click();
    void mnuWindowTileHorizontal_Click();
    void mnuWindowTileVertical_Click();
    // 0 cascade, 1 tile horizontal (one above the other), 2 tile vertical
    // (side by side).
    void Arrange(int how);

    // The frame's own menus, shown while no viewer is active.
    QMenu* mnuFile = nullptr;
    QMenu* mnuHelp = nullptr;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    ViewerForm* createViewer(ViewerKind kind);
    ViewerForm* getViewerNumber(ViewerKind kind, qint32 number);
    void buildMenus();
    void showMenusOf(ViewerForm* viewer);
    QMdiSubWindow* subWindowOf(const ViewerForm* viewer) const;

    QMdiArea* mdiArea_ = nullptr;
    QList<QAction*> frameMenuActions_;
    // Counts read for kinds that cannot be made yet, written back unchanged.
    std::array<qint32, 3> keptCounts_{0, 0, 0};
    bool closeWhenIdle_ = false;
};

#include "shell/frmMainMDI.h"

#include "filecompare/frmCompareFiles.h"
#include "findtext/frmFindTextInFiles.h"
#include "foldercompare/frmCompareDir.h"
#include "settings/IniStore.h"
#include "forms/ViewerForm.h"
#include "shell/frmAbout.h"
#include "core/Launcher.h"
#include "core/modGlobal.h"
#include "core/modParseCommandLine.h"
#include "core/modUtilityString.h"
#include "forms/modMessageBox.h"
#include "forms/modModalDialog.h"
#include "forms/modUtilityForm.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QStyle>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>

namespace {

struct KindInfo {
    const char* suffix;
    const char* countKey;
    const char* defaultCount;
    const char* className;
};

constexpr std::array<KindInfo, 3> kKinds{{
    {"_CompareFile", "numCFForms", "1", "frmCompareFiles"},
    {"_CompareDir", "numCDForms", "0", "frmCompareDir"},
    {"_FindText", "numFTForms", "0", "frmFindTextInFiles"},
}};

const QString kMain = QStringLiteral("Main");

std::array<frmMainMDI::ViewerFactory, 3>& factories()
{
    static std::array<frmMainMDI::ViewerFactory, 3> table{
        [] { return static_cast<ViewerForm*>(new frmCompareFiles); },
        [] { return static_cast<ViewerForm*>(new frmCompareDir); },
        [] { return static_cast<ViewerForm*>(new frmFindTextInFiles); }};
    return table;
}

QPointer<frmMainMDI>& currentFrame()
{
    static QPointer<frmMainMDI> frame;
    return frame;
}

int kindIndexOfDescription(const QString& description)
{
    for (int k = 0; k < int(kKinds.size()); ++k)
        if (description.contains(QLatin1String(kKinds[k].suffix)))
            return k;
    return -1;
}

bool frameCommandAvailable(FrameCommand command)
{
    switch (command) {
    case FrameCommand::CompareFolders:
    case FrameCommand::NewCompareFolders:
        return frmMainMDI::ViewerKindAvailable(frmMainMDI::ViewerKind::CompareDir);
    case FrameCommand::FindTextInFiles:
    case FrameCommand::NewFindTextInFiles:
        return frmMainMDI::ViewerKindAvailable(frmMainMDI::ViewerKind::FindText);
    default:
        return true;
    }
}

} // namespace

frmMainMDI::frmMainMDI(QWidget* parent)
    : QMainWindow(parent)
{
    setObjectName(QStringLiteral("frmMainMDI"));
    setWindowTitle(QStringLiteral("'Tallyvane'"));
    mdiArea_ = new QMdiArea(this);
    mdiArea_->setObjectName(QStringLiteral("mdiArea"));
    mdiArea_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    mdiArea_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setCentralWidget(mdiArea_);
    buildMenus();
    connect(mdiArea_, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow*) {
        showMenusOf(ActiveViewer());
    });
    showMenusOf(nullptr);
    resize(1000, 700);
    currentFrame() = this;
    ViewerHost::SetCurrent(this);
    ViewerHost::SetAvailability(frameCommandAvailable);
}

frmMainMDI::~frmMainMDI()
{
    // The viewers go with the area after this body: the menu bar must not
    // follow them any more.
    disconnect(mdiArea_, nullptr, this, nullptr);
    for (QMdiSubWindow* sub : mdiArea_->subWindowList())
        if (QWidget* w = sub->widget())
            disconnect(w, nullptr, this, nullptr);
    if (currentFrame() == this) {
        currentFrame() = nullptr;
        ViewerHost::SetCurrent(nullptr);
    }
}

frmMainMDI* frmMainMDI::current()
{
    return currentFrame();
}

void frmMainMDI::RunCommand(FrameCommand command)
{
    switch (command) {
    case FrameCommand::CompareFiles: mnuCompareFiles_Click(); break;
    case FrameCommand::CompareFolders: mnuCompareFolders_Click(); break;
    case FrameCommand::FindTextInFiles: mnuFindTextInFiles_Click(); break;
    case FrameCommand::NewCompareFiles: mnuNewCompareFiles_Click(); break;
    case FrameCommand::NewCompareFolders: mnuNewCompareFolders_Click(); break;
    case FrameCommand::NewFindTextInFiles: mnuNewFindTextInFiles_Click(); break;
    case FrameCommand::Exit: mnuExit_Click(); break;
    case FrameCommand::WindowCascade: mnuWindowCascase_Click(); break;
    case FrameCommand::WindowTileHorizontal: mnuWindowTileHorizontal_Click(); break;
    case FrameCommand::WindowTileVertical: mnuWindowTileVertical_Click(); break;
    case FrameCommand::HelpFile: mnuHelpFile_Click(); break;
    case FrameCommand::About: mnuAbout_Click(); break;
    }
}

FileComparisonViewer* frmMainMDI::FileViewer(qint32 number)
{
    return frmGetCFNumber(number);
}

FileComparisonViewer* frmMainMDI::NewFileViewer()
{
    return CreateNewCompareFilesForm();
}

void frmMainMDI::RegisterViewerKind(ViewerKind kind, ViewerFactory factory)
{
    factories()[int(kind)] = std::move(factory);
    ViewerHost::SetAvailability(frameCommandAvailable);
}

bool frmMainMDI::ViewerKindAvailable(ViewerKind kind)
{
    return bool(factories()[int(kind)]);
}

// --- menus -----------------------------------------------------------------------

void frmMainMDI::buildMenus()
{
    auto add = [this](QMenu* menu, const char* name, const QString& caption, void (frmMainMDI::*slot)()) {
        QAction* a = menu->addAction(caption);
        a->setObjectName(QLatin1String(name));
        if (slot)
            connect(a, &QAction::triggered, this, slot);
        return a;
    };
    mnuFile = new QMenu(QStringLiteral("&File"), this);
    mnuFile->setObjectName(QStringLiteral("mnuFile"));
    add(mnuFile, "mnuCompareFolders", QStringLiteral("Compare Fol&ders"), &frmMainMDI::mnuCompareFolders_Click)
        ->setEnabled(ViewerKindAvailable(ViewerKind::CompareDir));
    add(mnuFile, "mnuCompareFiles", QStringLiteral("Compare &Files"), &frmMainMDI::mnuCompareFiles_Click);
    add(mnuFile, "mnuFindTextInFiles", QStringLiteral("Find &Text In Files"), &frmMainMDI::mnuFindTextInFiles_Click)
        ->setEnabled(ViewerKindAvailable(ViewerKind::FindText));
    QMenu* mnuNew = mnuFile->addMenu(QStringLiteral("&New"));
    mnuNew->setObjectName(QStringLiteral("mnuNew"));
    mnuNew->menuAction()->setObjectName(QStringLiteral("mnuNew"));
    add(mnuNew, "mnuNewCompareFiles", QStringLiteral("Compare Files Viewer"), &frmMainMDI::mnuNewCompareFiles_Click);
    add(mnuNew, "mnuNewCompareFolders", QStringLiteral("Compare Folders Viewer"), &frmMainMDI::mnuNewCompareFolders_Click)
        ->setEnabled(ViewerKindAvailable(ViewerKind::CompareDir));
    add(mnuNew, "mnuNewFindTextInFiles", QStringLiteral("Find Text In Files Viewer"), &frmMainMDI::mnuNewFindTextInFiles_Click)
        ->setEnabled(ViewerKindAvailable(ViewerKind::FindText));
    mnuFile->addSeparator()->setObjectName(QStringLiteral("mnuDash"));
    QAction* exit = add(mnuFile, "mnuExit", QStringLiteral("E&xit"), &frmMainMDI::mnuExit_Click);
    exit->setShortcut(QKeySequence::Quit);

    mnuHelp = new QMenu(QStringLiteral("&Help"), this);
    mnuHelp->setObjectName(QStringLiteral("mnuHelp"));
    add(mnuHelp, "mnuHelpFile", QStringLiteral("&Help File"), &frmMainMDI::mnuHelpFile_Click);
    add(mnuHelp, "mnuAbout", QStringLiteral("&About"), &frmMainMDI::mnuAbout_Click);
    mnuHelp->addSeparator()->setObjectName(QStringLiteral("mnuSeperator"));
    add(mnuHelp, "mnuProductHomePage", QStringLiteral("Product Home Page"), &frmMainMDI::mnuProductHomePage_Click);
    add(mnuHelp, "mnuProductUpdates", QStringLiteral("Product &Updates"), &frmMainMDI::mnuProductUpdates_Click);
    // The maker's entry has no command of its own; shown, but not offered.
    add(mnuHelp, "mnuMerrowgateHomePage", QStringLiteral("Merrowgate, Inc. Home page"), nullptr)->setEnabled(false);

    frameMenuActions_ = {mnuFile->menuAction(), mnuHelp->menuAction()};
}

void frmMainMDI::showMenusOf(ViewerForm* viewer)
{
    // As multiple-document programs do: the active viewer's menus replace the
    // frame's own, which come back when no viewer is left.
    QMenuBar* bar = menuBar();
    QList<QAction*> wanted = frameMenuActions_;
    if (viewer) {
        wanted.clear();
        for (QMenu* m : viewer->Menus())
            wanted << m->menuAction();
    }
    if (bar->actions() == wanted)
        return;
    bar->clear();
    bar->addActions(wanted);
}

// --- the registry ----------------------------------------------------------------

QList<ViewerForm*> frmMainMDI::LoadedForms() const
{
    QList<ViewerForm*> result;
    for (QMdiSubWindow* sub : mdiArea_->subWindowList(QMdiArea::CreationOrder)) {
        auto* viewer = qobject_cast<ViewerForm*>(sub->widget());
        if (viewer && !viewer->IsUnloaded())
            result << viewer;
    }
    return result;
}

ViewerForm* frmMainMDI::ActiveViewer() const
{
    QMdiSubWindow* sub = mdiArea_->currentSubWindow();
    auto* viewer = sub ? qobject_cast<ViewerForm*>(sub->widget()) : nullptr;
    return viewer && !viewer->IsUnloaded() ? viewer : nullptr;
}

QMdiSubWindow* frmMainMDI::subWindowOf(const ViewerForm* viewer) const
{
    for (QMdiSubWindow* sub : mdiArea_->subWindowList())
        if (sub->widget() == viewer)
            return sub;
    return nullptr;
}

void frmMainMDI::ActivateViewer(ViewerForm* viewer)
{
    if (QMdiSubWindow* sub = subWindowOf(viewer)) {
        if (sub->isHidden())
            sub->show();
        mdiArea_->setActiveSubWindow(sub);
    }
}

ViewerForm* frmMainMDI::createViewer(ViewerKind kind)
{
    const ViewerFactory& factory = factories()[int(kind)];
    if (!factory)
        return nullptr;
    const KindInfo& info = kKinds[int(kind)];
    qint32 count = 0;
    for (ViewerForm* v : LoadedForms())
        if (QLatin1String(v->metaObject()->className()) == QLatin1String(info.className))
            ++count;
    ViewerForm* viewer = factory();
    QMdiSubWindow* sub = mdiArea_->addSubWindow(viewer);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    connect(viewer, &QObject::destroyed, this, [this] { showMenusOf(ActiveViewer()); }, Qt::QueuedConnection);
    viewer->Setup(QString::number(count + 1) + QLatin1String(info.suffix), true);
    sub->showNormal();
    mdiArea_->setActiveSubWindow(sub);
    return viewer;
}

frmCompareFiles* frmMainMDI::CreateNewCompareFilesForm()
{
    return qobject_cast<frmCompareFiles*>(createViewer(ViewerKind::CompareFiles));
}

ViewerForm* frmMainMDI::CreateNewCompareFoldersForm()
{
    return createViewer(ViewerKind::CompareDir);
}

ViewerForm* frmMainMDI::CreateNewFindTextForm()
{
    return createViewer(ViewerKind::FindText);
}

ViewerForm* frmMainMDI::getViewerNumber(ViewerKind kind, qint32 number)
{
    // A containment test, as it always was: asking for 1 also finds "11_...",
    // and the newest viewer wins.
    const QString wanted = QString::number(number) + QLatin1String(kKinds[int(kind)].suffix);
    const QList<ViewerForm*> forms = LoadedForms();
    for (qsizetype i = forms.size() - 1; i >= 0; --i)
        if (forms.at(i)->sDescription.contains(wanted, Qt::CaseInsensitive))
            return forms.at(i);
    return createViewer(kind);
}

frmCompareFiles* frmMainMDI::frmGetCFNumber(qint32 number)
{
    return qobject_cast<frmCompareFiles*>(getViewerNumber(ViewerKind::CompareFiles, number));
}

ViewerForm* frmMainMDI::frmGetCDNumber(qint32 number)
{
    return getViewerNumber(ViewerKind::CompareDir, number);
}

ViewerForm* frmMainMDI::frmGetFTNumber(qint32 number)
{
    return getViewerNumber(ViewerKind::FindText, number);
}

// --- load and close --------------------------------------------------------------

void frmMainMDI::Form_Load()
{
    gbFrameClosing = false;
    ReadIniFile();
}

void frmMainMDI::ReadIniFile()
{
    const bool firstStart = !HasStoredPlacement(this);
    RestoreFormPlacement(this);
    if (firstStart) {
        // The stored defaults describe a small window, which is what a
        // desktop without a window manager would show of a maximised one; a
        // first start gets most of the screen to come back to.
        if (const QScreen* screen = QGuiApplication::primaryScreen()) {
            const QRect available = screen->availableGeometry();
            const QSize size(available.width() * 7 / 8, available.height() * 7 / 8);
            const Qt::WindowStates state = windowState();
            setWindowState(Qt::WindowNoState);
            setGeometry(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size, available));
            setWindowState(state);
        }
    }
    keptCounts_ = {0, 0, 0};
    for (int k = 0; k < int(kKinds.size()); ++k) {
        const KindInfo& info = kKinds[k];
        qint32 count = 0;
        const QString text = IniReadString(gsIniFile, kMain, QLatin1String(info.countKey),
                                           QLatin1String(info.defaultCount));
        // A count that is no number ends the restore here, as a failed read
        // always has; what was restored so far stays.
        if (!TextToLong(text, count))
            return;
        const ViewerFactory& factory = factories()[k];
        if (!factory) {
            keptCounts_[k] = qMax<qint32>(0, count);
            continue;
        }
        for (qint32 n = 1; n <= count; ++n) {
            ViewerForm* viewer = factory();
            QMdiSubWindow* sub = mdiArea_->addSubWindow(viewer);
            sub->setAttribute(Qt::WA_DeleteOnClose);
            connect(viewer, &QObject::destroyed, this, [this] { showMenusOf(ActiveViewer()); },
                    Qt::QueuedConnection);
            viewer->Setup(QString::number(n) + QLatin1String(info.suffix), true);
            sub->show();
        }
    }
    const QString active = TrimAtNull(IniReadString(gsIniFile, kMain, QStringLiteral("ActiveForm"),
                                                    QStringLiteral("None")));
    const QList<ViewerForm*> forms = LoadedForms();
    for (qsizetype i = forms.size() - 1; i >= 0; --i)
        if (forms.at(i)->sDescription == active)
            ActivateViewer(forms.at(i));
    showMenusOf(ActiveViewer());
}

void frmMainMDI::SaveIniFile()
{
    SaveFormPlacement(this);
    if (ViewerForm* active = ActiveViewer(); active && active->isVisible())
        IniWriteString(gsIniFile, kMain, QStringLiteral("ActiveForm"), active->sDescription);
    std::array<qint32, 3> counts{0, 0, 0};
    const QList<ViewerForm*> forms = LoadedForms();
    for (qsizetype i = forms.size() - 1; i >= 0; --i) {
        ViewerForm* viewer = forms.at(i);
        const int k = kindIndexOfDescription(viewer->sDescription);
        if (k < 0)
            continue;
        QMdiSubWindow* sub = subWindowOf(viewer);
        if (sub ? sub->close() : viewer->close())
            ++counts[k];
    }
    for (int k = 0; k < int(kKinds.size()); ++k) {
        const qint32 n = ViewerKindAvailable(ViewerKind(k)) ? counts[k] : counts[k] + keptCounts_[k];
        IniWriteString(gsIniFile, kMain, QLatin1String(kKinds[k].countKey), QString::number(n));
    }
}

void frmMainMDI::closeEvent(QCloseEvent* event)
{
    // A run lets events through, so the close can arrive in the middle of
    // one: stop every run and close once they have all unwound.
    bool busy = false;
    for (ViewerForm* viewer : LoadedForms()) {
        if (viewer->IsBusy()) {
            busy = true;
            viewer->Abort();
        }
    }
    if (busy) {
        event->ignore();
        if (!closeWhenIdle_) {
            closeWhenIdle_ = true;
            auto* poll = new QTimer(this);
            connect(poll, &QTimer::timeout, this, [this, poll] {
                for (ViewerForm* viewer : LoadedForms())
                    if (viewer->IsBusy())
                        return;
                poll->deleteLater();
                closeWhenIdle_ = false;
                close();
            });
            poll->start(20);
        }
        return;
    }
    gbFrameClosing = true;
    SaveIniFile();
    event->accept();
}

// --- commands --------------------------------------------------------------------

void frmMainMDI::mnuExit_Click()
{
    close();
}

void frmMainMDI::mnuCompareFiles_Click()
{
    ActivateViewer(frmGetCFNumber(1));
}

void frmMainMDI::mnuCompareFolders_Click()
{
    if (ViewerForm* v = frmGetCDNumber(1))
        ActivateViewer(v);
}

void frmMainMDI::mnuFindTextInFiles_Click()
{
    if (ViewerForm* v = frmGetFTNumber(1))
        ActivateViewer(v);
}

void frmMainMDI::mnuNewCompareFiles_Click()
{
    CreateNewCompareFilesForm();
}

void frmMainMDI::mnuNewCompareFolders_Click()
{
    CreateNewCompareFoldersForm();
}

void frmMainMDI::mnuNewFindTextInFiles_Click()
{
    CreateNewFindTextForm();
}

void frmMainMDI::mnuHelpFile_Click()
{
    launcher().OpenManual(QString());
}

void frmMainMDI::mnuAbout_Click()
{
    frmAbout about(this);
    ShowModal(about);
}

void frmMainMDI::mnuProductHomePage_Click()
{
    launcher().OpenUrl(QLatin1String(kProductHomePage));
}

void frmMainMDI::mnuProductUpdates_Click()
{
    launcher().OpenUrl(QLatin1String(kProductUpdatesPage));
}

void frmMainMDI::mnuWindowCascase_Click()
{
    Arrange(0);
}

void frmMainMDI::mnuWindowTileHorizontal_Click()
{
    Arrange(1);
}

void frmMainMDI::mnuWindowTileVertical_Click()
{
    Arrange(2);
}

void frmMainMDI::Arrange(int how)
{
    if (how == 0) {
        mdiArea_->cascadeSubWindows();
        return;
    }
    QList<QMdiSubWindow*> windows;
    for (QMdiSubWindow* sub : mdiArea_->subWindowList(QMdiArea::StackingOrder))
        if (sub->isVisible() && !sub->isMinimized())
            windows << sub;
    if (windows.isEmpty())
        return;
    const QRect area = mdiArea_->viewport()->rect();
    const int n = int(windows.size());
    for (int i = 0; i < n; ++i) {
        QMdiSubWindow* sub = windows.at(i);
        if (sub->isMaximized())
            sub->showNormal();
        QRect r;
        if (how == 1) {
            const int h = area.height() / n;
            r = QRect(0, i * h, area.width(), i == n - 1 ? area.height() - i * h : h);
        } else {
            const int w = area.width() / n;
            r = QRect(i * w, 0, i == n - 1 ? area.width() - i * w : w, area.height());
        }
        sub->setGeometry(r);
    }
}

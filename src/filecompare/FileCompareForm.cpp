// Creation, set-up, settings, closing and the viewer's own events.

#include "filecompare/DiffRenderer.h"
#include "filecompare/FileCompareWidgets.h"
#include "filecompare/frmCompareFiles.h"
#include "filecompare/frmCompareFilesFindReplace.h"
#include "settings/IniStore.h"
#include "core/Places.h"
#include "core/modGlobal.h"
#include "core/modUtilityFile.h"
#include "core/modUtilityString.h"
#include "filecompare/frmPleaseWait.h"
#include "forms/Resources.h"
#include "forms/modUtilityForm.h"

#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMouseEvent>
#include <QStatusBar>
#include <QTextEdit>
#include <QThread>
#include <QTimer>

namespace {

const char* const kHowToResource = ":/howto.rtf";

bool readIniBool(const QString& section, const char* key)
{
    // Only "FALSE" reads as false, as for every stored boolean.
    return IniReadString(gsIniFile, section, QLatin1String(key), QStringLiteral("FALSE"))
               .trimmed()
               .compare(QLatin1String("FALSE"), Qt::CaseInsensitive)
        != 0;
}

void writeIniBool(const QString& section, const char* key, bool value)
{
    IniWriteString(gsIniFile, section, QLatin1String(key),
                   value ? QStringLiteral("TRUE") : QStringLiteral("FALSE"));
}

bool readIniDouble(const QString& section, const char* key, double& value)
{
    bool ok = false;
    const double d = IniReadString(gsIniFile, section, QLatin1String(key), QString()).trimmed().toDouble(&ok);
    if (ok)
        value = d;
    return ok;
}

} // namespace

frmCompareFiles::frmCompareFiles(QWidget* parent)
    : ViewerForm(parent)
    , moFileOptions(session_.options())
{
    InitProgramResources();
    setObjectName(QStringLiteral("frmCompareFiles"));
    setWindowTitle(QStringLiteral("Compare Files"));
    setAttribute(Qt::WA_DeleteOnClose, false);
    buildControls();
    buildMenus();
    buildRenderers();
    connect(&session_, &filecompare::FileCompareSession::progress, this, &frmCompareFiles::SetPanelText);
    wireFindAndReplace();
    Form_Load();
}

frmCompareFiles::~frmCompareFiles()
{
    // The boxes are children of this widget and go with it; the documents
    // must not outlive their boxes' use.
    session_.abort();
}

void frmCompareFiles::Form_Load()
{
    docOriginal.Setup(rtbOriginal);
    docModified.Setup(rtbModified);
    docOriginalDiff.Setup(rtbOriginalDiff);
    docModifiedDiff.Setup(rtbModifiedDiff);
    docOriginalDiffFinal.Setup(rtbOriginalDiffFinal);
    docModifiedDiffFinal.Setup(rtbModifiedDiffFinal);
    docOriginalDiffTemp.Setup(rtbOriginalDiffTemp);
    docModifiedDiffTemp.Setup(rtbModifiedDiffTemp);
    docAIODiff.Setup(rtbAIODiff);
    docAIODiffTemp.Setup(rtbAIODiffTemp);

    session_.clearAbort();
    mbOriginalDirty = true;
    mbModifiedDirty = true;
    mbSideBySideFresh = false;
    mbAllInOneFresh = false;
    mlCurrentDifference = -1;
    mlPreviousDifference = -1;
    mlActiveEditor = kOriginal;

    // What a new viewer shows until its first compare.
    rtbAIODiff->LoadFile(QLatin1String(kHowToResource), RichTextBox::RichTextFile);
    showAllInOnePane();
}

void frmCompareFiles::Setup(const QString& description, bool bRestorePlacement)
{
    sDescription = description;
    ReadIniFile(bRestorePlacement);
    ready_ = true;
}

QList<QMenu*> frmCompareFiles::Menus() const
{
    return {mnuFile, mnuEdit, mnuView, mnuWindow, mnuHelp};
}

void frmCompareFiles::Abort()
{
    session_.abort();
}

void frmCompareFiles::buildRenderers()
{
    filecompare::RenderPanes p;
    p.original = rtbOriginal;
    p.modified = rtbModified;
    p.docOriginal = &docOriginal;
    p.docModified = &docModified;
    p.deletions = rtbDeletions;
    p.additions = rtbAdditions;
    p.changes = rtbChanges;
    p.originalWork = rtbOriginalDiff;
    p.modifiedWork = rtbModifiedDiff;
    p.docOriginalWork = &docOriginalDiff;
    p.docModifiedWork = &docModifiedDiff;
    p.originalSection = rtbOriginalDiffTemp;
    p.modifiedSection = rtbModifiedDiffTemp;
    p.mergedSection = rtbAIODiffTemp;
    p.docMergedSection = &docAIODiffTemp;
    p.originalPane = rtbOriginalDiffFinal;
    p.modifiedPane = rtbModifiedDiffFinal;
    p.docOriginalPane = &docOriginalDiffFinal;
    p.docModifiedPane = &docModifiedDiffFinal;
    p.merged = rtbAIODiff;
    p.docMerged = &docAIODiff;

    filecompare::RenderRun run;
    run.options = &moFileOptions;
    run.progress = [this](int panel, const QString& text) { SetPanelText(panel, text); };
    run.stopRequested = [this] {
        filecompare::DoEvents();
        return session_.aborted();
    };
    run.coupling = &couplingScroll_;
    sideBySide_ = std::make_unique<filecompare::SideBySideRenderer>(p, run);
    allInOne_ = std::make_unique<filecompare::AllInOneRenderer>(p, run);
}

void frmCompareFiles::ShowComparePage()
{
    ts->setCurrentIndex(0);
}

void frmCompareFiles::HideWaitWindow()
{
    PleaseWait->hide();
}

// --- settings ----------------------------------------------------------------------

void frmCompareFiles::ReadIniFile(bool bRestorePlacement)
{
    filecompare::BusyCursor busy;
    IniBatch batch(gsIniFile);
    moFileOptions.setSection(sDescription);
    try {
        moFileOptions.LoadStateFromFile(gsIniFile);
    } catch (const SettingTypeError&) {
        // The values behind the bad one keep their defaults.
    }
    bWarnedAboutLargeWordDocAlready = readIniBool(sDescription, "bWarnedAboutLargeWordDocAlready");
    bWarnedAboutXLSWordWrapAlready = readIniBool(sDescription, "bWarnedAboutXLSWordWrapAlready");
    bWarnedAboutHTMLAlready = readIniBool(sDescription, "bWarnedAboutHTMLAlready");
    double ratio = 0.35;
    if (readIniDouble(sDescription, "dRatioTopEditor", ratio) && ratio >= 0 && ratio <= 1)
        dRatioTopEditor = ratio;

    if (bRestorePlacement) {
        QWidget* window = parentWidget() ? parentWidget() : this;
        double left = 0, top = 0, width = 0, height = 0;
        if (readIniDouble(sDescription, "Left", left) && readIniDouble(sDescription, "Top", top)
            && readIniDouble(sDescription, "Width", width) && readIniDouble(sDescription, "Height", height)
            && width > 0 && height > 0) {
            window->setGeometry(TwipsToPixels(left), TwipsToPixels(top), TwipsToPixels(width),
                                TwipsToPixels(height));
        } else if (QWidget* area = window->parentWidget()) {
            window->resize(area->width() * 3 / 4, area->height() * 3 / 4);
        }
        double state = 2;
        readIniDouble(sDescription, "WindowState", state);
        if (int(state) == 2)
            window->setWindowState(Qt::WindowMaximized);
        else if (int(state) == 1)
            window->setWindowState(Qt::WindowMinimized);
    }

    mruOriginal.Setup(kMruSlots, gsIniFile, sDescription + QStringLiteral("mruOriginal"));
    mruModified.Setup(kMruSlots, gsIniFile, sDescription + QStringLiteral("mruModified"));
    FillComboFromMRU(cbSelectOriginal, mruOriginal);
    FillComboFromMRU(cbSelectModified, mruModified);

    // The files of the last session come back into the editors; a first
    // start has none ("Uninitialized"), and a file that has gone since is
    // left for the user to notice at the next refresh.
    gbRefreshingControls = true;
    const QString original = moFileOptions.sFileOriginal.Data();
    const QString modified = moFileOptions.sFileModified.Data();
    if (original != QLatin1String("Uninitialized") && !original.isEmpty())
        cbSelectOriginal->setEditText(original);
    if (modified != QLatin1String("Uninitialized") && !modified.isEmpty())
        cbSelectModified->setEditText(modified);
    gbRefreshingControls = false;
    if (FileExistsOnDisk(cbSelectOriginal->currentText()))
        LoadFileIntoEditor(cbSelectOriginal->currentText(), kOriginal);
    if (FileExistsOnDisk(cbSelectModified->currentText()))
        LoadFileIntoEditor(cbSelectModified->currentText(), kModified);

    ReadReportSettings();
    RefreshCompareOptionsGUI();
    RefreshButtonStates();
    UpdateWindowCaption();
    Form_Resize();
}

void frmCompareFiles::SaveIniFile()
{
    IniBatch batch(gsIniFile);
    moFileOptions.setSection(sDescription);
    moFileOptions.SaveStateToFile(gsIniFile);
    mruOriginal.ShutDown();
    mruModified.ShutDown();
    writeIniBool(sDescription, "bWarnedAboutLargeWordDocAlready", bWarnedAboutLargeWordDocAlready);
    writeIniBool(sDescription, "bWarnedAboutXLSWordWrapAlready", bWarnedAboutXLSWordWrapAlready);
    writeIniBool(sDescription, "bWarnedAboutHTMLAlready", bWarnedAboutHTMLAlready);
    IniWriteString(gsIniFile, sDescription, QStringLiteral("dRatioTopEditor"),
                   QString::number(dRatioTopEditor, 'g', 6));
    SaveReportSettings();
    const QWidget* window = parentWidget() ? parentWidget() : this;
    const qint32 state = WindowStateNumber(window);
    IniWriteString(gsIniFile, sDescription, QStringLiteral("WindowState"), QString::number(state));
    if (state == 0) {
        const QRect r = window->geometry();
        IniWriteString(gsIniFile, sDescription, QStringLiteral("Left"), QString::number(PixelsToTwips(r.x())));
        IniWriteString(gsIniFile, sDescription, QStringLiteral("Top"), QString::number(PixelsToTwips(r.y())));
        IniWriteString(gsIniFile, sDescription, QStringLiteral("Width"), QString::number(PixelsToTwips(r.width())));
        IniWriteString(gsIniFile, sDescription, QStringLiteral("Height"), QString::number(PixelsToTwips(r.height())));
    }
}

// --- closing -----------------------------------------------------------------------

bool frmCompareFiles::QueryUnload()
{
    if (!session_.busy())
        return true;
    // Closing in the middle of a run: stop it and close when it has unwound.
    Abort();
    closeWhenIdle_ = true;
    return false;
}

void frmCompareFiles::Form_Unload()
{
    Abort();
    filecompare::DoEvents();
    filecompare::Sleep(50);
    if (timerRefresh)
        timerRefresh->stop();
    if (timerGUI)
        timerGUI->stop();
    if (PleaseWait)
        PleaseWait->hide();
    if (ready_)
        SaveIniFile();
    ready_ = false;
}

void frmCompareFiles::closeIfAsked()
{
    if (closeWhenIdle_ && !session_.busy()) {
        closeWhenIdle_ = false;
        QTimer::singleShot(0, this, [this] {
            if (QWidget* w = parentWidget(); qobject_cast<QMdiSubWindow*>(w))
                w->close();
            else
                close();
        });
    }
}

// --- editors and panels ---------------------------------------------------------------

RichTextBox* frmCompareFiles::EditorBox(qint32 lEditor) const
{
    switch (lEditor) {
    case kAIODiff: return rtbAIODiff;
    case kOriginalDiffFinal: return rtbOriginalDiffFinal;
    case kModifiedDiffFinal: return rtbModifiedDiffFinal;
    case kOriginal: return rtbOriginal;
    case kModified: return rtbModified;
    case kDeletions: return rtbDeletions;
    case kAdditions: return rtbAdditions;
    case kChanges: return rtbChanges;
    default: return nullptr;
    }
}

bool frmCompareFiles::EditorDirty(qint32 lEditor) const
{
    return lEditor == kOriginal ? mbOriginalDirty : lEditor == kModified && mbModifiedDirty;
}

clsRTBDocument* frmCompareFiles::EditorDocument(qint32 lEditor)
{
    switch (lEditor) {
    case kAIODiff: return &docAIODiff;
    case kOriginalDiffFinal: return &docOriginalDiffFinal;
    case kModifiedDiffFinal: return &docModifiedDiffFinal;
    case kOriginal: return &docOriginal;
    case kModified: return &docModified;
    default: return nullptr;
    }
}

QString frmCompareFiles::PanelText(int panel) const
{
    if (panel < 1 || panel > int(sbPanels.size()))
        return QString();
    return sbPanels[size_t(panel - 1)]->text();
}

void frmCompareFiles::SetPanelText(int panel, const QString& text)
{
    if (panel < 1 || panel > int(sbPanels.size()))
        return;
    sbPanels[size_t(panel - 1)]->setText(text);
    emit panelTextChanged(panel, text);
}

void frmCompareFiles::wireEditor(RichTextBox* box, qint32 id)
{
    QTextEdit* view = box->view();
    view->setProperty("tvEditorId", id);
    view->viewport()->setProperty("tvEditorId", id);
    view->installEventFilter(this);
    view->viewport()->installEventFilter(this);
    connect(view, &QTextEdit::cursorPositionChanged, this, [this, id] {
        if (mlActiveEditor == id && !session_.busy())
            RefreshStatusBarItems();
    });
}

bool frmCompareFiles::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == frameCF && event->type() == QEvent::Resize) {
        Form_Resize();
        return false;
    }
    const QVariant id = watched->property("tvEditorId");
    if (!id.isValid())
        return ViewerForm::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::FocusIn:
    case QEvent::MouseButtonPress:
        mlActiveEditor = id.toInt();
        if (findReplace_)
            findReplace_->SetTarget(EditorBox(mlActiveEditor));
        RefreshStatusBarItems();
        break;
    case QEvent::MouseButtonRelease:
        if (static_cast<QMouseEvent*>(event)->button() == Qt::RightButton) {
            mlActiveEditor = id.toInt();
            if (RichTextBox* box = EditorBox(mlActiveEditor))
                box->view()->setFocus();
            RefreshMenuItems();
            mnuPopup->popup(static_cast<QMouseEvent*>(event)->globalPosition().toPoint());
            return true;
        }
        break;
    case QEvent::ContextMenu:
        // The popup opens on the release of the right button instead.
        return true;
    default:
        break;
    }
    return ViewerForm::eventFilter(watched, event);
}

void frmCompareFiles::CompareFiles(const QString& sOriginal, const QString& sModified)
{
    // The run below reloads both files, so the boxes' own load on a change
    // would only read each file twice.
    gbRefreshingControls = true;
    cbSelectOriginal->setEditText(sOriginal);
    cbSelectModified->setEditText(sModified);
    gbRefreshingControls = false;
    ShowComparePage();
    if (ViewerHost* host = ViewerHost::current())
        host->ActivateViewer(this);
    RefreshDisplay(true, true);
}

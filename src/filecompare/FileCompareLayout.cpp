// The controls of the viewer, its menus and toolbar, the layout of the
// compare page with its two dividers, word wrap, and the coupled scrolling
// of the two sides.

#include "filecompare/SideBySideDecorations.h"
#include "document/ColorRef.h"
#include "filecompare/FileCompareWidgets.h"
#include "filecompare/frmCompareFiles.h"
#include "core/Launcher.h"
#include "core/modGlobal.h"
#include "core/modUtilityFile.h"
#include "filecompare/frmPleaseWait.h"

#include <QAbstractTextDocumentLayout>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QStyle>
#include <QTabWidget>
#include <QTextBlock>
#include <QTextEdit>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <QHBoxLayout>

using filecompare::DividerLabel;
using filecompare::SpinScrollControl;
using filecompare::StatusPanel;

namespace {

constexpr int kMargin = 4;
constexpr int kDividerThickness = 7;
// A word-wrap margin that no paragraph reaches: wrapping off.
constexpr int kNoWrapMargin = 1000000;

RichTextBox* makeBox(QObject* owner, const char* name)
{
    auto* box = new RichTextBox(owner);
    box->setObjectName(QLatin1String(name));
    return box;
}

QTextEdit* makeView(RichTextBox* box, QWidget* parent)
{
    QTextEdit* view = box->createView(parent);
    view->setObjectName(box->objectName());
    view->setLineWrapMode(QTextEdit::WidgetWidth);
    return view;
}

} // namespace

void frmCompareFiles::buildControls()
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    ts = new QTabWidget(this);
    ts->setObjectName(QStringLiteral("ts"));
    ts->setDocumentMode(true);
    frameCF = new QWidget;
    frameCF->setObjectName(QStringLiteral("frameCF"));
    frameCompareOptions = new QWidget;
    frameCompareOptions->setObjectName(QStringLiteral("frameCompareOptions"));
    frameReportOptions = new QWidget;
    frameReportOptions->setObjectName(QStringLiteral("frameReportOptions"));
    ts->addTab(frameCF, QStringLiteral("Compare Files"));
    ts->addTab(frameCompareOptions, QStringLiteral("Compare Options"));
    ts->addTab(frameReportOptions, QStringLiteral("Report Options"));
    layout->addWidget(ts, 1);

    buildStatusBar();
    layout->addWidget(sbStatus);
    buildComparePage();
    buildOptionsPage();
    buildReportPage();

    timerGUI = new QTimer(this);
    timerGUI->setObjectName(QStringLiteral("timerGUI"));
    timerGUI->setInterval(500);
    connect(timerGUI, &QTimer::timeout, this, [this] {
        if (!session_.busy() && isVisible())
            RefreshStatusBarItems();
    });
    timerGUI->start();

    PleaseWait = new frmPleaseWait(this);
}

void frmCompareFiles::buildStatusBar()
{
    sbStatus = new QStatusBar(this);
    sbStatus->setObjectName(QStringLiteral("sbStatus"));
    sbStatus->setSizeGripEnabled(false);
    const int widths[5] = {150, 150, 0, 0, 100};
    for (int i = 0; i < 5; ++i) {
        auto* panel = new StatusPanel(sbStatus);
        panel->setObjectName(QStringLiteral("sbStatusPanel%1").arg(i + 1));
        if (widths[i] > 0)
            panel->setMinimumWidth(widths[i]);
        sbPanels[size_t(i)] = panel;
        // A click anywhere on the bar stops a run: the progress text says so.
        connect(panel, &StatusPanel::clicked, this, &frmCompareFiles::Abort);
        if (i == 2)
            sbStatus->addWidget(panel, 1);
        else if (i < 2)
            sbStatus->addWidget(panel);
        else
            sbStatus->addPermanentWidget(panel);
    }
    sbPanels[2]->setText(QStringLiteral("Load the Original and Modified files, then press F5 to compare."));
    sbPanels[3]->setText(QStringLiteral("Total Time:"));
}

void frmCompareFiles::buildComparePage()
{
    QStyle* st = style();

    // Toolbar.
    tbMain = new QToolBar(frameCF);
    tbMain->setObjectName(QStringLiteral("tbMain"));
    tbMain->setIconSize(QSize(18, 18));
    tbMain->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    auto action = [this](const char* name, const QIcon& icon, const QString& text, const QString& tip) {
        QAction* a = tbMain->addAction(icon, text);
        a->setObjectName(QLatin1String(name));
        a->setToolTip(tip);
        return a;
    };
    tbRefresh = action("tbRefresh", st->standardIcon(QStyle::SP_BrowserReload), QStringLiteral("Compare"),
                       QStringLiteral("Refresh Difference Viewer (F5)"));
    tbAbort = action("tbAbort", st->standardIcon(QStyle::SP_BrowserStop), QStringLiteral("Abort"),
                     QStringLiteral("Abort the comparison"));
    tbAbort->setVisible(false);
    tbMain->addSeparator();
    tbSwap = action("tbSwap", QIcon(), QStringLiteral("Swap"), QStringLiteral("Swap Master and Source Text"));
    tbFindAndReplace = action("tbFindAndReplace", QIcon(), QStringLiteral("Find"),
                              QStringLiteral("Find and/or Replace (F3)"));
    tbViewReport = action("tbViewReport", QIcon(), QStringLiteral("Report"), QStringLiteral("View Report (F2)"));
    // Find and replace arrives with its dialog.
    tbFindAndReplace->setEnabled(false);
    connect(tbSwap, &QAction::triggered, this, [this] { SwapOriginalAndModified(); });
    connect(tbViewReport, &QAction::triggered, this, &frmCompareFiles::cmdViewReport_Click);
    tbMain->addSeparator();
    tbShowDifferenceFirst = action("tbShowDifferenceFirst", st->standardIcon(QStyle::SP_MediaSkipBackward),
                                   QString(), QStringLiteral("Go to first difference (Ctrl+Shift+F7)"));
    tbShowDifferencePrevious = action("tbShowDifferencePrevious", st->standardIcon(QStyle::SP_MediaSeekBackward),
                                      QString(), QStringLiteral("Go to Previous Difference (Shift+F7)"));
    tbShowDifferenceUnknown = action("tbShowDifferenceUnknown", st->standardIcon(QStyle::SP_FileDialogContentsView),
                                     QString(), QStringLiteral("Go To Difference you choose (F4)"));
    tbShowDifferenceNext = action("tbShowDifferenceNext", st->standardIcon(QStyle::SP_MediaSeekForward),
                                  QString(), QStringLiteral("Go to Next Difference (F7)"));
    tbShowDifferenceLast = action("tbShowDifferenceLast", st->standardIcon(QStyle::SP_MediaSkipForward),
                                  QString(), QStringLiteral("Go to last difference (CTRL+F7)"));
    connect(tbRefresh, &QAction::triggered, this,
            [this] { RefreshDisplay(moFileOptions.bReloadOnRefresh.Data(), true); });
    connect(tbAbort, &QAction::triggered, this, &frmCompareFiles::Abort);
    connect(tbShowDifferenceFirst, &QAction::triggered, this, &frmCompareFiles::tbShowDifferenceFirst_Click);
    connect(tbShowDifferencePrevious, &QAction::triggered, this, &frmCompareFiles::tbShowDifferencePrevious_Click);
    connect(tbShowDifferenceNext, &QAction::triggered, this, &frmCompareFiles::tbShowDifferenceNext_Click);
    connect(tbShowDifferenceLast, &QAction::triggered, this, &frmCompareFiles::tbShowDifferenceLast_Click);
    connect(tbShowDifferenceUnknown, &QAction::triggered, this, &frmCompareFiles::tbShowDifferenceUnknown_Click);
    tbShowDifferenceUnknown->setEnabled(false);

    cmboChangeListing = new QComboBox(frameCF);
    cmboChangeListing->setObjectName(QStringLiteral("cmboChangeListing"));
    cmboChangeListing->setToolTip(QStringLiteral("The differences, in document order"));
    cmboChangeListing->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cmboChangeListing->setMinimumContentsLength(20);
    connect(cmboChangeListing, &QComboBox::activated, this, [this](int index) {
        if (mbFillingChangeList)
            return;
        mlCurrentDifference = index + 1;
        if (mlCurrentDifference >= 1)
            ShowCurrentDifference(false);
    });

    SpinScroll = new SpinScrollControl(frameCF);
    SpinScroll->setObjectName(QStringLiteral("SpinScroll"));
    SpinScroll->setToolTip(QStringLiteral("Move both documents one paragraph up or down"));
    connect(SpinScroll, &SpinScrollControl::spin, this, &frmCompareFiles::ChangeCurrentLine);

    // File selection.
    auto fileRow = [this, st](QLabel*& label, QComboBox*& combo, QToolButton*& browse, QToolButton*& reload,
                              QToolButton*& launch, const char* side, qint32 editor) {
        const QString s = QLatin1String(side);
        label = new QLabel(s + QLatin1Char(':'), frameCF);
        label->setObjectName(QStringLiteral("lbl") + s);
        combo = new QComboBox(frameCF);
        combo->setObjectName(QStringLiteral("cbSelect") + s);
        combo->setEditable(true);
        combo->setInsertPolicy(QComboBox::NoInsert);
        combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        combo->setMinimumContentsLength(10);
        combo->lineEdit()->setPlaceholderText(QStringLiteral("Path of the %1 file").arg(s));
        combo->setToolTip(QStringLiteral("The %1 file: choose a recent one or type a path and press Enter").arg(s));
        auto tool = [this](const char* name, const QString& text, const QIcon& icon, const QString& tip) {
            auto* b = new QToolButton(frameCF);
            b->setObjectName(QLatin1String(name));
            b->setText(text);
            if (!icon.isNull())
                b->setIcon(icon);
            b->setToolTip(tip);
            b->setAutoRaise(false);
            return b;
        };
        browse = tool(editor == kOriginal ? "cmdBrowseOriginal" : "cmdBrowseModified", QStringLiteral("..."),
                      st->standardIcon(QStyle::SP_DirOpenIcon), QStringLiteral("Choose the %1 file").arg(s));
        reload = tool(editor == kOriginal ? "cmdReLoadOriginal" : "cmdReLoadModified", QString(),
                      st->standardIcon(QStyle::SP_BrowserReload), QStringLiteral("Load the %1 file again").arg(s));
        launch = tool(editor == kOriginal ? "cmdLaunchOriginal" : "cmdLaunchModified", QString(),
                      st->standardIcon(QStyle::SP_DialogOpenButton),
                      QStringLiteral("Open the %1 file in its own program").arg(s));
        connect(browse, &QToolButton::clicked, this, [this, editor] { PickFileForEditor(editor); });
        connect(reload, &QToolButton::clicked, this, [this, combo, editor] {
            if (editor == kOriginal)
                LoadOriginalFile(combo->currentText());
            else
                LoadModifiedFile(combo->currentText());
        });
        connect(launch, &QToolButton::clicked, this, [this, combo, editor] {
            const QString path = combo->currentText();
            if (!FileExistsOnDisk(path))
                return;
            (editor == kOriginal ? mruOriginal : mruModified).AddUniqueItemToCollection(path);
            launcher().OpenDocument(path);
        });
        connect(combo, &QComboBox::activated, this, [this, combo, editor](int) {
            if (gbRefreshingControls)
                return;
            if (editor == kOriginal)
                LoadOriginalFile(combo->currentText());
            else
                LoadModifiedFile(combo->currentText());
        });
        connect(combo, &QComboBox::editTextChanged, this, [this](const QString&) {
            if (gbRefreshingControls)
                return;
            MarkDiffViewStale();
            RefreshButtonStates();
        });
    };
    fileRow(lblOriginal, cbSelectOriginal, cmdBrowseOriginal, cmdReLoadOriginal, cmdLaunchOriginal, "Original",
            kOriginal);
    fileRow(lblModified, cbSelectModified, cmdBrowseModified, cmdReLoadModified, cmdLaunchModified, "Modified",
            kModified);

    // The boxes: editors, shown panes, filtered views, and the work boxes.
    rtbOriginal = makeBox(this, "rtbOriginal");
    rtbModified = makeBox(this, "rtbModified");
    rtbOriginalDiffFinal = makeBox(this, "rtbOriginalDiffFinal");
    rtbModifiedDiffFinal = makeBox(this, "rtbModifiedDiffFinal");
    rtbAIODiff = makeBox(this, "rtbAIODiff");
    rtbDeletions = makeBox(this, "rtbDeletions");
    rtbAdditions = makeBox(this, "rtbAdditions");
    rtbChanges = makeBox(this, "rtbChanges");
    rtbOriginalDiff = makeBox(this, "rtbOriginalDiff");
    rtbModifiedDiff = makeBox(this, "rtbModifiedDiff");
    rtbOriginalDiffTemp = makeBox(this, "rtbOriginalDiffTemp");
    rtbModifiedDiffTemp = makeBox(this, "rtbModifiedDiffTemp");
    rtbAIODiffTemp = makeBox(this, "rtbAIODiffTemp");
    for (RichTextBox* box : {rtbOriginal, rtbModified, rtbOriginalDiffFinal, rtbModifiedDiffFinal, rtbAIODiff,
                             rtbDeletions, rtbAdditions, rtbChanges})
        makeView(box, frameCF);
    // Rendering edits the shown panes only by replacing them whole; their
    // own edits are the user's and need no history of the render.
    rtbDeletions->setText(QStringLiteral("Only deleted text will be shown here."));
    rtbAdditions->setText(QStringLiteral("Only added text will be shown here."));
    rtbChanges->setText(QStringLiteral("Only changed text will be shown here."));
    for (RichTextBox* box : {rtbDeletions, rtbAdditions, rtbChanges})
        box->view()->hide();
    wireEditor(rtbAIODiff, kAIODiff);
    wireEditor(rtbOriginalDiffFinal, kOriginalDiffFinal);
    wireEditor(rtbModifiedDiffFinal, kModifiedDiffFinal);
    wireEditor(rtbOriginal, kOriginal);
    wireEditor(rtbModified, kModified);
    rtbOriginal->view()->setToolTip(QString());
    rtbOriginal->view()->setPlaceholderText(QStringLiteral("The Original document"));
    rtbModified->view()->setPlaceholderText(QStringLiteral("The Modified document"));

    // An edit of an editor makes the comparison stale; the program's own
    // loads do the same, which is what a changed file needs.
    // During a run only the run itself changes an editor (a text that must be
    // flattened), and its index must then be rebuilt too.
    connect(rtbOriginal, &RichTextBox::contentsChange, this, [this](int, int removed, int added) {
        if (removed == 0 && added == 0)
            return;
        mbOriginalDirty = true;
        if (!session_.busy())
            SetPanelText(2, QStringLiteral("Diff View not fresh"));
    });
    connect(rtbModified, &RichTextBox::contentsChange, this, [this](int, int removed, int added) {
        if (removed == 0 && added == 0)
            return;
        mbModifiedDirty = true;
        if (!session_.busy())
            SetPanelText(2, QStringLiteral("Diff View not fresh"));
    });

    // The two sides scroll together, paragraph beside paragraph.
    auto couple = [this](RichTextBox* a, RichTextBox* b) {
        connect(a->view()->verticalScrollBar(), &QScrollBar::valueChanged, this,
                [this, a, b] { coupleScrolling(a, b, true); });
        connect(b->view()->verticalScrollBar(), &QScrollBar::valueChanged, this,
                [this, a, b] { coupleScrolling(b, a, false); });
        connect(a->view()->horizontalScrollBar(), &QScrollBar::valueChanged, this, [this, b](int v) {
            if (!couplingScroll_)
                b->view()->horizontalScrollBar()->setValue(v);
        });
        connect(b->view()->horizontalScrollBar(), &QScrollBar::valueChanged, this, [this, a](int v) {
            if (!couplingScroll_)
                a->view()->horizontalScrollBar()->setValue(v);
        });
    };
    couple(rtbOriginalDiffFinal, rtbModifiedDiffFinal);
    sbsDecorations_ = new filecompare::SideBySideDecorations(rtbOriginalDiffFinal->view(),
                                                             rtbModifiedDiffFinal->view(), this);
    connect(sbsDecorations_, &filecompare::SideBySideDecorations::differenceClicked, this, [this](int index) {
        if (IsBusy() || index >= Result().count())
            return;
        mlCurrentDifference = index + 1;
        ShowCurrentDifference(true);
    });
    couple(rtbOriginal, rtbModified);

    lblDividerV = new DividerLabel(Qt::Vertical, this, frameCF);
    lblDividerV->setObjectName(QStringLiteral("lblDividerV"));
    lblDividerV->setToolTip(QStringLiteral("Drag to change the widths of the two sides"));
    lblDividerH = new DividerLabel(Qt::Horizontal, this, frameCF);
    lblDividerH->setObjectName(QStringLiteral("lblDividerH"));
    lblDividerH->setToolTip(QStringLiteral("Drag to share the height between the editors and the differences"));

    // Filters and the view switch.
    frameFilterButtons = new QWidget(frameCF);
    frameFilterButtons->setObjectName(QStringLiteral("frameFilterButtons"));
    auto* filters = new QHBoxLayout(frameFilterButtons);
    filters->setContentsMargins(0, 0, 0, 0);
    filters->setSpacing(10);
    auto* showLabel = new QLabel(QStringLiteral("Show:"), frameFilterButtons);
    filters->addWidget(showLabel);
    auto radio = [this, filters](const char* name, const QString& text, const QString& tip) {
        auto* rb = new QRadioButton(text, frameFilterButtons);
        rb->setObjectName(QLatin1String(name));
        rb->setToolTip(tip);
        filters->addWidget(rb);
        return rb;
    };
    rbShowAll = radio("rbShowAll", QStringLiteral("All"), QStringLiteral("Show ALL within 'Diff Viewer'"));
    rbShowAdditions = radio("rbShowAdditions", QStringLiteral("Additions"),
                            QStringLiteral("Show only ADDITIONS within 'Diff Viewer'"));
    rbShowChanges = radio("rbShowChanges", QStringLiteral("Changes"),
                          QStringLiteral("Show only CHANGES within 'Diff Viewer'"));
    rbShowDeletions = radio("rbShowDeletions", QStringLiteral("Deletions"),
                            QStringLiteral("Show only DELETIONS within 'Diff Viewer'"));
    filters->addStretch(1);
    rbShowAll->setChecked(true);
    for (QRadioButton* rb : {rbShowAdditions, rbShowChanges, rbShowDeletions})
        rb->setVisible(false);
    connect(rbShowAll, &QRadioButton::toggled, this, [this](bool on) { if (on) rbShowAll_Click(); });
    connect(rbShowAdditions, &QRadioButton::toggled, this, [this](bool on) { if (on) rbShowAdditions_Click(); });
    connect(rbShowChanges, &QRadioButton::toggled, this, [this](bool on) { if (on) rbShowChanges_Click(); });
    connect(rbShowDeletions, &QRadioButton::toggled, this, [this](bool on) { if (on) rbShowDeletions_Click(); });
    frameFilterButtons->setVisible(false);

    cmdChangeViewFormat = new QPushButton(QLatin1String(kViewAllInOne), frameCF);
    cmdChangeViewFormat->setObjectName(QStringLiteral("cmdChangeViewFormat"));
    cmdChangeViewFormat->setToolTip(QStringLiteral("Switch between the side-by-side and the all-in-one view (F6)"));
    connect(cmdChangeViewFormat, &QPushButton::clicked, this, &frmCompareFiles::cmdChangeViewFormat_Click);
    cmdViewReport = new QPushButton(QStringLiteral("View Report"), frameCF);
    cmdViewReport->setObjectName(QStringLiteral("cmdViewReport"));
    cmdViewReport->setToolTip(QStringLiteral("Create and show the default report (F2)"));
    connect(cmdViewReport, &QPushButton::clicked, this, &frmCompareFiles::cmdViewReport_Click);

    frameCF->installEventFilter(this);
}

// --- menus -----------------------------------------------------------------------------

void frmCompareFiles::buildMenus()
{
    auto add = [this](QMenu* menu, const char* name, const QString& caption) {
        QAction* a = menu->addAction(caption);
        a->setObjectName(QLatin1String(name));
        return a;
    };
    auto submenu = [this](QMenu* menu, const char* name, const QString& caption) {
        QMenu* m = menu->addMenu(caption);
        m->setObjectName(QLatin1String(name));
        m->menuAction()->setObjectName(QLatin1String(name));
        return m;
    };
    mnuFile = new QMenu(QStringLiteral("&File"), this);
    mnuFile->setObjectName(QStringLiteral("mnuFile"));
    FrameMenus::AddViewerEntries(mnuFile);
    mnuFile->addSeparator();
    QMenu* mnuLoad = submenu(mnuFile, "mnuLoad", QStringLiteral("&Load Editor"));
    connect(add(mnuLoad, "mnuLoadOriginal", QStringLiteral("Load Original Document")), &QAction::triggered, this,
            [this] { PickFileForEditor(kOriginal); });
    connect(add(mnuLoad, "mnuLoadModified", QStringLiteral("Load Modified Document")), &QAction::triggered, this,
            [this] { PickFileForEditor(kModified); });
    connect(add(mnuFile, "mnuSaveActiveEditorAs", QStringLiteral("Save Active Editor &As")), &QAction::triggered,
            this, [this] { SaveActiveEditorAs(); });
    connect(add(mnuFile, "mnuPrintActiveEditor", QStringLiteral("&Print Active Editor")), &QAction::triggered, this,
            [this] { PrintActiveEditor(); });
    mnuFile->addSeparator();
    connect(add(mnuFile, "mnuClose", QStringLiteral("&Close")), &QAction::triggered, this, [this] {
        if (auto* sub = qobject_cast<QMdiSubWindow*>(parentWidget()))
            sub->close();
        else
            close();
    });
    FrameMenus::AddExitEntry(mnuFile);

    mnuEdit = new QMenu(QStringLiteral("&Edit"), this);
    mnuEdit->setObjectName(QStringLiteral("mnuEdit"));
    add(mnuEdit, "mnuFindAndReplace", QStringLiteral("Find and/or Replace (F3)"))->setEnabled(false);
    mnuEdit->addSeparator();
    auto editCommand = [this](void (clsRTBDocument::*command)()) {
        return [this, command] {
            if (clsRTBDocument* doc = EditorDocument(mlActiveEditor))
                (doc->*command)();
        };
    };
    connect(add(mnuEdit, "mnuUndo", QStringLiteral("Undo")), &QAction::triggered, this,
            editCommand(&clsRTBDocument::Undo));
    connect(add(mnuEdit, "mnuCut", QStringLiteral("Cut     (Use Ctrl-X)")), &QAction::triggered, this,
            editCommand(&clsRTBDocument::Cut));
    connect(add(mnuEdit, "mnuCopy", QStringLiteral("Copy  (Use Ctrl-C)")), &QAction::triggered, this,
            editCommand(&clsRTBDocument::Copy));
    connect(add(mnuEdit, "mnuPaste", QStringLiteral("Paste (Use Ctrl-V)")), &QAction::triggered, this,
            editCommand(&clsRTBDocument::Paste));
    connect(add(mnuEdit, "mnuSelectAll", QStringLiteral("Select All (Use Ctrl-A)")), &QAction::triggered, this,
            editCommand(&clsRTBDocument::SelectAll));

    mnuView = new QMenu(QStringLiteral("&View"), this);
    mnuView->setObjectName(QStringLiteral("mnuView"));
    mnuCompareSelectedText = add(mnuView, "mnuCompareSelectedText", QStringLiteral("&Compare Selected Text"));
    connect(mnuCompareSelectedText, &QAction::triggered, this, &frmCompareFiles::CompareSelectedText);
    QMenu* mnuDifference = submenu(mnuView, "mnuDifference", QStringLiteral("&Difference"));
    QAction* a = add(mnuDifference, "mnuShowNextDifference", QStringLiteral("Show &Next Difference"));
    a->setShortcut(Qt::Key_F7);
    connect(a, &QAction::triggered, this, &frmCompareFiles::tbShowDifferenceNext_Click);
    a = add(mnuDifference, "mnuShowPreviousDifference", QStringLiteral("Show &Previous Difference"));
    a->setShortcut(Qt::SHIFT | Qt::Key_F7);
    connect(a, &QAction::triggered, this, &frmCompareFiles::tbShowDifferencePrevious_Click);
    a = add(mnuDifference, "mnuShowFirstDifference", QStringLiteral("Show &First Difference"));
    a->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_F7);
    connect(a, &QAction::triggered, this, &frmCompareFiles::tbShowDifferenceFirst_Click);
    a = add(mnuDifference, "mnuShowLastDifference", QStringLiteral("Show &Last Difference"));
    a->setShortcut(Qt::CTRL | Qt::Key_F7);
    connect(a, &QAction::triggered, this, &frmCompareFiles::tbShowDifferenceLast_Click);
    mnuShowDifferenceSelected =
        add(mnuDifference, "mnuShowDifferenceSelected", QStringLiteral("&Go to selected difference"));
    mnuShowDifferenceSelected->setShortcut(Qt::Key_F4);
    connect(mnuShowDifferenceSelected, &QAction::triggered, this, &frmCompareFiles::tbShowDifferenceUnknown_Click);
    mnuRefresh = add(mnuView, "mnuRefresh", QStringLiteral("Refresh &Difference Viewer"));
    mnuRefresh->setShortcut(Qt::Key_F5);
    connect(mnuRefresh, &QAction::triggered, this,
            [this] { RefreshDisplay(moFileOptions.bReloadOnRefresh.Data(), true); });
    mnuToggleView = add(mnuView, "mnuToggleView",
                        QStringLiteral("&Toggle Difference Viewer (Side By Side vs. All In One)"));
    mnuToggleView->setShortcut(Qt::Key_F6);
    connect(mnuToggleView, &QAction::triggered, this, &frmCompareFiles::cmdChangeViewFormat_Click);
    connect(add(mnuView, "mnuSwap", QStringLiteral("&Swap Master and Source Text")), &QAction::triggered, this,
            [this] { SwapOriginalAndModified(); });
    mnuReport = add(mnuView, "mnuReport", QStringLiteral("&Report"));
    mnuReport->setShortcut(Qt::Key_F2);
    connect(mnuReport, &QAction::triggered, this, &frmCompareFiles::cmdViewReport_Click);
    mnuView->addSeparator();
    mnuWordWrap = add(mnuView, "mnuWordWrap", QStringLiteral("&Word Wrap"));
    mnuWordWrap->setCheckable(true);
    mnuWordWrap->setChecked(true);
    connect(mnuWordWrap, &QAction::triggered, this, &frmCompareFiles::mnuWordWrap_Click);
    mnuHideShowOriginalAndModified =
        add(mnuView, "mnuHideShowOriginalAndModified", QStringLiteral("&Hide/Show Original and Modified Documents"));
    connect(mnuHideShowOriginalAndModified, &QAction::triggered, this,
            &frmCompareFiles::mnuHideShowOriginalAndModified_Click);

    mnuWindow = FrameMenus::BuildWindowMenu(this);
    mnuHelp = FrameMenus::BuildHelpMenu(this);

    mnuPopup = new QMenu(this);
    mnuPopup->setObjectName(QStringLiteral("mnuPopup"));
    connect(add(mnuPopup, "mnuPopupLoadFileIntoActiveEditor", QStringLiteral("Load File Into This Editor")),
            &QAction::triggered, this, [this] { PickFileForEditor(mlActiveEditor); });
    connect(add(mnuPopup, "mnuPopupSaveFileAs", QStringLiteral("Save This Editor As")), &QAction::triggered, this,
            [this] { SaveActiveEditorAs(); });
    connect(add(mnuPopup, "mnuPopupPrintActiveEditor", QStringLiteral("Print This Editor")), &QAction::triggered,
            this, [this] { PrintActiveEditor(); });
    mnuPopupCompareSelectedText = add(mnuPopup, "mnuPopupCompareSelectedText", QStringLiteral("&Compare Selected Text"));
    connect(mnuPopupCompareSelectedText, &QAction::triggered, this, &frmCompareFiles::CompareSelectedText);
    mnuPopupReport = add(mnuPopup, "mnuPopupReport", QStringLiteral("&Report"));
    connect(mnuPopupReport, &QAction::triggered, this, &frmCompareFiles::cmdViewReport_Click);
    connect(mnuView, &QMenu::aboutToShow, this, &frmCompareFiles::RefreshMenuItems);
    RefreshMenuItems();
}

void frmCompareFiles::RefreshMenuItems()
{
    const bool both = rtbOriginal->SelLength() >= 1 && rtbModified->SelLength() >= 1;
    mnuCompareSelectedText->setEnabled(both);
    mnuPopupCompareSelectedText->setEnabled(both);
}

void frmCompareFiles::RefreshButtonStates()
{
    cmdReLoadOriginal->setEnabled(!cbSelectOriginal->currentText().trimmed().isEmpty());
    cmdReLoadModified->setEnabled(!cbSelectModified->currentText().trimmed().isEmpty());
    cmdLaunchOriginal->setEnabled(FileExistsOnDisk(cbSelectOriginal->currentText()));
    cmdLaunchModified->setEnabled(FileExistsOnDisk(cbSelectModified->currentText()));
}

void frmCompareFiles::CompareSelectedText()
{
    ViewerHost* frame = ViewerHost::current();
    if (!frame || rtbOriginal->SelLength() < 1 || rtbModified->SelLength() < 1)
        return;
    const RichText original = rtbOriginal->SelRTF();
    const RichText modified = rtbModified->SelRTF();
    FileComparisonViewer* target = frame->NewFileViewer();
    auto* other = target ? qobject_cast<frmCompareFiles*>(target->Form()) : nullptr;
    if (!other)
        return;
    // The new viewer compares as this one does, but keeps its own section
    // and its own files.
    clsCompareFileOptions options = moFileOptions;
    options.setSection(other->moFileOptions.Section());
    options.sFileOriginal = other->moFileOptions.sFileOriginal.Data();
    options.sFileModified = other->moFileOptions.sFileModified.Data();
    other->moFileOptions = options;
    other->RefreshCompareOptionsGUI();
    other->rtbOriginal->setTextRTF(original);
    other->rtbModified->setTextRTF(modified);
    other->RefreshDisplay(false, false);
}

// --- layout ------------------------------------------------------------------------------

void frmCompareFiles::Form_Resize()
{
    const QWidget* window = parentWidget() ? parentWidget() : this;
    if (gbFrameClosing || window->isMinimized() || !frameCF)
        return;
    const int W = frameCF->width();
    const int H = frameCF->height();
    if (W <= 0 || H <= 0)
        return;
    const int m = kMargin;
    const int gap = kDividerThickness;

    // Toolbar row: buttons, the list of differences, the spin control.
    const int comboH = cbSelectOriginal->sizeHint().height();
    const int rowH = qMax(tbMain->sizeHint().height(), comboH);
    // Room for the abort button even while it is hidden, so that its coming
    // and going during a run does not push buttons off the bar.
    int tbWidth = tbMain->sizeHint().width();
    if (!tbAbort->isVisible())
        if (QWidget* abort = tbMain->widgetForAction(tbAbort))
            tbWidth += abort->sizeHint().width() + tbMain->layout()->spacing();
    const QSize spin = SpinScroll->sizeHint();
    // The buttons first; the list of differences takes what is left, down to
    // a width where a row still says something.
    const int listMinimum = 160;
    tbMain->setGeometry(m, m, qMax(40, qMin(tbWidth, W - 4 * m - spin.width() - listMinimum)), rowH);
    SpinScroll->setGeometry(W - m - spin.width(), m + (rowH - spin.height()) / 2, spin.width(), spin.height());
    const int listLeft = tbMain->geometry().right() + 1 + m;
    cmboChangeListing->setGeometry(listLeft, m + (rowH - comboH) / 2,
                                   qMax(40, SpinScroll->x() - m - listLeft), comboH);

    // The vertical divider: the middle until the user moves it.
    int dvX = mdRatioLeftEditor == 0 ? W / 2 - gap / 2 : int(W * mdRatioLeftEditor);
    dvX = qBound(m + 60, dvX, qMax(m + 60, W - m - gap - 60));
    const int leftX = m;
    const int leftW = dvX - leftX;
    const int rightX = dvX + gap;
    const int rightW = W - m - rightX;

    // File selection row, one half per side.
    const int fileTop = m + rowH + m;
    auto placeFileRow = [&](QLabel* label, QComboBox* combo, QToolButton* browse, QToolButton* reload,
                            QToolButton* launch, int x, int w) {
        const int b = comboH;
        const int labelW = label->sizeHint().width();
        label->setGeometry(x, fileTop, labelW, comboH);
        const int buttonsW = 3 * b + 2;
        const int comboX = x + labelW + m;
        const int comboW = qMax(20, w - labelW - m - buttonsW - m);
        combo->setGeometry(comboX, fileTop, comboW, comboH);
        int bx = comboX + comboW + m;
        for (QToolButton* button : {browse, reload, launch}) {
            button->setGeometry(bx, fileTop, b, b);
            bx += b + 1;
        }
    };
    placeFileRow(lblOriginal, cbSelectOriginal, cmdBrowseOriginal, cmdReLoadOriginal, cmdLaunchOriginal, leftX,
                 leftW);
    placeFileRow(lblModified, cbSelectModified, cmdBrowseModified, cmdReLoadModified, cmdLaunchModified, rightX,
                 rightW);

    // The horizontal divider can't pass the file selection row.
    const int filesBottom = cmdBrowseOriginal->geometry().y() + cmdBrowseOriginal->height();
    int dhY = int(H * dRatioTopEditor);
    if (filesBottom >= dhY)
        dhY = filesBottom;
    const int editorTop = filesBottom + m;
    const int editorH = qMax(0, dhY - editorTop);
    placingEditors_ = true;
    rtbOriginal->view()->setGeometry(leftX, editorTop, leftW, editorH);
    rtbModified->view()->setGeometry(rightX, editorTop, rightW, editorH);
    rtbOriginal->view()->setVisible(editorH > 0);
    rtbModified->view()->setVisible(editorH > 0);
    lblDividerV->setGeometry(dvX, editorTop, gap, editorH);
    lblDividerV->setVisible(editorH > 0);
    lblDividerH->setGeometry(0, qMax(dhY, filesBottom), W, gap);
    placingEditors_ = false;

    // Filters and the view switch under the divider.
    const int filterTop = lblDividerH->y() + gap;
    const int buttonH = cmdChangeViewFormat->sizeHint().height();
    const int reportW = cmdViewReport->sizeHint().width();
    const int viewW = qMax(cmdChangeViewFormat->sizeHint().width(),
                           cmdChangeViewFormat->fontMetrics().horizontalAdvance(QLatin1String(kViewSideBySide)) + 24);
    cmdViewReport->setGeometry(W - m - reportW, filterTop, reportW, buttonH);
    cmdChangeViewFormat->setGeometry(cmdViewReport->x() - m - viewW, filterTop, viewW, buttonH);
    frameFilterButtons->setGeometry(m, filterTop, qMax(0, cmdChangeViewFormat->x() - 2 * m), buttonH);

    // The lower panes fill the rest.
    const int paneTop = filterTop + buttonH + m;
    const int paneH = qMax(0, H - m - paneTop);
    rtbOriginalDiffFinal->view()->setGeometry(leftX, paneTop, leftW, paneH);
    rtbModifiedDiffFinal->view()->setGeometry(rightX, paneTop, rightW, paneH);
    const QRect whole(leftX, paneTop, W - 2 * m, paneH);
    for (RichTextBox* box : {rtbAIODiff, rtbDeletions, rtbAdditions, rtbChanges})
        box->view()->setGeometry(whole);
}

void frmCompareFiles::DividerDropped(const QWidget* dragged, const QWidget* target, QPoint drop)
{
    const double H = frameCF->height();
    const double W = frameCF->width();
    if (H <= 0 || W <= 0 || !target || !frameCF->isAncestorOf(target))
        return;
    const QPoint origin = target->mapTo(frameCF, QPoint(0, 0));
    const bool leftPane = target == rtbOriginal->view() || target == rtbOriginalDiffFinal->view()
        || target == rtbAIODiff->view();
    const bool rightPane = target == rtbModified->view() || target == rtbModifiedDiffFinal->view();
    if (dragged == lblDividerH) {
        if (target == lblDividerV)
            dRatioTopEditor = (lblDividerV->y() + drop.y()) / H;
        else if (leftPane || rightPane)
            dRatioTopEditor = (origin.y() + drop.y()) / H;
    } else if (dragged == lblDividerV) {
        if (target == lblDividerH)
            mdRatioLeftEditor = (lblDividerH->x() + drop.x()) / W;
        else if (leftPane)
            mdRatioLeftEditor = drop.x() / W;
        else if (rightPane)
            // The small offset keeps the line just right of the pointer, as
            // a drop into the right pane always has.
            mdRatioLeftEditor = (origin.x() + drop.x() + 3) / W;
    }
    dRatioTopEditor = qBound(0.0, dRatioTopEditor, 1.0);
    mdRatioLeftEditor = qBound(0.0, mdRatioLeftEditor, 1.0);
}

void frmCompareFiles::mnuWordWrap_Click()
{
    // The check mark has already moved with the click; it says what is wanted.
    const int margin = mnuWordWrap->isChecked() ? 0 : kNoWrapMargin;
    for (RichTextBox* box : {rtbOriginal, rtbModified, rtbOriginalDiffFinal, rtbModifiedDiffFinal, rtbAIODiff})
        box->setRightMargin(margin);
}

void frmCompareFiles::mnuHideShowOriginalAndModified_Click()
{
    const double H = frameCF->height();
    if (H <= 0)
        return;
    const double r = lblDividerV->y() / H;
    if (dRatioTopEditor == r)
        dRatioTopEditor = 0.25;
    else
        dRatioTopEditor = r;
    Form_Resize();
}

void frmCompareFiles::showSideBySidePanes()
{
    rtbAIODiff->view()->hide();
    rtbOriginalDiffFinal->view()->show();
    rtbModifiedDiffFinal->view()->show();
}

void frmCompareFiles::levelSideBySide()
{
    std::vector<tv::DifferenceSpan> records;
    records.reserve(Result().records().size());
    for (const filecompare::Difference& d : Result().records())
        records.push_back({d.kind, d.lf, d.ll, d.rf, d.rl});
    // A kind shows in the overview in its background colour, or in its text
    // colour when it has the page's white as background.
    auto strokeColor = [](std::int32_t fore, std::int32_t back) {
        const QColor b = tv::colorFromColorref(back);
        return b.lightness() < 235 ? b : tv::colorFromColorref(fore);
    };
    sbsDecorations_->setKindColor(filecompare::kKindAddition, strokeColor(moFileOptions.lViewAdditionForeColor.Data(),
                                                                          moFileOptions.lViewAdditionBackColor.Data()));
    sbsDecorations_->setKindColor(filecompare::kKindDeletion, strokeColor(moFileOptions.lViewDeletionForeColor.Data(),
                                                                          moFileOptions.lViewDeletionBackColor.Data()));
    sbsDecorations_->setKindColor(filecompare::kKindChange,
                                  strokeColor(moFileOptions.lViewChangeForeColorModified.Data(),
                                              moFileOptions.lViewChangeBackColorModified.Data()));
    sbsDecorations_->setRecords(std::move(records));
}

void frmCompareFiles::showAllInOnePane()
{
    rtbOriginalDiffFinal->view()->hide();
    rtbModifiedDiffFinal->view()->hide();
    rtbAIODiff->view()->show();
    rtbAIODiff->view()->raise();
}

// --- scrolling together ------------------------------------------------------------------

void frmCompareFiles::coupleScrolling(RichTextBox* from, RichTextBox* to, bool fromOriginal)
{
    if (couplingScroll_ || session_.busy() || placingEditors_ || Result().empty())
        return;
    const bool editors = from == rtbOriginal || from == rtbModified;
    // The records describe the editors as they were compared: once an editor
    // changes they no longer say which paragraphs belong together.
    if (editors && (mbOriginalDirty || mbModifiedDirty))
        return;
    if (!editors && !mbSideBySideFresh)
        return;
    QTextEdit* fv = from->view();
    QTextEdit* tv = to->view();
    if (!fv->isVisible() || !tv->isVisible())
        return;
    QAbstractTextDocumentLayout* fl = fv->document()->documentLayout();
    QAbstractTextDocumentLayout* tl = tv->document()->documentLayout();
    const int value = fv->verticalScrollBar()->value();
    const int position = fl->hitTest(QPointF(1, value + 1), Qt::FuzzyHit);
    const QTextBlock block = fv->document()->findBlock(qMax(0, position));
    if (!block.isValid())
        return;
    const QRectF br = fl->blockBoundingRect(block);
    const double fraction = br.height() > 0 ? qBound(0.0, (value - br.top()) / br.height(), 1.0) : 0.0;
    const qint32 counterpart = CounterpartParagraph(block.blockNumber() + 1, fromOriginal);
    const QTextBlock target = tv->document()->findBlockByNumber(counterpart - 1);
    if (!target.isValid())
        return;
    const QRectF tr = tl->blockBoundingRect(target);
    couplingScroll_ = true;
    tv->verticalScrollBar()->setValue(int(tr.top() + fraction * tr.height()));
    couplingScroll_ = false;
}

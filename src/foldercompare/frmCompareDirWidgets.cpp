// The folder viewer's widgets, menus and legend, named as the viewer has
// always named them; the handlers live in frmCompareDir.cpp.

#include "foldercompare/frmCompareDir.h"

#include "forms/ViewerHost.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QStatusBar>
#include <QStyle>
#include <QTabWidget>
#include <QTableView>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

constexpr int kTimer1Interval = 25;  // ms between row batches

QLabel* swatch(const QColor& colour)
{
    auto* l = new QLabel;
    l->setFixedSize(14, 14);
    l->setAutoFillBackground(true);
    l->setFrameShape(QFrame::Box);
    QPalette p = l->palette();
    p.setColor(QPalette::Window, colour);
    l->setPalette(p);
    return l;
}

QLabel* coloured(const QString& text, const QColor& colour)
{
    auto* l = new QLabel(text);
    QPalette p = l->palette();
    p.setColor(QPalette::WindowText, colour);
    l->setPalette(p);
    return l;
}

} // namespace

using foldercompare::FolderGridModel;

// ---------------------------------------------------------------- widgets

void frmCompareDir::buildWidgets()
{
    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(0, 0, 0, 0);
    root->setSpacing(0);

    tbMain = new QToolBar(this);
    tbMain->setObjectName(QStringLiteral("tbMain"));
    tbMain->setIconSize(QSize(16, 16));
    tbMain->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    QStyle* st = style();
    auto tool = [this](const char* name, const QIcon& icon, const QString& text, const QString& tip,
                       const QKeySequence& key) {
        QAction* a = tbMain->addAction(icon, text);
        a->setObjectName(QLatin1String(name));
        a->setToolTip(tip);
        if (!key.isEmpty()) {
            a->setShortcut(key);
            a->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        }
        addAction(a);
        return a;
    };
    tbRefresh = tool("tbRefresh", st->standardIcon(QStyle::SP_BrowserReload), QStringLiteral("Refresh"),
                     QStringLiteral("Refresh Display and show differences (F5)"), QKeySequence(Qt::Key_F5));
    tbAbort = tool("tbAbort", st->standardIcon(QStyle::SP_BrowserStop), QStringLiteral("Abort"),
                   QStringLiteral("Abort Compare"), QKeySequence());
    tbViewReport = tool("tbViewReport", st->standardIcon(QStyle::SP_FileDialogDetailedView),
                        QStringLiteral("Report"), QStringLiteral("Show differences in a report (F2)"),
                        QKeySequence(Qt::Key_F2));
    tbSwap = tool("tbSwap", st->standardIcon(QStyle::SP_ArrowRight), QStringLiteral("Swap"),
                  QStringLiteral("Swap the Original and Modified Documents (F9)"), QKeySequence(Qt::Key_F9));
    tbFindAndReplace = tool("tbFindAndReplace", st->standardIcon(QStyle::SP_FileDialogContentsView),
                            QStringLiteral("Find"), QStringLiteral("Find and/or Replace Text (F3)"), QKeySequence());
    // Finding text belongs to the file viewer; the button keeps its place.
    tbFindAndReplace->setEnabled(false);
    tbAbort->setVisible(false);
    root->addWidget(tbMain);

    ts = new QTabWidget(this);
    ts->setObjectName(QStringLiteral("ts"));
    ts->addTab(buildComparePage(), QStringLiteral("Compare Folder"));
    ts->addTab(buildOptionsPage(), QStringLiteral("Compare Options"));
    ts->addTab(buildReportPage(), QStringLiteral("Report Options"));
    root->addWidget(ts, 1);

    buildLegend();
    root->addWidget(tbLegend);

    sbStatus = new QStatusBar(this);
    sbStatus->setObjectName(QStringLiteral("sbStatus"));
    sbStatus->setSizeGripEnabled(false);
    const char* designTexts[5] = {"Hits Found:", "", "Ready To Compare Folders!", "Total Time:", ""};
    for (int i = 0; i < 5; ++i) {
        auto* panel = new QLabel(QLatin1String(designTexts[i]), sbStatus);
        panel->setObjectName(QStringLiteral("sbStatusPanel%1").arg(i + 1));
        panel->setFrameShape(QFrame::StyledPanel);
        panel->setFrameShadow(QFrame::Sunken);
        panel->setMinimumWidth(i == 1 || i == 4 ? 150 : 80);
        sbStatus->addWidget(panel, i == 2 ? 1 : 0);
        sbPanels[i] = panel;
    }
    root->addWidget(sbStatus);

    Timer1 = new QTimer(this);
    Timer1->setObjectName(QStringLiteral("Timer1"));
    Timer1->setInterval(kTimer1Interval);

    // Escape is heard whatever has the focus, with or without a run.
    auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    escape->setContext(Qt::WidgetWithChildrenShortcut);
    connect(escape, &QShortcut::activated, this, &frmCompareDir::Abort);
}

QWidget* frmCompareDir::buildComparePage()
{
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("frameCF0"));
    auto* v = new QVBoxLayout(page);
    v->setContentsMargins(4, 4, 4, 4);
    v->setSpacing(4);

    folderBoxes_ = new QWidget(page);
    auto combo = [this](const char* name) {
        auto* c = new QComboBox(folderBoxes_);
        c->setObjectName(QLatin1String(name));
        c->setEditable(true);
        c->setInsertPolicy(QComboBox::NoInsert);
        c->setMaxVisibleItems(20);
        return c;
    };
    auto browse = [this](const char* name, const QString& tip) {
        auto* b = new QPushButton(QStringLiteral("..."), folderBoxes_);
        b->setObjectName(QLatin1String(name));
        b->setToolTip(tip);
        b->setFixedWidth(30);
        return b;
    };
    cmdBrowseOriginal = browse("cmdBrowseOriginal", QStringLiteral("Browse for the Original folder"));
    cmdBrowseModified = browse("cmdBrowseModified", QStringLiteral("Browse for the Modified folder"));
    cbSelectOriginal = combo("cbSelectOriginal");
    cbSelectModified = combo("cbSelectModified");
    cbSelectOriginal->setToolTip(QStringLiteral("[O] Original folder"));
    cbSelectModified->setToolTip(QStringLiteral("[M] Modified folder"));
    folderBoxes_->setFixedHeight(cbSelectOriginal->sizeHint().height() + 2);
    v->addWidget(folderBoxes_);

    gridModel_ = new FolderGridModel(this);
    gridModel_->setRecordSource([this](qint32 i, skeinmatch::FolderRecord& r) { return session_->GetRecord(i, r); });
    fgFiles = new QTableView(page);
    fgFiles->setObjectName(QStringLiteral("fgFiles"));
    fgFiles->setModel(gridModel_);
    fgFiles->setToolTip(QStringLiteral("Hint: Doubleclick on files that are different to show comparison in detail"));
    fgFiles->setSelectionBehavior(QAbstractItemView::SelectRows);
    fgFiles->setSelectionMode(QAbstractItemView::SingleSelection);
    fgFiles->setEditTriggers(QAbstractItemView::NoEditTriggers);
    fgFiles->setContextMenuPolicy(Qt::CustomContextMenu);
    fgFiles->setWordWrap(false);
    // A folder row's path differs from its neighbours at its end.
    fgFiles->setTextElideMode(Qt::ElideLeft);
    fgFiles->setShowGrid(true);
    fgFiles->setTabKeyNavigation(false);
    fgFiles->verticalHeader()->hide();
    // Fixed row heights keep a long grid's layout free of per-row work.
    fgFiles->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    fgFiles->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    fgFiles->horizontalHeader()->setHighlightSections(false);
    fgFiles->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    fgFiles->horizontalHeader()->setStretchLastSection(false);
    fgFiles->setIconSize(QSize(16, 16));
    v->addWidget(fgFiles, 18);

    lstErrorMessages = new QListWidget(page);
    lstErrorMessages->setObjectName(QStringLiteral("lstErrorMessages"));
    lstErrorMessages->hide();
    v->addWidget(lstErrorMessages, 2);
    return page;
}

QWidget* frmCompareDir::buildOptionsPage()
{
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("frameCF1"));
    auto* v = new QVBoxLayout(page);
    auto check = [](const char* name, const QString& caption, const QString& tip) {
        auto* c = new QCheckBox(caption);
        c->setObjectName(QLatin1String(name));
        c->setToolTip(tip);
        return c;
    };

    auto* types = new QHBoxLayout;
    auto* typesLabel = new QLabel(QStringLiteral("File Types:"));
    cbFileExt = new QComboBox;
    cbFileExt->setObjectName(QStringLiteral("cbFileExt"));
    cbFileExt->setEditable(true);
    cbFileExt->setInsertPolicy(QComboBox::NoInsert);
    cbFileExt->setMinimumWidth(200);
    typesLabel->setBuddy(cbFileExt);
    types->addWidget(typesLabel);
    types->addWidget(cbFileExt);
    types->addWidget(new QLabel(QStringLiteral("e.g. *.DOC  or several: *.TXT *.XLS")));
    types->addStretch(1);
    v->addLayout(types);

    cbLookInSubfolders = check("cbLookInSubfolders", QStringLiteral("&Look in SubFolders"),
                               QStringLiteral("Compare the folders below the two folders too"));
    cbCompareFileContents = check("cbCompareFileContents", QStringLiteral("&Compare File Contents (Slower)"),
                                  QStringLiteral("Compare files byte by byte, not only by size and date"));
    v->addWidget(cbLookInSubfolders);
    v->addWidget(cbCompareFileContents);

    frameFileContent = new QGroupBox(QStringLiteral("Show"));
    frameFileContent->setObjectName(QStringLiteral("frameFileContent"));
    auto* fc = new QVBoxLayout(frameFileContent);
    cbShowOnlyInMaster = check("cbShowOnlyInMaster", QStringLiteral("Show Files that are only in the &ORIGINAL Folder"),
                               QStringLiteral("If files only exist in the ORIGINAL directory, display them in the results"));
    cbShowOnlyInSource = check("cbShowOnlyInSource", QStringLiteral("Show Files that are only in the &MODIFIED Folder"),
                               QStringLiteral("If files only exist in the SOURCE directory, display them in the results"));
    cbShowSameInBothPlaces = check("cbShowSameInBothPlaces",
                                   QStringLiteral("Show Files whose CON&TENT are the SAME in both places"),
                                   QStringLiteral("List files that are equal in both folders"));
    cbShowDifferentInBothPlaces = check("cbShowDifferentInBothPlaces",
                                        QStringLiteral("Show Files whose CONTENT are &DIFFERENT in both places"),
                                        QStringLiteral("List files that differ between the folders"));
    cbIgnoreDateDifferences = check("cbIgnoreDateDifferences", QStringLiteral("Ignore Date Differences"),
                                    QStringLiteral("If files only exist in the SOURCE directory, display them in the results"));
    for (QCheckBox* c : {cbShowOnlyInMaster, cbShowOnlyInSource, cbShowSameInBothPlaces, cbShowDifferentInBothPlaces,
                         cbIgnoreDateDifferences})
        fc->addWidget(c);
    v->addWidget(frameFileContent);

    cbBeepWhenDone = check("cbBeepWhenDone", QStringLiteral("&Beep When Done"),
                           QStringLiteral("Sound a beep when the comparison is complete"));
    cbDontStreamResults = check("cbDontStreamResults", QStringLiteral("Show all findings at &END of search (Faster)"),
                                QStringLiteral("Fill the grid once the walk is over instead of while it goes on"));
    v->addWidget(cbBeepWhenDone);
    v->addWidget(cbDontStreamResults);
    v->addStretch(1);
    return page;
}

QWidget* frmCompareDir::buildReportPage()
{
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("frameCF2"));
    auto* v = new QVBoxLayout(page);
    auto* box = new QGroupBox(QStringLiteral("Tab Delimited Report"));
    auto* g = new QVBoxLayout(box);
    auto path = [g](const char* name) {
        auto* row = new QHBoxLayout;
        row->addWidget(new QLabel(QStringLiteral("Default Report Path and Name:")));
        auto* edit = new QLineEdit;
        edit->setObjectName(QLatin1String(name));
        row->addWidget(edit, 1);
        auto* more = new QPushButton(QStringLiteral("..."));
        more->setFixedWidth(30);
        more->setEnabled(false);  // the paths are changed by typing
        row->addWidget(more);
        g->addLayout(row);
        return edit;
    };
    txtDefaultReportTXT = path("txtDefaultReportTXT");
    txtDefaultReportCSV = path("txtDefaultReportCSV");
    txtDefaultReportHTM = path("txtDefaultReportHTM");
    txtDefaultReportCSV->setToolTip(QStringLiteral("The tab-delimited report is written here"));
    v->addWidget(box);
    v->addStretch(1);
    return page;
}

void frmCompareDir::buildLegend()
{
    tbLegend = new QWidget(this);
    tbLegend->setObjectName(QStringLiteral("tbLegend"));
    auto* strip = new QHBoxLayout(tbLegend);
    strip->setContentsMargins(4, 2, 4, 2);
    frmLegend = new QFrame(tbLegend);
    frmLegend->setObjectName(QStringLiteral("frmLegend"));
    auto* h = new QHBoxLayout(frmLegend);
    h->setContentsMargins(0, 0, 0, 0);
    h->setSpacing(6);
    h->addWidget(new QLabel(QStringLiteral("Legend:")));
    auto add = [h](const char* swatchName, const char* textName, const QString& text, const QColor& c) {
        QLabel* s = swatch(c);
        s->setObjectName(QLatin1String(swatchName));
        QLabel* t = coloured(text, c);
        t->setObjectName(QLatin1String(textName));
        h->addSpacing(10);
        h->addWidget(s);
        h->addWidget(t);
    };
    add("Text3", "Text1", QStringLiteral("= Only In Original Folder"), foldercompare::kOnlyInOriginalColor);
    add("Text5", "Text4", QStringLiteral("= Only In Modified Folder"), foldercompare::kOnlyInModifiedColor);
    add("Text6", "Text7", QStringLiteral("= File has changed"), foldercompare::kChangedColor);
    h->addSpacing(16);
    auto* hide = new QPushButton(QStringLiteral("&Hide"), frmLegend);
    hide->setObjectName(QStringLiteral("cmdHideLegend"));
    connect(hide, &QPushButton::clicked, this, &frmCompareDir::mnuViewLegend_Click);
    h->addWidget(hide);
    // Centred in its strip, whatever the strip's width.
    strip->addStretch(1);
    strip->addWidget(frmLegend);
    strip->addStretch(1);
}

void frmCompareDir::buildMenus()
{
    auto action = [this](QMenu* menu, const char* name, const QString& caption, auto slot) {
        QAction* a = menu->addAction(caption);
        a->setObjectName(QLatin1String(name));
        connect(a, &QAction::triggered, this, slot);
        return a;
    };
    mnuFile = new QMenu(QStringLiteral("&File"), this);
    mnuFile->setObjectName(QStringLiteral("mnuFile"));
    FrameMenus::AddViewerEntries(mnuFile);
    mnuFile->addSeparator();
    action(mnuFile, "mnuClose", QStringLiteral("&Close"), [this] {
        if (auto* sub = qobject_cast<QMdiSubWindow*>(parentWidget()))
            sub->close();
        else
            close();
    });
    mnuFile->addSeparator();
    FrameMenus::AddExitEntry(mnuFile);

    mnuView = new QMenu(QStringLiteral("&View"), this);
    mnuView->setObjectName(QStringLiteral("mnuView"));
    action(mnuView, "mnuRefresh", QStringLiteral("Refres&h Difference Viewer"), &frmCompareDir::RefreshDiffViewer);
    action(mnuView, "mnuFont", QStringLiteral("Change &Font"), [this] { Change_Font(true); });
    action(mnuView, "mnuViewLegend", QStringLiteral("Show &Legend"), &frmCompareDir::mnuViewLegend_Click);
    action(mnuView, "mnuSwap", QStringLiteral("&Swap Original And Modified Folders"), &frmCompareDir::mnuSwap_Click);
    action(mnuView, "mnuReport", QStringLiteral("&Report"), &frmCompareDir::mnuReportTabDelimitedFile_Click);

    mnuWindow = FrameMenus::BuildWindowMenu(this);
    mnuHelp = FrameMenus::BuildHelpMenu(this);

    mnuPopup = new QMenu(QStringLiteral("Popup"), this);
    mnuPopup->setObjectName(QStringLiteral("mnuPopup"));
    action(mnuPopup, "mnuPopupCompareSelectedFiles", QStringLiteral("Compare Files (Double Click)"),
           [this] { CompareSelectedFiles(false); });
    action(mnuPopup, "mnuPopupCompareSelectedFilesNew", QStringLiteral("Compare Files, Open New Window"),
           [this] { CompareSelectedFiles(true); });
    mnuPopup->addSeparator();
    action(mnuPopup, "mnuPopupRefresh", QStringLiteral("Refresh (F5)"), &frmCompareDir::RefreshDiffViewer);
    action(mnuPopup, "mnuPopupReport", QStringLiteral("Report (F2)"), &frmCompareDir::mnuReportTabDelimitedFile_Click);
    action(mnuPopup, "mnuPopupFont", QStringLiteral("Change Font"), [this] { Change_Font(true); });
    action(mnuPopup, "mnuPopupLaunch", QStringLiteral("Launch Selected File"), &frmCompareDir::mnuPopupLaunch_Click);
}

QList<QMenu*> frmCompareDir::Menus() const
{
    return {mnuFile, mnuView, mnuWindow, mnuHelp};
}


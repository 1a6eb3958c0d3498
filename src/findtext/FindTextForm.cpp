// Construction, settings, menus and the small tools of the find viewer.

#include "findtext/frmFindTextInFiles.h"

#include "core/Launcher.h"
#include "core/Places.h"
#include "core/modGlobal.h"
#include "findtext/FindHitsModel.h"
#include "settings/IniStore.h"
#include "settings/clsMRU.h"
#include "forms/ViewerHost.h"
#include "forms/modMessageBox.h"
#include "forms/modPickFile.h"
#include "forms/modUtilityForm.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFontDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QSplitter>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableView>
#include <QTableWidget>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

const QString kSectionSearchPath = QStringLiteral("SearchPath");
const QString kSectionFileExt = QStringLiteral("FileExt");
const QString kSectionSearchFor = QStringLiteral("SearchFor");

// The symbols the picker offers: what its row says and what it does to the
// search text.
struct RegularSymbol {
    const char* text;
    const char* symbol;
    bool inFront;
};
constexpr RegularSymbol kRegularSymbols[] = {
    {"? - Match 0 or 1 character", "?", false},
    {"* - Match 0 or more characters", "*", false},
    {"[] - Match any 1 character included with the brackets", "[]", false},
    {"^ - Match must be at the beginning of the string", "^", true},
    {"$ - Match must be at the end of the string", "$", false},
    {"\\ - Literal character to match the character followng \\", "\\", false},
};

// Column widths as the INI file keeps them (twips), with their defaults.
struct ColumnWidthKey {
    const char* key;
    int column;
    int defaultTwips;
};
constexpr ColumnWidthKey kFilesWidths[] = {
    {"fgFiles.ColWidth(0)", 0, 600},  {"fgFiles.ColWidth(1)", 1, 5700}, {"fgFiles.ColWidth(2)", 2, 700},
    {"fgFiles.ColWidth(3)", 3, 700},  {"fgFiles.ColWidth(4)", 4, 8100},
};
constexpr ColumnWidthKey kErrorWidths[] = {
    {"fgErrorMessages.ColWidth(0)", 0, 600},
    {"fgErrorMessages.ColWidth(1)", 1, 14000},
};

QToolButton* makeButton(const char* name, const QString& text, const QString& tip)
{
    auto* b = new QToolButton;
    b->setObjectName(QLatin1String(name));
    b->setText(text);
    b->setToolTip(tip);
    b->setToolButtonStyle(Qt::ToolButtonTextOnly);
    return b;
}

QComboBox* makeCombo(const char* name)
{
    auto* c = new QComboBox;
    c->setObjectName(QLatin1String(name));
    c->setEditable(true);
    c->setInsertPolicy(QComboBox::NoInsert);
    c->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    c->setMinimumContentsLength(24);
    c->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    return c;
}

QString readString(const QString& section, const char* key, const QString& def)
{
    return IniReadString(gsIniFile, section, QLatin1String(key), def);
}

void writeString(const QString& section, const char* key, const QString& value)
{
    IniWriteString(gsIniFile, section, QLatin1String(key), value);
}

QString boolText(bool on) { return on ? QStringLiteral("TRUE") : QStringLiteral("FALSE"); }

} // namespace

frmFindTextInFiles::frmFindTextInFiles(QWidget* parent, FindTextSession* session)
    : ViewerForm(parent), session_(session ? session : new FindTextSession)
{
    setObjectName(QStringLiteral("frmFindTextInFiles"));
    setWindowTitle(QStringLiteral("Find Text In Files"));
    session_->setParent(this);
    hitsModel_ = new FindHitsModel(this);
    ticks_ = [] {
        static QElapsedTimer clock = [] { QElapsedTimer t; t.start(); return t; }();
        return clock.elapsed();
    };
    buildWidgets();
    buildMenus();

    Timer1 = new QTimer(this);
    Timer1->setInterval(25);
    connect(Timer1, &QTimer::timeout, this, &frmFindTextInFiles::Timer1_Timer);
    connect(session_, &FindTextSession::searchStarted, this, &frmFindTextInFiles::OnSearchStarted);
    connect(session_, &FindTextSession::searchCompleted, this, &frmFindTextInFiles::OnSearchCompleted);
    connect(session_, &FindTextSession::searchError, this, &frmFindTextInFiles::OnSearchError);

    txtDefaultReportCSV->setText(dataFolder() + QStringLiteral("/FindTextReport.CSV"));
    txtDefaultReportTXT->setText(dataFolder() + QStringLiteral("/FindTextReport.TXT"));
    txtDefaultReportHTM->setText(dataFolder() + QStringLiteral("/FindTextReport.HTM"));
    ClearResultGrids();
    UpdateGUI();
}

frmFindTextInFiles::~frmFindTextInFiles()
{
    SetBusyPointer(false);
}

void frmFindTextInFiles::buildWidgets()
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    // What to find, and the run's buttons.
    tbMain = new QToolBar(this);
    tbMain->setObjectName(QStringLiteral("tbMain"));
    tbMain->addWidget(new QLabel(QStringLiteral(" What to find: ")));
    cbSearchFor = makeCombo("cbSearchFor");
    tbMain->addWidget(cbSearchFor);
    cmdRegularExpression = makeButton("cmdRegularExpression", QStringLiteral(".*"),
                                      QStringLiteral("Choose regular expression symbol(s)"));
    tbMain->addWidget(cmdRegularExpression);
    tbMain->addSeparator();
    cmdRefresh = makeButton("cmdRefresh", QStringLiteral("Find"), QStringLiteral("Refresh Find Text Display"));
    cmdRefresh->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    cmdRefresh->setIcon(style()->standardIcon(QStyle::SP_BrowserReload));
    tbMain->addWidget(cmdRefresh);
    tbAbort = makeButton("tbAbort", QStringLiteral("Abort"), QStringLiteral("Abort Find Text Procedure"));
    tbAbort->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    tbAbort->setIcon(style()->standardIcon(QStyle::SP_BrowserStop));
    tbAbortAction_ = tbMain->addWidget(tbAbort);
    cmdViewReport = makeButton("cmdViewReport", QStringLiteral("Report"), QStringLiteral("Show results in a report (F2)"));
    cmdViewReport->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    cmdViewReport->setIcon(style()->standardIcon(QStyle::SP_FileDialogDetailedView));
    tbMain->addWidget(cmdViewReport);
    layout->addWidget(tbMain);

    // Where to look.
    tbMain2 = new QToolBar(this);
    tbMain2->setObjectName(QStringLiteral("tbMain2"));
    tbMain2->addWidget(new QLabel(QStringLiteral(" In Files/File Types: ")));
    cbFileExt = makeCombo("cbFileExt");
    cbFileExt->setMinimumContentsLength(10);
    tbMain2->addWidget(cbFileExt);
    tbMain2->addWidget(new QLabel(QStringLiteral("  In Folder: ")));
    cbDirectory = makeCombo("cbDirectory");
    tbMain2->addWidget(cbDirectory);
    cmdSelectFolder = makeButton("cmdSelectFolder", QStringLiteral("..."), QStringLiteral("Select Folder to Search In"));
    cmdSelectFolder->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    cmdSelectFolder->setIcon(style()->standardIcon(QStyle::SP_DirOpenIcon));
    tbMain2->addWidget(cmdSelectFolder);
    layout->addWidget(tbMain2);

    ts = new QTabWidget(this);
    ts->setObjectName(QStringLiteral("ts"));
    ts->setDocumentMode(true);

    // The result area: the hit viewer over the hits over the errors.
    fgFileWithHit = new QTableWidget(0, 1);
    fgFileWithHit->setObjectName(QStringLiteral("fgFileWithHit"));
    fgFileWithHit->horizontalHeader()->hide();
    fgFileWithHit->verticalHeader()->hide();
    fgFileWithHit->horizontalHeader()->setStretchLastSection(true);
    fgFileWithHit->setEditTriggers(QAbstractItemView::NoEditTriggers);
    fgFileWithHit->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    fgFileWithHit->setShowGrid(false);

    fgFiles = new QTableView;
    fgFiles->setObjectName(QStringLiteral("fgFiles"));
    fgFiles->setModel(hitsModel_);
    fgFiles->verticalHeader()->hide();
    fgFiles->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    fgFiles->setSelectionBehavior(QAbstractItemView::SelectRows);
    fgFiles->setEditTriggers(QAbstractItemView::NoEditTriggers);
    fgFiles->setWordWrap(true);
    fgFiles->setTextElideMode(Qt::ElideMiddle);
    fgFiles->horizontalHeader()->setStretchLastSection(true);
    fgFiles->setAlternatingRowColors(true);

    fgErrorMessages = new QTableWidget(0, 2);
    fgErrorMessages->setObjectName(QStringLiteral("fgErrorMessages"));
    fgErrorMessages->verticalHeader()->hide();
    fgErrorMessages->setHorizontalHeaderLabels({QStringLiteral("#"), QStringLiteral(" Warning or Error found")});
    fgErrorMessages->horizontalHeader()->setStretchLastSection(true);
    fgErrorMessages->setEditTriggers(QAbstractItemView::NoEditTriggers);
    fgErrorMessages->setSelectionBehavior(QAbstractItemView::SelectRows);
    fgErrorMessages->setWordWrap(true);

    splitSecondary_ = new QSplitter(Qt::Vertical);
    splitSecondary_->setObjectName(QStringLiteral("lblDividerSecondary"));
    splitSecondary_->setToolTip(QStringLiteral("Click and Drag to move"));
    splitSecondary_->addWidget(fgFileWithHit);
    splitSecondary_->addWidget(fgFiles);
    splitSecondary_->setChildrenCollapsible(true);
    splitPrimary_ = new QSplitter(Qt::Vertical);
    splitPrimary_->setObjectName(QStringLiteral("lblDividerPrimary"));
    splitPrimary_->setToolTip(QStringLiteral("Click and Drag to move"));
    splitPrimary_->addWidget(splitSecondary_);
    splitPrimary_->addWidget(fgErrorMessages);
    splitPrimary_->setHandleWidth(6);
    splitSecondary_->setHandleWidth(6);
    connect(splitPrimary_, &QSplitter::splitterMoved, this, &frmFindTextInFiles::OnSplitterMoved);
    connect(splitSecondary_, &QSplitter::splitterMoved, this, &frmFindTextInFiles::OnSplitterMoved);
    ts->addTab(splitPrimary_, QStringLiteral("Find Text"));

    // Options.
    auto* options = new QWidget;
    auto* optionsLayout = new QVBoxLayout(options);
    auto check = [&](QCheckBox*& box, const char* name, const QString& caption) {
        box = new QCheckBox(caption);
        box->setObjectName(QLatin1String(name));
        optionsLayout->addWidget(box);
    };
    check(cbCaseSensitive, "cbCaseSensitive", QStringLiteral("&Case Sensitive"));
    check(cbWholeWordOnly, "cbWholeWordOnly", QStringLiteral("&Whole word only"));
    check(cbRegularExpression, "cbRegularExpression", QStringLiteral("R&egular Expression"));
    check(cbDontStreamResults, "cbDontStreamResults", QStringLiteral("Show &all findings at end of search (Faster)"));
    check(cbLookInSubfolders, "cbLookInSubfolders", QStringLiteral("&Look in subfolders"));
    check(cbSupportOfficeDocs, "cbSupportOfficeDocs", QStringLiteral("&Support MS Word and Excel"));
    check(cbBeepWhenDone, "cbBeepWhenDone", QStringLiteral("&Beep When Done"));
    optionsLayout->addStretch(1);
    ts->addTab(options, QStringLiteral("Find Options"));
    for (QCheckBox* box : {cbSupportOfficeDocs, cbCaseSensitive, cbLookInSubfolders, cbWholeWordOnly,
                           cbRegularExpression})
        connect(box, &QCheckBox::toggled, this, [this] {
            if (!refreshingControls_)
                PushOptionsToControl();
        });

    // Report paths.
    auto* report = new QWidget;
    auto* reportLayout = new QFormLayout(report);
    auto pathRow = [&](QLineEdit*& edit, const char* name, const QString& label, QToolButton* browse) {
        edit = new QLineEdit;
        edit->setObjectName(QLatin1String(name));
        auto* row = new QHBoxLayout;
        row->addWidget(edit, 1);
        if (browse)
            row->addWidget(browse);
        reportLayout->addRow(label, row);
    };
    auto* browseCsv = makeButton("cmdSelectReportFolderDefaultCSV", QStringLiteral("..."),
                                 QStringLiteral("Pick Find Text Report File"));
    pathRow(txtDefaultReportCSV, "txtDefaultReportCSV", QStringLiteral("Tab delimited report:"), browseCsv);
    pathRow(txtDefaultReportTXT, "txtDefaultReportTXT", QStringLiteral("Text report:"), nullptr);
    pathRow(txtDefaultReportHTM, "txtDefaultReportHTM", QStringLiteral("HTML report:"), nullptr);
    ts->addTab(report, QStringLiteral("Report Options"));
    connect(browseCsv, &QToolButton::clicked, this, &frmFindTextInFiles::SelectReportCsv);
    connect(ts, &QTabWidget::currentChanged, this, [this] { lbRegular->hide(); });
    layout->addWidget(ts, 1);

    sbStatus = new QStatusBar(this);
    sbStatus->setObjectName(QStringLiteral("sbStatus"));
    sbStatus->setSizeGripEnabled(false);
    const QString design[5] = {QStringLiteral("Hits Found:"), QString(), QStringLiteral("Ready To Find In Files!"),
                               QStringLiteral("Total Scan Time:"), QString()};
    for (int i = 0; i < 5; ++i) {
        panels_[i] = new QLabel(design[i]);
        panels_[i]->setObjectName(QStringLiteral("sbStatusPanel%1").arg(i + 1));
        panels_[i]->setContentsMargins(4, 0, 4, 0);
        // Panels keep their width whatever they say: a text that changed the
        // size hint would lay out the whole window again on every tick.
        panels_[i]->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        const QString widest[5] = {design[0], QStringLiteral("0000000"), QStringLiteral("Search In Progress. Press ESC to abort."),
                                   design[3], QStringLiteral("00000.0 (Sec)")};
        panels_[i]->setMinimumWidth(panels_[i]->fontMetrics().horizontalAdvance(widest[i]) + 12);
        sbStatus->addWidget(panels_[i], i == 2 ? 1 : 0);
    }
    layout->addWidget(sbStatus);

    // The symbol picker floats over the form next to its button.
    lbRegular = new QListWidget(this);
    lbRegular->setObjectName(QStringLiteral("lbRegular"));
    for (const RegularSymbol& s : kRegularSymbols)
        lbRegular->addItem(QString::fromLatin1(s.text));
    lbRegular->setFrameShape(QFrame::Box);
    lbRegular->hide();
    lbRegular->installEventFilter(this);
    connect(lbRegular, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { lbRegular_Click(lbRegular->row(item)); });

    connect(cmdRefresh, &QToolButton::clicked, this, &frmFindTextInFiles::SetupAndBeginSearch);
    connect(tbAbort, &QToolButton::clicked, this, &frmFindTextInFiles::Abort);
    connect(cmdViewReport, &QToolButton::clicked, this, &frmFindTextInFiles::mnuReportTabDelimitedFile_Click);
    connect(cmdRegularExpression, &QToolButton::clicked, this, &frmFindTextInFiles::cmdRegularExpression_Click);
    connect(cmdSelectFolder, &QToolButton::clicked, this, &frmFindTextInFiles::SelectFolder);
    connect(fgFiles, &QTableView::doubleClicked, this, [this](const QModelIndex& index) { ShowHit(index.row()); });
    // Enter in the search box starts the search, as users of search boxes expect.
    connect(cbSearchFor->lineEdit(), &QLineEdit::returnPressed, this, &frmFindTextInFiles::SetupAndBeginSearch);
    ShowAbort(false);
}

void frmFindTextInFiles::ShowAbort(bool shown)
{
    tbAbortAction_->setVisible(shown);
}

bool frmFindTextInFiles::AbortShown() const
{
    return tbAbortAction_->isVisible();
}

void frmFindTextInFiles::buildMenus()
{
    mnuFile = new QMenu(QStringLiteral("&File"), this);
    mnuFile->setObjectName(QStringLiteral("mnuFile"));
    FrameMenus::AddViewerEntries(mnuFile);
    mnuFile->addSeparator();
    FrameMenus::AddExitEntry(mnuFile);

    mnuView = new QMenu(QStringLiteral("&View"), this);
    mnuView->setObjectName(QStringLiteral("mnuView"));
    QAction* refresh = mnuView->addAction(QStringLiteral("Refres&h Find Text Viewer"), this,
                                          &frmFindTextInFiles::SetupAndBeginSearch);
    refresh->setObjectName(QStringLiteral("mnuRefresh"));
    refresh->setShortcut(Qt::Key_F5);
    QAction* font = mnuView->addAction(QStringLiteral("Change &Font"), this, [this] { Change_Font(true); });
    font->setObjectName(QStringLiteral("mnuFont"));
    QAction* report = mnuView->addAction(QStringLiteral("&Report"), this,
                                         &frmFindTextInFiles::mnuReportTabDelimitedFile_Click);
    report->setObjectName(QStringLiteral("mnuReport"));
    report->setShortcut(Qt::Key_F2);
    // The keys work in a viewer that stands alone as well as in the frame.
    for (QAction* a : {refresh, report}) {
        a->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        addAction(a);
    }

    mnuWindow = FrameMenus::BuildWindowMenu(this);
    mnuHelp = FrameMenus::BuildHelpMenu(this);
}

QList<QMenu*> frmFindTextInFiles::Menus() const
{
    return {mnuFile, mnuView, mnuWindow, mnuHelp};
}

void frmFindTextInFiles::Setup(const QString& description, bool bRestorePlacement)
{
    sDescription = description;
    ReadIniFile(bRestorePlacement);
    ClearResultGrids();
}

void frmFindTextInFiles::setTickSource(std::function<qint64()> ticks)
{
    ticks_ = std::move(ticks);
}

qint64 frmFindTextInFiles::Ticks() const
{
    return ticks_();
}

// --- settings ----------------------------------------------------------------------

void frmFindTextInFiles::ReadIniFile(bool bRestorePlacement)
{
    IniBatch batch(gsIniFile);
    const QString& s = sDescription;
    if (bRestorePlacement) {
        QWidget* window = parentWidget() ? parentWidget() : this;
        const qint32 left = qint32(IniReadInt(gsIniFile, s, QStringLiteral("Left"), 0));
        const qint32 top = qint32(IniReadInt(gsIniFile, s, QStringLiteral("Top"), 200));
        const qint32 width = qint32(IniReadInt(gsIniFile, s, QStringLiteral("Width"), 6500));
        const qint32 height = qint32(IniReadInt(gsIniFile, s, QStringLiteral("Height"), 6500));
        if (width > 0 && height > 0)
            window->setGeometry(TwipsToPixels(left), TwipsToPixels(top), TwipsToPixels(width), TwipsToPixels(height));
        const qint32 state = qint32(IniReadInt(gsIniFile, s, QStringLiteral("WindowState"), 0));
        if (state == 2)
            window->setWindowState(Qt::WindowMaximized);
        else if (state == 1)
            window->setWindowState(Qt::WindowMinimized);
    }

    bool ok = false;
    double ratio = readString(s, "dDividerPrimaryRatioLast", QStringLiteral("0.85")).toDouble(&ok);
    dDividerPrimaryRatioLast = (ok && ratio > 0 && ratio < 1) ? ratio : 0.85;
    ratio = readString(s, "dDividerSecondaryRatio", QStringLiteral("0.50")).toDouble(&ok);
    dDividerSecondaryRatio = (ok && ratio >= 0 && ratio <= 1) ? ratio : 0.50;

    auto readWidths = [&](QTableView* grid, const auto& keys) {
        for (const ColumnWidthKey& k : keys) {
            const int twips = readString(s, k.key, QString::number(k.defaultTwips)).toInt(&ok);
            grid->setColumnWidth(k.column, TwipsToPixels(ok && twips >= 0 ? twips : k.defaultTwips));
        }
    };
    readWidths(fgFiles, kFilesWidths);
    readWidths(fgErrorMessages, kErrorWidths);

    cbDontStreamResults->setChecked(readString(s, "cbDontStreamResults", QStringLiteral("FALSE")) != QLatin1String("FALSE"));
    cbBeepWhenDone->setChecked(readString(s, "cbBeepWhenDone", QStringLiteral("FALSE")) == QLatin1String("TRUE"));

    MruReadSection(gsIniFile, kSectionSearchPath, mcolSearchPath);
    MruReadSection(gsIniFile, kSectionFileExt, mcolFileExt);
    MruReadSection(gsIniFile, kSectionSearchFor, mcolSearchFor);

    txtDefaultReportCSV->setText(readString(s, "txtDefaultReportCSV", dataFolder() + QStringLiteral("/FindTextReport.CSV")));
    txtDefaultReportTXT->setText(readString(s, "txtDefaultReportTXT", dataFolder() + QStringLiteral("/FindTextReport.TXT")));
    txtDefaultReportHTM->setText(readString(s, "txtDefaultReportHTM", dataFolder() + QStringLiteral("/FindTextReport.HTM")));

    QFont f(readString(s, "FontName", QStringLiteral("Courier New")));
    f.setStyleHint(QFont::TypeWriter);
    const double size = readString(s, "FontSize", QStringLiteral("8")).toDouble(&ok);
    f.setPointSizeF(ok && size >= 4 && size <= 96 ? size : 8);
    f.setBold(readString(s, "FontBold", QStringLiteral("FALSE")) != QLatin1String("FALSE"));
    f.setItalic(readString(s, "FontItalic", QStringLiteral("FALSE")) != QLatin1String("FALSE"));
    for (QWidget* grid : {static_cast<QWidget*>(fgFileWithHit), static_cast<QWidget*>(fgFiles),
                          static_cast<QWidget*>(fgErrorMessages)})
        grid->setFont(f);
    Change_Font(false);
    UpdateGUI();
}

void frmFindTextInFiles::SaveIniFile()
{
    if (sDescription.isEmpty())
        return;
    IniBatch batch(gsIniFile);
    const QString& s = sDescription;
    const QWidget* window = parentWidget() ? parentWidget() : this;
    const qint32 state = WindowStateNumber(window);
    writeString(s, "WindowState", QString::number(state));
    if (state == 0) {
        const QRect r = window->geometry();
        writeString(s, "Left", QString::number(qint64(PixelsToTwips(r.x()))));
        writeString(s, "Top", QString::number(qint64(PixelsToTwips(r.y()))));
        writeString(s, "Width", QString::number(qint64(PixelsToTwips(r.width()))));
        writeString(s, "Height", QString::number(qint64(PixelsToTwips(r.height()))));
    }
    writeString(s, "dDividerPrimaryRatioLast", QString::number(dDividerPrimaryRatioLast, 'g', 6));
    writeString(s, "dDividerSecondaryRatio", QString::number(dDividerSecondaryRatio, 'g', 6));
    for (const ColumnWidthKey& k : kFilesWidths)
        writeString(s, k.key, QString::number(qint64(PixelsToTwips(fgFiles->columnWidth(k.column)))));
    for (const ColumnWidthKey& k : kErrorWidths)
        writeString(s, k.key, QString::number(qint64(PixelsToTwips(fgErrorMessages->columnWidth(k.column)))));
    writeString(s, "cbDontStreamResults", boolText(cbDontStreamResults->isChecked()));
    writeString(s, "cbBeepWhenDone", boolText(cbBeepWhenDone->isChecked()));
    writeString(s, "txtDefaultReportCSV", txtDefaultReportCSV->text());
    writeString(s, "txtDefaultReportTXT", txtDefaultReportTXT->text());
    writeString(s, "txtDefaultReportHTM", txtDefaultReportHTM->text());
    const QFont f = fgFiles->font();
    writeString(s, "FontName", f.family());
    writeString(s, "FontSize", QString::number(f.pointSizeF()));
    writeString(s, "FontBold", boolText(f.bold()));
    writeString(s, "FontItalic", boolText(f.italic()));
}

void frmFindTextInFiles::UpdateGUI()
{
    refreshingControls_ = true;
    const FindTextOptions o = session_->Options();
    cbSupportOfficeDocs->setChecked(o.bSupportOfficeDocs);
    cbCaseSensitive->setChecked(o.bCaseSensitive);
    cbLookInSubfolders->setChecked(o.bLookInSubfolders);
    cbWholeWordOnly->setChecked(o.bWholeWordOnly);
    cbRegularExpression->setChecked(o.bRegularExpression);
    auto fill = [](QComboBox* combo, const QStringList& items) {
        combo->clear();
        for (auto it = items.crbegin(); it != items.crend(); ++it)
            combo->addItem(*it);
        if (combo->count() > 0)
            combo->setCurrentIndex(0);
    };
    fill(cbDirectory, mcolSearchPath);
    fill(cbFileExt, mcolFileExt);
    fill(cbSearchFor, mcolSearchFor);
    refreshingControls_ = false;
}

void frmFindTextInFiles::PushOptionsToControl()
{
    FindTextOptions o = session_->Options();
    o.bSupportOfficeDocs = cbSupportOfficeDocs->isChecked();
    o.bCaseSensitive = cbCaseSensitive->isChecked();
    o.bLookInSubfolders = cbLookInSubfolders->isChecked();
    o.bWholeWordOnly = cbWholeWordOnly->isChecked();
    o.bRegularExpression = cbRegularExpression->isChecked();
    session_->SetOptions(o);
}

// --- closing -----------------------------------------------------------------------

void frmFindTextInFiles::Form_Unload()
{
    SaveIniFile();
    // The search dies with its viewer; stopping it here keeps its threads from
    // outliving the window by the time deletion takes.
    Timer1->stop();
    following_ = false;
    session_->AbortSearch();
    SetBusyPointer(false);
}

void frmFindTextInFiles::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape) {
        if (lbRegular->isVisible()) {
            lbRegular->hide();
            cbSearchFor->setFocus();
            return;
        }
        if (AbortShown()) {
            Abort();
            return;
        }
    }
    ViewerForm::keyPressEvent(event);
}

bool frmFindTextInFiles::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == lbRegular) {
        if (event->type() == QEvent::FocusOut)
            lbRegular->hide();
        else if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
            lbRegular->hide();
            cbSearchFor->setFocus();
            return true;
        }
    }
    return ViewerForm::eventFilter(watched, event);
}

// --- tools -------------------------------------------------------------------------

void frmFindTextInFiles::cmdRegularExpression_Click()
{
    lbRegular->raise();
    const int width = lbRegular->sizeHintForColumn(0) + 2 * lbRegular->frameWidth() + 8;
    const int height = lbRegular->sizeHintForRow(0) * lbRegular->count() + 2 * lbRegular->frameWidth() + 4;
    const QPoint buttonTopLeft = cmdRegularExpression->mapTo(this, QPoint(0, 0));
    // Right edge at the button's left edge, but never off the form's left side.
    const int left = qMax(0, buttonTopLeft.x() - width);
    lbRegular->setGeometry(left, buttonTopLeft.y(), width, height);
    lbRegular->show();
    lbRegular->setFocus();
}

void frmFindTextInFiles::lbRegular_Click(int row)
{
    if (row < 0 || row >= int(std::size(kRegularSymbols)))
        return;
    const RegularSymbol& s = kRegularSymbols[row];
    cbRegularExpression->setChecked(true);
    const QString symbol = QString::fromLatin1(s.symbol);
    const QString text = cbSearchFor->currentText();
    cbSearchFor->setEditText(s.inFront ? symbol + text : text + symbol);
    lbRegular->hide();
    cbSearchFor->setFocus();
    cbSearchFor->lineEdit()->deselect();
    cbSearchFor->lineEdit()->setCursorPosition(cbSearchFor->currentText().size());
}

void frmFindTextInFiles::mnuReportTabDelimitedFile_Click()
{
    const QString path = txtDefaultReportCSV->text();
    if (!session_->WriteReport(path)) {
        MsgBox(this, QStringLiteral("The report could not be written to:\n\n") + path, MsgButtons::OK,
               MsgIcon::Exclamation);
        return;
    }
    launcher().OpenInTextViewer(path);
}

void frmFindTextInFiles::SelectFolder()
{
    const QString folder = PickFolder(this, cbDirectory->currentText());
    if (!folder.isEmpty())
        cbDirectory->setEditText(folder);
}

void frmFindTextInFiles::SelectReportCsv()
{
    qint32 filterIndex = 1;
    const QString path = PickFile(this, QStringLiteral("Pick Find Text Report File"),
                                  QStringLiteral("Tab delimited|*.CSV"), filterIndex, txtDefaultReportCSV->text());
    if (!path.isEmpty())
        txtDefaultReportCSV->setText(path);
}

void frmFindTextInFiles::Change_Font(bool bChoose)
{
    QFont f = fgFiles->font();
    if (bChoose) {
        bool ok = false;
        const QFont chosen = QFontDialog::getFont(&ok, f, this, QStringLiteral("Change Font"));
        if (!ok)
            return;
        f = chosen;
    }
    const int rowHeight = QFontMetrics(f).height() + 4;
    for (QTableView* grid : {static_cast<QTableView*>(fgFileWithHit), fgFiles,
                             static_cast<QTableView*>(fgErrorMessages)}) {
        grid->setUpdatesEnabled(false);
        grid->setFont(f);
        grid->verticalHeader()->setDefaultSectionSize(rowHeight);
        grid->verticalHeader()->setMinimumSectionSize(rowHeight);
        grid->setUpdatesEnabled(true);
    }
    Form_Resize();
}

#include "foldercompare/frmCompareDir.h"

#include "core/Launcher.h"
#include "core/Places.h"
#include "core/modGlobal.h"
#include "core/modUtilityFile.h"
#include "core/modUtilityString.h"
#include "settings/IniStore.h"
#include "forms/ViewerHost.h"
#include "forms/modMessageBox.h"
#include "forms/modPickFile.h"
#include "forms/modUtilityForm.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <QFontDialog>
#include <QFrame>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
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

using foldercompare::FolderGridModel;
using foldercompare::FolderRow;

namespace {

constexpr qint32 kStreamBatch = 20;      // rows a tick adds while the walk goes on
// Rows added to the model between two looks at the event loop in one batch:
// reading a record costs about a microsecond, so a chunk stays far below a
// frame and Escape and the control's events are heard during a long batch.
constexpr qint32 kRowsPerYield = 1024;
const QString kErrorListHeading = QStringLiteral("Error Event Messages Received");
const QString kDirSuffix = QStringLiteral("_CompareDir");
const QString kPickDifferent = QStringLiteral("Pick a different directory");
constexpr int kDateColumnTwips = 900;

// The monotonic clock of the run's elapsed time.
qint64 tickCount()
{
    static QElapsedTimer clock = [] {
        QElapsedTimer t;
        t.start();
        return t;
    }();
    return clock.elapsed();
}

frmCompareDir::FontChooser& fontChooser()
{
    static frmCompareDir::FontChooser chooser;
    return chooser;
}

bool iniBool(const QString& section, const char* key, const char* fallback)
{
    return IniReadString(gsIniFile, section, QLatin1String(key), QLatin1String(fallback))
        .compare(QLatin1String("FALSE"), Qt::CaseInsensitive) != 0;
}

QString iniBoolText(bool on)
{
    return on ? QStringLiteral("TRUE") : QStringLiteral("FALSE");
}

} // namespace

frmCompareDir::FontChooser frmCompareDir::setFontChooser(FontChooser chooser)
{
    FontChooser previous = std::move(fontChooser());
    fontChooser() = std::move(chooser);
    return previous;
}

frmCompareDir::frmCompareDir(QWidget* parent)
    : frmCompareDir(foldercompare::MakeEngineControl(), parent)
{
}

frmCompareDir::frmCompareDir(std::unique_ptr<foldercompare::FolderControl> control, QWidget* parent)
    : ViewerForm(parent)
    , session_(std::make_unique<foldercompare::FolderCompareSession>(std::move(control)))
{
    setObjectName(QStringLiteral("frmCompareDir"));
    mFont = QFont(QStringLiteral("Courier New"), 8);
    mFont.setStyleHint(QFont::TypeWriter);
    buildWidgets();
    buildMenus();
    connectSignals();
}

frmCompareDir::~frmCompareDir()
{
    // The grid reads records from the session; it must not outlive it.
    fgFiles->setModel(nullptr);
    gridModel_->setRecordSource({});
}

void frmCompareDir::connectSignals()
{
    connect(session_.get(), &foldercompare::FolderCompareSession::CompareStarted, this,
            &frmCompareDir::OnCompareStarted);
    connect(session_.get(), &foldercompare::FolderCompareSession::CompareError, this,
            [this](qint32, const QString& message) { OnCompareError(message); });
    connect(session_.get(), &foldercompare::FolderCompareSession::CompareCompleted, this,
            &frmCompareDir::OnCompareCompleted);
    connect(Timer1, &QTimer::timeout, this, &frmCompareDir::Timer1_Timer);

    connect(tbRefresh, &QAction::triggered, this, &frmCompareDir::RefreshDiffViewer);
    connect(tbAbort, &QAction::triggered, this, &frmCompareDir::Abort);
    connect(tbViewReport, &QAction::triggered, this, &frmCompareDir::mnuReportTabDelimitedFile_Click);
    connect(tbSwap, &QAction::triggered, this, &frmCompareDir::mnuSwap_Click);

    connect(cbSelectOriginal, &QComboBox::currentTextChanged, this, &frmCompareDir::UpdateWindowCaption);
    connect(cbSelectModified, &QComboBox::currentTextChanged, this, &frmCompareDir::UpdateWindowCaption);
    connect(cbFileExt->lineEdit(), &QLineEdit::returnPressed, this, &frmCompareDir::RefreshDiffViewer);
    connect(cmdBrowseOriginal, &QPushButton::clicked, this, [this] { BrowseInto(cbSelectOriginal); });
    connect(cmdBrowseModified, &QPushButton::clicked, this, [this] { BrowseInto(cbSelectModified); });

    connect(fgFiles, &QTableView::doubleClicked, this, [this] { CompareSelectedFiles(false); });
    fgFiles->installEventFilter(this);
    connect(fgFiles, &QWidget::customContextMenuRequested, this, &frmCompareDir::ShowPopup);
    // The Modified folder box follows the first column's right edge.
    connect(fgFiles->horizontalHeader(), &QHeaderView::sectionResized, this, &frmCompareDir::LayoutFolderBoxes);

    struct Binding {
        QCheckBox* box;
        clsVarBoolean* member;
        bool inverted;
    };
    const Binding bindings[] = {
        {cbCompareFileContents, &moFolderOptions.bContentCompare, false},
        {cbShowOnlyInMaster, &moFolderOptions.bShowOnlyInMaster, false},
        {cbShowOnlyInSource, &moFolderOptions.bShowOnlyInSource, false},
        {cbShowSameInBothPlaces, &moFolderOptions.bShowSameInBothPlaces, false},
        {cbShowDifferentInBothPlaces, &moFolderOptions.bShowDifferentInBothPlaces, false},
        {cbIgnoreDateDifferences, &moFolderOptions.bIgnoreDateDifferences, false},
        {cbLookInSubfolders, &moFolderOptions.bDoSubDirectories, false},
        {cbBeepWhenDone, &moFolderOptions.bBeepWhenDone, false},
        {cbDontStreamResults, &moFolderOptions.bStreamFindings, true},
    };
    for (const Binding& b : bindings) {
        connect(b.box, &QCheckBox::toggled, this, [this, b](bool on) {
            if (b.box == cbCompareFileContents)
                frameFileContent->setEnabled(on);
            if (gbRefreshingControls)
                return;
            *b.member = b.inverted ? !on : on;
        });
    }
}

// ---------------------------------------------------------------- set-up and INI

void frmCompareDir::Setup(const QString& description, bool bRestorePlacement)
{
    sDescription = description;
    ReadIniFile(bRestorePlacement);
    ClearGridbox();
    lstErrorMessages->clear();
    lstErrorMessages->addItem(kErrorListHeading);
    if (cbFileExt->currentText().isEmpty())
        cbFileExt->setEditText(QStringLiteral("*.*"));
}

void frmCompareDir::ReadIniFile(bool bRestorePlacement)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    for (clsVarLong* w : {&mlCol1Width_CD, &mlCol2Width_CD, &mlCol3Width_CD, &mlCol4Width_CD, &mlCol5Width_CD})
        w->LoadStateFromFile(gsIniFile, sDescription);
    // The first grid takes its widths from here, not from a grid before it.
    mbWidthsRead = false;

    moFolderOptions.setSection(sDescription);
    moFolderOptions.LoadStateFromFile(gsIniFile);
    RefreshCompareOptionsGUI();

    if (bRestorePlacement)
        ApplyPlacement();

    mruOriginalFolder.Setup(kMruSlots, gsIniFile, sDescription + QStringLiteral("mruOriginalFolder"));
    mruModifiedFolder.Setup(kMruSlots, gsIniFile, sDescription + QStringLiteral("mruModifiedFolder"));
    mruFileExt.Setup(kMruSlots, gsIniFile, sDescription + QStringLiteral("mruFileExt"));
    FillComboFromMRU(cbSelectOriginal, mruOriginalFolder);
    FillComboFromMRU(cbSelectModified, mruModifiedFolder);
    FillComboFromMRU(cbFileExt, mruFileExt);
    if (cbFileExt->currentText().isEmpty())
        cbFileExt->setEditText(QStringLiteral("*.*"));
    UpdateWindowCaption();

    tbLegend->setVisible(iniBool(sDescription, "ShowLegend", "TRUE"));
    const QString folder = dataFolder();
    txtDefaultReportTXT->setText(IniReadString(gsIniFile, sDescription, QStringLiteral("txtDefaultReportTXT"),
                                               folder + QStringLiteral("/TallyvaneReport.TXT")));
    txtDefaultReportCSV->setText(IniReadString(gsIniFile, sDescription, QStringLiteral("txtDefaultReportCSV"),
                                               folder + QStringLiteral("/TallyvaneReport.CSV")));
    txtDefaultReportHTM->setText(IniReadString(gsIniFile, sDescription, QStringLiteral("txtDefaultReportHTM"),
                                               folder + QStringLiteral("/TallyvaneReport.HTM")));
    QFont font(IniReadString(gsIniFile, sDescription, QStringLiteral("FontName"), QStringLiteral("Courier New")));
    font.setStyleHint(QFont::TypeWriter);
    bool ok = false;
    const double size =
        IniReadString(gsIniFile, sDescription, QStringLiteral("FontSize"), QStringLiteral("8")).toDouble(&ok);
    font.setPointSizeF(ok && size > 0 ? size : 8);
    font.setBold(iniBool(sDescription, "FontBold", "FALSE"));
    font.setItalic(iniBool(sDescription, "FontItalic", "FALSE"));
    mFont = font;
    QApplication::restoreOverrideCursor();
}

void frmCompareDir::SaveIniFile()
{
    KeepColumnWidths();
    for (clsVarLong* w : {&mlCol1Width_CD, &mlCol2Width_CD, &mlCol3Width_CD, &mlCol4Width_CD, &mlCol5Width_CD})
        w->SaveStateToFile(gsIniFile, sDescription);
    moFolderOptions.SaveStateToFile(gsIniFile);
    mruOriginalFolder.ShutDown();
    mruModifiedFolder.ShutDown();
    mruFileExt.ShutDown();

    IniBatch batch(gsIniFile);
    auto write = [this](const QString& key, const QString& value) {
        IniWriteString(gsIniFile, sDescription, key, value);
    };
    const clsVarLong* widths[] = {&mlCol1Width_CD, &mlCol2Width_CD, &mlCol3Width_CD, &mlCol4Width_CD, &mlCol5Width_CD};
    for (int i = 0; i < 5; ++i)
        write(QStringLiteral("Col%1Width").arg(i + 1), QString::number(widths[i]->Data()));
    write(QStringLiteral("ShowLegend"), iniBoolText(!tbLegend->isHidden()));
    SavePlacement();
    write(QStringLiteral("txtDefaultReportTXT"), txtDefaultReportTXT->text());
    write(QStringLiteral("txtDefaultReportCSV"), txtDefaultReportCSV->text());
    write(QStringLiteral("txtDefaultReportHTM"), txtDefaultReportHTM->text());
    write(QStringLiteral("FontName"), mFont.family());
    write(QStringLiteral("FontSize"), QString::number(mFont.pointSizeF()));
    write(QStringLiteral("FontBold"), iniBoolText(mFont.bold()));
    write(QStringLiteral("FontItalic"), iniBoolText(mFont.italic()));
}

void frmCompareDir::ApplyPlacement()
{
    QWidget* window = parentWidget() ? parentWidget() : this;
    auto number = [this](const char* key, int fallback) {
        bool ok = false;
        const int v = IniReadString(gsIniFile, sDescription, QLatin1String(key), QString::number(fallback)).toInt(&ok);
        return ok ? v : fallback;
    };
    const int state = number("WindowState", 0);
    window->setGeometry(TwipsToPixels(number("Left", 0)), TwipsToPixels(number("Top", 200)),
                        TwipsToPixels(number("Width", 6500)), TwipsToPixels(number("Height", 6500)));
    if (state == 1)
        window->setWindowState(Qt::WindowMinimized);
    else if (state == 2)
        window->setWindowState(Qt::WindowMaximized);
}

void frmCompareDir::SavePlacement()
{
    QWidget* window = parentWidget() ? parentWidget() : this;
    const qint32 state = WindowStateNumber(window);
    IniWriteString(gsIniFile, sDescription, QStringLiteral("WindowState"), QString::number(state));
    if (state != 0)
        return;
    const QRect r = window->geometry();
    IniWriteString(gsIniFile, sDescription, QStringLiteral("Left"), QString::number(qRound(PixelsToTwips(r.x()))));
    IniWriteString(gsIniFile, sDescription, QStringLiteral("Top"), QString::number(qRound(PixelsToTwips(r.y()))));
    IniWriteString(gsIniFile, sDescription, QStringLiteral("Width"), QString::number(qRound(PixelsToTwips(r.width()))));
    IniWriteString(gsIniFile, sDescription, QStringLiteral("Height"),
                   QString::number(qRound(PixelsToTwips(r.height()))));
}

void frmCompareDir::RefreshCompareOptionsGUI()
{
    const bool was = gbRefreshingControls;
    gbRefreshingControls = true;
    const clsCompareFolderOptions& o = moFolderOptions;
    cbCompareFileContents->setChecked(o.bContentCompare.Data());
    frameFileContent->setEnabled(o.bContentCompare.Data());
    cbShowOnlyInMaster->setChecked(o.bShowOnlyInMaster.Data());
    cbShowOnlyInSource->setChecked(o.bShowOnlyInSource.Data());
    cbShowSameInBothPlaces->setChecked(o.bShowSameInBothPlaces.Data());
    cbShowDifferentInBothPlaces->setChecked(o.bShowDifferentInBothPlaces.Data());
    cbIgnoreDateDifferences->setChecked(o.bIgnoreDateDifferences.Data());
    cbLookInSubfolders->setChecked(o.bDoSubDirectories.Data());
    cbBeepWhenDone->setChecked(o.bBeepWhenDone.Data());
    cbDontStreamResults->setChecked(!o.bStreamFindings.Data());
    gbRefreshingControls = was;
}

// ---------------------------------------------------------------- the run

void frmCompareDir::RefreshDiffViewer()
{
    const QString original = cbSelectOriginal->currentText();
    const QString modified = cbSelectModified->currentText();
    auto missing = [this](QComboBox* box, const QString& path) {
        MsgBox(this, QStringLiteral("Folder:\r\r") + path + QStringLiteral("\r\rdoes not exist"), MsgButtons::OK,
               MsgIcon::Information, kPickDifferent);
        box->setFocus();
    };
    if (!FolderExistsOnDisk(original)) {
        missing(cbSelectOriginal, original);
        return;
    }
    if (!FolderExistsOnDisk(modified)) {
        missing(cbSelectModified, modified);
        return;
    }
    if (TrimBlanks(original) == TrimBlanks(modified)) {
        MsgBox(this, QStringLiteral("Original and Modified folders are the same"), MsgButtons::OK,
               MsgIcon::Information, kPickDifferent);
        cbSelectOriginal->setFocus();
        return;
    }

    clsCompareFolderOptions& o = moFolderOptions;
    foldercompare::FolderSettings s;
    s.contentCompare = o.bContentCompare.Data();
    s.showOnlyInMaster = o.bShowOnlyInMaster.Data();
    s.showOnlyInSource = o.bShowOnlyInSource.Data();
    s.showSameInBothPlaces = o.bShowSameInBothPlaces.Data();
    s.showDifferentInBothPlaces = o.bShowDifferentInBothPlaces.Data();
    s.ignoreDateDifferences = o.bIgnoreDateDifferences.Data();
    s.doSubDirectories = o.bDoSubDirectories.Data();

    // The untrimmed text is what is kept and what is compared.
    struct Field {
        QComboBox* box;
        clsVarString* member;
        clsMRU* mru;
        std::string* target;
    };
    const Field fields[] = {
        {cbSelectOriginal, &o.sFolderOriginal, &mruOriginalFolder, &s.folderOriginal},
        {cbSelectModified, &o.sFolderModified, &mruModifiedFolder, &s.folderModified},
        {cbFileExt, &o.sExtension, &mruFileExt, &s.fileFilter},
    };
    for (const Field& f : fields) {
        *f.member = f.box->currentText();
        f.mru->AddUniqueItemToCollection(f.member->Data());
        FillComboFromMRU(f.box, *f.mru);
        f.box->setEditText(f.member->Data());
        *f.target = QFile::encodeName(f.member->Data()).toStdString();
    }
    o.bStreamFindings = !cbDontStreamResults->isChecked();

    mlStartTicks = tickCount();
    ClearGridbox();
    lstErrorMessages->clear();
    SetRunCursor(true);
    lstErrorMessages->addItem(kErrorListHeading);
    SetPanel(5, QStringLiteral("..."));
    mbStopRows = false;
    session_->Start(s);
    QCoreApplication::processEvents();
}

void frmCompareDir::OnCompareStarted()
{
    tbViewReport->setVisible(false);
    tbAbort->setVisible(true);
    lstErrorMessages->hide();
    StartTimer1();
    SetPanel(3, QStringLiteral("Directory Compare In Process..."));
    SetPanel(5, QStringLiteral("---"));
}

void frmCompareDir::OnCompareError(const QString& message)
{
    lstErrorMessages->addItem(QStringLiteral("Error: ") + message);
}

void frmCompareDir::OnCompareCompleted()
{
    SetRunCursor(false);
    mlStartTicks = qAbs(tickCount() - mlStartTicks);
    SetPanel(5, QString::number(double(mlStartTicks) / 1000.0) + QStringLiteral(" (Sec)"));
    tbAbort->setVisible(false);
    tbViewReport->setVisible(true);
    SetPanel(3, QStringLiteral("Directory Compare Completed"));
    if (moFolderOptions.bBeepWhenDone.Data())
        QApplication::beep();
}

void frmCompareDir::Timer1_Timer()
{
    SetPanel(3, AnimateStatusText(QStringLiteral("Comparing Folders............")));
    if (session_->InProgress()) {
        if (moFolderOptions.bStreamFindings.Data())
            AddFindingsToGrid(kStreamBatch);
        return;
    }
    StopTimer1();
    AddFindingsToGrid(0);
    SetPanel(3, QStringLiteral("Compare Completed"));
}

void frmCompareDir::AddFindingsToGrid(qint32 lLimit)
{
    // A tick that comes while a batch lets events through must not add the
    // same records a second time.
    if (mbInBatch)
        return;
    mbInBatch = true;
    const qint32 count = session_->RecordCount();
    if (lLimit < 1)
        lLimit = count - mlNextRecord;
    const qint32 last = std::min(mlNextRecord + lLimit - 1, count - 1);
    // The model adds a batch as one change and the view paints once per
    // pass of the event loop, so only a batch long enough to let events
    // through half-way needs painting held back; switching it off and on
    // for every tick repainted the whole grid forty times a second.
    const bool manyRows = last - mlNextRecord >= kRowsPerYield;
    if (manyRows)
        fgFiles->setUpdatesEnabled(false);
    qint32 pending = 0;
    auto flush = [&] {
        gridModel_->AppendRows(pending);
        pending = 0;
    };
    skeinmatch::FolderRecord record;
    for (qint32 i = mlNextRecord; i <= last; ++i) {
        if (mbStopRows)
            break;
        if (!session_->GetRecord(i, record))
            break;
        ++pending;
        ++mlNextRecord;
        if (record.lIsFile != 0)
            ++mlFileRows;
        else
            ++mlDirRows;
        if (pending >= kRowsPerYield) {
            flush();
            SetPanel(2, QString::number(mlNextRecord - 1));
            QCoreApplication::processEvents();
        }
    }
    flush();
    if (mlNextRecord > 0)
        fgFiles->setCurrentIndex(gridModel_->index(mlNextRecord - 1, 0));
    SetPanel(2, QStringLiteral("Files: %1  Dirs: %2").arg(mlFileRows).arg(mlDirRows));
    if (manyRows)
        fgFiles->setUpdatesEnabled(true);
    mbInBatch = false;
    emit rowsShown(mlNextRecord);
}

void frmCompareDir::Abort()
{
    SetRunCursor(false);
    session_->Abort();
    StopTimer1();
    tbAbort->setVisible(false);
    SetPanel(3, QStringLiteral("Compare Aborted"));
}

bool frmCompareDir::IsBusy() const
{
    return session_->InProgress();
}

bool frmCompareDir::CompareInProgress() const
{
    return session_->InProgress();
}

qint32 frmCompareDir::RecordCount() const
{
    return session_->RecordCount();
}

bool frmCompareDir::WriteReport(const QString& sPath)
{
    return session_->WriteReport(sPath);
}

void frmCompareDir::SetRunCursor(bool on)
{
    // Only the cursor this viewer set is taken back: Escape with no run, or
    // a second start, must not pop another window's.
    if (on == mbRunCursor)
        return;
    mbRunCursor = on;
    if (on)
        QApplication::setOverrideCursor(Qt::BusyCursor);
    else
        QApplication::restoreOverrideCursor();
}

bool frmCompareDir::Timer1Active() const
{
    return mbTimerOn;
}

void frmCompareDir::StartTimer1()
{
    mbTimerOn = true;
    if (mbClockDriven)
        Timer1->start();
}

void frmCompareDir::StopTimer1()
{
    mbTimerOn = false;
    Timer1->stop();
}

void frmCompareDir::SelectCell(int row, int column)
{
    fgFiles->setCurrentIndex(gridModel_->index(row, column));
}

QStringList frmCompareDir::ErrorMessages() const
{
    QStringList lines;
    for (int i = 0; i < lstErrorMessages->count(); ++i)
        lines << lstErrorMessages->item(i)->text();
    return lines;
}

QString frmCompareDir::PanelText(int panel) const
{
    return sbPanels[std::size_t(panel - 1)]->text();
}

void frmCompareDir::SetPanel(int panel, const QString& text)
{
    sbPanels[std::size_t(panel - 1)]->setText(text);
}

// ---------------------------------------------------------------- the grid

void frmCompareDir::KeepColumnWidths()
{
    if (!mbWidthsRead)
        return;
    clsVarLong* widths[] = {&mlCol1Width_CD, &mlCol2Width_CD, &mlCol3Width_CD, &mlCol4Width_CD, &mlCol5Width_CD};
    for (int i = 0; i < 4; ++i)
        *widths[i] = qint32(qRound(PixelsToTwips(fgFiles->columnWidth(i))));
    // The date column's width follows the option; a hidden column keeps
    // the width it will come back with.
    if (!fgFiles->isColumnHidden(4))
        *widths[4] = qint32(qRound(PixelsToTwips(fgFiles->columnWidth(4))));
}

void frmCompareDir::ApplyColumnWidths()
{
    const clsVarLong* widths[] = {&mlCol1Width_CD, &mlCol2Width_CD, &mlCol3Width_CD, &mlCol4Width_CD};
    for (int i = 0; i < 4; ++i)
        fgFiles->setColumnWidth(i, std::max(0, TwipsToPixels(widths[i]->Data())));
    const bool hideDate = moFolderOptions.bIgnoreDateDifferences.Data();
    fgFiles->setColumnHidden(4, hideDate);
    if (!hideDate)
        fgFiles->setColumnWidth(4, TwipsToPixels(kDateColumnTwips));
    mbWidthsRead = true;
}

void frmCompareDir::ClearGridbox()
{
    KeepColumnWidths();
    gridModel_->Clear(moFolderOptions.bIgnoreDateDifferences.Data());
    ApplyColumnWidths();
    Change_Font(false);
    LayoutFolderBoxes();
    mlNextRecord = 0;
    mlFileRows = 0;
    mlDirRows = 0;
}

void frmCompareDir::Change_Font(bool bChoose)
{
    if (bChoose) {
        QFont chosen = mFont;
        bool ok = false;
        if (fontChooser())
            ok = fontChooser()(chosen, this);
        else
            chosen = QFontDialog::getFont(&ok, mFont, this, QStringLiteral("Font"));
        if (ok)
            mFont = chosen;
    }
    fgFiles->setUpdatesEnabled(false);
    fgFiles->setFont(mFont);
    const int rowHeight = std::max(QFontMetrics(mFont).height(), 16) + 4;
    fgFiles->verticalHeader()->setDefaultSectionSize(rowHeight);
    fgFiles->horizontalHeader()->setFont(font());
    fgFiles->setUpdatesEnabled(true);
    LayoutFolderBoxes();
}

void frmCompareDir::mnuViewLegend_Click()
{
    tbLegend->setVisible(tbLegend->isHidden());
    AdjustToolbarItems();
}

void frmCompareDir::AdjustToolbarItems()
{
    // The strip's layout keeps the legend centred; only the folder boxes
    // need placing by hand.
    LayoutFolderBoxes();
}

void frmCompareDir::resizeEvent(QResizeEvent* event)
{
    ViewerForm::resizeEvent(event);
    if (!gbFrameClosing)
        LayoutFolderBoxes();
}

void frmCompareDir::LayoutFolderBoxes()
{
    if (!folderBoxes_)
        return;
    const int width = folderBoxes_->width();
    const int height = folderBoxes_->height();
    const int buttonWidth = cmdBrowseOriginal->width();
    const int gridLeft = fgFiles->geometry().left() - folderBoxes_->geometry().left() + fgFiles->frameWidth();
    // The Modified box begins over the grid's second column, but both boxes
    // keep room to show a path.
    const int minimumBox = 80;
    int modifiedLeft = gridLeft + fgFiles->columnWidth(0) + 2;
    modifiedLeft = std::clamp(modifiedLeft, buttonWidth + 2 + minimumBox + 6,
                              std::max(buttonWidth + 2 + minimumBox + 6, width - buttonWidth - 2 - minimumBox));
    cmdBrowseOriginal->setGeometry(0, 0, buttonWidth, height);
    cbSelectOriginal->setGeometry(buttonWidth + 2, 0, modifiedLeft - buttonWidth - 8, height);
    cmdBrowseModified->setGeometry(modifiedLeft, 0, buttonWidth, height);
    cbSelectModified->setGeometry(modifiedLeft + buttonWidth + 2, 0, width - modifiedLeft - buttonWidth - 2, height);
}

bool frmCompareDir::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == fgFiles && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            CompareSelectedFiles(false);
            return true;
        }
    }
    return ViewerForm::eventFilter(watched, event);
}

void frmCompareDir::ShowPopup(const QPoint& pos)
{
    if (gridModel_->rowCount() == 0)
        return;
    const QModelIndex at = fgFiles->indexAt(pos);
    if (at.isValid()) {
        // The row under the mouse; the column stays the one last clicked.
        const QModelIndex current = fgFiles->currentIndex();
        fgFiles->setCurrentIndex(gridModel_->index(at.row(), current.isValid() ? current.column() : 0));
    }
    mnuPopup->popup(fgFiles->viewport()->mapToGlobal(pos));
}

// ---------------------------------------------------------------- drill-down, launch, report, swap

void frmCompareDir::ShowFileMissing(const QString& path)
{
    MsgBox(this, QStringLiteral("File does not exist:\r\n\r\n") + path, MsgButtons::OK, MsgIcon::Information,
           QStringLiteral("Error"));
}

void frmCompareDir::CompareSelectedFiles(bool bNewWindow)
{
    const int row = fgFiles->currentIndex().row();
    if (row < 0)
        return;
    skeinmatch::FolderRecord r;
    if (!gridModel_->Record(row, r))
        return;
    ViewerHost* host = ViewerHost::current();
    FileComparisonViewer* target = nullptr;
    if (host)
        target = bNewWindow ? host->NewFileViewer() : host->FileViewer(1);
    const QString original = QFile::decodeName(QByteArray::fromStdString(r.sPathOriginal + r.sName));
    const QString modified = QFile::decodeName(QByteArray::fromStdString(r.sPathModified + r.sName));
    if (!FileExistsOnDisk(original)) {
        ShowFileMissing(original);
        return;
    }
    if (!FileExistsOnDisk(modified)) {
        ShowFileMissing(modified);
        return;
    }
    if (target)
        target->CompareFiles(original, modified);
}

void frmCompareDir::mnuPopupLaunch_Click()
{
    const QModelIndex current = fgFiles->currentIndex();
    QString path;
    skeinmatch::FolderRecord r;
    if (current.isValid() && gridModel_->Record(current.row(), r) && r.lIsFile == 1)
        path = QFile::decodeName(
            QByteArray::fromStdString((current.column() == 0 ? r.sPathOriginal : r.sPathModified) + r.sName));
    if (path.isEmpty())
        return;
    if (FileExistsOnDisk(path))
        launcher().OpenDocument(path);
    else
        ShowFileMissing(path);
}

void frmCompareDir::mnuReportTabDelimitedFile_Click()
{
    const QString path = txtDefaultReportCSV->text();
    QString error;
    if (!session_->WriteReport(path, &error)) {
        // Opening an old report at that path would show findings of another run.
        MsgBox(this, QStringLiteral("The report could not be written:\r\n\r\n") + error, MsgButtons::OK,
               MsgIcon::Exclamation, QStringLiteral("Error"));
        return;
    }
    launcher().OpenInTextViewer(path);
}

void frmCompareDir::mnuSwap_Click()
{
    const QString original = cbSelectOriginal->currentText();
    cbSelectOriginal->setEditText(cbSelectModified->currentText());
    cbSelectModified->setEditText(original);
    RefreshDiffViewer();
}

void frmCompareDir::BrowseInto(QComboBox* combo)
{
    const QString path = PickFolder(this, combo->currentText());
    if (!path.isEmpty())
        combo->setEditText(path);
}

// ---------------------------------------------------------------- batch and frame

void frmCompareDir::SetBatchFolders(const QString& sOriginal, const QString& sModified)
{
    cbSelectOriginal->setEditText(sOriginal);
    cbSelectModified->setEditText(sModified);
}

void frmCompareDir::SetBatchOptions(bool bBeepWhenDone, bool bDoSubDirectories)
{
    moFolderOptions.bBeepWhenDone = bBeepWhenDone;
    moFolderOptions.bDoSubDirectories = bDoSubDirectories;
}

void frmCompareDir::ShowComparePage()
{
    ts->setCurrentIndex(0);
}

QString frmCompareDir::ViewerNumber() const
{
    QString n = sDescription;
    return n.remove(kDirSuffix);
}

void frmCompareDir::UpdateWindowCaption()
{
    const QString o = cbSelectOriginal->currentText();
    const QString m = cbSelectModified->currentText();
    if (o.isEmpty() || m.isEmpty())
        setWindowTitle(QStringLiteral("(") + ViewerNumber() + QStringLiteral(") Compare Folders"));
    else
        setWindowTitle(QStringLiteral("(") + ViewerNumber() + QStringLiteral(") ") + o + QStringLiteral(" vs. ") + m);
}

bool frmCompareDir::QueryUnload()
{
    return true;
}

void frmCompareDir::Form_Unload()
{
    StopTimer1();
    session_->Release();
    SetRunCursor(false);
    SaveIniFile();
}

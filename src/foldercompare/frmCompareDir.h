#pragma once
// The folder comparison viewer: two folders, a file pattern and the options
// to compare them with; the findings stream into a grid, and a row opens in
// a file viewer. The run itself belongs to FolderCompareSession; this form
// holds the widgets and the handlers that call named routines.

#include "foldercompare/FolderCompareSession.h"
#include "foldercompare/FolderGridModel.h"
#include "settings/clsCompareFolderOptions.h"
#include "settings/clsMRU.h"
#include "settings/clsVar.h"
#include "forms/FolderBatchViewer.h"
#include "forms/ViewerForm.h"

#include <QFont>
#include <QPointer>

#include <array>
#include <functional>
#include <memory>

class QAction;
class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QListWidget;
class QMenu;
class QPushButton;
class QStatusBar;
class QTabWidget;
class QTableView;
class QTimer;
class QToolBar;

class frmCompareDir : public ViewerForm, public FolderBatchViewer {
    Q_OBJECT

public:
    explicit frmCompareDir(QWidget* parent = nullptr);
    // Tests hand in a scripted comparison control.
    explicit frmCompareDir(std::unique_ptr<foldercompare::FolderControl> control, QWidget* parent = nullptr);
    ~frmCompareDir() override;

    // ViewerForm
    void Setup(const QString& description, bool bRestorePlacement) override;
    QList<QMenu*> Menus() const override;
    bool IsBusy() const override;
    void Abort() override;

    // FolderBatchViewer
    void SetBatchFolders(const QString& sOriginal, const QString& sModified) override;
    void SetBatchOptions(bool bBeepWhenDone, bool bDoSubDirectories) override;
    void RefreshCompareOptionsGUI() override;
    void ShowComparePage() override;
    void RefreshDiffViewer() override;
    bool CompareInProgress() const override;
    bool WriteReport(const QString& sPath) override;
    qint32 RecordCount() const override;

    // The run's heartbeat, every 25 ms while a walk goes on.
    void Timer1_Timer();
    // Moves up to lLimit more findings into the grid; below 1, all that are left.
    void AddFindingsToGrid(qint32 lLimit);
    void ClearGridbox();
    void CompareSelectedFiles(bool bNewWindow);
    void mnuPopupLaunch_Click();
    void mnuReportTabDelimitedFile_Click();
    void mnuSwap_Click();
    void mnuViewLegend_Click();
    void Change_Font(bool bChoose);
    void ReadIniFile(bool bRestorePlacement);
    void SaveIniFile();

    // Tests tick Timer1 themselves, so that batches come exactly when they
    // say; the timer then never starts on its own.
    void setTimer1ClockDriven(bool on) { mbClockDriven = on; }
    // The grid's current cell, as a click would set it.
    void SelectCell(int row, int column);

    QString PanelText(int panel) const;
    const foldercompare::FolderGridModel& Grid() const { return *gridModel_; }
    QStringList ErrorMessages() const;
    bool Timer1Active() const;

    // Answers the font dialog; tests replace it. Returns false when cancelled.
    using FontChooser = std::function<bool(QFont& font, QWidget* parent)>;
    static FontChooser setFontChooser(FontChooser chooser);

    clsCompareFolderOptions moFolderOptions;

signals:
    // A grid batch has been added (rows in the grid afterwards).
    void rowsShown(qint32 rows);

protected:
    bool QueryUnload() override;
    void Form_Unload() override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildWidgets();
    void buildMenus();
    void buildLegend();
    QWidget* buildComparePage();
    QWidget* buildOptionsPage();
    QWidget* buildReportPage();
    void connectSignals();

    void OnCompareStarted();
    void OnCompareError(const QString& message);
    void OnCompareCompleted();
    void UpdateWindowCaption();
    void AdjustToolbarItems();
    void LayoutFolderBoxes();
    void SetPanel(int panel, const QString& text);
    void StartTimer1();
    void SetRunCursor(bool on);
    void StopTimer1();
    void ApplyColumnWidths();
    void KeepColumnWidths();
    void ShowPopup(const QPoint& pos);
    void BrowseInto(QComboBox* combo);
    void ShowFileMissing(const QString& path);
    void ApplyPlacement();
    void SavePlacement();
    QString ViewerNumber() const;

    std::unique_ptr<foldercompare::FolderCompareSession> session_;
    foldercompare::FolderGridModel* gridModel_ = nullptr;

    clsVarLong mlCol1Width_CD{QStringLiteral("mlCol1Width_CD"), 4000};
    clsVarLong mlCol2Width_CD{QStringLiteral("mlCol2Width_CD"), 4000};
    clsVarLong mlCol3Width_CD{QStringLiteral("mlCol3Width_CD"), 1000};
    clsVarLong mlCol4Width_CD{QStringLiteral("mlCol4Width_CD"), 900};
    clsVarLong mlCol5Width_CD{QStringLiteral("mlCol5Width_CD"), 900};
    clsMRU mruOriginalFolder;
    clsMRU mruModifiedFolder;
    clsMRU mruFileExt;
    QFont mFont;

    qint64 mlStartTicks = 0;
    bool mbStopRows = false;
    bool mbInBatch = false;
    bool mbWidthsRead = false;
    bool mbTimerOn = false;
    bool mbClockDriven = true;
    bool mbRunCursor = false;
    qint32 mlNextRecord = 0;
    qint32 mlFileRows = 0;
    qint32 mlDirRows = 0;

    // Widgets, named as the viewer has always named them.
    QToolBar* tbMain = nullptr;
    QAction* tbAbort = nullptr;
    QAction* tbRefresh = nullptr;
    QAction* tbViewReport = nullptr;
    QAction* tbSwap = nullptr;
    QAction* tbFindAndReplace = nullptr;
    QTabWidget* ts = nullptr;
    QWidget* folderBoxes_ = nullptr;
    QPushButton* cmdBrowseOriginal = nullptr;
    QPushButton* cmdBrowseModified = nullptr;
    QComboBox* cbSelectOriginal = nullptr;
    QComboBox* cbSelectModified = nullptr;
    QComboBox* cbFileExt = nullptr;
    QTableView* fgFiles = nullptr;
    QListWidget* lstErrorMessages = nullptr;
    QCheckBox* cbCompareFileContents = nullptr;
    QCheckBox* cbShowOnlyInMaster = nullptr;
    QCheckBox* cbShowOnlyInSource = nullptr;
    QCheckBox* cbShowSameInBothPlaces = nullptr;
    QCheckBox* cbShowDifferentInBothPlaces = nullptr;
    QCheckBox* cbIgnoreDateDifferences = nullptr;
    QCheckBox* cbLookInSubfolders = nullptr;
    QCheckBox* cbBeepWhenDone = nullptr;
    QCheckBox* cbDontStreamResults = nullptr;
    QWidget* frameFileContent = nullptr;
    QLineEdit* txtDefaultReportTXT = nullptr;
    QLineEdit* txtDefaultReportCSV = nullptr;
    QLineEdit* txtDefaultReportHTM = nullptr;
    QWidget* tbLegend = nullptr;
    QFrame* frmLegend = nullptr;
    QStatusBar* sbStatus = nullptr;
    std::array<QLabel*, 5> sbPanels{};
    QTimer* Timer1 = nullptr;

    QMenu* mnuFile = nullptr;
    QMenu* mnuView = nullptr;
    QMenu* mnuWindow = nullptr;
    QMenu* mnuHelp = nullptr;
    QMenu* mnuPopup = nullptr;
};

#pragma once
// The find-text-in-files viewer: a folder, file types and a text to find,
// the hits in a grid that fills while the search goes on, the errors in a
// grid of their own that opens at the first one, and above the hits a view
// of the lines around the hit the user double-clicked.
//
// The form holds the widgets and small handlers; FindTextSession owns the
// search. Every find viewer shares the three recent lists (search texts,
// file types, folders), while each keeps its own INI section.

#include "findtext/FindTextSession.h"
#include "forms/ViewerForm.h"

#include <QPointer>
#include <QStringList>
#include <QtGlobal>

#include <functional>

class FindHitsModel;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QMenu;
class QSplitter;
class QStatusBar;
class QTabWidget;
class QTableView;
class QTableWidget;
class QTimer;
class QToolBar;
class QToolButton;

class frmFindTextInFiles : public ViewerForm {
    Q_OBJECT

public:
    // The session is owned by the viewer; nullptr makes one over the engine.
    explicit frmFindTextInFiles(QWidget* parent = nullptr, FindTextSession* session = nullptr);
    ~frmFindTextInFiles() override;

    void Setup(const QString& description, bool bRestorePlacement) override;
    QList<QMenu*> Menus() const override;
    bool IsBusy() const override;
    void Abort() override;

    // --- the run ---
    // Hands the entries and check boxes to the search, remembers them in the
    // recent lists and starts it (Refresh, F5).
    void SetupAndBeginSearch();
    void BeginSearch();
    void Refresh_View() { BeginSearch(); }
    // One tick of the 25 ms timer that follows a running search.
    void Timer1_Timer();
    // Moves up to lLimit hits (all that remain for 0) into fgFiles.
    void AddHitsToGrid(qint32 lLimit);

    // --- settings ---
    void ReadIniFile(bool bRestorePlacement);
    void SaveIniFile();
    void UpdateGUI();

    // --- grids and hit viewer ---
    // The double click on a hit row (0 is the first hit): the lines around it
    // come into fgFileWithHit.
    void ShowHit(int hitRow);
    // Loads the lines around lLine (at most 199) into the grid and marks the
    // hit line; false, after a message, when the file cannot be read.
    bool WriteFileToMSFlexGrid(QTableWidget* grid, const QString& sFile, qint32 lLine);
    void Change_Font(bool bChoose);

    // --- report and tools ---
    void mnuReportTabDelimitedFile_Click();
    void cmdRegularExpression_Click();
    void lbRegular_Click(int row);

    // --- what the user sees, for tests and the screen ---
    QString PanelText(int panel) const;  // 1 to 5
    const FindHitsModel& Hits() const { return *hitsModel_; }
    QStringList ErrorRows() const;       // the message column, in order
    bool ErrorGridOpen() const;
    int ErrorGridOpenings() const { return errorGridOpenings_; }
    QStringList FileWithHitRows() const;
    int FileWithHitMarkedRow() const { return mlMarkedRow; }
    int FileWithHitTopRow() const;
    double DividerPrimaryRatio() const { return dDividerPrimaryRatio; }
    double DividerSecondaryRatio() const { return dDividerSecondaryRatio; }
    FindTextSession& Session() { return *session_; }
    // Replaces the millisecond clock of the time panel (tests).
    void setTickSource(std::function<qint64()> ticks);
    // With manual ticks the timer never runs by itself: whoever drives the
    // viewer calls Timer1_Timer (tests, to make the order of ticks certain).
    void setManualTicks(bool manual) { manualTicks_ = manual; }

    // The widgets, named as the settings and the manual name them.
    QComboBox* cbSearchFor = nullptr;
    QComboBox* cbFileExt = nullptr;
    QComboBox* cbDirectory = nullptr;
    QCheckBox* cbCaseSensitive = nullptr;
    QCheckBox* cbWholeWordOnly = nullptr;
    QCheckBox* cbRegularExpression = nullptr;
    QCheckBox* cbDontStreamResults = nullptr;
    QCheckBox* cbLookInSubfolders = nullptr;
    QCheckBox* cbSupportOfficeDocs = nullptr;
    QCheckBox* cbBeepWhenDone = nullptr;
    QLineEdit* txtDefaultReportCSV = nullptr;
    QLineEdit* txtDefaultReportTXT = nullptr;
    QLineEdit* txtDefaultReportHTM = nullptr;
    QToolButton* tbAbort = nullptr;
    QToolButton* cmdRefresh = nullptr;
    QToolButton* cmdViewReport = nullptr;
    QToolButton* cmdRegularExpression = nullptr;
    QToolButton* cmdSelectFolder = nullptr;
    QListWidget* lbRegular = nullptr;
    QTableWidget* fgFileWithHit = nullptr;
    QTableView* fgFiles = nullptr;
    QTableWidget* fgErrorMessages = nullptr;

protected:
    void Form_Unload() override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildWidgets();
    void buildMenus();
    void Form_Resize();
    void ClearResultGrids();
    void SizeRowsOfMSFlexGrid(QTableView* grid, int lCol);
    void PushOptionsToControl();
    void SetPanel(int panel, const QString& text);
    void SetBusyPointer(bool busy);
    // The abort button shows only while a search runs.
    void ShowAbort(bool shown);
    bool AbortShown() const;
    void FinishedRun();
    void SizeGridsAtEnd();
    void OnSearchStarted();
    void OnSearchCompleted();
    void OnSearchError(int code, const QString& message);
    void OnSplitterMoved();
    void SelectFolder();
    void SelectReportCsv();
    QString TimeText(qint64 ms) const;
    qint64 Ticks() const;

    QPointer<FindTextSession> session_;
    FindHitsModel* hitsModel_ = nullptr;
    QToolBar* tbMain = nullptr;
    QToolBar* tbMain2 = nullptr;
    QAction* tbAbortAction_ = nullptr;  // a tool bar shows its widgets through their actions
    QTabWidget* ts = nullptr;
    QSplitter* splitPrimary_ = nullptr;
    QSplitter* splitSecondary_ = nullptr;
    QStatusBar* sbStatus = nullptr;
    QLabel* panels_[5] = {};
    QTimer* Timer1 = nullptr;
    QMenu* mnuFile = nullptr;
    QMenu* mnuView = nullptr;
    QMenu* mnuWindow = nullptr;
    QMenu* mnuHelp = nullptr;

    QStringList mcolSearchFor;
    QStringList mcolFileExt;
    QStringList mcolSearchPath;

    qint32 mlHitsShown = 0;
    qint64 mlStartTicks = 0;
    qint32 mlTimerTicks = 0;
    qint32 mlMarkedRow = -1;
    qint32 mlTopRow = 0;
    double dDividerPrimaryRatio = 1.0;
    double dDividerPrimaryRatioLast = 0.85;
    double dDividerSecondaryRatio = 0.50;
    int errorGridOpenings_ = 0;
    bool addingHits_ = false;
    bool stopAdding_ = false;
    bool busyPointer_ = false;
    bool refreshingControls_ = false;
    bool manualTicks_ = false;
    bool following_ = false;  // the timer follows a search
    std::function<qint64()> ticks_;
};

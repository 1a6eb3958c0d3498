#pragma once
// The file comparison viewer: two editors (Original and Modified) on top, the
// comparison below, side by side or all in one, with a toolbar, a file
// selection row, filter buttons and a five-panel status bar.
//
// The viewer's routines are spread over files by concern:
//   FileCompareForm.cpp        creation, set-up, INI state, closing, events
//   FileCompareLayout.cpp      controls, menus, toolbar, resize, dividers
//   FileCompareLoad.cpp        the road of a file into an editor
//   FileCompareRun.cpp         the compare run and the view switch
//   FileCompareSideBySide.cpp  the side-by-side rendering and the word routines
//   FileCompareAllInOne.cpp    the all-in-one rendering
//   FileCompareRecords.cpp     the filtered views and their buttons
//   FileCompareNavigation.cpp  the difference list, moving between differences
//   FileCompareOptions.cpp     the compare options page
//   FileCompareAutoRefresh.cpp automatic refresh and the watch on the files
//   FileCompareFind.cpp        find and replace, F3
//   FileCompareReports.cpp     the report options page, reports and their launch
//
// Everything runs on the user interface thread. A run lets queued events
// through once per step, so that Abort (the toolbar button, a click on the
// status bar, Escape in the wait window, closing the window) is heard; other
// input is held back while it runs.

#include "components/skeinmatch/Skeinmatch.h"
#include "conversion/ConverterRoutines.h"
#include "document/RichTextBox.h"
#include "document/clsRTBDocument.h"
#include "settings/clsCompareFileOptions.h"
#include "settings/clsMRU.h"
#include "shell/ViewerForm.h"
#include "shell/ViewerHost.h"

#include "filecompare/FileCompareFormats.h"

#include <QElapsedTimer>
#include <QPointer>
#include <array>
#include <cstdint>
#include <functional>

class QAction;
class QComboBox;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QRadioButton;
class QCheckBox;
class QStatusBar;
class QTabWidget;
class QTextEdit;
class QTimer;
class QToolBar;
class QToolButton;
class frmPleaseWait;
class PendingEditorLoads;

class frmCompareFilesFindReplace;

namespace filecompare {
class AutoRefresh;
class CompareOptionsPage;
class DividerLabel;
class SpinScrollControl;
class StatusPanel;
class RunInputGuard;
} // namespace filecompare

class frmCompareFiles : public ViewerForm, public FileComparisonViewer {
    Q_OBJECT

public:
    // Editor identifiers, as the status bar, the load pipeline and the
    // editing commands use them.
    enum Editor : qint32 {
        kAIODiff = 1,
        kOriginalDiffFinal = 2,
        kModifiedDiffFinal = 3,
        kOriginal = 4,
        kModified = 5,
    };

    // Captions of cmdChangeViewFormat: the button names the view one would
    // switch to, so "View Side By Side" means the all-in-one view is showing.
    static constexpr const char* kViewSideBySide = "View Side By Side";
    static constexpr const char* kViewAllInOne = "View All In One";

    explicit frmCompareFiles(QWidget* parent = nullptr);
    ~frmCompareFiles() override;

    // --- the frame's side (FileCompareForm.cpp) --------------------------------------
    void Setup(const QString& description, bool bRestorePlacement) override;
    QList<QMenu*> Menus() const override;
    bool IsBusy() const override { return runDepth_ > 0; }
    // Asks a running compare to stop at its next step.
    void Abort() override;
    bool IsReady() const { return ready_; }

    void ReadIniFile(bool bRestorePlacement);
    void SaveIniFile();

    // The editor with an identifier (nullptr for others) and its document.
    RichTextBox* EditorBox(qint32 lEditor) const;
    clsRTBDocument* EditorDocument(qint32 lEditor);

    // Status bar panels 1 to 5.
    QString PanelText(int panel) const;
    void SetPanelText(int panel, const QString& text);

    // --- loading (FileCompareLoad.cpp) -----------------------------------------------
    bool LoadOriginalFile(const QString& sFile);
    bool LoadModifiedFile(const QString& sFile);
    bool LoadFileIntoEditor(const QString& sFile, qint32 lEditor);
    // LoadModifiedFile, then, if it worked, LoadOriginalFile, as a refresh
    // that reloads does them; the two documents are built at the same time.
    bool LoadModifiedThenOriginal(const QString& sModified, const QString& sOriginal);
    // Turns a file into something an editor can load, in File_cnvt.
    bool ConvertFileIfNecessary(const QString& sFile, const QString& File_cnvt,
                                clsCompareFileOptions& options, bool bIsOriginalFile);
    void PickFileForEditor(qint32 lEditor);

    // A drill-down from another viewer: the paths into the selection boxes,
    // the first page and this viewer to the front, then a reloading run.
    ViewerForm* Form() override { return this; }
    void CompareFiles(const QString& sOriginal, const QString& sModified) override;

    // --- the run (FileCompareRun.cpp) ------------------------------------------------
    // The interactive request. During a run a further request is refused and
    // the run repeats once when it ends.
    void RefreshDisplay(bool bReload, bool bShowDifference);
    // The batch request: 1 all in one, any other value side by side.
    void RefreshDisplayCommandLine(qint32 lReportStyle);
    // The batch request of a run that ends as soon as its report is written:
    // both files loaded and, unless the report's own compare follows
    // (bCompare false), compared; nothing rendered, since no one will see
    // the views. True when both files loaded.
    bool CompareCommandLineForReport(bool bCompare);
    // Writes the editors' texts for the engine and compares them (lMode 1
    // writes them word by word, any other value paragraph by paragraph).
    // False when a work file could not be written or read back; the engine
    // then holds no records and CompareFailure() says what failed.
    bool CompareDocuments(qint32 lMode);
    const QString& CompareFailure() const { return compareFailure_; }
    static bool WriteWholeText(const QString& sText, const QString& sFile);
    // One-time questions before a reload, each asked at most once per
    // installation (the answer is remembered in the INI file).
    void WarnIfHTMLAndRetainingFormatting(const QString& sOriginal, const QString& sModified);
    void WarnIfXLSAndWordWrapIsTrue(const QString& sOriginal, const QString& sModified);
    void WarnIfDOCAndIsBigFile(const QString& sOriginal, const QString& sModified);
    void UpdateWindowCaption();
    // The view switch (F6).
    void cmdChangeViewFormat_Click();
    bool SideBySideShowing() const;

    // --- side by side (FileCompareSideBySide.cpp) ------------------------------------
    void UpdateChangesToRTFFile_SBS();
    void ColorizeParagraphsInRTB_SBS(qint32 lLeftFirst, qint32 lLeftLast, qint32 lRightFirst,
                                     qint32 lRightLast);
    void UpdateChangesToParagraphsRTF_SBS();
    void CompareSectionWords();
    // One token per line: a token ends behind a line feed, carriage return,
    // blank or bell, so that line n of the file is word n of FindWordBounds.
    static bool WriteWordLines(const QString& sText, const QString& sFile);
    // The text as WriteWordLines writes it: one line per word.
    static QByteArray WordLines(const QString& sText);
    // Where word lWord (1-based) of the box's text lies, 1-based, taking in
    // the delimiter in front of it (from the second word on) and the one
    // behind it; the last word ends at Len + 1. Word 0 gives 0 and 0.
    static bool FindWordBounds(const RichTextBox* rtb, qint32 lWord, qint32& lFirst, qint32& lLast);
    void FormatWordRange(RichTextBox* rtb, qint32 lFromWord, qint32 lToWord, std::int32_t lColor,
                         std::int32_t lBackColor, bool bBold, bool bUnderline, bool bStrikeout,
                         bool bItalic);
    void FormatWordRange(RichTextBox* rtb, qint32 lFromWord, qint32 lToWord, const filecompare::DiffFormat& f)
    {
        FormatWordRange(rtb, lFromWord, lToWord, f.color, f.backColor, f.bold, f.underline, f.strikeout, f.italic);
    }

    // Walks an engine's records from the last to the first, letting events
    // through and showing "caption<percent>tail" in a status panel before
    // each; false when an abort or an unreadable record ended it early.
    using RecordStep = std::function<void(int i, int kind, int lf, int ll, int rf, int rl)>;
    bool WalkRecordsFromLast(const Skeinmatch& engine, int panel, const QString& caption, const QString& tail,
                             const RecordStep& step);

    // --- all in one (FileCompareAllInOne.cpp) ----------------------------------------
    void UpdateChangesToRTFFileAIO();
    void ColorizeParagraphsInRTB_AIO(qint32 lLeftFirst, qint32 lLeftLast, qint32 lRightFirst,
                                     qint32 lRightLast);
    void UpdateChangesToParagraphsRTF_AIO();

    // --- records and filters (FileCompareRecords.cpp) --------------------------------
    void rbShowAll_Click();
    void rbShowAdditions_Click();
    void rbShowChanges_Click();
    void rbShowDeletions_Click();
    // The paragraph of the other side that stands beside paragraph p of one
    // side, by the difference records (for the scroll coupling).
    qint32 CounterpartParagraph(qint32 p, bool fromOriginal) const;

    // --- navigation (FileCompareNavigation.cpp) --------------------------------------
    void UpdateNavigationalDropDownListBox();
    void ShowCurrentDifference(bool bUpdateList);
    void ShowDifferenceSBS();
    void ShowDifferenceAIO();
    void UpdateDifferenceButtons();
    void UpdateStatusBar();
    void RefreshStatusBarItems();
    void ChangeCurrentLine(bool bUp);
    void tbShowDifferenceFirst_Click();
    void tbShowDifferencePrevious_Click();
    void tbShowDifferenceNext_Click();
    void tbShowDifferenceLast_Click();
    // The go-to dialog (F4).
    void tbShowDifferenceUnknown_Click();

    // --- layout (FileCompareLayout.cpp) ----------------------------------------------
    void Form_Resize();
    // A divider dropped on a control at a point in that control's coordinates.
    void DividerDropped(const QWidget* dragged, const QWidget* target, QPoint drop);
    void mnuWordWrap_Click();
    void mnuHideShowOriginalAndModified_Click();
    void RefreshMenuItems();
    void RefreshButtonStates();
    void CompareSelectedText();

    // --- reports (FileCompareReports.cpp) --------------------------------------------
    // Report formats and styles as the engine and the INI file number them.
    enum ReportFormat : qint32 { kReportHTML = 1, kReportText = 2, kReportCSV = 3 };
    enum ReportStyle : qint32 { kStyleAllInOne = 1, kStyleSideBySide = 2 };
    // Compares the editors again and has the engine write the report; true
    // when it did. A failure shows its message box ("Report Creation Error").
    bool CreateReport(const QString& sReportFile, qint32 lReportFormat, qint32 lReportStyle);
    // Gives the engine the titles of a report of this format: the two paths
    // as the user sees them, and for HTML the titles of the Report Options
    // page where they are filled in.
    void SetReportTitles(qint32 lReportFormat);
    // The default report of the Report Options page, created and opened (F2).
    void cmdViewReport_Click();
    void cmdSelectReportFolderDefaultCSV_Click();
    void cmdSelectReportFolderDefaultHTM_Click();
    void cmdSelectReportFolderDefaultTXT_Click();
    // The format and style chosen on the page.
    qint32 SelectedReportFormat() const;
    qint32 SelectedReportStyle() const;
    void ReadReportSettings();
    void SaveReportSettings();

    // --- options page (FileCompareOptions.cpp) ---------------------------------------
    void RefreshCompareOptionsGUI();
    // Both editors dirty and panel 2 "Diff View not fresh".
    void MarkDiffViewStale();
    filecompare::CompareOptionsPage* OptionsPage() const { return optionsPage_; }

    // --- automatic refresh (FileCompareAutoRefresh.cpp) ------------------------------
    filecompare::AutoRefresh* AutoRefresher() const { return autoRefresh_; }
    // A timer tick found the view stale.
    void timerRefresh_Timer();
    // Files that changed on disk come into their editors again, unless the
    // user has edited that editor; then the view is compared anew.
    void WatchedFilesChanged(bool bOriginal, bool bModified);
    void WatchedFileMissing(int side, const QString& sPath);

    // --- find and replace (FileCompareFind.cpp) --------------------------------------
    // The dialog for the active editor (the toolbar button and the menu).
    void mnuFindAndReplace_Click();
    // F3: the next hit without the dialog.
    void FindAgain();
    frmCompareFilesFindReplace* FindReplaceDialog() const { return findReplace_; }

    // --- state ------------------------------------------------------------------------
    clsCompareFileOptions moFileOptions;
    clsMRU mruOriginal;
    clsMRU mruModified;

    bool mbAbort = false;
    bool mbOriginalDirty = true;
    bool mbModifiedDirty = true;
    bool mbSideBySideFresh = false;
    bool mbAllInOneFresh = false;
    qint32 mlCurrentDifference = -1;
    qint32 mlPreviousDifference = -1;
    qint32 mlChangeCount = 0;
    qint32 mlAdditionCount = 0;
    qint32 mlDeletionCount = 0;
    qint32 mlActiveEditor = kOriginal;
    qint32 lLastSelectedFileFilterIndex = 1;
    bool mbFillingChangeList = false;
    bool bWarnedAboutLargeWordDocAlready = false;
    bool bWarnedAboutXLSWordWrapAlready = false;
    bool bWarnedAboutHTMLAlready = false;
    double dRatioTopEditor = 0.35;
    double mdRatioLeftEditor = 0;
    // Milliseconds on a monotonic clock at the start of a request.
    QElapsedTimer mlStartTicks;

    Skeinmatch SkeinMacroDiff;
    Skeinmatch SkeinMiniDiff;
    // The conversion controls of this viewer (they remember the last
    // spreadsheet they converted).
    ConversionControls mConversionControls;

    // --- controls ---------------------------------------------------------------------
    QTabWidget* ts = nullptr;
    QWidget* frameCF = nullptr;
    QWidget* frameCompareOptions = nullptr;
    QWidget* frameReportOptions = nullptr;

    QToolBar* tbMain = nullptr;
    QAction* tbRefresh = nullptr;
    QAction* tbAbort = nullptr;
    QAction* tbSwap = nullptr;
    QAction* tbFindAndReplace = nullptr;
    QAction* tbViewReport = nullptr;
    QAction* tbShowDifferenceFirst = nullptr;
    QAction* tbShowDifferencePrevious = nullptr;
    QAction* tbShowDifferenceUnknown = nullptr;
    QAction* tbShowDifferenceNext = nullptr;
    QAction* tbShowDifferenceLast = nullptr;
    QComboBox* cmboChangeListing = nullptr;
    filecompare::SpinScrollControl* SpinScroll = nullptr;

    QLabel* lblOriginal = nullptr;
    QLabel* lblModified = nullptr;
    QComboBox* cbSelectOriginal = nullptr;
    QComboBox* cbSelectModified = nullptr;
    QToolButton* cmdBrowseOriginal = nullptr;
    QToolButton* cmdBrowseModified = nullptr;
    QToolButton* cmdReLoadOriginal = nullptr;
    QToolButton* cmdReLoadModified = nullptr;
    QToolButton* cmdLaunchOriginal = nullptr;
    QToolButton* cmdLaunchModified = nullptr;

    // Shown boxes.
    RichTextBox* rtbOriginal = nullptr;
    RichTextBox* rtbModified = nullptr;
    RichTextBox* rtbOriginalDiffFinal = nullptr;
    RichTextBox* rtbModifiedDiffFinal = nullptr;
    RichTextBox* rtbAIODiff = nullptr;
    // The filtered views, shown over the diff panes when a filter is chosen.
    RichTextBox* rtbDeletions = nullptr;
    RichTextBox* rtbAdditions = nullptr;
    RichTextBox* rtbChanges = nullptr;
    // Work boxes, never shown.
    RichTextBox* rtbOriginalDiff = nullptr;
    RichTextBox* rtbModifiedDiff = nullptr;
    RichTextBox* rtbOriginalDiffTemp = nullptr;
    RichTextBox* rtbModifiedDiffTemp = nullptr;
    RichTextBox* rtbAIODiffTemp = nullptr;

    clsRTBDocument docOriginal;
    clsRTBDocument docModified;
    clsRTBDocument docOriginalDiff;
    clsRTBDocument docModifiedDiff;
    clsRTBDocument docOriginalDiffFinal;
    clsRTBDocument docModifiedDiffFinal;
    clsRTBDocument docOriginalDiffTemp;
    clsRTBDocument docModifiedDiffTemp;
    clsRTBDocument docAIODiff;
    clsRTBDocument docAIODiffTemp;

    filecompare::DividerLabel* lblDividerH = nullptr;
    filecompare::DividerLabel* lblDividerV = nullptr;

    QWidget* frameFilterButtons = nullptr;
    QRadioButton* rbShowAll = nullptr;
    QRadioButton* rbShowAdditions = nullptr;
    QRadioButton* rbShowChanges = nullptr;
    QRadioButton* rbShowDeletions = nullptr;
    QPushButton* cmdChangeViewFormat = nullptr;
    QPushButton* cmdViewReport = nullptr;

    QStatusBar* sbStatus = nullptr;
    std::array<filecompare::StatusPanel*, 5> sbPanels{};

    QTimer* timerRefresh = nullptr;
    QTimer* timerGUI = nullptr;
    frmPleaseWait* PleaseWait = nullptr;

    // Compare options page (CompareOptionsPage holds them; these are the
    // ones the form's own routines read).
    QCheckBox* cbIgnoreCase = nullptr;
    QCheckBox* cbIgnoreWhiteSpace = nullptr;
    QCheckBox* cbIgnoreEmptyLines = nullptr;
    QCheckBox* cbRemoveFormatting = nullptr;
    QCheckBox* cbHTMLCompareSource = nullptr;
    QCheckBox* cbBeepWhenDone = nullptr;
    QCheckBox* cbSelectTextInDiffViewer = nullptr;
    QRadioButton* rbReloadOnRefresh = nullptr;
    QRadioButton* rbNoReloadOnRefresh = nullptr;

    // Report options page; the radio buttons are numbered from 1 as their
    // values are, item 0 is unused.
    std::array<QRadioButton*, 4> rbDefaultReport{};
    std::array<QRadioButton*, 3> rbDefaultReportStyle{};
    QWidget* frameReportStyle = nullptr;
    QLineEdit* txtDefaultReportHTM = nullptr;
    QLineEdit* txtDefaultReportTXT = nullptr;
    QLineEdit* txtDefaultReportCSV = nullptr;
    QLineEdit* txtReportTitleHTML = nullptr;
    QLineEdit* txtReportMasterTitleHTML = nullptr;
    QLineEdit* txtReportSourceTitleHTML = nullptr;
    QToolButton* cmdSelectReportFolderDefaultHTM = nullptr;
    QToolButton* cmdSelectReportFolderDefaultTXT = nullptr;
    QToolButton* cmdSelectReportFolderDefaultCSV = nullptr;

    // --- menus ------------------------------------------------------------------------
    QMenu* mnuFile = nullptr;
    QMenu* mnuEdit = nullptr;
    QMenu* mnuView = nullptr;
    QMenu* mnuWindow = nullptr;
    QMenu* mnuHelp = nullptr;
    QMenu* mnuPopup = nullptr;
    QAction* mnuCompareSelectedText = nullptr;
    QAction* mnuPopupCompareSelectedText = nullptr;
    QAction* mnuRefresh = nullptr;
    QAction* mnuToggleView = nullptr;
    QAction* mnuWordWrap = nullptr;
    QAction* mnuReport = nullptr;
    QAction* mnuPopupReport = nullptr;
    QAction* mnuShowDifferenceSelected = nullptr;
    QAction* mnuHideShowOriginalAndModified = nullptr;

signals:
    // Emitted at the end of every RunCompare, finished or aborted.
    void runFinished();
    // A status bar panel (1 to 5) was given a text.
    void panelTextChanged(int panel, const QString& text);

protected:
    bool QueryUnload() override;
    void Form_Unload() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    friend class filecompare::RunInputGuard;
    friend class RunScope;

    void Form_Load();
    void buildControls();
    void buildComparePage();
    void buildOptionsPage();
    void wireFindAndReplace();
    void watchSelectedFiles();
    void buildReportPage();
    void buildMenus();
    void buildStatusBar();
    void wireEditor(RichTextBox* box, qint32 id);
    void RunCompare(bool bShowDifference);
    void refreshDisplayOnce(bool bReload, bool bShowDifference);
    void showSideBySidePanes();
    void showAllInOnePane();
    void coupleScrolling(RichTextBox* from, RichTextBox* to, bool fromOriginal);
    void closeIfAsked();
    bool loadSideFile(const QString& sFile, qint32 lEditor, clsVarString& lastFile, clsMRU& mru, QComboBox* combo);

    filecompare::CompareOptionsPage* optionsPage_ = nullptr;
    filecompare::AutoRefresh* autoRefresh_ = nullptr;
    frmCompareFilesFindReplace* findReplace_ = nullptr;
    // A reload for the file watch keeps automatic refresh on.
    bool keepAutoRefresh_ = false;

    // While both editors are loaded together, the loads waiting for their
    // documents.
    PendingEditorLoads* pendingLoads_ = nullptr;

    // One run at a time: a request during a run is kept and repeated once.
    int runDepth_ = 0;
    // What the last CompareDocuments could not do; empty when it worked.
    QString compareFailure_;
    bool rerunPending_ = false;
    bool rerunReload_ = false;
    bool rerunShowDifference_ = false;
    bool closeWhenIdle_ = false;
    bool ready_ = false;
    bool couplingScroll_ = false;
    bool placingEditors_ = false;
};

// Stand-ins for the platform calls the run makes, replaceable in tests.
namespace filecompare {
// Lets queued events run ("let events through").
void DoEvents();
// Gives up the processor for at least ms milliseconds (0: the time slice).
void Sleep(int ms);
// The user's attention sound at the end of a run.
void Beep();
} // namespace filecompare

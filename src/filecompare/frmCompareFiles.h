#pragma once
// The file comparison viewer's form: two editors (Original and Modified) on
// top, the comparison below, side by side or all in one, with a toolbar, a
// file selection row, filter buttons and a five-panel status bar.
//
// The form holds the widgets and thin handlers. The run belongs to its
// FileCompareSession, what the run found to a ComparisonResult, and the
// rendering to the renderer of the view showing (DiffRenderer.h).
//
// The form's routines are spread over files by concern:
//   FileCompareForm.cpp        creation, set-up, INI state, closing, events
//   FileCompareLayout.cpp      controls, menus, toolbar, resize, dividers
//   FileCompareLoad.cpp        a file into an editor
//   FileCompareRun.cpp         the run as the form shows it, the view switch
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

#include "document/RichTextBox.h"
#include "document/clsRTBDocument.h"
#include "filecompare/ComparisonResult.h"
#include "filecompare/FileCompareFormats.h"
#include "filecompare/FileCompareSession.h"
#include "settings/clsCompareFileOptions.h"
#include "settings/clsMRU.h"
#include "forms/ViewerForm.h"
#include "forms/ViewerHost.h"

#include <QElapsedTimer>
#include <QPointer>
#include <array>
#include <cstdint>
#include <memory>
#include <optional>

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
class clsVarString;

class frmCompareFilesFindReplace;

namespace filecompare {
class AutoRefresh;
class CompareOptionsPage;
class DividerLabel;
class SideBySideDecorations;
class SpinScrollControl;
class StatusPanel;
class DiffRenderer;
} // namespace filecompare

class frmCompareFiles : public ViewerForm, public FileComparisonViewer {
    Q_OBJECT

public:
    // Box identifiers, as the status bar, the load pipeline and the editing
    // commands use them (1 to 5), and the filtered views.
    enum Editor : qint32 {
        kAIODiff = 1,
        kOriginalDiffFinal = 2,
        kModifiedDiffFinal = 3,
        kOriginal = 4,
        kModified = 5,
        kDeletions = 6,
        kAdditions = 7,
        kChanges = 8,
    };

    // The view showing. cmdChangeViewFormat's caption stays the visible rule:
    // the button names the view one would switch to, so "View Side By Side"
    // means the all-in-one view is showing, and the two always agree.
    enum class ViewMode { SideBySide, AllInOne };
    static constexpr const char* kViewSideBySide = "View Side By Side";
    static constexpr const char* kViewAllInOne = "View All In One";

    using ReportFormat = filecompare::FileCompareSession::ReportFormat;
    using ReportStyle = filecompare::FileCompareSession::ReportStyle;
    static constexpr qint32 kReportHTML = filecompare::FileCompareSession::kReportHTML;
    static constexpr qint32 kReportText = filecompare::FileCompareSession::kReportText;
    static constexpr qint32 kReportCSV = filecompare::FileCompareSession::kReportCSV;
    static constexpr qint32 kStyleAllInOne = filecompare::FileCompareSession::kStyleAllInOne;
    static constexpr qint32 kStyleSideBySide = filecompare::FileCompareSession::kStyleSideBySide;

    explicit frmCompareFiles(QWidget* parent = nullptr);
    ~frmCompareFiles() override;

    // --- the frame's side -------------------------------------------------------------
    void Setup(const QString& description, bool bRestorePlacement) override;
    QList<QMenu*> Menus() const override;
    bool IsBusy() const override { return session_.busy(); }
    // Asks a running compare to stop at its next step.
    void Abort() override;
    bool IsReady() const { return ready_; }
    // The Compare Files page to the front.
    void ShowComparePage();
    // The wait window of a run, hidden (a batch run that failed to load
    // leaves it up for its driver).
    void HideWaitWindow();
    void ReadIniFile(bool bRestorePlacement);
    void SaveIniFile();

    // The options of this viewer (the pages show them; the run reads them).
    clsCompareFileOptions& Options() { return session_.options(); }
    // What the last compare found (or why it failed).
    const filecompare::ComparisonResult& Result() const { return session_.result(); }

    // A box by identifier (nullptr for others) and, for 1 to 5, its document.
    RichTextBox* EditorBox(qint32 lEditor) const;
    clsRTBDocument* EditorDocument(qint32 lEditor);
    // True while an editor holds text the shown views were not rendered from.
    bool EditorDirty(qint32 lEditor) const;

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
    // Compares the editors' texts into a new result (without word-level
    // records); false when a step failed, which the result then names.
    bool CompareEditors();
    // An editor's text as a compare takes it: what a text-only load kept
    // for it, or else the editor's own.
    QString EditorText(qint32 lEditor) const;
    void UpdateWindowCaption();
    // The view switch (F6), and the view as the caption says.
    void cmdChangeViewFormat_Click();
    ViewMode CurrentViewMode() const;
    // Shows a view and sets the caption to match, without a run.
    void SetViewMode(ViewMode mode);
    bool AbortRequested() const { return session_.aborted(); }
    // True while a view shows the last compare of the editors' texts.
    bool ViewFresh(ViewMode mode) const { return mode == ViewMode::SideBySide ? mbSideBySideFresh : mbAllInOneFresh; }

    // --- records and navigation (FileCompareRecords.cpp, FileCompareNavigation.cpp)
    qint32 CounterpartParagraph(qint32 p, bool fromOriginal) const
    {
        return Result().counterpartParagraph(p, fromOriginal);
    }
    // The current difference, from 1 (below 1: none yet).
    qint32 CurrentDifference() const { return mlCurrentDifference; }
    qint32 PreviousDifference() const { return mlPreviousDifference; }
    // Makes difference n current and shows it, as a choice in the list does.
    void ShowDifference(qint32 n);
    void ShowCurrentDifference(bool bUpdateList);
    void RefreshStatusBarItems();
    void SetActiveEditor(qint32 lEditor) { mlActiveEditor = lEditor; }
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
    // The share of the page's height the editors take, and of its width the
    // left editor takes (0: half).
    double TopEditorRatio() const { return dRatioTopEditor; }
    void SetTopEditorRatio(double r) { dRatioTopEditor = r; }
    double LeftEditorRatio() const { return mdRatioLeftEditor; }
    void mnuWordWrap_Click();
    void mnuHideShowOriginalAndModified_Click();
    // The one-time questions answered so far (kept in the INI file).
    bool WarnedAboutLargeWordDoc() const { return bWarnedAboutLargeWordDocAlready; }
    bool WarnedAboutHTML() const { return bWarnedAboutHTMLAlready; }
    qint32 LastFileFilterIndex() const { return lLastSelectedFileFilterIndex; }

    // --- whole editors (FileCompareEditing.cpp) -------------------------------------
    // Asks for a file and writes the active editor to it in the chosen
    // format. A file of this comparison is replaced only when the user says
    // so; a read-only file or a failed write is reported and leaves the old
    // file as it was. True when a file was written.
    bool SaveActiveEditorAs();
    // The print dialog, with the margins on a tab of their own, then the
    // active editor on the chosen printer.
    void PrintActiveEditor();
    // Original and Modified change places, documents, paths and all, and
    // the comparison runs again.
    void SwapOriginalAndModified();

    // --- reports (FileCompareReports.cpp) --------------------------------------------
    // Compares the editors again and has the engine write the report; true
    // when it did. A failure shows its message box ("Report Creation Error").
    bool CreateReport(const QString& sReportFile, qint32 lReportFormat, qint32 lReportStyle);
    // Gives the report of this format its titles: the two paths as the user
    // sees them, and for HTML the titles of the Report Options page where
    // they are filled in.
    void SetReportTitles(qint32 lReportFormat);
    // The default report of the Report Options page, created and opened (F2).
    void cmdViewReport_Click();
    // The format and style chosen on the page.
    qint32 SelectedReportFormat() const;
    qint32 SelectedReportStyle() const;
    void ReadReportSettings();

    // --- options page (FileCompareOptions.cpp) ---------------------------------------
    void RefreshCompareOptionsGUI();
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
    class RunScope;

    void Form_Load();
    void buildControls();
    void buildComparePage();
    void buildOptionsPage();
    void wireFindAndReplace();
    void watchSelectedFiles();
    void buildReportPage();
    void buildMenus();
    void buildStatusBar();
    void buildRenderers();
    void wireEditor(RichTextBox* box, qint32 id);
    bool SideBySideShowing() const { return CurrentViewMode() == ViewMode::SideBySide; }
    filecompare::DiffRenderer& renderer() const;
    void RunCompare(bool bShowDifference);
    void refreshDisplayOnce(bool bReload, bool bShowDifference);
    void showSideBySidePanes();
    void showAllInOnePane();
    // Paragraph numbers, level spacing and the overview of the side-by-side
    // panes, for the records they now show.
    void levelSideBySide();
    void coupleScrolling(RichTextBox* from, RichTextBox* to, bool fromOriginal);
    void closeIfAsked();
    bool loadSideFile(const QString& sFile, qint32 lEditor, clsVarString& lastFile, clsMRU& mru, QComboBox* combo);
    void MarkDiffViewStale();
    void SaveReportSettings();
    // One-time questions before a reload, each asked at most once per
    // installation (the answer is remembered in the INI file).
    void WarnIfHTMLAndRetainingFormatting(const QString& sOriginal, const QString& sModified);
    void WarnIfXLSAndWordWrapIsTrue(const QString& sOriginal, const QString& sModified);
    void WarnIfDOCAndIsBigFile(const QString& sOriginal, const QString& sModified);
    void UpdateNavigationalDropDownListBox();
    void UpdateDifferenceButtons();
    void UpdateStatusBar();
    void RefreshMenuItems();
    void RefreshButtonStates();
    void CompareSelectedText();
    void rbShowAll_Click();
    void rbShowAdditions_Click();
    void rbShowChanges_Click();
    void rbShowDeletions_Click();
    void cmdSelectReportFolderDefaultCSV_Click();
    void cmdSelectReportFolderDefaultHTM_Click();
    void cmdSelectReportFolderDefaultTXT_Click();
    // The text of paragraphs first..last of an editor, without the last
    // line end (what a renderer takes of a section).
    QString sectionText(bool original, qint32 first, qint32 last);
    // The side-by-side view colours copies of the editors: a copy built on a
    // worker during the load is taken as long as its editor still holds the
    // text it was built from, and made here otherwise.
    friend class PendingEditorLoads;
    void adoptWorkCopy(qint32 lEditor, RichTextBox& copy);
    void adoptEditorIndex(qint32 lEditor, std::vector<clsParagraph> paragraphs);
    void prepareEditorIndexes();
    void prepareWorkCopies();

    // --- state ------------------------------------------------------------------------
    filecompare::FileCompareSession session_;
    clsCompareFileOptions& moFileOptions;
    std::unique_ptr<filecompare::DiffRenderer> sideBySide_;
    std::unique_ptr<filecompare::DiffRenderer> allInOne_;
    clsMRU mruOriginal;
    clsMRU mruModified;

    bool mbOriginalDirty = true;
    bool mbModifiedDirty = true;
    bool mbSideBySideFresh = false;
    bool mbAllInOneFresh = false;
    qint32 mlCurrentDifference = -1;
    qint32 mlPreviousDifference = -1;
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

    filecompare::CompareOptionsPage* optionsPage_ = nullptr;
    filecompare::AutoRefresh* autoRefresh_ = nullptr;
    frmCompareFilesFindReplace* findReplace_ = nullptr;
    // A reload for the file watch keeps automatic refresh on.
    bool keepAutoRefresh_ = false;

    // While both editors are loaded together, the loads waiting for their
    // documents.
    PendingEditorLoads* pendingLoads_ = nullptr;
    // A run that only reports (or only counts) loads plain text as text: no
    // document is built, the editors stay as they were, and the texts wait
    // here for the compare.
    bool textOnlyLoads_ = false;
    std::array<std::optional<QString>, 2> heldText_;
    // The text each prebuilt work copy was built from; it shares its
    // characters with the editor's, so that an unchanged editor is known by
    // holding the very same text.
    std::array<QString, 2> workCopyOf_;
    // The same for the paragraph index of each editor, made on the worker
    // that built its document.
    std::array<std::pair<QString, std::vector<clsParagraph>>, 2> indexOf_;
    filecompare::SideBySideDecorations* sbsDecorations_ = nullptr;
    bool closeWhenIdle_ = false;
    bool ready_ = false;
    bool couplingScroll_ = false;
    bool placingEditors_ = false;

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

};

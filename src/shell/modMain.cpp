#include "shell/modMain.h"

#include "filecompare/frmCompareFiles.h"
#include "forms/FolderBatchViewer.h"
#include "core/Launcher.h"
#include "core/Places.h"
#include "core/modGlobal.h"
#include "core/modParseCommandLine.h"
#include "shell/frmMainMDI.h"
#include "filecompare/frmPleaseWait.h"

#include <QApplication>
#include <QMdiSubWindow>
#include <QTabWidget>
#include <QThread>

#include <cstdio>
#include <limits>
#include <malloc.h>

namespace {

// The busy pointer for the whole batch run, back to the default at the end.
class BatchCursor {
public:
    BatchCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BatchCursor() { QApplication::restoreOverrideCursor(); }
    BatchCursor(const BatchCursor&) = delete;
    BatchCursor& operator=(const BatchCursor&) = delete;
};

// Minimised while it is filled, maximised for the run, as the viewer's
// window in the frame.
void setViewerWindowState(QWidget* viewer, Qt::WindowState state)
{
    QWidget* window = qobject_cast<QMdiSubWindow*>(viewer->parentWidget());
    if (!window)
        window = viewer;
    window->setWindowState(state);
    window->show();
}

void successfullyCompared()
{
    LogMessage(QStringLiteral("Successfully Compared ") + gsClMaster + QStringLiteral(" to ") + gsClSource,
               gsClLogFile, gbClVerbose);
}

// The comparison controls work without the caller's event loop; the driver
// waits for them without letting anything else run.
template <typename Busy>
void waitWhile(Busy busy)
{
    while (busy())
        QThread::msleep(100);
}

// A text list of rows or columns given on the command line turns its use on;
// none given turns it off and leaves the stored list alone.
void assignRange(clsVarBoolean& use, clsVarString& list, const QString& given)
{
    if (given.isEmpty()) {
        use = false;
        return;
    }
    use = true;
    list = given;
}

// A report that was asked for and not written: a script must not take the
// run for a success.
bool reportFailed = false;

// The report of -T, and its launch with -O when it was written.
void writeReport(frmCompareFiles* frm)
{
    // The report names the two files as given, not the engine's work files.
    frm->SetReportTitles(glClReportType);
    if (!frm->CreateReport(gsClReportFile, glClReportType, glClReportStyle)) {
        reportFailed = true;
        return;
    }
    if (!gbClOpenReport)
        return;
    if (glClReportType == frmCompareFiles::kReportHTML)
        launcher().OpenDocument(gsClReportFile);
    else if (glClReportType == frmCompareFiles::kReportText || glClReportType == frmCompareFiles::kReportCSV)
        launcher().OpenInTextViewer(gsClReportFile);
}

// A run that ends with its report has no desktop session to give memory
// back to. Left to its defaults, the allocator hands every large freed
// buffer (a decoded document, its work-file bytes) back to the kernel and
// faults fresh zeroed pages in for the next one; on a 52 MB pair that was a
// quarter to a third of the run (3.2-3.6 s against 2.4-2.8 s, for a peak
// of 516 MiB instead of 447). The window keeps the defaults: it lives on
// after its peak.
void keepFreedMemoryForThisRun()
{
    mallopt(M_MMAP_THRESHOLD, std::numeric_limits<int>::max());
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
}

} // namespace

bool CompareFilesFromCommandLine(frmMainMDI& frame)
{
    frame.show();
    frmCompareFiles* frm = frame.frmGetCFNumber(1);
    if (!frm)
        return gbClExitWhenDone;
    setViewerWindowState(frm, Qt::WindowMinimized);

    clsCompareFileOptions& o = frm->Options();
    o.sFileOriginal = gsClMaster;
    o.sFileModified = gsClSource;
    // There is no switch for it, and a stored true would hide lines the
    // command line never asked to hide.
    o.bIgnoreEmptyLines = false;
    o.bIgnoreCase = gbClIgnoreCase;
    o.bIgnoreWhitespace = gbClIgnoreWhitespace;
    o.bBeepWhenDone = gbClBeepWhenDone;
    o.bQuickCompare = gbClQuickCompare;
    o.bRemoveBlankLines = gbClRemoveBlankLines;
    o.bExcelCompareFormulas = gbClExcelCompareFormulas;
    o.bHTMLCompareSource = gbClHTMLCompareSource;
    o.sExcelSheetNumberMaster = gsClExcelSheetMaster;
    o.sExcelSheetNumberSource = gsClExcelSheetSource;
    assignRange(o.bExcelUseRowsMaster, o.sExcelRowsMaster, gsClExcelRowsMaster);
    assignRange(o.bExcelUseColsMaster, o.sExcelColsMaster, gsClExcelColsMaster);
    assignRange(o.bExcelUseRowsSource, o.sExcelRowsSource, gsClExcelRowsSource);
    assignRange(o.bExcelUseColsSource, o.sExcelColsSource, gsClExcelColsSource);
    frm->RefreshCompareOptionsGUI();

    frm->ShowComparePage();
    setViewerWindowState(frm, Qt::WindowMaximized);
    const bool report = !gsClReportFile.isEmpty();
    if (gbClExitWhenDone) {
        keepFreedMemoryForThisRun();
        // A run that ends as soon as its report is written renders no view:
        // nobody would see it, and for a large pair it is most of the time.
        // The report compares the editors itself, so that compare counts.
        const bool loaded = frm->CompareCommandLineForReport(!report);
        if (loaded && report)
            writeReport(frm);
        if (loaded && frm->Options().bBeepWhenDone.Data())
            QApplication::beep();
        glExitStatus = frm->Result().count();
    } else {
        frm->RefreshDisplayCommandLine(glClReportStyle);
        waitWhile([frm] { return frm->IsBusy(); });
        // A load that failed leaves the wait window up for the driver to close.
        frm->HideWaitWindow();
        glExitStatus = frm->Result().count();
        if (report)
            writeReport(frm);
    }
    successfullyCompared();
    if (gbClExitWhenDone)
        return true;
    // The view the run set up is swapped once, as it always has been.
    if (glClReportStyle == 1)
        frm->cmdChangeViewFormat_Click();
    return false;
}

bool CompareFoldersFromCommandLine(frmMainMDI& frame)
{
    ViewerForm* viewer = frmMainMDI::ViewerKindAvailable(frmMainMDI::ViewerKind::CompareDir)
        ? frame.frmGetCDNumber(1)
        : nullptr;
    auto* folders = dynamic_cast<FolderBatchViewer*>(viewer);
    if (!folders) {
        // Said whatever -V says: a comparison that never ran must not look
        // like one that found nothing.
        const QString message = QLatin1String(kNoFolderViewerMessage);
        LogMessage(message, gsClLogFile, false);
        std::fprintf(stderr, "tallyvane: %s\n", message.toLocal8Bit().constData());
        return false;
    }
    frame.show();
    setViewerWindowState(viewer, Qt::WindowMinimized);
    folders->SetBatchFolders(gsClMaster, gsClSource);
    folders->SetBatchOptions(gbClBeepWhenDone, gbClSubFolders);
    folders->RefreshCompareOptionsGUI();
    folders->ShowComparePage();
    setViewerWindowState(viewer, Qt::WindowMaximized);
    folders->RefreshDiffViewer();
    waitWhile([folders] { return folders->CompareInProgress(); });
    if (!gsClReportFile.isEmpty()) {
        // The folder report has one form: -R and -F mean nothing here.
        folders->WriteReport(gsClReportFile);
        if (gbClOpenReport)
            launcher().OpenInTextViewer(gsClReportFile);
    }
    successfullyCompared();
    glExitStatus = folders->RecordCount();
    return true;
}

MainResult Main(const QStringList& args, bool hasDisplay, std::unique_ptr<frmMainMDI>& frame)
{
    InitProgramPlaces();
    glExitStatus = 0;
    reportFailed = false;
    const bool usable = ParseCommandLine(args);

    if (!usable && args.isEmpty()) {
        gbClVerbose = true;
        if (!hasDisplay) {
            std::fputs("tallyvane: the viewers need a display (neither DISPLAY nor WAYLAND_DISPLAY is set);\n"
                       "comparisons from the command line work without one, see tallyvane --help\n",
                       stderr);
            return {false, 2};
        }
        frame = std::make_unique<frmMainMDI>();
        frame->Form_Load();
        frame->show();
        return {true, 0};
    }
    if (!usable) {
        LogMessage(QStringLiteral("Missing required command line argument(s)"), gsClLogFile, gbClVerbose);
        return {false, 0};
    }

    // Nobody could go on working with the result: the run ends as with -X.
    if (!hasDisplay)
        gbClExitWhenDone = true;
    frame = std::make_unique<frmMainMDI>();
    frame->Form_Load();
    bool endNow = false;
    {
        BatchCursor busy;
        if (gbClCompareFolders) {
            if (!CompareFoldersFromCommandLine(*frame))
                return {false, 2};
        } else {
            endNow = CompareFilesFromCommandLine(*frame);
        }
    }
    // A file comparison that ends by itself ends with 0, or 2 when its
    // report could not be written: only a folder comparison hands its
    // count to -G.
    if (endNow)
        return {false, reportFailed ? 2 : 0};
    if (gbClExitWhenDone)
        return {false, gbClUseExitStatus ? int(glExitStatus) : 0};
    return {true, 0};
}

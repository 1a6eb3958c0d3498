// The compare run: from the loaded editors over two text files and the
// engine to the rendered view, with its stages shown in the status bar.

#include "filecompare/FileCompareWidgets.h"
#include "filecompare/frmCompareFiles.h"
#include "core/modGlobal.h"
#include "core/modParseCommandLine.h"
#include "shell/frmPleaseWait.h"
#include "shell/modMessageBox.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QTextEdit>
#include <QToolBar>

#include <initializer_list>
#include <memory>
#include <vector>

using filecompare::DoEvents;
using filecompare::Sleep;

// Marks a run for as long as it lives: nested requests are refused, and
// input other than what stops the run is held back.
class RunScope {
public:
    explicit RunScope(frmCompareFiles* viewer)
        : viewer_(viewer)
    {
        if (viewer_->runDepth_++ == 0)
            guard_ = std::make_unique<filecompare::RunInputGuard>(viewer_);
    }
    ~RunScope() { --viewer_->runDepth_; }
    RunScope(const RunScope&) = delete;
    RunScope& operator=(const RunScope&) = delete;

private:
    frmCompareFiles* viewer_;
    std::unique_ptr<filecompare::RunInputGuard> guard_;
};

namespace {

// The editors' selection moves over every section during a run; their views
// take it only at the end, so they neither scroll nor lay out meanwhile.
class EditorsLocked {
public:
    EditorsLocked(RichTextBox* a, RichTextBox* b)
        : a_(a)
        , b_(b)
        , aStart_(a->SelStart())
        , aLength_(a->SelLength())
        , bStart_(b->SelStart())
        , bLength_(b->SelLength())
    {
        a_->setUpdatesLocked(true);
        b_->setUpdatesLocked(true);
    }
    ~EditorsLocked() { release(); }
    // The selections the run left behind are its own: the user's come back.
    void release()
    {
        if (released_)
            return;
        released_ = true;
        a_->setSelStart(aStart_);
        a_->setSelLength(aLength_);
        b_->setSelStart(bStart_);
        b_->setSelLength(bLength_);
        a_->setUpdatesLocked(false);
        b_->setUpdatesLocked(false);
    }

private:
    RichTextBox* a_;
    RichTextBox* b_;
    int aStart_, aLength_, bStart_, bLength_;
    bool released_ = false;
};

// Boxes that a render edits many times: off their views until it is done.
class BulkEdit {
public:
    explicit BulkEdit(std::initializer_list<RichTextBox*> boxes)
        : boxes_(boxes)
    {
        for (RichTextBox* b : boxes_)
            b->beginBulkEdit();
    }
    ~BulkEdit()
    {
        for (RichTextBox* b : boxes_)
            b->endBulkEdit();
    }

private:
    std::vector<RichTextBox*> boxes_;
};

// Text without fonts of its own is shown in the document's default font;
// a copy of it is shown as its source is.
void takeLook(RichTextBox* to, const RichTextBox* from)
{
    if (to->document()->defaultFont() != from->document()->defaultFont())
        to->document()->setDefaultFont(from->document()->defaultFont());
}

QString bareFileName(const QString& path)
{
    return QFileInfo(path).fileName();
}

bool eitherHolds(const QString& a, const QString& b, const char* text)
{
    return a.contains(QLatin1String(text), Qt::CaseInsensitive)
        || b.contains(QLatin1String(text), Qt::CaseInsensitive);
}

} // namespace

bool frmCompareFiles::SideBySideShowing() const
{
    return cmdChangeViewFormat->text() != QLatin1String(kViewSideBySide);
}

// --- requests ----------------------------------------------------------------------------

void frmCompareFiles::RefreshDisplay(bool bReload, bool bShowDifference)
{
    if (runDepth_ > 0) {
        // A request in the middle of a run (the refresh timer, say) would
        // share the engine, the work boxes and the text files with it: it
        // waits, and the run is repeated once when this one ends.
        rerunPending_ = true;
        rerunReload_ = bReload;
        rerunShowDifference_ = bShowDifference;
        return;
    }
    rerunPending_ = false;
    refreshDisplayOnce(bReload, bShowDifference);
    if (rerunPending_ && !mbAbort && !closeWhenIdle_) {
        rerunPending_ = false;
        refreshDisplayOnce(rerunReload_, rerunShowDifference_);
    }
    rerunPending_ = false;
    closeIfAsked();
}

void frmCompareFiles::refreshDisplayOnce(bool bReload, bool bShowDifference)
{
    RunScope scope(this);
    mlStartTicks.start();
    PleaseWait->Setup(this);
    PleaseWait->ShowNonModal();
    frameFilterButtons->hide();
    Sleep(10);
    if (bReload) {
        SetPanelText(3, QStringLiteral("Re-loading files..."));
        DoEvents();
        const QString original = cbSelectOriginal->currentText();
        const QString modified = cbSelectModified->currentText();
        WarnIfHTMLAndRetainingFormatting(original, modified);
        WarnIfXLSAndWordWrapIsTrue(original, modified);
        WarnIfDOCAndIsBigFile(original, modified);
        // The Modified side first, on purpose.
        if (!LoadModifiedThenOriginal(modified, original)) {
            PleaseWait->hide();
            return;
        }
    }
    if (!SideBySideShowing())
        mbSideBySideFresh = false;
    else
        mbAllInOneFresh = false;
    RunCompare(bShowDifference);
    PleaseWait->hide();
    frameFilterButtons->show();
}

void frmCompareFiles::RefreshDisplayCommandLine(qint32 lReportStyle)
{
    if (runDepth_ > 0)
        return;
    {
        RunScope scope(this);
        mlStartTicks.start();
        PleaseWait->Setup(this);
        PleaseWait->ShowNonModal();
        Sleep(10);
        SetPanelText(3, QStringLiteral("Loading files..."));
        if (lReportStyle == 1) {
            cmdChangeViewFormat->setText(QLatin1String(kViewSideBySide));
            showAllInOnePane();
            mbAllInOneFresh = false;
        } else {
            cmdChangeViewFormat->setText(QLatin1String(kViewAllInOne));
            showSideBySidePanes();
            mbSideBySideFresh = false;
        }
        DoEvents();
        // No questions in a batch run; a file that fails ends it here, with
        // the wait window left for the batch driver to close.
        if (LoadModifiedThenOriginal(moFileOptions.sFileModified.Data(), moFileOptions.sFileOriginal.Data())) {
            RunCompare(true);
            PleaseWait->hide();
            // A viewer shows its filters from the first run that completes.
            frameFilterButtons->show();
        }
    }
    closeIfAsked();
}

bool frmCompareFiles::CompareCommandLineForReport(bool bCompare)
{
    if (runDepth_ > 0)
        return false;
    bool loaded = false;
    {
        RunScope scope(this);
        mlStartTicks.start();
        SetPanelText(3, QStringLiteral("Loading files..."));
        loaded = LoadModifiedThenOriginal(moFileOptions.sFileModified.Data(), moFileOptions.sFileOriginal.Data());
        // A compare that fails is compared again, and reported, by the report.
        if (loaded && bCompare)
            CompareDocuments(2);
    }
    closeIfAsked();
    return loaded;
}

// --- the run -------------------------------------------------------------------------------

void frmCompareFiles::RunCompare(bool bShowDifference)
{
    RunScope scope(this);
    const qint32 rememberedDifference = mlCurrentDifference;
    EditorsLocked editors(rtbOriginal, rtbModified);
    bool failed = false;
    {
        filecompare::BusyCursor busy;
        DoEvents();
        mbAbort = false;
        tbAbort->setVisible(true);
        cmdChangeViewFormat->hide();
        SetPanelText(3, QStringLiteral("Comparing..."));
        SetPanelText(5, QStringLiteral("---"));
        DoEvents();

        // The engine counts lines at line feeds and the paragraph index too;
        // a doubled carriage return would make them disagree, so such a text
        // is flattened to plain text.
        const QString doubled = QStringLiteral("\r\r");
        for (RichTextBox* editor : {rtbOriginal, rtbModified}) {
            const QString text = editor->Text();
            if (text.contains(doubled))
                editor->setText(QString(text).remove(doubled));
        }

        rtbOriginalDiff->setTextRTF(rtbOriginal->TextRTF());
        rtbModifiedDiff->setTextRTF(rtbModified->TextRTF());
        // The panes show each side in the font its editor shows it in.
        takeLook(rtbOriginalDiff, rtbOriginal);
        takeLook(rtbModifiedDiff, rtbModified);
        // An unchanged editor keeps its index from the last run, and so does
        // its work copy, which holds the same text again.
        if (mbOriginalDirty) {
            docOriginal.ParagraphCollectionCreate();
            docOriginalDiff.ParagraphCollectionCreate();
        }
        if (mbModifiedDirty) {
            docModified.ParagraphCollectionCreate();
            docModifiedDiff.ParagraphCollectionCreate();
        }
        if (!CompareDocuments(2)) {
            // Nothing was compared: the views keep what they showed and are
            // rendered anew by the next run that works.
            mbSideBySideFresh = mbAllInOneFresh = false;
            failed = true;
        }
    }
    if (failed) {
        editors.release();
        tbAbort->setVisible(false);
        cmdChangeViewFormat->show();
        rtbOriginalDiff->setTextRTF(RichText());
        rtbModifiedDiff->setTextRTF(RichText());
        SetPanelText(3, QStringLiteral("Compare Failed: ") + compareFailure_);
        LogMessage(compareFailure_, gsClLogFile, gbClVerbose);
        emit runFinished();
        return;
    }
    {
        filecompare::BusyCursor busy;
        UpdateNavigationalDropDownListBox();

        BulkEdit filtered{rtbDeletions, rtbAdditions, rtbChanges};
        rtbDeletions->setText(QString());
        rtbAdditions->setText(QString());
        rtbChanges->setText(QString());
        takeLook(rtbDeletions, rtbOriginal);
        takeLook(rtbAdditions, rtbModified);
        takeLook(rtbChanges, rtbOriginal);
        mlChangeCount = mlAdditionCount = mlDeletionCount = 0;

        // Rendering happens off screen; the shown panes change at once when
        // it is done.
        if (!SideBySideShowing()) {
            BulkEdit merged{rtbAIODiff};
            rtbAIODiff->setTextRTF(rtbOriginal->TextRTF());
            takeLook(rtbAIODiff, rtbOriginal);
            docAIODiff.ParagraphCollectionCreate();
            UpdateChangesToRTFFileAIO();
            mbAllInOneFresh = true;
            showAllInOnePane();
        } else {
            UpdateChangesToRTFFile_SBS();
            // The finished work panes become the shown ones whole; the work
            // panes take the old shown documents, emptied below.
            rtbOriginalDiffFinal->swapDocuments(*rtbOriginalDiff);
            rtbModifiedDiffFinal->swapDocuments(*rtbModifiedDiff);
            docOriginalDiffFinal.ParagraphCollectionCreate();
            docModifiedDiffFinal.ParagraphCollectionCreate();
            mbSideBySideFresh = true;
            showSideBySidePanes();
            levelSideBySide();
        }
        // A large document is held in up to six boxes during a run.
        rtbOriginalDiff->setTextRTF(RichText());
        rtbModifiedDiff->setTextRTF(RichText());
    }

    editors.release();
    if (mbAbort) {
        // What was rendered up to the abort stays on view; nothing else moves.
        tbAbort->setVisible(false);
        cmdChangeViewFormat->show();
        SetPanelText(3, QStringLiteral("Compare Aborted"));
        emit runFinished();
        return;
    }
    if (SkeinMacroDiff.DifferenceCount() == 0)
        SetPanelText(3, QStringLiteral("Compare Completed. No differences detected."));
    const qint64 elapsed = mlStartTicks.isValid() ? mlStartTicks.elapsed() : 0;
    SetPanelText(5, filecompare::FormatSeconds(double(elapsed) / 1000.0) + QStringLiteral(" (Sec)"));
    mbOriginalDirty = false;
    mbModifiedDirty = false;
    SetPanelText(2, QString());
    if (bShowDifference) {
        mlCurrentDifference = rememberedDifference;
        ShowCurrentDifference(true);
    }
    tbAbort->setVisible(false);
    cmdChangeViewFormat->show();
    rbShowDeletions->setVisible(mlDeletionCount >= 1);
    rbShowChanges->setVisible(mlChangeCount >= 1);
    rbShowAdditions->setVisible(mlAdditionCount >= 1);
    rbShowAll->setChecked(true);
    if (moFileOptions.bBeepWhenDone.Data())
        filecompare::Beep();
    emit runFinished();
}

bool frmCompareFiles::CompareDocuments(qint32 lMode)
{
    SetPanelText(3, QStringLiteral("Compare In Process..."));
    filecompare::BusyCursor busy;
    compareFailure_.clear();
    auto write = [lMode](const QString& text, const QString& file) {
        return lMode == 1 ? WriteWordLines(text, file) : WriteWholeText(text, file);
    };
    Skeinmatch& e = SkeinMacroDiff;
    // A work file that could not be written would leave the engine comparing
    // what an earlier run wrote there, or nothing: the run stops instead.
    if (!write(rtbOriginal->Text(), gsMasterTextFile))
        compareFailure_ = QStringLiteral("Unable to write the Original's text for comparison: ") + gsMasterTextFile;
    else if (!write(rtbModified->Text(), gsSourceTextFile))
        compareFailure_ = QStringLiteral("Unable to write the Modified's text for comparison: ") + gsSourceTextFile;
    if (!compareFailure_.isEmpty()) {
        // The records of an earlier run must not pass for this one's.
        e.compareTexts({}, {});
        return false;
    }
    e.setMasterFile(QFile::encodeName(gsMasterTextFile).toStdString());
    e.setSourceFile(QFile::encodeName(gsSourceTextFile).toStdString());
    e.setIgnoreCase(moFileOptions.bIgnoreCase.Data());
    e.setIgnoreEmptyLines(moFileOptions.bIgnoreEmptyLines.Data());
    e.setIgnoreWhitespace(moFileOptions.bIgnoreWhitespace.Data());
    e.setQuickCompare(false);
    e.setCompareFaster(moFileOptions.bCompareFaster.Data());
    e.setShowChangesInLargerSections(moFileOptions.bShowChangesInLargerSections.Data());
    e.setUseLineBracket(moFileOptions.bUseLineBracket.Data());
    e.setLineBracket(moFileOptions.lLineBracket.Data());
    e.setCompareMode(0);
    e.CompareFiles();
    switch (e.loadStatus()) {
    case 0: return true;
    case -3: compareFailure_ = QStringLiteral("Unable to load master file for comparison"); break;
    case -4: compareFailure_ = QStringLiteral("Unable to load source file for comparison"); break;
    default: compareFailure_ = QStringLiteral("The comparison ran out of memory"); break;
    }
    if (!e.loadError().empty())
        compareFailure_ += QStringLiteral(" (") + QString::fromStdString(e.loadError()) + QLatin1Char(')');
    return false;
}

bool frmCompareFiles::WriteWholeText(const QString& sText, const QString& sFile)
{
    // One paragraph is one line. A text that ends in a line end already
    // ends its last line: another would add an empty line that is in
    // neither document, and every report would show it.
    QFile f(sFile);
    if (sFile.isEmpty() || !f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    QByteArray bytes = sText.toUtf8();
    if (!bytes.endsWith('\n') && !bytes.endsWith('\r'))
        bytes.append("\r\n");
    return f.write(bytes) == bytes.size() && f.flush();
}

// --- questions -----------------------------------------------------------------------------

void frmCompareFiles::WarnIfDOCAndIsBigFile(const QString& sOriginal, const QString& sModified)
{
    if (bWarnedAboutLargeWordDocAlready || cbRemoveFormatting->isChecked())
        return;
    if (!eitherHolds(sOriginal, sModified, ".DOC"))
        return;
    const MsgAnswer answer = MsgBox(
        this,
        QStringLiteral("For extremely large MS Word files you may want to 'Remove Formatting' (Pure Text "
                       "Compare).\n\nRemove formatting ?"),
        MsgButtons::YesNo, MsgIcon::Information, QStringLiteral("Compare"));
    bWarnedAboutLargeWordDocAlready = true;
    if (answer != MsgAnswer::Yes)
        return;
    cbRemoveFormatting->setChecked(true);
    MsgBox(this, QStringLiteral("Your view options have been updated"), MsgButtons::OK, MsgIcon::Information,
           QStringLiteral("Compare Options Updated"));
    MsgBox(this,
           QStringLiteral("You can restore 'Formatting' by going to 'Compare Options' then uncheck 'Remove "
                          "Formatting'"),
           MsgButtons::OK, MsgIcon::Information, QStringLiteral("Compare Options Updated"));
}

void frmCompareFiles::WarnIfXLSAndWordWrapIsTrue(const QString& sOriginal, const QString& sModified)
{
    if (bWarnedAboutXLSWordWrapAlready || !mnuWordWrap->isChecked())
        return;
    if (!eitherHolds(sOriginal, sModified, ".XLS"))
        return;
    const MsgAnswer answer =
        MsgBox(this,
               QStringLiteral("When comparing XLS, it is best to turn the 'Word Wrap' view option off.  Turn of "
                              "'Word Wrap'?"),
               MsgButtons::YesNo, MsgIcon::Information, QStringLiteral("Compare"));
    bWarnedAboutXLSWordWrapAlready = true;
    if (answer != MsgAnswer::Yes)
        return;
    mnuWordWrap->setChecked(!mnuWordWrap->isChecked());
    mnuWordWrap_Click();
    MsgBox(this, QStringLiteral("Your view options have been updated"), MsgButtons::OK, MsgIcon::Information,
           QStringLiteral("View Options Updated"));
    MsgBox(this, QStringLiteral("You can restore 'Word Wrap' from the 'View' menu."), MsgButtons::OK,
           MsgIcon::Information, QStringLiteral("View Options Updated"));
}

void frmCompareFiles::WarnIfHTMLAndRetainingFormatting(const QString& sOriginal, const QString& sModified)
{
    if (bWarnedAboutHTMLAlready || moFileOptions.bRemoveFormatting.Data()
        || moFileOptions.bHTMLCompareSource.Data())
        return;
    if (!eitherHolds(sOriginal, sModified, ".HTM"))
        return;
    const MsgAnswer answer = MsgBox(
        this,
        QStringLiteral("When comparing HTML, it is best to remove formatting and do a textual compare.  Remove "
                       "formatting?"),
        MsgButtons::YesNo, MsgIcon::Information, QStringLiteral("Compare"));
    bWarnedAboutHTMLAlready = true;
    if (answer != MsgAnswer::Yes)
        return;
    moFileOptions.bRemoveFormatting = true;
    RefreshCompareOptionsGUI();
    MsgBox(this, QStringLiteral("Your compare options have been updated"), MsgButtons::OK, MsgIcon::Information,
           QStringLiteral("Compare Options Updated"));
}

// --- caption and the view switch -------------------------------------------------------------

void frmCompareFiles::UpdateWindowCaption()
{
    QString n = sDescription;
    n.remove(QStringLiteral("_CompareFile"));
    const QString original = cbSelectOriginal->currentText();
    const QString modified = cbSelectModified->currentText();
    if (original.isEmpty() || modified.isEmpty())
        setWindowTitle(QStringLiteral("(") + n + QStringLiteral(") Compare Files"));
    else
        setWindowTitle(QStringLiteral("(") + n + QStringLiteral(") ") + bareFileName(original)
                       + QStringLiteral(" vs. ") + bareFileName(modified));
}

void frmCompareFiles::cmdChangeViewFormat_Click()
{
    if (runDepth_ > 0)
        return;
    {
        RunScope scope(this);
        PleaseWait->Setup(this);
        PleaseWait->ShowNonModal();
        Sleep(10);
        bool ran = false;
        if (!SideBySideShowing()) {
            showSideBySidePanes();
            cmdChangeViewFormat->setText(QLatin1String(kViewAllInOne));
        } else {
            cmdChangeViewFormat->setText(QLatin1String(kViewSideBySide));
            showAllInOnePane();
        }
        // A view that still shows the last compare comes up at once.
        const bool fresh = SideBySideShowing() ? mbSideBySideFresh : mbAllInOneFresh;
        if (!fresh) {
            mlStartTicks.start();
            RunCompare(true);
            ran = true;
        }
        rtbAdditions->view()->hide();
        rtbDeletions->view()->hide();
        rtbChanges->view()->hide();
        ShowCurrentDifference(ran);
        PleaseWait->hide();
    }
    closeIfAsked();
}

// The run as the form shows it: the editors' texts to the session, the
// session's result to the renderer of the view showing, and its stages in
// the status bar.

#include "filecompare/DiffRenderer.h"
#include "filecompare/FileCompareWidgets.h"
#include "filecompare/frmCompareFiles.h"
#include "core/modGlobal.h"
#include "core/modParseCommandLine.h"
#include "filecompare/frmPleaseWait.h"
#include "forms/modMessageBox.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QScopeGuard>
#include <QStatusBar>
#include <QTextEdit>
#include <QThread>
#include <QToolBar>

#include <array>
#include <future>
#include <memory>
#include <utility>

using filecompare::DoEvents;
using filecompare::Sleep;

// Marks a run for as long as it lives: nested requests are refused, and
// input other than what stops the run is held back.
class frmCompareFiles::RunScope {
public:
    explicit RunScope(frmCompareFiles* viewer)
        : run_(viewer->session_)
    {
        if (run_.outermost())
            guard_ = std::make_unique<filecompare::RunInputGuard>(
                QList<QObject*>{viewer->sbStatus, viewer->PleaseWait},
                viewer->tbMain->widgetForAction(viewer->tbAbort));
    }
    RunScope(const RunScope&) = delete;
    RunScope& operator=(const RunScope&) = delete;

private:
    filecompare::FileCompareSession::Run run_;
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

frmCompareFiles::ViewMode frmCompareFiles::CurrentViewMode() const
{
    return cmdChangeViewFormat->text() == QLatin1String(kViewSideBySide) ? ViewMode::AllInOne
                                                                         : ViewMode::SideBySide;
}

void frmCompareFiles::SetViewMode(ViewMode mode)
{
    if (mode == ViewMode::AllInOne) {
        cmdChangeViewFormat->setText(QLatin1String(kViewSideBySide));
        showAllInOnePane();
    } else {
        cmdChangeViewFormat->setText(QLatin1String(kViewAllInOne));
        showSideBySidePanes();
    }
}

filecompare::DiffRenderer& frmCompareFiles::renderer() const
{
    return SideBySideShowing() ? *sideBySide_ : *allInOne_;
}

// --- requests ----------------------------------------------------------------------------

void frmCompareFiles::RefreshDisplay(bool bReload, bool bShowDifference)
{
    // A request in the middle of a run (the refresh timer, say) would share
    // the engine, the work boxes and the text files with it: it waits, and
    // the run is repeated once when this one ends.
    if (session_.deferIfBusy(bReload, bShowDifference))
        return;
    refreshDisplayOnce(bReload, bShowDifference);
    bool reload = false, showDifference = false;
    if (!closeWhenIdle_ && session_.takeRerun(reload, showDifference))
        refreshDisplayOnce(reload, showDifference);
    session_.dropRerun();
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
    if (session_.busy())
        return;
    {
        RunScope scope(this);
        mlStartTicks.start();
        PleaseWait->Setup(this);
        PleaseWait->ShowNonModal();
        Sleep(10);
        SetPanelText(3, QStringLiteral("Loading files..."));
        SetViewMode(lReportStyle == 1 ? ViewMode::AllInOne : ViewMode::SideBySide);
        (lReportStyle == 1 ? mbAllInOneFresh : mbSideBySideFresh) = false;
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
    if (session_.busy())
        return false;
    bool loaded = false;
    {
        RunScope scope(this);
        mlStartTicks.start();
        SetPanelText(3, QStringLiteral("Loading files..."));
        // Nobody sees the editors of this run: plain text stays text.
        textOnlyLoads_ = true;
        const auto restore = qScopeGuard([this] { textOnlyLoads_ = false; });
        loaded = LoadModifiedThenOriginal(moFileOptions.sFileModified.Data(), moFileOptions.sFileOriginal.Data());
        // A compare that fails is compared again, and reported, by the report.
        if (loaded && bCompare)
            CompareEditors();
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
        session_.clearAbort();
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
            // A search for one character is several times quicker than for
            // two, and plain text has none left.
            if (text.contains(QLatin1Char('\r')) && text.contains(doubled))
                editor->setText(QString(text).remove(doubled));
        }

        prepareEditorIndexes();
        prepareWorkCopies();
        // The boxes keep no second copy of their texts through the compare:
        // for long documents that is 200 MB the engine's own copies would
        // come on top of. A box reads its document again when asked.
        QString original = rtbOriginal->Text();
        QString modified = rtbModified->Text();
        for (RichTextBox* box : {rtbOriginal, rtbModified, rtbOriginalDiff, rtbModifiedDiff})
            box->releaseKeptText();
        const auto& result = session_.compare(std::move(original), std::move(modified),
                                              [this](bool original, qint32 first, qint32 last) {
                                                  return sectionText(original, first, last);
                                              });
        if (!result.ok()) {
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
        SetPanelText(3, QStringLiteral("Compare Failed: ") + Result().failure());
        LogMessage(Result().failure(), gsClLogFile, gbClVerbose);
        emit runFinished();
        return;
    }
    {
        filecompare::BusyCursor busy;
        UpdateNavigationalDropDownListBox();

        filecompare::BulkEdit filtered{rtbDeletions, rtbAdditions, rtbChanges};
        rtbDeletions->setText(QString());
        rtbAdditions->setText(QString());
        rtbChanges->setText(QString());
        filecompare::TakeLook(rtbDeletions, rtbOriginal);
        filecompare::TakeLook(rtbAdditions, rtbModified);
        filecompare::TakeLook(rtbChanges, rtbOriginal);

        // Rendering happens off screen; the shown panes change at once when
        // it is done.
        renderer().render(Result());
        (SideBySideShowing() ? mbSideBySideFresh : mbAllInOneFresh) = true;
        if (SideBySideShowing()) {
            showSideBySidePanes();
            levelSideBySide();
        } else {
            showAllInOnePane();
        }
        // A large document is held in up to six boxes during a run.
        rtbOriginalDiff->setTextRTF(RichText());
        rtbModifiedDiff->setTextRTF(RichText());
    }

    editors.release();
    if (session_.aborted()) {
        // What was rendered up to the abort stays on view; nothing else moves.
        tbAbort->setVisible(false);
        cmdChangeViewFormat->show();
        SetPanelText(3, QStringLiteral("Compare Aborted"));
        emit runFinished();
        return;
    }
    if (Result().empty())
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
    rbShowDeletions->setVisible(Result().deletions() >= 1);
    rbShowChanges->setVisible(Result().changes() >= 1);
    rbShowAdditions->setVisible(Result().additions() >= 1);
    rbShowAll->setChecked(true);
    if (moFileOptions.bBeepWhenDone.Data())
        filecompare::Beep();
    emit runFinished();
}

void frmCompareFiles::adoptWorkCopy(qint32 lEditor, RichTextBox& copy)
{
    const int side = lEditor == kOriginal ? 0 : 1;
    (side == 0 ? rtbOriginalDiff : rtbModifiedDiff)->swapDocuments(copy);
    workCopyOf_[side] = EditorBox(lEditor)->Text();
}

void frmCompareFiles::adoptEditorIndex(qint32 lEditor, std::vector<clsParagraph> paragraphs)
{
    indexOf_[lEditor == kOriginal ? 0 : 1] = {EditorBox(lEditor)->Text(), std::move(paragraphs)};
}

void frmCompareFiles::prepareEditorIndexes()
{
    for (int side = 0; side < 2; ++side) {
        auto [builtFrom, paragraphs] = std::exchange(indexOf_[side], {});
        // An unchanged editor keeps its index from the last run.
        if (!(side == 0 ? mbOriginalDirty : mbModifiedDirty))
            continue;
        clsRTBDocument& doc = side == 0 ? docOriginal : docModified;
        const QString text = (side == 0 ? rtbOriginal : rtbModified)->Text();
        if (!builtFrom.isNull() && builtFrom.constData() == text.constData() && builtFrom.size() == text.size())
            doc.ParagraphCollectionAssign(std::move(paragraphs));
        else
            doc.ParagraphCollectionCreate();
    }
}

void frmCompareFiles::prepareWorkCopies()
{
    // Only the side-by-side view works on copies; the all-in-one view builds
    // its pane from the editors themselves.
    const bool wanted = SideBySideShowing();
    // Plain copies to make are built side by side on workers.
    QThread* home = QThread::currentThread();
    std::array<std::future<std::unique_ptr<RichTextBox>>, 2> plain;
    std::array<bool, 2> sameTextAsEditor{};
    for (int side = 0; side < 2; ++side) {
        RichTextBox* editor = side == 0 ? rtbOriginal : rtbModified;
        RichTextBox* work = side == 0 ? rtbOriginalDiff : rtbModifiedDiff;
        const QString builtFrom = std::exchange(workCopyOf_[side], QString());
        if (!wanted)
            continue;
        const RichText content = editor->TextRTF();
        const QString text = editor->Text();
        // The same characters, not equal ones: an editor that was edited
        // since holds a text of its own even when it reads the same.
        const bool prebuilt = content.isUnformatted() && !builtFrom.isNull()
            && builtFrom.constData() == text.constData() && builtFrom.size() == text.size();
        sameTextAsEditor[size_t(side)] = content.isUnformatted();
        if (prebuilt)
            continue;
        if (!content.isUnformatted()) {
            work->setTextRTF(content);
            continue;
        }
        plain[size_t(side)] = RichTextBox::buildOnWorker(text, home);
    }
    if (!wanted)
        return;
    for (int side = 0; side < 2; ++side) {
        RichTextBox* editor = side == 0 ? rtbOriginal : rtbModified;
        RichTextBox* work = side == 0 ? rtbOriginalDiff : rtbModifiedDiff;
        if (plain[size_t(side)].valid())
            work->swapDocuments(*plain[size_t(side)].get());
        // The panes show each side in the font its editor shows it in.
        filecompare::TakeLook(work, editor);
        // A plain copy has its editor's characters, and so its paragraphs,
        // which the editor's index of this run holds.
        clsRTBDocument& index = side == 0 ? docOriginalDiff : docModifiedDiff;
        if (sameTextAsEditor[size_t(side)])
            index.ParagraphCollectionAssign((side == 0 ? docOriginal : docModified).Paragraphs());
        else
            index.ParagraphCollectionCreate();
    }
}

QString frmCompareFiles::sectionText(bool original, qint32 first, qint32 last)
{
    (original ? docOriginal : docModified).SelectParagraphs(first, last, false);
    return (original ? rtbOriginal : rtbModified)->SelText();
}

bool frmCompareFiles::CompareEditors()
{
    filecompare::BusyCursor busy;
    return session_.compare(EditorText(kOriginal), EditorText(kModified)).ok();
}

QString frmCompareFiles::EditorText(qint32 lEditor) const
{
    if (lEditor == kOriginal || lEditor == kModified) {
        const std::optional<QString>& held = heldText_[lEditor == kOriginal ? 0 : 1];
        if (held)
            return *held;
    }
    const RichTextBox* box = EditorBox(lEditor);
    return box ? box->Text() : QString();
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
    if (session_.busy())
        return;
    {
        RunScope scope(this);
        PleaseWait->Setup(this);
        PleaseWait->ShowNonModal();
        Sleep(10);
        bool ran = false;
        SetViewMode(SideBySideShowing() ? ViewMode::AllInOne : ViewMode::SideBySide);
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

// The run of the find viewer: starting a search, following it with the
// timer, moving hits into the grid and turning errors into rows.

#include "findtext/frmFindTextInFiles.h"

#include "core/modGlobal.h"
#include "core/modUtilityString.h"
#include "findtext/FindHitsModel.h"
#include "settings/clsMRU.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QTableView>
#include <QTableWidget>
#include <QTimer>
#include <QToolButton>

#include <cmath>

namespace {

// Streaming moves this many hits per 25 ms tick: four thousand a second
// keeps the grid growing visibly without the window falling behind.
constexpr qint32 kHitsPerTick = 100;
// Within a batch the hit count is shown, and events let through so that
// Escape is heard, every this many rows.
constexpr qint32 kRowsPerYield = 25;
// The longest a batch holds the window without letting events through.
constexpr qint64 kYieldMs = 8;
// The time panel moves every this many ticks.
constexpr qint32 kTicksPerTimeUpdate = 15;

} // namespace

bool frmFindTextInFiles::IsBusy() const
{
    return following_;
}

void frmFindTextInFiles::SetPanel(int panel, const QString& text)
{
    panels_[panel - 1]->setText(text);
}

QString frmFindTextInFiles::PanelText(int panel) const
{
    return panel >= 1 && panel <= 5 ? panels_[panel - 1]->text() : QString();
}

QString frmFindTextInFiles::TimeText(qint64 ms) const
{
    return QString::number(double(std::llabs(ms)) / 1000.0, 'f', 1) + QStringLiteral(" (Sec)");
}

void frmFindTextInFiles::SetBusyPointer(bool busy)
{
    if (busy == busyPointer_)
        return;
    busyPointer_ = busy;
    if (busy)
        QApplication::setOverrideCursor(Qt::BusyCursor);
    else
        QApplication::restoreOverrideCursor();
}

void frmFindTextInFiles::SetupAndBeginSearch()
{
    FindTextOptions o = session_->Options();

    o.sSearchFolder = cbDirectory->currentText();
    MruAddUniqueItem(mcolSearchPath, o.sSearchFolder);
    MruWriteSection(gsIniFile, QStringLiteral("SearchPath"), mcolSearchPath);

    if (cbFileExt->currentText().trimmed().isEmpty())
        cbFileExt->setEditText(QStringLiteral("*.*"));
    o.sSearchFileTypes = cbFileExt->currentText();
    MruAddUniqueItem(mcolFileExt, o.sSearchFileTypes);
    MruWriteSection(gsIniFile, QStringLiteral("FileExt"), mcolFileExt);

    o.sSearchText = cbSearchFor->currentText();
    MruAddUniqueItem(mcolSearchFor, o.sSearchText);
    MruWriteSection(gsIniFile, QStringLiteral("SearchFor"), mcolSearchFor);

    session_->SetOptions(o);
    PushOptionsToControl();
    BeginSearch();
}

void frmFindTextInFiles::BeginSearch()
{
    // A batch still being moved belongs to the search being replaced.
    stopAdding_ = true;
    mlStartTicks = Ticks();
    ClearResultGrids();
    SetPanel(5, QStringLiteral("..."));
    session_->StartSearch();
}

void frmFindTextInFiles::OnSearchStarted()
{
    ShowAbort(true);
    following_ = true;
    if (!manualTicks_)
        Timer1->start();
    SetPanel(2, QStringLiteral("0"));
    SetPanel(3, QStringLiteral("Search In Process..."));
    SetBusyPointer(true);
}

void frmFindTextInFiles::Timer1_Timer()
{
    // A tick that comes while a batch lets events through waits for the next.
    if (addingHits_ || !following_)
        return;
    SetPanel(3, AnimateStatusText(QStringLiteral("Search In Progress. Press ESC to abort.")));
    if (!session_->InProgress()) {
        Timer1->stop();
        following_ = false;
        AddHitsToGrid(0);
        SetPanel(3, QStringLiteral("Scan Completed"));
        mlStartTicks = std::llabs(mlStartTicks - Ticks());
        SetPanel(5, TimeText(mlStartTicks));
        FinishedRun();
        return;
    }
    if (!cbDontStreamResults->isChecked())
        AddHitsToGrid(kHitsPerTick);
    if (session_->InProgress() && mlTimerTicks > kTicksPerTimeUpdate) {
        mlTimerTicks = 0;
        SetPanel(5, TimeText(mlStartTicks - Ticks()));
    }
    ++mlTimerTicks;
}

void frmFindTextInFiles::FinishedRun()
{
    ShowAbort(false);
    SetBusyPointer(false);
    if (cbBeepWhenDone->isChecked())
        QApplication::beep();
    SizeGridsAtEnd();
}

void frmFindTextInFiles::SizeGridsAtEnd()
{
    if (dDividerPrimaryRatio != 1.0)
        SizeRowsOfMSFlexGrid(fgErrorMessages, 1);
    SizeRowsOfMSFlexGrid(fgFiles, 1);
}

void frmFindTextInFiles::OnSearchCompleted()
{
    // The timer's last tick finishes the run; this only says so at once.
    ShowAbort(false);
    SetBusyPointer(false);
    SetPanel(3, QStringLiteral("Scan Completed"));
    if (cbBeepWhenDone->isChecked())
        QApplication::beep();
    SizeGridsAtEnd();
}

void frmFindTextInFiles::AddHitsToGrid(qint32 lLimit)
{
    if (addingHits_)
        return;  // a tick that came while a batch lets events through
    addingHits_ = true;
    stopAdding_ = false;
    const qint32 count = session_->HitCount();
    if (lLimit < 1)
        lLimit = count - mlHitsShown;
    const qint32 last = qMin(mlHitsShown + lLimit - 1, count - 1);
    hitsModel_->BeginBatch(qMin(qMax(0, last - mlHitsShown + 1), kRowsPerYield));
    QElapsedTimer sinceYield;
    sinceYield.start();
    FindHit hit;
    for (qint32 index = mlHitsShown; index <= last; ++index) {
        if (!session_->GetHit(index, hit))
            break;
        hitsModel_->AddHit(hit);
        ++mlHitsShown;
        if (index % kRowsPerYield == 0) {
            SetPanel(2, QString::number(mlHitsShown));
            // Letting events through costs a repaint; doing it at most every
            // kYieldMs keeps Escape heard and the window live without the
            // repaints outweighing the rows.
            if (sinceYield.elapsed() >= kYieldMs) {
                hitsModel_->EndBatch();
                QCoreApplication::processEvents();
                sinceYield.restart();
                if (stopAdding_)
                    break;
            }
        }
    }
    hitsModel_->EndBatch();
    if (!stopAdding_) {
        SetPanel(2, QString::number(mlHitsShown));
        QCoreApplication::processEvents();
    }
    addingHits_ = false;
}

void frmFindTextInFiles::Abort()
{
    session_->AbortSearch();
    stopAdding_ = true;
    SetBusyPointer(false);
    Timer1->stop();
    following_ = false;
    SetPanel(3, QStringLiteral("Scan Aborted"));
    ShowAbort(false);
    if (dDividerPrimaryRatio == 1.0)
        return;
    SizeRowsOfMSFlexGrid(fgErrorMessages, 1);
    SizeRowsOfMSFlexGrid(fgFiles, 1);
}

void frmFindTextInFiles::OnSearchError(int code, const QString& message)
{
    if (dDividerPrimaryRatio == 1.0) {
        fgErrorMessages->setVisible(true);
        dDividerPrimaryRatio = dDividerPrimaryRatioLast;
        ++errorGridOpenings_;
        Form_Resize();
    }
    const bool refused = code >= 507 && code <= 509;
    if (refused)
        Abort();

    QString text;
    switch (code) {
    case 507:
        text = cbSearchFor->currentText().isEmpty()
                   ? QStringLiteral("Search string is empty, change 'What To Find' entry")
                   : message + QLatin1Char(' ') + cbSearchFor->currentText();
        break;
    case 508:
        text = cbDirectory->currentText().isEmpty() ? QStringLiteral("Folder not specified. Change 'Folder' entry")
                                                    : message;
        break;
    case 509:
        text = cbFileExt->currentText().isEmpty()
                   ? QStringLiteral("File Type not specified. Change 'File Types' entry. i.e. '*.DOC'")
                   : message + QLatin1Char(' ') + cbFileExt->currentText();
        break;
    default: text = message; break;
    }
    const int row = fgErrorMessages->rowCount();
    fgErrorMessages->insertRow(row);
    auto* number = new QTableWidgetItem(QString::number(row + 1));
    number->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    fgErrorMessages->setItem(row, 0, number);
    fgErrorMessages->setItem(row, 1, new QTableWidgetItem(QStringLiteral("Error: ") + text));
}

QStringList frmFindTextInFiles::ErrorRows() const
{
    QStringList rows;
    for (int r = 0; r < fgErrorMessages->rowCount(); ++r)
        rows << (fgErrorMessages->item(r, 1) ? fgErrorMessages->item(r, 1)->text() : QString());
    return rows;
}

bool frmFindTextInFiles::ErrorGridOpen() const
{
    return dDividerPrimaryRatio != 1.0;
}

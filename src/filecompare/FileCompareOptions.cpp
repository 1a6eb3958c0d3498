// The compare options page in the viewer: the page writes the options, the
// form marks its view stale and drives automatic refresh from what it hears.

#include "filecompare/frmCompareFiles.h"
#include "filecompare/AutoRefresh.h"
#include "filecompare/CompareOptionsPage.h"

#include <QCheckBox>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>

void frmCompareFiles::buildOptionsPage()
{
    autoRefresh_ = new filecompare::AutoRefresh([this] { return mbOriginalDirty || mbModifiedDirty; }, this);
    timerRefresh = autoRefresh_->findChild<QTimer*>(QStringLiteral("timerRefresh"));

    auto* layout = new QVBoxLayout(frameCompareOptions);
    layout->setContentsMargins(0, 0, 0, 0);
    optionsPage_ = new filecompare::CompareOptionsPage(moFileOptions, frameCompareOptions);
    layout->addWidget(optionsPage_);

    auto box = [this](const char* name) { return optionsPage_->findChild<QCheckBox*>(QLatin1String(name)); };
    cbIgnoreCase = box("cbIgnoreCase");
    cbIgnoreWhiteSpace = box("cbIgnoreWhiteSpace");
    cbIgnoreEmptyLines = box("cbIgnoreEmptyLines");
    cbRemoveFormatting = box("cbRemoveFormatting");
    cbHTMLCompareSource = box("cbHTMLCompareSource");
    cbBeepWhenDone = box("cbBeepWhenDone");
    cbSelectTextInDiffViewer = box("cbSelectTextInDiffViewer");
    rbReloadOnRefresh = optionsPage_->findChild<QRadioButton*>(QStringLiteral("rbReloadOnRefresh"));
    rbNoReloadOnRefresh = optionsPage_->findChild<QRadioButton*>(QStringLiteral("rbNoReloadOnRefresh"));

    connect(optionsPage_, &filecompare::CompareOptionsPage::diffViewStale, this, &frmCompareFiles::MarkDiffViewStale);
    connect(optionsPage_, &filecompare::CompareOptionsPage::autoRefreshChanged, this, [this](bool on, int seconds) {
        autoRefresh_->setPeriodSeconds(seconds);
        if (on)
            watchSelectedFiles();
        autoRefresh_->setOn(on);
    });
    connect(autoRefresh_, &filecompare::AutoRefresh::refreshDue, this, &frmCompareFiles::timerRefresh_Timer);
    connect(autoRefresh_, &filecompare::AutoRefresh::filesChanged, this, &frmCompareFiles::WatchedFilesChanged);
    connect(autoRefresh_, &filecompare::AutoRefresh::fileMissing, this, &frmCompareFiles::WatchedFileMissing);
}

void frmCompareFiles::RefreshCompareOptionsGUI()
{
    optionsPage_->RefreshCompareOptionsGUI();
}

void frmCompareFiles::MarkDiffViewStale()
{
    mbOriginalDirty = true;
    mbModifiedDirty = true;
    SetPanelText(2, QStringLiteral("Diff View not fresh"));
}

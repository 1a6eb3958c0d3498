// The compare options page: each control writes its option at once, and the
// options that change what a compare finds mark the difference view stale.

#include "filecompare/frmCompareFiles.h"
#include "core/modGlobal.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

void frmCompareFiles::buildOptionsPage()
{
    auto* page = new QVBoxLayout(frameCompareOptions);
    page->setContentsMargins(12, 12, 12, 12);
    page->setSpacing(10);

    auto* compare = new QGroupBox(QStringLiteral("Compare"), frameCompareOptions);
    compare->setObjectName(QStringLiteral("frameCompare"));
    auto* cl = new QVBoxLayout(compare);
    auto check = [this](QVBoxLayout* layout, QWidget* parent, const char* name, const QString& caption,
                        const QString& tip = QString()) {
        auto* cb = new QCheckBox(caption, parent);
        cb->setObjectName(QLatin1String(name));
        if (!tip.isEmpty())
            cb->setToolTip(tip);
        layout->addWidget(cb);
        return cb;
    };
    cbIgnoreCase = check(cl, compare, "cbIgnoreCase", QStringLiteral("Ignore &Case Differences"),
                         QStringLiteral("Check to ignore UPPER CASE vs. lower case."));
    cbIgnoreWhiteSpace = check(cl, compare, "cbIgnoreWhiteSpace",
                               QStringLiteral("Ignore &Whitespace characters (i.e. Tabs, Spaces etc.)"),
                               QStringLiteral("Check to ignore whitespace characters (space, tab, line feeds etc.)"));
    cbIgnoreEmptyLines = check(cl, compare, "cbIgnoreEmptyLines", QStringLiteral("Ignore &Empty Lines"));
    cbRemoveFormatting = check(cl, compare, "cbRemoveFormatting",
                               QStringLiteral("Remove Formatting (Pure text comparison)"));
    cbHTMLCompareSource = check(cl, compare, "cbHTMLCompareSource", QStringLiteral("Compare HTML Source"));
    page->addWidget(compare);

    auto* view = new QGroupBox(QStringLiteral("View"), frameCompareOptions);
    view->setObjectName(QStringLiteral("frameView"));
    auto* vl = new QVBoxLayout(view);
    cbSelectTextInDiffViewer = check(vl, view, "cbSelectTextInDiffViewer",
                                     QStringLiteral("Select/Highlight Text in Difference Viewer"));
    cbBeepWhenDone = check(vl, view, "cbBeepWhenDone", QStringLiteral("&Beep When Done"));
    page->addWidget(view);

    auto* refresh = new QGroupBox(QStringLiteral("Refresh (F5)"), frameCompareOptions);
    refresh->setObjectName(QStringLiteral("frameRefresh"));
    auto* rl = new QVBoxLayout(refresh);
    rbReloadOnRefresh = new QRadioButton(QStringLiteral("Reload Selected Files then show differences"), refresh);
    rbReloadOnRefresh->setObjectName(QStringLiteral("rbReloadOnRefresh"));
    rbNoReloadOnRefresh =
        new QRadioButton(QStringLiteral("Do not reload files, show differences of the editor contents."), refresh);
    rbNoReloadOnRefresh->setObjectName(QStringLiteral("rbNoReloadOnRefresh"));
    rl->addWidget(rbReloadOnRefresh);
    rl->addWidget(rbNoReloadOnRefresh);
    page->addWidget(refresh);
    page->addStretch(1);

    // Each handler does nothing while the page is being filled from the options.
    auto bind = [this](QCheckBox* cb, clsVarBoolean& option, bool stale) {
        connect(cb, &QCheckBox::toggled, this, [this, &option, stale](bool on) {
            if (gbRefreshingControls)
                return;
            option = on;
            if (stale)
                MarkDiffViewStale();
        });
    };
    bind(cbIgnoreCase, moFileOptions.bIgnoreCase, true);
    bind(cbIgnoreWhiteSpace, moFileOptions.bIgnoreWhitespace, true);
    bind(cbIgnoreEmptyLines, moFileOptions.bIgnoreEmptyLines, true);
    bind(cbRemoveFormatting, moFileOptions.bRemoveFormatting, false);
    bind(cbHTMLCompareSource, moFileOptions.bHTMLCompareSource, true);
    bind(cbSelectTextInDiffViewer, moFileOptions.bSelectTextInDiffViewer, false);
    bind(cbBeepWhenDone, moFileOptions.bBeepWhenDone, false);
    connect(rbReloadOnRefresh, &QRadioButton::toggled, this, [this] {
        if (!gbRefreshingControls)
            moFileOptions.bReloadOnRefresh = rbReloadOnRefresh->isChecked();
    });
}

void frmCompareFiles::RefreshCompareOptionsGUI()
{
    gbRefreshingControls = true;
    cbIgnoreCase->setChecked(moFileOptions.bIgnoreCase.Data());
    cbIgnoreWhiteSpace->setChecked(moFileOptions.bIgnoreWhitespace.Data());
    cbIgnoreEmptyLines->setChecked(moFileOptions.bIgnoreEmptyLines.Data());
    cbRemoveFormatting->setChecked(moFileOptions.bRemoveFormatting.Data());
    cbHTMLCompareSource->setChecked(moFileOptions.bHTMLCompareSource.Data());
    cbSelectTextInDiffViewer->setChecked(moFileOptions.bSelectTextInDiffViewer.Data());
    cbBeepWhenDone->setChecked(moFileOptions.bBeepWhenDone.Data());
    if (moFileOptions.bReloadOnRefresh.Data())
        rbReloadOnRefresh->setChecked(true);
    else
        rbNoReloadOnRefresh->setChecked(true);
    gbRefreshingControls = false;
}

void frmCompareFiles::MarkDiffViewStale()
{
    mbOriginalDirty = true;
    mbModifiedDirty = true;
    SetPanelText(2, QStringLiteral("Diff View not fresh"));
}

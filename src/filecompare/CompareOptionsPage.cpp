#include "filecompare/CompareOptionsPage.h"

#include "core/modGlobal.h"
#include "document/ColorRef.h"
#include "filecompare/frmCompareFilesAdvanced.h"
#include "settings/clsCompareFileOptions.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSlider>
#include <QVBoxLayout>

namespace filecompare {

// One kind of difference with its look: four style boxes, two colours and a
// sample that shows them together.
struct CompareOptionsPage::FormatRow {
    QLabel* sample = nullptr;
    clsVarBoolean* bold = nullptr;
    clsVarBoolean* italic = nullptr;
    clsVarBoolean* underline = nullptr;
    clsVarBoolean* strikeout = nullptr;
    clsVarLong* back = nullptr;
    clsVarLong* fore = nullptr;
    std::array<QCheckBox*, 4> styleBoxes{};
    QPushButton* backButton = nullptr;
    QPushButton* foreButton = nullptr;
};

namespace {

// Restores the refreshing flag however a fill ends.
class RefreshingControls {
public:
    RefreshingControls() : saved_(gbRefreshingControls) { gbRefreshingControls = true; }
    ~RefreshingControls() { gbRefreshingControls = saved_; }
    RefreshingControls(const RefreshingControls&) = delete;
    RefreshingControls& operator=(const RefreshingControls&) = delete;

private:
    bool saved_;
};

// A small square of the colour, so a button shows what it holds.
QIcon swatch(const QColor& c)
{
    QPixmap pm(14, 14);
    pm.fill(c);
    QPainter p(&pm);
    p.setPen(QColor(0x80, 0x80, 0x80));
    p.drawRect(0, 0, 13, 13);
    return QIcon(pm);
}

// The refresh period is a whole number of seconds; a minute and a half is
// as slow as anyone watching a file wants.
constexpr int kMinRefreshSeconds = 1;
constexpr int kMaxRefreshSeconds = 90;

} // namespace

CompareOptionsPage::CompareOptionsPage(clsCompareFileOptions& options, QWidget* parent)
    : QWidget(parent)
    , options_(options)
{
    setObjectName(QStringLiteral("CompareOptionsPage"));
    pickColor_ = [](QWidget* parent, const QColor& initial, const QString& title) {
        return QColorDialog::getColor(initial, parent, title);
    };

    // The page scrolls rather than squeezes when the viewer is small.
    auto* scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    auto* inner = new QWidget(scroll);
    auto* columns = new QHBoxLayout(inner);
    columns->setContentsMargins(12, 12, 12, 12);
    columns->setSpacing(14);
    auto* left = new QVBoxLayout;
    left->setSpacing(10);
    left->addWidget(buildCompareGroup(inner));
    left->addWidget(buildShowGroup(inner));
    left->addWidget(buildRefreshGroup(inner));
    left->addStretch(1);
    auto* right = new QVBoxLayout;
    right->setSpacing(10);
    right->addWidget(buildFormatGroup(inner));
    right->addWidget(buildSpreadsheetGroup(inner));
    right->addStretch(1);
    columns->addLayout(left, 2);
    columns->addLayout(right, 3);
    scroll->setWidget(inner);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(scroll);
}

CompareOptionsPage::~CompareOptionsPage() = default;

void CompareOptionsPage::setColorPicker(ColorPicker picker)
{
    pickColor_ = std::move(picker);
}

QCheckBox* CompareOptionsPage::option(QWidget* parent, const char* name, const QString& caption,
                                      clsVarBoolean& member, bool stale)
{
    auto* cb = new QCheckBox(caption, parent);
    cb->setObjectName(QLatin1String(name));
    connect(cb, &QCheckBox::toggled, this, [this, &member, stale](bool on) {
        if (gbRefreshingControls)
            return;
        member = on;
        if (stale)
            emit diffViewStale();
    });
    boxes_.emplace_back(cb, &member);
    return cb;
}

// --- groups ------------------------------------------------------------------------------

QWidget* CompareOptionsPage::buildCompareGroup(QWidget* parent)
{
    auto* g = new QGroupBox(QStringLiteral("Compare"), parent);
    g->setObjectName(QStringLiteral("frameCompare"));
    auto* l = new QVBoxLayout(g);
    auto& o = options_;
    option(g, "cbIgnoreCase", QStringLiteral("Ignore &Case Differences"), o.bIgnoreCase, true)
        ->setToolTip(QStringLiteral("Check to ignore UPPER CASE vs. lower case."));
    option(g, "cbIgnoreWhiteSpace", QStringLiteral("Ignore &Whitespace characters (i.e. Tabs, Spaces etc.)"),
           o.bIgnoreWhitespace, true)
        ->setToolTip(QStringLiteral("Check to ignore whitespace characters (space, tab, line feeds etc.)"));
    option(g, "cbIgnoreEmptyLines", QStringLiteral("Ignore &Empty Lines"), o.bIgnoreEmptyLines, true);
    option(g, "cbRemoveFormatting", QStringLiteral("Remove Formatting (Pure text comparison)"),
           o.bRemoveFormatting, false);
    option(g, "cbHTMLCompareSource", QStringLiteral("Compare HTML Source"), o.bHTMLCompareSource, true);
    // Kept for the command line's -Q; the viewer always compares line by
    // line, so the view stays as fresh as it was.
    option(g, "cbQuickCompare", QStringLiteral("&Quick Compare (Binary File)"), o.bQuickCompare, false)
        ->setToolTip(QStringLiteral("Kept with your settings; the viewer always compares line by line."));
    for (auto& [cb, member] : boxes_)
        l->addWidget(cb);

    cmdCompareOptionsAdvanced = new QPushButton(QStringLiteral("Ad&vanced..."), g);
    cmdCompareOptionsAdvanced->setObjectName(QStringLiteral("cmdCompareOptionsAdvanced"));
    cmdCompareOptionsAdvanced->setToolTip(
        QStringLiteral("Larger sections, a faster compare for very large files, and how far to look for a match"));
    connect(cmdCompareOptionsAdvanced, &QPushButton::clicked, this,
            &CompareOptionsPage::cmdCompareOptionsAdvanced_Click);
    auto* row = new QHBoxLayout;
    row->addWidget(cmdCompareOptionsAdvanced);
    row->addStretch(1);
    l->addLayout(row);
    return g;
}

QWidget* CompareOptionsPage::buildShowGroup(QWidget* parent)
{
    auto* g = new QGroupBox(QStringLiteral("Show"), parent);
    g->setObjectName(QStringLiteral("frameShow"));
    auto* l = new QVBoxLayout(g);
    auto& o = options_;
    const size_t first = boxes_.size();
    option(g, "cbShowSimilarContent", QStringLiteral("Show content that is the &Same in both files"),
           o.bShowSimilarContent, true);
    option(g, "cbShowChanges", QStringLiteral("Show Chan&ges"), o.bShowChanges, true);
    option(g, "cbShowAdditions", QStringLiteral("Show &Additions"), o.bShowAdditions, true);
    option(g, "cbShowDeletions", QStringLiteral("Show &Deletions"), o.bShowDeletions, true);
    option(g, "cbSelectTextInDiffViewer", QStringLiteral("Select/Highlight Text in Difference Viewer"),
           o.bSelectTextInDiffViewer, false);
    option(g, "cbShowReportOnly", QStringLiteral("&Show Report Only"), o.bShowReportOnly, false);
    option(g, "cbBeepWhenDone", QStringLiteral("&Beep When Done"), o.bBeepWhenDone, false);
    // The four kinds are always drawn; say where the choice really is.
    for (size_t i = first; i < first + 4; ++i)
        boxes_[i].first->setToolTip(
            QStringLiteral("Kept with your settings; to see one kind of difference alone, use the buttons "
                           "below the panes (All, Additions, Changes, Deletions)."));
    for (size_t i = first; i < boxes_.size(); ++i)
        l->addWidget(boxes_[i].first);
    return g;
}

QWidget* CompareOptionsPage::buildRefreshGroup(QWidget* parent)
{
    auto* g = new QGroupBox(QStringLiteral("Refresh (F5)"), parent);
    g->setObjectName(QStringLiteral("frameRefresh"));
    auto* l = new QVBoxLayout(g);
    rbReloadOnRefresh = new QRadioButton(QStringLiteral("Reload Selected Files then show differences"), g);
    rbReloadOnRefresh->setObjectName(QStringLiteral("rbReloadOnRefresh"));
    rbNoReloadOnRefresh =
        new QRadioButton(QStringLiteral("Do not reload files, show differences of the editor contents."), g);
    rbNoReloadOnRefresh->setObjectName(QStringLiteral("rbNoReloadOnRefresh"));
    // Either button's change lands in the one member; toggled fires for both.
    connect(rbReloadOnRefresh, &QRadioButton::toggled, this, [this] {
        if (!gbRefreshingControls)
            options_.bReloadOnRefresh = rbReloadOnRefresh->isChecked();
    });

    cbRefresh = new QCheckBox(QStringLiteral("Automatically refresh the Diff window(s)"), g);
    cbRefresh->setObjectName(QStringLiteral("cbRefresh"));
    cbRefresh->setToolTip(QStringLiteral("Compares again by itself when an editor, an option or a file on disk "
                                         "has changed"));
    connect(cbRefresh, &QCheckBox::toggled, this, [this] {
        if (!gbRefreshingControls)
            cbRefresh_Click();
    });

    frameRefreshRate = new QGroupBox(QStringLiteral("Refresh Rate"), g);
    frameRefreshRate->setObjectName(QStringLiteral("frameRefreshRate"));
    sliderRefreshRate = new QSlider(Qt::Horizontal, frameRefreshRate);
    sliderRefreshRate->setObjectName(QStringLiteral("sliderRefreshRate"));
    sliderRefreshRate->setRange(kMinRefreshSeconds, kMaxRefreshSeconds);
    sliderRefreshRate->setPageStep(10);
    sliderRefreshRate->setTickPosition(QSlider::TicksBelow);
    sliderRefreshRate->setTickInterval(10);
    lblRefreshPeriod = new QLabel(frameRefreshRate);
    lblRefreshPeriod->setObjectName(QStringLiteral("lblRefreshPeriod"));
    lblRefreshPeriod->setMinimumWidth(lblRefreshPeriod->fontMetrics().horizontalAdvance(QStringLiteral("88 Seconds")));
    auto* rl = new QHBoxLayout(frameRefreshRate);
    rl->addWidget(sliderRefreshRate, 1);
    rl->addWidget(lblRefreshPeriod);
    // The period follows the slider at once, also while automatic refresh is off.
    connect(sliderRefreshRate, &QSlider::valueChanged, this, [this](int seconds) {
        showPeriod();
        if (gbRefreshingControls)
            return;
        options_.lSliderRefreshRate = seconds;
        emit autoRefreshChanged(options_.bRefreshGUI.Data(), seconds);
    });

    l->addWidget(rbReloadOnRefresh);
    l->addWidget(rbNoReloadOnRefresh);
    l->addSpacing(4);
    l->addWidget(cbRefresh);
    l->addWidget(frameRefreshRate);
    return g;
}

QWidget* CompareOptionsPage::buildFormatGroup(QWidget* parent)
{
    auto* g = new QGroupBox(QStringLiteral("Look of the differences"), parent);
    g->setObjectName(QStringLiteral("frameFormats"));
    auto* grid = new QGridLayout(g);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(6);
    const QStringList heads = {QStringLiteral("Bold"), QStringLiteral("Italic"), QStringLiteral("Underline"),
                               QStringLiteral("Strike out")};
    for (int c = 0; c < heads.size(); ++c) {
        auto* h = new QLabel(heads[c], g);
        h->setAlignment(Qt::AlignCenter);
        grid->addWidget(h, 0, 1 + c);
    }

    auto& o = options_;
    struct Kind {
        const char* sample;
        const char* text;
        std::array<const char*, 4> names;  // bold, italic, underline, strike out
        const char* back;
        const char* fore;
        clsVarBoolean *bold, *italic, *underline, *strikeout;
        clsVarLong *backMember, *foreMember;
    };
    const Kind kinds[] = {
        {"lblAdditionText", "Added text",
         {"cbViewAdditionBold", "cbViewAdditionItalic", "cbViewAdditionUnderline", "cbViewAdditionStrikeout"},
         "cmdViewAdditionBackgroundColor", "cmdViewAdditionFontColor", &o.bViewAdditionBold, &o.bViewAdditionItalic,
         &o.bViewAdditionUnderline, &o.bViewAdditionStrikeout, &o.lViewAdditionBackColor, &o.lViewAdditionForeColor},
        {"lblDeletionText", "Deleted text",
         {"cbViewDeletionBold", "cbViewDeletionItalic", "cbViewDeletionUnderline", "cbViewDeletionStrikeout"},
         "cmdViewDeletionBackgroundColor", "cmdViewDeletionFontColor", &o.bViewDeletionBold, &o.bViewDeletionItalic,
         &o.bViewDeletionUnderline, &o.bViewDeletionStrikeout, &o.lViewDeletionBackColor, &o.lViewDeletionForeColor},
        {"lblChangedTextOriginal", "Changed text, Original",
         {"cbViewChangeBoldOriginal", "cbViewChangeItalicOriginal", "cbViewChangeUnderlineOriginal",
          "cbViewChangeStrikeoutOriginal"},
         "cmdViewChangeBackgroundColorOriginal", "cmdViewChangeFontColorOriginal", &o.bViewChangeBoldOriginal,
         &o.bViewChangeItalicOriginal, &o.bViewChangeUnderlineOriginal, &o.bViewChangeStrikeoutOriginal,
         &o.lViewChangeBackColorOriginal, &o.lViewChangeForeColorOriginal},
        {"lblChangedTextModified", "Changed text, Modified",
         {"cbViewChangeBoldModified", "cbViewChangeItalicModified", "cbViewChangeUnderlineModified",
          "cbViewChangeStrikeoutModified"},
         "cmdViewChangeBackgroundColorModified", "cmdViewChangeFontColorModified", &o.bViewChangeBoldModified,
         &o.bViewChangeItalicModified, &o.bViewChangeUnderlineModified, &o.bViewChangeStrikeoutModified,
         &o.lViewChangeBackColorModified, &o.lViewChangeForeColorModified},
    };

    formats_.reserve(std::size(kinds));
    int r = 1;
    for (const Kind& s : kinds) {
        FormatRow row;
        row.sample = new QLabel(QString::fromLatin1(s.text), g);
        row.sample->setObjectName(QLatin1String(s.sample));
        row.sample->setAutoFillBackground(true);
        row.sample->setFrameShape(QFrame::StyledPanel);
        row.sample->setMargin(3);
        row.sample->setMinimumWidth(row.sample->fontMetrics().horizontalAdvance(QStringLiteral("Changed text, Modified"))
                                    + 24);
        row.bold = s.bold;
        row.italic = s.italic;
        row.underline = s.underline;
        row.strikeout = s.strikeout;
        row.back = s.backMember;
        row.fore = s.foreMember;
        grid->addWidget(row.sample, r, 0);
        for (int c = 0; c < 4; ++c) {
            auto* cb = new QCheckBox(g);
            cb->setObjectName(QLatin1String(s.names[c]));
            cb->setToolTip(QStringLiteral("%1: %2").arg(QString::fromLatin1(s.text), heads[c]));
            row.styleBoxes[c] = cb;
            grid->addWidget(cb, r, 1 + c, Qt::AlignCenter);
        }
        row.foreButton = new QPushButton(QStringLiteral("Text Colour..."), g);
        row.foreButton->setObjectName(QLatin1String(s.fore));
        row.backButton = new QPushButton(QStringLiteral("Background..."), g);
        row.backButton->setObjectName(QLatin1String(s.back));
        grid->addWidget(row.foreButton, r, 5);
        grid->addWidget(row.backButton, r, 6);
        formats_.push_back(row);
        ++r;
    }
    // Connected once the rows sit still in the vector.
    for (size_t i = 0; i < formats_.size(); ++i) {
        FormatRow* row = &formats_[i];
        const std::array<clsVarBoolean*, 4> members = {row->bold, row->italic, row->underline, row->strikeout};
        for (int c = 0; c < 4; ++c) {
            clsVarBoolean* member = members[c];
            connect(row->styleBoxes[c], &QCheckBox::toggled, this, [this, row, member](bool on) {
                if (gbRefreshingControls)
                    return;
                *member = on;
                showSample(*row);
            });
        }
        connect(row->foreButton, &QPushButton::clicked, this, [this, row] { pickColor(*row, *row->fore, false); });
        connect(row->backButton, &QPushButton::clicked, this, [this, row] { pickColor(*row, *row->back, true); });
    }
    grid->setColumnStretch(7, 1);
    auto* note = new QLabel(QStringLiteral("New formats show at the next refresh (F5)."), g);
    note->setEnabled(false);
    grid->addWidget(note, r, 0, 1, 7);
    return g;
}

QWidget* CompareOptionsPage::buildSpreadsheetGroup(QWidget* parent)
{
    auto* g = new QGroupBox(QStringLiteral("Spreadsheets"), parent);
    g->setObjectName(QStringLiteral("frameExcel"));
    auto* l = new QVBoxLayout(g);
    auto& o = options_;
    auto* formulas = option(g, "cbCompareFormulas", QStringLiteral("Compare Formulas"), o.bExcelCompareFormulas, true);
    formulas->setToolTip(QStringLiteral("Compare the formulas of the cells instead of their values"));
    l->addWidget(formulas);

    auto text = [this](QWidget* parent, const char* name, clsVarString& member) {
        auto* t = new QLineEdit(parent);
        t->setObjectName(QLatin1String(name));
        connect(t, &QLineEdit::textChanged, this, [this, &member](const QString& s) {
            if (gbRefreshingControls)
                return;
            member = s;
            emit diffViewStale();
        });
        fillTexts_.push_back([t, &member] { t->setText(member.Data()); });
        return t;
    };
    // The use boxes write even while the page is filled: the value is the
    // same, and it matters only at the next load, so nothing goes stale.
    auto use = [this](QWidget* parent, const char* name, const QString& caption, clsVarBoolean& member,
                      QWidget* frame) {
        auto* cb = new QCheckBox(caption, parent);
        cb->setObjectName(QLatin1String(name));
        connect(cb, &QCheckBox::toggled, this, [&member, frame](bool on) {
            member = on;
            frame->setEnabled(on);
        });
        useBoxes_.emplace_back(cb, frame);
        return cb;
    };
    auto side = [&](const QString& title, const char* sheet, clsVarString& sheetMember, const char* useRows,
                    clsVarBoolean& useRowsMember, const char* rowFrame, const char* rows, clsVarString& rowsMember,
                    const char* useCols, clsVarBoolean& useColsMember, const char* colFrame, const char* cols,
                    clsVarString& colsMember) {
        auto* box = new QGroupBox(title, g);
        auto* bl = new QVBoxLayout(box);
        bl->addWidget(new QLabel(QStringLiteral("Specify Sheet(s) (i.e. \"1-2, 12, 20, *\")"), box));
        bl->addWidget(text(box, sheet, sheetMember));

        auto* rowsFrame = new QWidget(box);
        rowsFrame->setObjectName(QLatin1String(rowFrame));
        auto* rfl = new QVBoxLayout(rowsFrame);
        rfl->setContentsMargins(20, 0, 0, 0);
        rfl->addWidget(new QLabel(QStringLiteral("Use Rows (i.e. \"1, 12, 20,30-50\"):"), rowsFrame));
        rfl->addWidget(text(rowsFrame, rows, rowsMember));
        bl->addWidget(use(box, useRows, QStringLiteral("Specify Rows To Compare"), useRowsMember, rowsFrame));
        bl->addWidget(rowsFrame);

        auto* colsFrame = new QWidget(box);
        colsFrame->setObjectName(QLatin1String(colFrame));
        auto* cfl = new QVBoxLayout(colsFrame);
        cfl->setContentsMargins(20, 0, 0, 0);
        cfl->addWidget(new QLabel(QStringLiteral("Use Columns (i.e. \"1-10, 12, 20,30-50\"):"), colsFrame));
        cfl->addWidget(text(colsFrame, cols, colsMember));
        bl->addWidget(use(box, useCols, QStringLiteral("Specify Columns To Compare"), useColsMember, colsFrame));
        bl->addWidget(colsFrame);
        return box;
    };
    auto* sides = new QHBoxLayout;
    sides->addWidget(side(QStringLiteral("Original"), "txtMasterExcelSheetNumber", o.sExcelSheetNumberMaster,
                          "cbUseSpecifiedRowsMaster", o.bExcelUseRowsMaster, "frameRowNumbersMaster",
                          "txtRowNumbersMaster", o.sExcelRowsMaster, "cbUseSpecifiedColsMaster", o.bExcelUseColsMaster,
                          "frameColNumbersMaster", "txtColumnNumbersMaster", o.sExcelColsMaster));
    sides->addWidget(side(QStringLiteral("Modified"), "txtSourceExcelSheetNumber", o.sExcelSheetNumberSource,
                          "cbUseSpecifiedRowsSource", o.bExcelUseRowsSource, "frameRowNumbersSource",
                          "txtRowNumbersSource", o.sExcelRowsSource, "cbUseSpecifiedColsSource", o.bExcelUseColsSource,
                          "frameColNumbersSource", "txtColumnNumbersSource", o.sExcelColsSource));
    l->addLayout(sides);
    auto* note = new QLabel(QStringLiteral("Sheets, rows and columns apply when the workbook is loaded again."), g);
    note->setEnabled(false);
    note->setWordWrap(true);
    l->addWidget(note);
    return g;
}

// --- filling and the handlers ----------------------------------------------------------

void CompareOptionsPage::RefreshCompareOptionsGUI()
{
    RefreshingControls guard;
    auto& o = options_;
    const bool on = o.bRefreshGUI.Data();
    sliderRefreshRate->setValue(o.lSliderRefreshRate.Data());
    cbRefresh->setChecked(on);
    frameRefreshRate->setEnabled(on);
    rbReloadOnRefresh->setEnabled(!on);
    if (o.bReloadOnRefresh.Data())
        rbReloadOnRefresh->setChecked(true);
    else
        rbNoReloadOnRefresh->setChecked(true);
    showPeriod();

    for (auto& [cb, member] : boxes_)
        cb->setChecked(member->Data());

    for (FormatRow& row : formats_) {
        const std::array<clsVarBoolean*, 4> members = {row.bold, row.italic, row.underline, row.strikeout};
        for (int c = 0; c < 4; ++c)
            row.styleBoxes[c]->setChecked(members[c]->Data());
        showSample(row);
    }

    for (auto& fill : fillTexts_)
        fill();
    const std::array<clsVarBoolean*, 4> useMembers = {&o.bExcelUseRowsMaster, &o.bExcelUseColsMaster,
                                                      &o.bExcelUseRowsSource, &o.bExcelUseColsSource};
    for (size_t i = 0; i < useBoxes_.size(); ++i) {
        useBoxes_[i].first->setChecked(useMembers[i]->Data());
        useBoxes_[i].second->setEnabled(useMembers[i]->Data());
    }
    emit autoRefreshChanged(on, sliderRefreshRate->value());
}

void CompareOptionsPage::SetAutoRefresh(bool on)
{
    {
        RefreshingControls guard;
        cbRefresh->setChecked(on);
    }
    cbRefresh_Click();
}

void CompareOptionsPage::cbRefresh_Click()
{
    const bool on = cbRefresh->isChecked();
    // Automatic refresh compares what the editors hold; reloading the files
    // behind the user's edits on a timer would throw those edits away.
    rbReloadOnRefresh->setEnabled(!on);
    if (on)
        rbNoReloadOnRefresh->setChecked(true);
    options_.bRefreshGUI = on;
    frameRefreshRate->setEnabled(on);
    showPeriod();
    emit autoRefreshChanged(on, sliderRefreshRate->value());
    // So that the first tick has something to do.
    if (on)
        emit diffViewStale();
}

void CompareOptionsPage::showPeriod()
{
    lblRefreshPeriod->setText(QString::number(sliderRefreshRate->value()) + QStringLiteral(" Seconds"));
}

void CompareOptionsPage::showSample(const FormatRow& row)
{
    QFont f = row.sample->font();
    f.setBold(row.bold->Data());
    f.setItalic(row.italic->Data());
    f.setUnderline(row.underline->Data());
    f.setStrikeOut(row.strikeout->Data());
    row.sample->setFont(f);
    const QColor back = tv::colorFromColorref(row.back->Data());
    const QColor fore = tv::colorFromColorref(row.fore->Data());
    QPalette p = row.sample->palette();
    p.setColor(QPalette::Window, back);
    p.setColor(QPalette::WindowText, fore);
    row.sample->setPalette(p);
    row.backButton->setIcon(swatch(back));
    row.foreButton->setIcon(swatch(fore));
}

void CompareOptionsPage::pickColor(const FormatRow& row, clsVarLong& member, bool background)
{
    const QString title = row.sample->text() + (background ? QStringLiteral(": background colour")
                                                           : QStringLiteral(": text colour"));
    const QColor picked = pickColor_(this, tv::colorFromColorref(member.Data()), title);
    if (!picked.isValid())
        return;
    member = tv::colorrefFromColor(picked);
    showSample(row);
}

void CompareOptionsPage::cmdCompareOptionsAdvanced_Click()
{
    frmCompareFilesAdvanced::Edit(options_, this);
}

} // namespace filecompare

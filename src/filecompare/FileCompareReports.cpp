// Reports of a file comparison: the Report Options page with its settings,
// the report the engine writes of the editors' current texts, and its launch
// (HTML in the browser, text and comma delimited in the text viewer).

#include "filecompare/FileCompareWidgets.h"
#include "filecompare/frmCompareFiles.h"
#include "settings/IniStore.h"
#include "core/Launcher.h"
#include "core/Places.h"
#include "core/modGlobal.h"
#include "forms/modMessageBox.h"
#include "forms/modPickFile.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QFile>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QStyle>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

const char* const kKeyFileTXT = "msgReportFileTXT_TV";
const char* const kKeyFileCSV = "msgReportFileCSV_TV";
const char* const kKeyFileHTM = "msgReportFileHTM_TV";
const char* const kKeyTitleHTM = "msgReportTitleHTM_TV";
const char* const kKeyMasterTitle = "txtReportMasterTitleHTML";
const char* const kKeySourceTitle = "txtReportSourceTitleHTML";
const char* const kKeyFileType = "mlReportDefaultFileType_TV";
const char* const kKeyStyle = "mlReportDefaultStyle_TV";

QString defaultReportPath(const char* name)
{
    return dataFolder() + QLatin1Char('/') + QLatin1String(name);
}

// Only a whole number in range selects a button; anything else leaves the
// one the page was laid out with.
qint32 storedChoice(const QString& section, const char* key, qint32 lowest, qint32 highest)
{
    bool ok = false;
    const qint32 n = IniReadString(gsIniFile, section, QLatin1String(key), QString()).trimmed().toInt(&ok);
    return ok && n >= lowest && n <= highest ? n : 0;
}

} // namespace

// --- the page ------------------------------------------------------------------------------

void frmCompareFiles::buildReportPage()
{
    auto* page = new QVBoxLayout(frameReportOptions);
    page->setContentsMargins(12, 12, 12, 12);
    page->setSpacing(10);

    auto* frameDefaultReport = new QGroupBox(QStringLiteral("Default Report"), frameReportOptions);
    frameDefaultReport->setObjectName(QStringLiteral("frameDefaultReport"));
    auto* dl = new QVBoxLayout(frameDefaultReport);
    auto* explain = new QLabel(
        QStringLiteral("The default report is created when the Compare Files \"Show Report Only\" option is "
                       "selected as well as when the View Report button is pressed.  Please select one report "
                       "type below:"),
        frameDefaultReport);
    explain->setObjectName(QStringLiteral("lblDefaultReport"));
    explain->setWordWrap(true);
    dl->addWidget(explain);

    auto* choices = new QHBoxLayout;
    auto* types = new QVBoxLayout;
    auto* typeGroup = new QButtonGroup(frameDefaultReport);
    const char* typeCaptions[] = {"", "HTML", "Text", "Comma Delimited"};
    for (int i = 1; i <= 3; ++i) {
        auto* rb = new QRadioButton(QLatin1String(typeCaptions[i]), frameDefaultReport);
        rb->setObjectName(QStringLiteral("rbDefaultReport_%1").arg(i));
        typeGroup->addButton(rb, i);
        types->addWidget(rb);
        rbDefaultReport[size_t(i)] = rb;
    }
    types->addStretch(1);
    choices->addLayout(types);

    auto* styleBox = new QGroupBox(QStringLiteral("HTML Style"), frameDefaultReport);
    styleBox->setObjectName(QStringLiteral("frameReportStyle"));
    frameReportStyle = styleBox;
    auto* sl = new QVBoxLayout(styleBox);
    auto* styleGroup = new QButtonGroup(styleBox);
    const char* styleCaptions[] = {"", "All In  One", "Side By Side"};
    for (int i = 1; i <= 2; ++i) {
        auto* rb = new QRadioButton(QLatin1String(styleCaptions[i]), styleBox);
        rb->setObjectName(QStringLiteral("rbDefaultReportStyle_%1").arg(i));
        styleGroup->addButton(rb, i);
        sl->addWidget(rb);
        rbDefaultReportStyle[size_t(i)] = rb;
    }
    choices->addWidget(styleBox);
    choices->addStretch(1);
    dl->addLayout(choices);
    page->addWidget(frameDefaultReport);

    // The layout's choice, kept when the INI file names none that exists.
    rbDefaultReport[kReportHTML]->setChecked(true);
    rbDefaultReportStyle[kStyleAllInOne]->setChecked(true);
    // A style means something only for HTML.
    connect(rbDefaultReport[kReportHTML], &QRadioButton::toggled, frameReportStyle, &QWidget::setEnabled);

    auto* tabs = new QTabWidget(frameReportOptions);
    tabs->setObjectName(QStringLiteral("tsReportOptions"));

    auto* general = new QWidget;
    general->setObjectName(QStringLiteral("frameReportGeneral"));
    auto* gl = new QGridLayout(general);
    gl->setColumnStretch(1, 1);
    auto pathRow = [this, gl, general](int row, const QString& caption, const char* textName, const char* buttonName,
                                       QLineEdit*& text, QToolButton*& button) {
        auto* label = new QLabel(caption, general);
        text = new QLineEdit(general);
        text->setObjectName(QLatin1String(textName));
        label->setBuddy(text);
        button = new QToolButton(general);
        button->setObjectName(QLatin1String(buttonName));
        button->setText(QStringLiteral("..."));
        button->setIcon(style()->standardIcon(QStyle::SP_DirOpenIcon));
        button->setToolTip(QStringLiteral("Choose the file"));
        gl->addWidget(label, row, 0);
        gl->addWidget(text, row, 1);
        gl->addWidget(button, row, 2);
    };
    pathRow(0, QStringLiteral("HTML report file:"), "txtDefaultReportHTM", "cmdSelectReportFolderDefaultHTM",
            txtDefaultReportHTM, cmdSelectReportFolderDefaultHTM);
    pathRow(1, QStringLiteral("Text report file:"), "txtDefaultReportTXT", "cmdSelectReportFolderDefaultTXT",
            txtDefaultReportTXT, cmdSelectReportFolderDefaultTXT);
    pathRow(2, QStringLiteral("Comma delimited report file:"), "txtDefaultReportCSV",
            "cmdSelectReportFolderDefaultCSV", txtDefaultReportCSV, cmdSelectReportFolderDefaultCSV);
    tabs->addTab(general, QStringLiteral("General"));

    auto* html = new QWidget;
    html->setObjectName(QStringLiteral("frameReportHTML"));
    auto* hl = new QGridLayout(html);
    hl->setColumnStretch(1, 1);
    auto titleRow = [hl, html](int row, const QString& caption, const char* name, const QString& hint) {
        auto* label = new QLabel(caption, html);
        auto* text = new QLineEdit(html);
        text->setObjectName(QLatin1String(name));
        label->setBuddy(text);
        hl->addWidget(label, row, 0);
        hl->addWidget(text, row, 1);
        if (!hint.isEmpty()) {
            auto* h = new QLabel(hint, html);
            h->setEnabled(false);
            hl->addWidget(h, row, 2);
        }
        return text;
    };
    const QString hint = QStringLiteral("Hint: Leave blank to use the file name");
    txtReportTitleHTML = titleRow(0, QStringLiteral("Report title:"), "txtReportTitleHTML", QString());
    txtReportMasterTitleHTML = titleRow(1, QStringLiteral("Original title:"), "txtReportMasterTitleHTML", hint);
    txtReportSourceTitleHTML = titleRow(2, QStringLiteral("Modified title:"), "txtReportSourceTitleHTML", hint);
    tabs->addTab(html, QStringLiteral("HTML"));
    page->addWidget(tabs);
    page->addStretch(1);

    connect(cmdSelectReportFolderDefaultHTM, &QToolButton::clicked, this,
            &frmCompareFiles::cmdSelectReportFolderDefaultHTM_Click);
    connect(cmdSelectReportFolderDefaultTXT, &QToolButton::clicked, this,
            &frmCompareFiles::cmdSelectReportFolderDefaultTXT_Click);
    connect(cmdSelectReportFolderDefaultCSV, &QToolButton::clicked, this,
            &frmCompareFiles::cmdSelectReportFolderDefaultCSV_Click);

    txtDefaultReportHTM->setText(defaultReportPath("TallyvaneReport.HTM"));
    txtDefaultReportTXT->setText(defaultReportPath("TallyvaneReport.TXT"));
    txtDefaultReportCSV->setText(defaultReportPath("TallyvaneReport.CSV"));
    txtReportTitleHTML->setText(QStringLiteral("Tallyvane"));
}

qint32 frmCompareFiles::SelectedReportFormat() const
{
    for (qint32 i = kReportHTML; i <= kReportCSV; ++i)
        if (rbDefaultReport[size_t(i)]->isChecked())
            return i;
    return 0;
}

qint32 frmCompareFiles::SelectedReportStyle() const
{
    return rbDefaultReportStyle[kStyleAllInOne]->isChecked() ? kStyleAllInOne : kStyleSideBySide;
}

// --- settings ------------------------------------------------------------------------------

void frmCompareFiles::ReadReportSettings()
{
    const QString& s = sDescription;
    txtDefaultReportTXT->setText(
        IniReadString(gsIniFile, s, QLatin1String(kKeyFileTXT), defaultReportPath("TallyvaneReport.TXT")));
    txtDefaultReportCSV->setText(
        IniReadString(gsIniFile, s, QLatin1String(kKeyFileCSV), defaultReportPath("TallyvaneReport.CSV")));
    txtDefaultReportHTM->setText(
        IniReadString(gsIniFile, s, QLatin1String(kKeyFileHTM), defaultReportPath("TallyvaneReport.HTM")));
    txtReportTitleHTML->setText(IniReadString(gsIniFile, s, QLatin1String(kKeyTitleHTM), QStringLiteral("Tallyvane")));
    txtReportMasterTitleHTML->setText(IniReadString(gsIniFile, s, QLatin1String(kKeyMasterTitle), QString()));
    txtReportSourceTitleHTML->setText(IniReadString(gsIniFile, s, QLatin1String(kKeySourceTitle), QString()));
    if (const qint32 type = storedChoice(s, kKeyFileType, kReportHTML, kReportCSV))
        rbDefaultReport[size_t(type)]->setChecked(true);
    if (const qint32 style = storedChoice(s, kKeyStyle, kStyleAllInOne, kStyleSideBySide))
        rbDefaultReportStyle[size_t(style)]->setChecked(true);
}

void frmCompareFiles::SaveReportSettings()
{
    const QString& s = sDescription;
    IniWriteString(gsIniFile, s, QLatin1String(kKeyFileTXT), txtDefaultReportTXT->text());
    IniWriteString(gsIniFile, s, QLatin1String(kKeyFileCSV), txtDefaultReportCSV->text());
    IniWriteString(gsIniFile, s, QLatin1String(kKeyFileHTM), txtDefaultReportHTM->text());
    IniWriteString(gsIniFile, s, QLatin1String(kKeyTitleHTM), txtReportTitleHTML->text());
    IniWriteString(gsIniFile, s, QLatin1String(kKeyMasterTitle), txtReportMasterTitleHTML->text());
    IniWriteString(gsIniFile, s, QLatin1String(kKeySourceTitle), txtReportSourceTitleHTML->text());
    IniWriteString(gsIniFile, s, QLatin1String(kKeyFileType), QString::number(SelectedReportFormat()));
    IniWriteString(gsIniFile, s, QLatin1String(kKeyStyle), QString::number(SelectedReportStyle()));
}

// --- creating and showing ------------------------------------------------------------------

void frmCompareFiles::SetReportTitles(qint32 lReportFormat)
{
    QString master = cbSelectOriginal->currentText();
    QString source = cbSelectModified->currentText();
    QString title;
    if (lReportFormat == kReportHTML) {
        title = txtReportTitleHTML->text();
        if (!txtReportMasterTitleHTML->text().isEmpty())
            master = txtReportMasterTitleHTML->text();
        if (!txtReportSourceTitleHTML->text().isEmpty())
            source = txtReportSourceTitleHTML->text();
    }
    session_.setReportTitles(master, source, title);
}

bool frmCompareFiles::CreateReport(const QString& sReportFile, qint32 lReportFormat, qint32 lReportStyle)
{
    filecompare::BusyCursor busy;
    // The report shows what the editors hold now, edits included.
    CompareEditors();
    QString message;
    if (session_.writeReport(sReportFile, lReportFormat, lReportStyle, message))
        return true;
    if (!message.isEmpty())
        MsgBox(this, message, MsgButtons::OK, MsgIcon::None, QStringLiteral("Report Creation Error"));
    return false;
}

void frmCompareFiles::cmdViewReport_Click()
{
    if (session_.busy())
        return;
    filecompare::BusyCursor busy;
    SetPanelText(3, QStringLiteral("Creating Report"));
    filecompare::DoEvents();
    const qint32 format = SelectedReportFormat();
    SetReportTitles(format);
    // The file is opened whatever the report step answered: a failure has
    // shown its message, and what opens then is the old file or nothing.
    if (format == kReportHTML) {
        CreateReport(txtDefaultReportHTM->text(), kReportHTML, SelectedReportStyle());
        SetPanelText(3, QStringLiteral("Launching Report"));
        filecompare::DoEvents();
        launcher().OpenDocument(txtDefaultReportHTM->text());
    }
    if (format == kReportText) {
        CreateReport(txtDefaultReportTXT->text(), kReportText, 0);
        SetPanelText(3, QStringLiteral("Launching Report"));
        filecompare::DoEvents();
        launcher().OpenInTextViewer(txtDefaultReportTXT->text());
    }
    if (format == kReportCSV) {
        CreateReport(txtDefaultReportCSV->text(), kReportCSV, 0);
        SetPanelText(3, QStringLiteral("Launching Report"));
        filecompare::DoEvents();
        launcher().OpenInTextViewer(txtDefaultReportCSV->text());
    }
    SetPanelText(3, QStringLiteral("Ready"));
}

// A cancelled picker gives an empty path, and the box takes it: that is how
// the buttons have always worked.
void frmCompareFiles::cmdSelectReportFolderDefaultCSV_Click()
{
    qint32 index = 1;
    txtDefaultReportCSV->setText(PickFile(this, QStringLiteral("Report Folder CSV"), QStringLiteral("All files|*.*"),
                                          index));
}

void frmCompareFiles::cmdSelectReportFolderDefaultHTM_Click()
{
    qint32 index = 1;
    txtDefaultReportHTM->setText(PickFile(this, QStringLiteral("Report Folder HTM"), QStringLiteral("All files|*.*"),
                                          index));
}

void frmCompareFiles::cmdSelectReportFolderDefaultTXT_Click()
{
    qint32 index = 1;
    txtDefaultReportTXT->setText(PickFile(this, QStringLiteral("Report Folder TXT"), QStringLiteral("All files|*.*"),
                                          index));
}

#include "filecompare/frmCompareFilesAdvanced.h"

#include "settings/clsCompareFileOptions.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <cmath>
#include <limits>

frmCompareFilesAdvanced::frmCompareFilesAdvanced(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint)
{
    setObjectName(QStringLiteral("frmCompareFilesAdvanced"));
    setWindowTitle(QStringLiteral("Advanced Compare Options"));
    setModal(true);

    cbFindSmallerSetOfChanges = new QCheckBox(QStringLiteral("Show changes in larger sections"), this);
    cbFindSmallerSetOfChanges->setObjectName(QStringLiteral("cbFindSmallerSetOfChanges"));
    cbCompareFaster = new QCheckBox(
        QStringLiteral(" Compare files faster (for very large files with many small changes in random places)"), this);
    cbCompareFaster->setObjectName(QStringLiteral("cbCompareFaster"));

    // The horizon: how far a line that does not match looks for its partner.
    cbUseLineBracket = new QCheckBox(QStringLiteral("Look for a matching line only within"), this);
    cbUseLineBracket->setObjectName(QStringLiteral("cbUseLineBracket"));
    cbUseLineBracket->setToolTip(
        QStringLiteral("Specify number of lines before and after to consider while comparing."));
    txtHorizon = new QLineEdit(this);
    txtHorizon->setObjectName(QStringLiteral("txtHorizon"));
    txtHorizon->setToolTip(cbUseLineBracket->toolTip());
    txtHorizon->setMaximumWidth(80);
    txtHorizon->setAlignment(Qt::AlignRight);
    auto* linesLabel = new QLabel(QStringLiteral("lines before and after"), this);
    auto* horizon = new QHBoxLayout;
    horizon->addWidget(cbUseLineBracket);
    horizon->addWidget(txtHorizon);
    horizon->addWidget(linesLabel);
    horizon->addStretch(1);
    connect(cbUseLineBracket, &QCheckBox::toggled, txtHorizon, &QLineEdit::setEnabled);
    connect(cbUseLineBracket, &QCheckBox::toggled, linesLabel, &QLabel::setEnabled);
    txtHorizon->setEnabled(false);
    linesLabel->setEnabled(false);

    cmdDone = new QPushButton(QStringLiteral("&Done"), this);
    cmdDone->setObjectName(QStringLiteral("cmdDone"));
    cmdDone->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("&Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdDone);
    buttons->addWidget(cmdCancel);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 14, 16, 12);
    layout->setSpacing(8);
    layout->addWidget(cbFindSmallerSetOfChanges);
    layout->addWidget(cbCompareFaster);
    layout->addLayout(horizon);
    layout->addSpacing(6);
    layout->addLayout(buttons);

    connect(cmdDone, &QPushButton::clicked, this, &frmCompareFilesAdvanced::cmdDone_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmCompareFilesAdvanced::cmdCancel_Click);
}

void frmCompareFilesAdvanced::Load(const clsCompareFileOptions& o)
{
    cbFindSmallerSetOfChanges->setChecked(o.bShowChangesInLargerSections.Data());
    cbCompareFaster->setChecked(o.bCompareFaster.Data());
    cbUseLineBracket->setChecked(o.bUseLineBracket.Data());
    txtHorizon->setText(QString::number(o.lLineBracket.Data()));
    cancelled_ = false;
}

void frmCompareFilesAdvanced::Save(clsCompareFileOptions& o) const
{
    o.bShowChangesInLargerSections = cbFindSmallerSetOfChanges->isChecked();
    o.bCompareFaster = cbCompareFaster->isChecked();
    o.bUseLineBracket = cbUseLineBracket->isChecked();
    o.lLineBracket = HorizonFromText(txtHorizon->text());
}

qint32 frmCompareFilesAdvanced::HorizonFromText(const QString& text)
{
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(value) || value < 1)
        return 1;
    if (value >= double(std::numeric_limits<qint32>::max()))
        return std::numeric_limits<qint32>::max();
    return qint32(std::llround(value));
}

bool frmCompareFilesAdvanced::Edit(clsCompareFileOptions& options, QWidget* parent)
{
    frmCompareFilesAdvanced dialog(parent);
    dialog.Load(options);
    dialog.exec();
    if (dialog.bCancel())
        return false;
    dialog.Save(options);
    return true;
}

void frmCompareFilesAdvanced::cmdDone_Click()
{
    cancelled_ = false;
    accept();
}

void frmCompareFilesAdvanced::cmdCancel_Click()
{
    reject();
}

void frmCompareFilesAdvanced::reject()
{
    cancelled_ = true;
    QDialog::reject();
}

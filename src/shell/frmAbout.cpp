#include "shell/frmAbout.h"

#include "core/Launcher.h"
#include "shell/VanePicture.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStringList>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr int kVaneSize = 72;

} // namespace

QString frmAbout::VersionCaption(const QString& version)
{
    const QStringList parts = version.split(QLatin1Char('.'));
    auto part = [&parts](int i) { return i < parts.size() && !parts[i].isEmpty() ? parts[i] : QStringLiteral("0"); };
    return part(0) + QLatin1Char('.') + part(1) + part(2);
}

frmAbout::frmAbout(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint)
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About Tallyvane"));
    setModal(true);

    lblProductName = new QLabel(QStringLiteral("Tallyvane"), this);
    lblProductName->setObjectName(QStringLiteral("lblProductName"));
    QFont big = lblProductName->font();
    big.setPointSizeF(big.pointSizeF() * 1.8);
    big.setBold(true);
    lblProductName->setFont(big);
    lblFileDescription = new QLabel(QStringLiteral("Compares documents, folders and the text in files"), this);
    lblFileDescription->setObjectName(QStringLiteral("lblFileDescription"));
    lblVersion = new QLabel(QStringLiteral("Version ") + VersionCaption(QStringLiteral(TALLYVANE_VERSION)), this);
    lblVersion->setObjectName(QStringLiteral("lblVersion"));
    lblCopyRightInfo = new QLabel(QStringLiteral("Copyright \u00A9 Merrowgate, Inc. All rights reserved."), this);
    lblCopyRightInfo->setObjectName(QStringLiteral("lblCopyRightInfo"));
    lblCopyRightInfo->setEnabled(false);

    const qreal ratio = devicePixelRatioF();
    for (int i = 1; i <= 6; ++i) {
        auto* image = new QLabel(this);
        image->setObjectName(QStringLiteral("Image%1").arg(i));
        // One step of the turn: the arrow a sixth further each time.
        image->setPixmap(VanePicture((i - 1) * 60.0, kVaneSize, ratio));
        image->setFixedSize(kVaneSize, kVaneSize);
        image->setVisible(i == 1);
        Image[size_t(i)] = image;
    }

    cmdWWWMerrowgate = new QPushButton(QStringLiteral("www.merrowgate.example/tallyvane"), this);
    cmdWWWMerrowgate->setObjectName(QStringLiteral("cmdWWWMerrowgate"));
    cmdWWWMerrowgate->setToolTip(QLatin1String(kMakerWebAddress));
    cmdWWWMerrowgate->setFlat(true);
    cmdWWWMerrowgate->setCursor(Qt::PointingHandCursor);
    cmdMailToProductName = new QPushButton(QStringLiteral("support@merrowgate.example"), this);
    cmdMailToProductName->setObjectName(QStringLiteral("cmdMailToProductName"));
    cmdMailToProductName->setToolTip(QStringLiteral("Write to Merrowgate, Inc."));
    cmdMailToProductName->setFlat(true);
    cmdMailToProductName->setCursor(Qt::PointingHandCursor);
    for (QPushButton* link : {cmdWWWMerrowgate, cmdMailToProductName}) {
        QPalette pal = link->palette();
        pal.setColor(QPalette::ButtonText, QColor(0x2A, 0x60, 0x99));
        link->setPalette(pal);
        link->setStyleSheet(QStringLiteral("text-align: left; padding: 2px 0;"));
    }
    cmdDone = new QPushButton(QStringLiteral("&Done"), this);
    cmdDone->setObjectName(QStringLiteral("cmdDone"));
    cmdDone->setDefault(true);

    // The six pictures share one cell of the grid: only one shows at a time.
    auto* top = new QGridLayout;
    for (int i = 1; i <= 6; ++i)
        top->addWidget(Image[size_t(i)], 0, 0, 4, 1, Qt::AlignTop);
    top->addWidget(lblProductName, 0, 1);
    top->addWidget(lblFileDescription, 1, 1);
    top->addWidget(lblVersion, 2, 1);
    top->addWidget(lblCopyRightInfo, 3, 1);
    top->setColumnMinimumWidth(0, kVaneSize + 12);
    top->setHorizontalSpacing(14);
    top->setColumnStretch(1, 1);

    auto* links = new QVBoxLayout;
    links->setSpacing(0);
    links->addWidget(cmdWWWMerrowgate, 0, Qt::AlignLeft);
    links->addWidget(cmdMailToProductName, 0, Qt::AlignLeft);

    auto* bottom = new QHBoxLayout;
    bottom->addLayout(links);
    bottom->addStretch(1);
    bottom->addWidget(cmdDone, 0, Qt::AlignBottom);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(18, 18, 18, 14);
    layout->setSpacing(14);
    layout->addLayout(top);
    layout->addLayout(bottom);
    setMinimumWidth(440);

    Timer1 = new QTimer(this);
    Timer1->setObjectName(QStringLiteral("Timer1"));
    Timer1->setInterval(250);
    connect(Timer1, &QTimer::timeout, this, &frmAbout::Timer1_Timer);
    connect(cmdDone, &QPushButton::clicked, this, &frmAbout::cmdDone_Click);
    connect(cmdWWWMerrowgate, &QPushButton::clicked, this, &frmAbout::cmdWWWMerrowgate_Click);
    connect(cmdMailToProductName, &QPushButton::clicked, this, &frmAbout::cmdMailToProductName_Click);
}

void frmAbout::Timer1_Timer()
{
    const qint32 previous = mlStep == 1 ? 6 : mlStep - 1;
    Image[size_t(mlStep)]->setVisible(true);
    Image[size_t(previous)]->setVisible(false);
    mlStep = mlStep == 6 ? 1 : mlStep + 1;
}

void frmAbout::cmdDone_Click()
{
    accept();
}

void frmAbout::cmdWWWMerrowgate_Click()
{
    launcher().OpenUrl(QLatin1String(kMakerWebAddress));
}

void frmAbout::cmdMailToProductName_Click()
{
    launcher().OpenUrl(QLatin1String(kMakerMailAddress));
}

void frmAbout::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    Timer1->start();
}

void frmAbout::hideEvent(QHideEvent* event)
{
    Timer1->stop();
    QDialog::hideEvent(event);
}

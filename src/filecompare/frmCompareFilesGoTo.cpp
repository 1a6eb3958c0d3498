#include "filecompare/frmCompareFilesGoTo.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

frmCompareFilesGoTo::frmCompareFilesGoTo(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint)
{
    setObjectName(QStringLiteral("frmCompareFilesGoTo"));
    setWindowTitle(QStringLiteral("Go To Difference"));
    setModal(true);

    lblGoTo = new QLabel(QStringLiteral("Go To Difference Number"), this);
    lblGoTo->setObjectName(QStringLiteral("lblGoTo"));
    txtGoTo = new QLineEdit(this);
    txtGoTo->setObjectName(QStringLiteral("txtGoTo"));
    lblGoTo->setBuddy(txtGoTo);
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 14, 16, 12);
    layout->addWidget(lblGoTo);
    layout->addWidget(txtGoTo);
    layout->addSpacing(6);
    layout->addLayout(buttons);
    setMinimumWidth(280);

    connect(cmdOK, &QPushButton::clicked, this, &frmCompareFilesGoTo::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmCompareFilesGoTo::cmdCancel_Click);
}

void frmCompareFilesGoTo::cmdOK_Click()
{
    hide();
}

void frmCompareFilesGoTo::cmdCancel_Click()
{
    bCancelled = true;
    hide();
}

void frmCompareFilesGoTo::reject()
{
    bCancelled = true;
    QDialog::reject();
}

#include "filecompare/frmPleaseWait.h"

#include "filecompare/frmCompareFiles.h"

#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>

frmPleaseWait::frmPleaseWait(QWidget* parent)
    : QDialog(parent, Qt::Tool | Qt::WindowTitleHint | Qt::CustomizeWindowHint)
{
    setObjectName(QStringLiteral("frmPleaseWait"));
    setWindowTitle(QStringLiteral("Compare"));
    setModal(false);
    Label8 = new QLabel(QStringLiteral("Please wait while comparison is being done..."), this);
    Label8->setObjectName(QStringLiteral("Label8"));
    auto* hint = new QLabel(QStringLiteral("Press Esc to stop."), this);
    hint->setObjectName(QStringLiteral("lblEscapeHint"));
    hint->setEnabled(false);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 18, 24, 18);
    layout->addWidget(Label8);
    layout->addWidget(hint);
}

void frmPleaseWait::Setup(frmCompareFiles* viewer)
{
    viewer_ = viewer;
}

void frmPleaseWait::ShowNonModal()
{
    adjustSize();
    if (QWidget* owner = parentWidget()) {
        const QPoint centre = owner->mapToGlobal(owner->rect().center());
        move(centre - QPoint(width() / 2, height() / 2));
    }
    show();
    raise();
    activateWindow();
}

void frmPleaseWait::keyPressEvent(QKeyEvent* event)
{
    // Every other key is swallowed: in particular Enter must not close the
    // window as a dialog's default button would.
    if (event->key() != Qt::Key_Escape) {
        event->accept();
        return;
    }
    event->accept();
    if (viewer_)
        viewer_->Abort();
    hide();
}

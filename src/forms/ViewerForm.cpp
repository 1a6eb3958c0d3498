#include "forms/ViewerForm.h"

#include <QCloseEvent>

void ViewerForm::closeEvent(QCloseEvent* event)
{
    if (unloaded_) {
        event->accept();
        return;
    }
    if (!QueryUnload()) {
        event->ignore();
        return;
    }
    Form_Unload();
    unloaded_ = true;
    event->accept();
}

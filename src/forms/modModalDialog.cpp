#include "forms/modModalDialog.h"

#include <QDialog>
#include <QGuiApplication>

namespace {

void showDefault(QDialog& dialog)
{
    const QString platform = QGuiApplication::platformName();
    if (platform == QLatin1String("offscreen") || platform == QLatin1String("minimal"))
        return;
    dialog.exec();
}

ModalRunner& runner()
{
    static ModalRunner r = showDefault;
    return r;
}

} // namespace

void ShowModal(QDialog& dialog)
{
    runner()(dialog);
}

ModalRunner setModalRunner(ModalRunner r)
{
    ModalRunner previous = runner();
    runner() = r ? std::move(r) : ModalRunner(showDefault);
    return previous;
}

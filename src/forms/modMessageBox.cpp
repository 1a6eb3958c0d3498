#include "forms/modMessageBox.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QMessageBox>

#include <cstdio>

namespace {

bool canShowWindows()
{
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

MsgAnswer showDefault(const MessageBoxRequest& r)
{
    if (!canShowWindows()) {
        std::fprintf(stderr, "%s: %s\n", r.title.toLocal8Bit().constData(),
                     r.text.toLocal8Bit().constData());
        return r.buttons == MsgButtons::YesNo ? MsgAnswer::No : MsgAnswer::OK;
    }
    QMessageBox box(r.parent);
    box.setWindowTitle(r.title);
    box.setText(r.text);
    switch (r.icon) {
    case MsgIcon::None: box.setIcon(QMessageBox::NoIcon); break;
    case MsgIcon::Information: box.setIcon(QMessageBox::Information); break;
    case MsgIcon::Question: box.setIcon(QMessageBox::Question); break;
    case MsgIcon::Exclamation: box.setIcon(QMessageBox::Warning); break;
    case MsgIcon::Critical: box.setIcon(QMessageBox::Critical); break;
    }
    if (r.buttons == MsgButtons::YesNo) {
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(QMessageBox::Yes);
        return box.exec() == QMessageBox::Yes ? MsgAnswer::Yes : MsgAnswer::No;
    }
    box.setStandardButtons(QMessageBox::Ok);
    box.exec();
    return MsgAnswer::OK;
}

MessageBoxHandler& handler()
{
    static MessageBoxHandler h = showDefault;
    return h;
}

} // namespace

MsgAnswer MsgBox(QWidget* parent, const QString& text, MsgButtons buttons, MsgIcon icon,
                 const QString& title)
{
    MessageBoxRequest r;
    r.parent = parent;
    r.text = text;
    r.title = title.isEmpty() ? QCoreApplication::applicationName() : title;
    r.buttons = buttons;
    r.icon = icon;
    return handler()(r);
}

MessageBoxHandler setMessageBoxHandler(MessageBoxHandler h)
{
    MessageBoxHandler previous = handler();
    handler() = h ? std::move(h) : MessageBoxHandler(showDefault);
    return previous;
}

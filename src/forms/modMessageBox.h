#pragma once
// Every message box of the windows goes through MsgBox, so that tests can
// answer them without a dialog blocking, and so that a run on a machine
// without a display writes the text to stderr instead of waiting for a click
// nobody can give.

#include <QString>

#include <functional>

class QWidget;

enum class MsgButtons { OK, YesNo };
enum class MsgIcon { None, Information, Question, Exclamation, Critical };
enum class MsgAnswer { OK, Yes, No };

struct MessageBoxRequest {
    QWidget* parent = nullptr;
    QString text;
    QString title;
    MsgButtons buttons = MsgButtons::OK;
    MsgIcon icon = MsgIcon::None;
};

using MessageBoxHandler = std::function<MsgAnswer(const MessageBoxRequest&)>;

// Shows a message box and returns the button that closed it. An empty title
// gives the program's name.
MsgAnswer MsgBox(QWidget* parent, const QString& text, MsgButtons buttons = MsgButtons::OK,
                 MsgIcon icon = MsgIcon::None, const QString& title = QString());

// Replaces how message boxes are shown; returns the previous handler. An
// empty function restores the default (a QMessageBox, or stderr and the
// first button's answer on the offscreen platform).
MessageBoxHandler setMessageBoxHandler(MessageBoxHandler handler);

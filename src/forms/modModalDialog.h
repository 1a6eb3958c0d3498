#pragma once
// Every modal dialog of the windows (the go-to dialog, the about box) is
// shown through ShowModal, so that tests can play the user's part, and so
// that a program on a platform that cannot show windows never waits for a
// click that cannot come.

#include <functional>

class QDialog;

// Shows the dialog modally until it is closed. On the offscreen platform the
// default does not show it and returns at once.
void ShowModal(QDialog& dialog);

// Replaces how modal dialogs are shown and returns the previous way; an empty
// function restores the default.
using ModalRunner = std::function<void(QDialog& dialog)>;
ModalRunner setModalRunner(ModalRunner runner);

#pragma once
// The small dialog that asks for the number of a difference to go to.
// OK only hides it, so that the viewer can still read the number; Cancel
// sets the flag and closes it.

#include <QDialog>

#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;

class frmCompareFilesGoTo : public QDialog {
    Q_OBJECT

public:
    explicit frmCompareFilesGoTo(QWidget* parent = nullptr);

    // True when the dialog ended by cmdCancel; false from its start.
    bool bCancelled = false;

    QLabel* lblGoTo = nullptr;
    QLineEdit* txtGoTo = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;

    void cmdOK_Click();
    void cmdCancel_Click();

    // How the viewer shows the dialog: modally, until OK or Cancel. Tests
    // install a runner that fills in the text and presses a button instead;
    // an empty function restores the modal dialog. Returns the previous one.
    using Runner = std::function<void(frmCompareFilesGoTo& dialog)>;
    static Runner setRunner(Runner runner);
    // Shows the dialog through the runner in use.
    void Run();

protected:
    // The window's close box and Escape count as Cancel.
    void reject() override;
};

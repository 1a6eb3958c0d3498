#pragma once
// The small dialog that asks for the number of a difference to go to.
// OK only hides it, so that the viewer can still read the number; Cancel
// sets the flag and closes it.

#include <QDialog>

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

protected:
    // The window's close box and Escape count as Cancel.
    void reject() override;
};

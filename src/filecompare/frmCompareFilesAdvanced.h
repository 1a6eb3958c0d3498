#pragma once
// Three switches of the line matching that users rarely change, in a small
// modal dialog. They take effect at the next compare, so nothing here marks
// the view stale.

#include <QDialog>

class QCheckBox;
class QLineEdit;
class QPushButton;
class clsCompareFileOptions;

class frmCompareFilesAdvanced : public QDialog {
    Q_OBJECT

public:
    explicit frmCompareFilesAdvanced(QWidget* parent = nullptr);

    // The controls from the options, and back; Save only after Done.
    void Load(const clsCompareFileOptions& options);
    void Save(clsCompareFileOptions& options) const;
    // True when the dialog ended by Cancel, Escape or its close box.
    bool bCancel() const { return cancelled_; }

    // The horizon the text gives: a number of 1 or more, rounded; anything
    // else (empty, zero, negative, not a number) gives 1.
    static qint32 HorizonFromText(const QString& text);

    // Loads the dialog, shows it modally, and writes the options back
    // unless it was cancelled. True when they were written.
    static bool Edit(clsCompareFileOptions& options, QWidget* parent);

    void cmdDone_Click();
    void cmdCancel_Click();

protected:
    void reject() override;

private:
    QCheckBox* cbFindSmallerSetOfChanges = nullptr;
    QCheckBox* cbCompareFaster = nullptr;
    QCheckBox* cbUseLineBracket = nullptr;
    QLineEdit* txtHorizon = nullptr;
    QPushButton* cmdDone = nullptr;
    QPushButton* cmdCancel = nullptr;
    bool cancelled_ = false;
};

#pragma once
// The about box: the product's name, subtitle, copyright and version, a small
// weather vane that turns in six steps while the box is open, and buttons to
// the maker's web site and mail address.

#include <QDialog>

#include <array>

class QLabel;
class QPushButton;
class QTimer;

class frmAbout : public QDialog {
    Q_OBJECT

public:
    // The maker's addresses.
    static constexpr const char* kMakerWebAddress = "https://www.merrowgate.example/tallyvane";
    static constexpr const char* kMakerMailAddress = "mailto:support@merrowgate.example";

    explicit frmAbout(QWidget* parent = nullptr);

    // Major version, ".", then minor version and revision with nothing
    // between them: "2.3.6" reads "2.36". Missing parts count as 0.
    static QString VersionCaption(const QString& version);

    QLabel* lblProductName = nullptr;
    QLabel* lblFileDescription = nullptr;
    QLabel* lblCopyRightInfo = nullptr;
    QLabel* lblVersion = nullptr;
    QPushButton* cmdWWWMerrowgate = nullptr;
    QPushButton* cmdMailToProductName = nullptr;
    QPushButton* cmdDone = nullptr;
    // The six pictures of the animation, stacked at one place; item 0 is
    // unused so that Image[n] is step n.
    std::array<QLabel*, 7> Image{};
    QTimer* Timer1 = nullptr;
    // The step the next tick shows, 1 to 6.
    qint32 mlStep = 1;

    void Timer1_Timer();
    void cmdDone_Click();
    void cmdWWWMerrowgate_Click();
    void cmdMailToProductName_Click();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
};

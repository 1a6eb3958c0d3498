#pragma once
// The "Compare Options" tab: a live view of one viewer's option set. Each
// control writes its option the moment it changes (there is no Apply), and
// a control whose change alters what a compare finds says so through
// diffViewStale(); the viewer then marks its view stale. Formats and colours
// reach the panes at the next rendering only, so they never mark it.
//
// While RefreshCompareOptionsGUI fills the controls (gbRefreshingControls is
// set), the handlers write nothing and mark nothing. The four "use rows /
// columns" boxes are the exception: they always write, since their value only
// matters at the next load.

#include <QColor>
#include <QWidget>

#include <functional>
#include <vector>

class QCheckBox;
class QGroupBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QSlider;
class clsCompareFileOptions;
class clsVarBoolean;
class clsVarLong;

namespace filecompare {

class CompareOptionsPage : public QWidget {
    Q_OBJECT

public:
    // Asks for a colour; an invalid colour means the user cancelled.
    using ColorPicker = std::function<QColor(QWidget* parent, const QColor& initial, const QString& title)>;

    CompareOptionsPage(clsCompareFileOptions& options, QWidget* parent = nullptr);
    ~CompareOptionsPage() override;

    // Fills every control from the options; marks nothing stale.
    void RefreshCompareOptionsGUI();
    // Ticks or unticks "Automatically refresh" with all the effects of a click
    // (a load by hand takes automatic refresh off this way).
    void SetAutoRefresh(bool on);
    // The colour dialog; tests answer it themselves.
    void setColorPicker(ColorPicker picker);
    // The advanced dialog, modal; writes its three switches unless cancelled.
    void cmdCompareOptionsAdvanced_Click();

signals:
    // An option changed what a compare would find.
    void diffViewStale();
    // Automatic refresh was switched, or its period (seconds) changed.
    void autoRefreshChanged(bool on, int seconds);

private:
    struct FormatRow;
    QWidget* buildCompareGroup(QWidget* parent);
    QWidget* buildShowGroup(QWidget* parent);
    QWidget* buildRefreshGroup(QWidget* parent);
    QWidget* buildFormatGroup(QWidget* parent);
    QWidget* buildSpreadsheetGroup(QWidget* parent);
    QCheckBox* option(QWidget* parent, const char* name, const QString& caption, clsVarBoolean& member, bool stale);
    void showSample(const FormatRow& row);
    void pickColor(const FormatRow& row, clsVarLong& member, bool background);
    void cbRefresh_Click();
    void showPeriod();

    clsCompareFileOptions& options_;
    ColorPicker pickColor_;

    // Plain option boxes, in the order they are filled.
    std::vector<std::pair<QCheckBox*, clsVarBoolean*>> boxes_;
    std::vector<FormatRow> formats_;
    // Spreadsheet "use" boxes with the frames they enable.
    std::vector<std::pair<QCheckBox*, QWidget*>> useBoxes_;
    std::vector<std::function<void()>> fillTexts_;

    QCheckBox* cbRefresh = nullptr;
    QGroupBox* frameRefreshRate = nullptr;
    QSlider* sliderRefreshRate = nullptr;
    QLabel* lblRefreshPeriod = nullptr;
    QRadioButton* rbReloadOnRefresh = nullptr;
    QRadioButton* rbNoReloadOnRefresh = nullptr;
    QPushButton* cmdCompareOptionsAdvanced = nullptr;
};

} // namespace filecompare

#pragma once
// Small controls of the file comparison viewer.

#include <QLabel>
#include <QObject>
#include <QPointer>
#include <QWidget>

class frmCompareFiles;

namespace filecompare {

// A bar between panes that the user drags. While it is dragged it follows
// the mouse; on release the viewer is told which control it was dropped on.
class DividerLabel : public QLabel {
    Q_OBJECT

public:
    DividerLabel(Qt::Orientation orientation, frmCompareFiles* viewer, QWidget* parent);
    Qt::Orientation orientation() const { return orientation_; }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    Qt::Orientation orientation_;
    frmCompareFiles* viewer_;
    QPoint grabOffset_;
    bool dragging_ = false;
};

// Two arrows, one above the other: a press on the upper half moves both
// documents up one paragraph, on the lower half down.
class SpinScrollControl : public QWidget {
    Q_OBJECT

public:
    explicit SpinScrollControl(QWidget* parent = nullptr);
    QSize sizeHint() const override;

signals:
    void spin(bool up);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    // 0 at rest (PicScroll), 1 upper half pressed (PicSpinUp), 2 lower (PicSpinDown).
    int pressed_ = 0;
};

// One panel of the status bar; a click on it is reported. A text too long
// for the panel ends in "..." and shows whole in the panel's tool tip.
class StatusPanel : public QLabel {
    Q_OBJECT

public:
    explicit StatusPanel(QWidget* parent = nullptr);
    QSize minimumSizeHint() const override;

signals:
    void clicked();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};

// While a run lets events through, input may reach only what can stop it:
// the abort button, the status bar, the wait window and the window frames.
// Everything else (typing, clicks, menu keys) is held back, and so is the
// background layout of the shown documents.
class RunInputGuard : public QObject {
public:
    // `passages` take input with everything inside them; `abortButton` takes
    // it alone.
    RunInputGuard(const QList<QObject*>& passages, QWidget* abortButton);
    ~RunInputGuard() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool allowed(QObject* receiver) const;
    QList<QPointer<QObject>> passages_;
    QPointer<QWidget> abortButton_;
};

// The busy mouse pointer for as long as the object lives.
class BusyCursor {
public:
    BusyCursor();
    ~BusyCursor();
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;
};

// "#.0": one decimal, and no leading zero below 1 (".5").
QString FormatPercent(double value);
// Seconds in a general number format: "2", "0.25", "1.234".
QString FormatSeconds(double seconds);

} // namespace filecompare

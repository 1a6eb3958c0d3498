#pragma once
// The small window that stays up while a file comparison runs. Escape is the
// keyboard's way to stop the run: it asks the viewer that opened the window
// to abort and closes the window.

#include <QDialog>
#include <QPointer>

class QLabel;
class frmCompareFiles;

class frmPleaseWait : public QDialog {
    Q_OBJECT

public:
    explicit frmPleaseWait(QWidget* parent = nullptr);

    // Binds the window to the viewer whose run it stands for.
    void Setup(frmCompareFiles* viewer);
    frmCompareFiles* Viewer() const { return viewer_; }

    // Shows the window over its viewer without taking input away from it.
    void ShowNonModal();

    QLabel* Label8 = nullptr;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QPointer<frmCompareFiles> viewer_;
};

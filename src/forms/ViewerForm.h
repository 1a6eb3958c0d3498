#pragma once
// What the frame window needs of each of its viewers (file comparison,
// folder comparison, find text in files): the description that is at once
// the viewer's number, kind and INI section, the set-up call that reads the
// viewer's settings, the menus it shows in the menu bar while it is active,
// and a way to stop whatever it is running.

#include <QList>
#include <QString>
#include <QWidget>

class QCloseEvent;

class QMenu;

class ViewerForm : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    // "1_CompareFile", "2_CompareDir", "1_FindText": number and kind suffix.
    QString sDescription;

    // Stores the description and reads the viewer's INI section;
    // bRestorePlacement also brings back the window's size and position.
    virtual void Setup(const QString& description, bool bRestorePlacement) = 0;

    // The viewer's own menus, shown in the frame's menu bar while it is the
    // active viewer.
    virtual QList<QMenu*> Menus() const = 0;

    // True while a comparison or search runs; closing then waits for it.
    virtual bool IsBusy() const { return false; }
    virtual void Abort() {}

    // True once the viewer has been closed: it is then no longer one of the
    // frame's viewers, even before Qt deletes it.
    bool IsUnloaded() const { return unloaded_; }

protected:
    // Closing asks QueryUnload first (false keeps the window, for instance
    // until a run has stopped), then Form_Unload saves the viewer's state.
    virtual bool QueryUnload() { return true; }
    virtual void Form_Unload() {}
    void closeEvent(QCloseEvent* event) override;

private:
    bool unloaded_ = false;
};

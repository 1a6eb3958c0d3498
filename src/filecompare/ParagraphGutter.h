#pragma once
// Paragraph numbers down the left edge of an editor, each beside the first
// line of its paragraph. The numbers are the comparison's: a wrapped
// paragraph has one number, and the space that keeps two panes level has
// none.

#include <QPointer>
#include <QWidget>
#include <vector>

class QAbstractScrollArea;
class QTextEdit;

namespace filecompare {

// Room beside a scroll area's viewport on one edge (left or right), for a
// widget of our own; the other margins stay as they are.
void SetViewportMargin(QAbstractScrollArea* area, Qt::Edge edge, int width);

class ParagraphGutter : public QWidget {
    Q_OBJECT

public:
    // Puts a gutter inside the editor's frame, left of the text, and keeps it
    // there as the editor scrolls, resizes and changes. Owned by the editor.
    static ParagraphGutter* attach(QTextEdit* editor);

    struct Label {
        int paragraph = 0;  // 1-based
        int y = 0;          // top of the paragraph's first line, gutter coordinates
    };
    // The numbers the gutter shows now, top to bottom.
    std::vector<Label> visibleLabels() const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit ParagraphGutter(QTextEdit* editor);
    void placeInEditor();
    int neededWidth() const;

    QPointer<QTextEdit> editor_;
    int width_ = 0;
};

} // namespace filecompare

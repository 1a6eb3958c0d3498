#pragma once
// A thin bar beside the diff panes that stands for the whole document: each
// difference a stroke in its kind's colour at its height, the part in view a
// frame. A click on a stroke goes to that difference, a click elsewhere
// scrolls there.

#include <QColor>
#include <QWidget>
#include <vector>

class QTextDocument;

namespace tv {
struct DifferenceSpan;
}

namespace filecompare {

class DifferenceOverviewBar : public QWidget {
    Q_OBJECT

public:
    struct Mark {
        int kind = 0;       // 'a', 'd' or 'c'
        double top = 0;     // share of the document's height above it, 0 to 1
        double bottom = 0;  // share down to its end
    };

    explicit DifferenceOverviewBar(QWidget* parent = nullptr);

    void setMarks(std::vector<Mark> marks);
    const std::vector<Mark>& marks() const { return marks_; }
    void setKindColor(int kind, const QColor& color);
    QColor kindColor(int kind) const;
    // The share of the document in view, as a frame over the strokes.
    void setVisibleRange(double top, double bottom);

    // The difference (0-based record) whose stroke is at or within a few
    // pixels of the height y; the nearest wins; -1 for none.
    int markAt(int y) const;

    // The strokes of records that level two documents: where each difference
    // starts and ends in the taller of the two, as shares of its height.
    static std::vector<Mark> MarksOf(const QTextDocument& left, const QTextDocument& right,
                                     const std::vector<tv::DifferenceSpan>& records);

    // The same by paragraph numbers alone, for documents too long to lay
    // out in full: shares of the longer side's paragraph count.
    static std::vector<Mark> MarksByParagraph(int leftParagraphs, int rightParagraphs,
                                              const std::vector<tv::DifferenceSpan>& records);

    QSize sizeHint() const override { return QSize(14, 100); }

signals:
    void differenceClicked(int index);
    void positionClicked(double share);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    QRect strokeRect(const Mark& mark) const;

    std::vector<Mark> marks_;
    QColor addition_{0, 160, 0};
    QColor deletion_{0, 0, 200};
    QColor change_{200, 0, 0};
    double visibleTop_ = 0;
    double visibleBottom_ = 0;
};

} // namespace filecompare

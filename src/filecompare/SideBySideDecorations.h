#pragma once
// What the side-by-side panes show beside the text: paragraph numbers in a
// gutter of each pane, spacing that keeps the panes level, and the overview
// bar at the right edge of the Modified pane. The panes' characters are
// never touched.

#include "document/LevelSpacing.h"

#include <QObject>
#include <QPointer>
#include <vector>

class QTextEdit;
class QTimer;

namespace filecompare {

class DifferenceOverviewBar;
class ParagraphGutter;

class SideBySideDecorations : public QObject {
    Q_OBJECT

public:
    SideBySideDecorations(QTextEdit* left, QTextEdit* right, QObject* parent = nullptr);

    // The records of the comparison the panes now show: levels them (again
    // whenever their width changes) and draws the overview.
    void setRecords(std::vector<tv::DifferenceSpan> records);
    // The panes no longer show those records (a new run is rendering).
    void clear();

    DifferenceOverviewBar* overviewBar() const { return bar_; }
    void setKindColor(int kind, const QColor& color);

signals:
    // A click on the overview: the 0-based record to show.
    void differenceClicked(int index);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void level();
    void placeBar();
    void showVisibleRange();

    QPointer<QTextEdit> left_;
    QPointer<QTextEdit> right_;
    ParagraphGutter* leftGutter_ = nullptr;
    ParagraphGutter* rightGutter_ = nullptr;
    DifferenceOverviewBar* bar_ = nullptr;
    QTimer* relevel_ = nullptr;
    std::vector<tv::DifferenceSpan> records_;
    int levelledWidth_ = -1;
};

} // namespace filecompare

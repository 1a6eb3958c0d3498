#include "filecompare/DifferenceOverviewBar.h"

#include "document/LevelSpacing.h"

#include <QAbstractTextDocumentLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>

namespace filecompare {

namespace {

// A stroke is never thinner than this, so a one-line difference in a long
// document still shows and can be hit.
constexpr int kMinStroke = 3;
// How far beside a stroke a click still counts as on it.
constexpr int kHitSlack = 3;

double topOfBlock(const QTextDocument& doc, int block)
{
    if (block >= doc.blockCount())
        return doc.documentLayout()->documentSize().height();
    const QTextBlock b = doc.findBlockByNumber(std::max(0, block));
    return doc.documentLayout()->blockBoundingRect(b).top();
}

} // namespace

DifferenceOverviewBar::DifferenceOverviewBar(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("overviewBar"));
    setToolTip(QStringLiteral("Where the differences are; click one to go to it"));
    setCursor(Qt::PointingHandCursor);
}

void DifferenceOverviewBar::setMarks(std::vector<Mark> marks)
{
    marks_ = std::move(marks);
    update();
}

void DifferenceOverviewBar::setKindColor(int kind, const QColor& color)
{
    (kind == 'a' ? addition_ : kind == 'd' ? deletion_ : change_) = color;
    update();
}

QColor DifferenceOverviewBar::kindColor(int kind) const
{
    return kind == 'a' ? addition_ : kind == 'd' ? deletion_ : change_;
}

void DifferenceOverviewBar::setVisibleRange(double top, double bottom)
{
    visibleTop_ = std::clamp(top, 0.0, 1.0);
    visibleBottom_ = std::clamp(bottom, visibleTop_, 1.0);
    update();
}

QRect DifferenceOverviewBar::strokeRect(const Mark& mark) const
{
    const int h = std::max(1, height() - 1);
    const int top = int(mark.top * h);
    const int bottom = std::max(top + kMinStroke, int(mark.bottom * h));
    return QRect(2, top, std::max(1, width() - 4), bottom - top);
}

int DifferenceOverviewBar::markAt(int y) const
{
    int best = -1;
    int bestDistance = kHitSlack + 1;
    for (int i = 0; i < int(marks_.size()); ++i) {
        const QRect r = strokeRect(marks_[std::size_t(i)]);
        const int distance = y < r.top() ? r.top() - y : y > r.bottom() ? y - r.bottom() : 0;
        if (distance < bestDistance) {
            best = i;
            bestDistance = distance;
        }
    }
    return best;
}

void DifferenceOverviewBar::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return QWidget::mousePressEvent(event);
    const int y = int(event->position().y());
    const int index = markAt(y);
    if (index >= 0)
        emit differenceClicked(index);
    else
        emit positionClicked(std::clamp(double(y) / std::max(1, height() - 1), 0.0, 1.0));
}

void DifferenceOverviewBar::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.fillRect(rect(), palette().color(QPalette::Base));
    p.setPen(palette().color(QPalette::Mid));
    p.drawRect(rect().adjusted(0, 0, -1, -1));
    for (const Mark& m : marks_)
        p.fillRect(strokeRect(m), m.kind == 'a' ? addition_ : m.kind == 'd' ? deletion_ : change_);
    if (visibleBottom_ > visibleTop_) {
        const int h = std::max(1, height() - 1);
        QColor shade = palette().color(QPalette::Highlight);
        shade.setAlpha(60);
        const QRect view(0, int(visibleTop_ * h), width() - 1, std::max(2, int((visibleBottom_ - visibleTop_) * h)));
        p.fillRect(view, shade);
        p.setPen(palette().color(QPalette::Highlight));
        p.drawRect(view);
    }
}

std::vector<DifferenceOverviewBar::Mark> DifferenceOverviewBar::MarksOf(const QTextDocument& left,
                                                                        const QTextDocument& right,
                                                                        const std::vector<tv::DifferenceSpan>& records)
{
    const double height = std::max({left.documentLayout()->documentSize().height(),
                                    right.documentLayout()->documentSize().height(), 1.0});
    std::vector<Mark> out;
    out.reserve(records.size());
    for (const tv::DifferenceSpan& r : records) {
        // Level documents put both sides of a difference at one height; the
        // side that has lines in it gives the extent.
        const bool leftHas = r.kind != 'a';
        const bool rightHas = r.kind != 'd';
        const double top = leftHas ? topOfBlock(left, r.leftFirst - 1) : topOfBlock(right, r.rightFirst - 1);
        double bottom = top;
        if (leftHas)
            bottom = std::max(bottom, topOfBlock(left, r.leftLast));
        if (rightHas)
            bottom = std::max(bottom, topOfBlock(right, r.rightLast));
        out.push_back({r.kind, top / height, bottom / height});
    }
    return out;
}

std::vector<DifferenceOverviewBar::Mark> DifferenceOverviewBar::MarksByParagraph(
    int leftParagraphs, int rightParagraphs, const std::vector<tv::DifferenceSpan>& records)
{
    const double count = std::max({leftParagraphs, rightParagraphs, 1});
    std::vector<Mark> out;
    out.reserve(records.size());
    for (const tv::DifferenceSpan& r : records) {
        const bool leftHas = r.kind != 'a';
        const int first = leftHas ? r.leftFirst - 1 : r.rightFirst - 1;
        const int last = std::max(leftHas ? r.leftLast : 0, r.kind != 'd' ? r.rightLast : 0);
        out.push_back({r.kind, first / count, std::max(first, last) / count});
    }
    return out;
}

} // namespace filecompare

#include "filecompare/SideBySideDecorations.h"

#include "filecompare/DifferenceOverviewBar.h"
#include "filecompare/ParagraphGutter.h"

#include <QAbstractTextDocumentLayout>
#include <QEvent>
#include <QScrollBar>
#include <QTextDocument>
#include <QTextEdit>
#include <QTimer>

namespace filecompare {

namespace {

constexpr int kBarWidth = 12;

// Levelling needs every paragraph of both panes laid out, which the panes
// would otherwise do only as they are scrolled: about 16 microseconds a
// paragraph here (100,000 a side took 3.3 s). Beyond this many paragraphs on
// a side the panes are left unlevelled, so that a long document still comes
// up at once; the numbers and the overview stay.
constexpr int kLevelParagraphLimit = 25000;

} // namespace

SideBySideDecorations::SideBySideDecorations(QTextEdit* left, QTextEdit* right, QObject* parent)
    : QObject(parent), left_(left), right_(right)
{
    leftGutter_ = ParagraphGutter::attach(left);
    rightGutter_ = ParagraphGutter::attach(right);
    // The bar takes a strip inside the Modified pane, between its text and
    // its scroll bar, so that the viewer's layout of the panes stays as it is.
    bar_ = new DifferenceOverviewBar(right);
    SetViewportMargin(right, Qt::RightEdge, kBarWidth);
    bar_->show();
    connect(bar_, &DifferenceOverviewBar::differenceClicked, this, &SideBySideDecorations::differenceClicked);
    connect(bar_, &DifferenceOverviewBar::positionClicked, this, [this](double share) {
        if (!right_)
            return;
        QScrollBar* bar = right_->verticalScrollBar();
        const int span = bar->maximum() + bar->pageStep();
        bar->setValue(int(share * span) - bar->pageStep() / 2);
    });
    connect(right->verticalScrollBar(), &QScrollBar::valueChanged, this, &SideBySideDecorations::showVisibleRange);
    connect(right->verticalScrollBar(), &QScrollBar::rangeChanged, this, &SideBySideDecorations::showVisibleRange);

    // A new width wraps the paragraphs anew: level once the resizing settles.
    relevel_ = new QTimer(this);
    relevel_->setSingleShot(true);
    relevel_->setInterval(0);
    connect(relevel_, &QTimer::timeout, this, &SideBySideDecorations::level);
    left->viewport()->installEventFilter(this);
    right->viewport()->installEventFilter(this);
    placeBar();
}

void SideBySideDecorations::setKindColor(int kind, const QColor& color) { bar_->setKindColor(kind, color); }

void SideBySideDecorations::setRecords(std::vector<tv::DifferenceSpan> records)
{
    records_ = std::move(records);
    levelledWidth_ = -1;
    level();
}

void SideBySideDecorations::clear()
{
    records_.clear();
    levelledWidth_ = -1;
    bar_->setMarks({});
}

void SideBySideDecorations::level()
{
    if (!left_ || !right_)
        return;
    QTextDocument& l = *left_->document();
    QTextDocument& r = *right_->document();
    levelledWidth_ = left_->viewport()->width() * 10000 + right_->viewport()->width();
    if (std::max(l.blockCount(), r.blockCount()) > kLevelParagraphLimit) {
        bar_->setMarks(DifferenceOverviewBar::MarksByParagraph(l.blockCount(), r.blockCount(), records_));
    } else {
        tv::LevelDocuments(l, r, records_);
        bar_->setMarks(DifferenceOverviewBar::MarksOf(l, r, records_));
    }
    showVisibleRange();
}

void SideBySideDecorations::placeBar()
{
    if (!right_)
        return;
    const QRect view = right_->viewport()->geometry();
    bar_->setGeometry(view.right() + 1, view.top(), kBarWidth, view.height());
}

void SideBySideDecorations::showVisibleRange()
{
    if (!right_)
        return;
    const QScrollBar* bar = right_->verticalScrollBar();
    const double span = std::max(1, bar->maximum() + bar->pageStep());
    bar_->setVisibleRange(bar->value() / span, (bar->value() + bar->pageStep()) / span);
}

bool SideBySideDecorations::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize) {
        if (right_ && watched == right_->viewport())
            placeBar();
        if (!records_.empty() && left_ && right_
            && levelledWidth_ != left_->viewport()->width() * 10000 + right_->viewport()->width()
            && std::max(left_->document()->blockCount(), right_->document()->blockCount()) <= kLevelParagraphLimit)
            relevel_->start();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace filecompare

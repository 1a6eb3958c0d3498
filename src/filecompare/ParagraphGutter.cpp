#include "filecompare/ParagraphGutter.h"

#include "document/LevelSpacing.h"

#include <QAbstractScrollArea>
#include <QEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>

namespace filecompare {

namespace {

// QAbstractScrollArea keeps its viewport margins to subclasses; the gutter
// and the overview bar sit in such margins of an editor they did not make,
// so they reach them through member pointers taken where access is allowed.
struct ViewportMarginAccess : QAbstractScrollArea {
    static void set(QAbstractScrollArea* area, Qt::Edge edge, int width)
    {
        QMargins (QAbstractScrollArea::*get)() const = &ViewportMarginAccess::viewportMargins;
        void (QAbstractScrollArea::*put)(const QMargins&) = &ViewportMarginAccess::setViewportMargins;
        QMargins m = (area->*get)();
        if (edge == Qt::LeftEdge)
            m.setLeft(width);
        else if (edge == Qt::RightEdge)
            m.setRight(width);
        (area->*put)(m);
    }
};

constexpr int kPadding = 6;

} // namespace

void SetViewportMargin(QAbstractScrollArea* area, Qt::Edge edge, int width)
{
    ViewportMarginAccess::set(area, edge, width);
}

ParagraphGutter* ParagraphGutter::attach(QTextEdit* editor)
{
    return new ParagraphGutter(editor);
}

ParagraphGutter::ParagraphGutter(QTextEdit* editor) : QWidget(editor), editor_(editor)
{
    setObjectName(QStringLiteral("gutter_") + editor->objectName());
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFont(editor->font());
    // Every change the editor shows (a scroll, an edit, a new document while
    // a bulk edit runs) repaints its viewport first; the numbers follow.
    editor->viewport()->installEventFilter(this);
    editor->installEventFilter(this);
    placeInEditor();
    show();
}

int ParagraphGutter::neededWidth() const
{
    const int blocks = editor_ ? std::max(1, editor_->document()->blockCount()) : 1;
    const int digits = std::max(3, int(QString::number(blocks).size()));
    return fontMetrics().horizontalAdvance(QLatin1Char('9')) * digits + 2 * kPadding;
}

QSize ParagraphGutter::sizeHint() const { return QSize(neededWidth(), 0); }

void ParagraphGutter::placeInEditor()
{
    if (!editor_)
        return;
    const int w = neededWidth();
    if (w != width_) {
        width_ = w;
        SetViewportMargin(editor_, Qt::LeftEdge, w);
    }
    const QRect area = editor_->contentsRect();
    const QRect viewport = editor_->viewport()->geometry();
    setGeometry(area.left(), viewport.top(), w, viewport.height());
}

bool ParagraphGutter::eventFilter(QObject* watched, QEvent* event)
{
    // While the editor is being torn down its viewport still sends events
    // here; reading editor_ then would cast an object that is no longer a
    // QTextEdit, so only the three events below ever look at it.
    const QEvent::Type type = event->type();
    if (type != QEvent::Resize && type != QEvent::Paint && type != QEvent::FontChange)
        return QWidget::eventFilter(watched, event);
    if (editor_ && watched == editor_->viewport() && event->type() == QEvent::Resize) {
        // The scroll area has laid out its viewport by now; the editor's own
        // resize comes before that.
        placeInEditor();
    } else if (editor_ && watched == editor_->viewport() && event->type() == QEvent::Paint) {
        if (neededWidth() != width_)
            placeInEditor();
        update();
    } else if (watched == editor_ && event->type() == QEvent::FontChange) {
        placeInEditor();
    }
    return QWidget::eventFilter(watched, event);
}

std::vector<ParagraphGutter::Label> ParagraphGutter::visibleLabels() const
{
    std::vector<Label> out;
    if (!editor_)
        return out;
    const int bottom = editor_->viewport()->height();
    QTextBlock block = editor_->cursorForPosition(QPoint(0, 0)).block();
    // The paragraph at the top may have begun above the window; step back to
    // any earlier one whose first line still shows.
    while (block.previous().isValid()
           && editor_->cursorRect(QTextCursor(block.previous())).bottom() >= 0)
        block = block.previous();
    for (; block.isValid(); block = block.next()) {
        const QRect line = editor_->cursorRect(QTextCursor(block));
        if (line.top() > bottom)
            break;
        if (line.bottom() >= 0 && block.isVisible())
            out.push_back({block.blockNumber() + 1, line.top()});
    }
    return out;
}

void ParagraphGutter::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    const QPalette& pal = palette();
    p.fillRect(rect(), pal.color(QPalette::Window));
    p.setPen(pal.color(QPalette::Mid));
    p.drawLine(width() - 1, 0, width() - 1, height());
    if (!editor_)
        return;
    p.setFont(editor_->font());
    p.setPen(pal.color(QPalette::PlaceholderText));
    const int lineHeight = p.fontMetrics().height();
    // The space that keeps the panes level holds no paragraph; hatching it
    // beside the text tells it from empty lines.
    const QBrush hatch(pal.color(QPalette::Mid), Qt::BDiagPattern);
    for (const Label& label : visibleLabels()) {
        const double space = tv::LevelSpacingOf(*editor_->document(), label.paragraph - 1);
        if (space > 0)
            p.fillRect(QRectF(0, label.y - space, width() - 1, space), hatch);
    }
    for (const Label& label : visibleLabels())
        p.drawText(QRect(0, label.y, width() - kPadding, lineHeight), Qt::AlignRight | Qt::AlignVCenter,
                   QString::number(label.paragraph));
}

} // namespace filecompare

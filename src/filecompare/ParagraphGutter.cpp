#include "filecompare/ParagraphGutter.h"

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
// sits in such a margin of an editor it did not make, so it reaches the
// setter through a member pointer taken where the access is allowed.
struct ViewportMarginAccess : QAbstractScrollArea {
    static void set(QAbstractScrollArea* area, int left)
    {
        void (QAbstractScrollArea::*setter)(int, int, int, int) = &ViewportMarginAccess::setViewportMargins;
        (area->*setter)(left, 0, 0, 0);
    }
};

constexpr int kPadding = 6;

} // namespace

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
        ViewportMarginAccess::set(editor_, w);
    }
    const QRect area = editor_->contentsRect();
    const QRect viewport = editor_->viewport()->geometry();
    setGeometry(area.left(), viewport.top(), w, viewport.height());
}

bool ParagraphGutter::eventFilter(QObject* watched, QEvent* event)
{
    if (editor_ && watched == editor_->viewport() && event->type() == QEvent::Paint) {
        if (neededWidth() != width_)
            placeInEditor();
        update();
    } else if (watched == editor_ && (event->type() == QEvent::Resize || event->type() == QEvent::FontChange)) {
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
    for (const Label& label : visibleLabels())
        p.drawText(QRect(0, label.y, width() - kPadding, lineHeight), Qt::AlignRight | Qt::AlignVCenter,
                   QString::number(label.paragraph));
}

} // namespace filecompare

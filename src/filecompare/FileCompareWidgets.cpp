#include "filecompare/FileCompareWidgets.h"

#include "filecompare/frmCompareFiles.h"
#include "filecompare/frmPleaseWait.h"

#include <QApplication>
#include <QMdiSubWindow>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStatusBar>
#include <QToolBar>

namespace filecompare {

// --- DividerLabel ------------------------------------------------------------------

DividerLabel::DividerLabel(Qt::Orientation orientation, frmCompareFiles* viewer, QWidget* parent)
    : QLabel(parent)
    , orientation_(orientation)
    , viewer_(viewer)
{
    setCursor(orientation == Qt::Horizontal ? Qt::SplitVCursor : Qt::SplitHCursor);
    setFrameShape(QFrame::NoFrame);
    setAutoFillBackground(false);
}

void DividerLabel::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return QLabel::mousePressEvent(event);
    dragging_ = true;
    grabOffset_ = event->position().toPoint();
    raise();
}

void DividerLabel::mouseMoveEvent(QMouseEvent* event)
{
    if (!dragging_)
        return;
    const QPoint inParent = mapToParent(event->position().toPoint()) - grabOffset_;
    if (orientation_ == Qt::Horizontal)
        move(x(), qBound(0, inParent.y(), parentWidget()->height() - height()));
    else
        move(qBound(0, inParent.x(), parentWidget()->width() - width()), y());
}

void DividerLabel::mouseReleaseEvent(QMouseEvent* event)
{
    if (!dragging_)
        return;
    dragging_ = false;
    // What lies under the pointer, ignoring the divider itself.
    const QPoint inParent = mapToParent(event->position().toPoint());
    hide();
    QWidget* target = parentWidget()->childAt(inParent);
    show();
    // Find the named control that owns what was hit (a viewport, a frame).
    while (target && target != parentWidget() && target->objectName().isEmpty())
        target = target->parentWidget();
    if (target && target != parentWidget() && target != this)
        viewer_->DividerDropped(this, target, target->mapFrom(parentWidget(), inParent));
    viewer_->Form_Resize();
}

// --- SpinScrollControl ----------------------------------------------------------------

SpinScrollControl::SpinScrollControl(QWidget* parent)
    : QWidget(parent)
{
    setCursor(Qt::PointingHandCursor);
}

QSize SpinScrollControl::sizeHint() const
{
    return {22, 28};
}

void SpinScrollControl::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF r = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const QPalette& pal = palette();
    const qreal half = r.height() / 2;
    const QRectF up(r.left(), r.top(), r.width(), half);
    const QRectF down(r.left(), r.top() + half, r.width(), half);
    p.setPen(pal.color(QPalette::Mid));
    p.setBrush(pressed_ == 1 ? pal.color(QPalette::Dark) : pal.color(QPalette::Button));
    p.drawRect(up);
    p.setBrush(pressed_ == 2 ? pal.color(QPalette::Dark) : pal.color(QPalette::Button));
    p.drawRect(down);
    auto arrow = [&](const QRectF& box, bool pointUp) {
        const QPointF c = box.center();
        const qreal w = qMin(box.width(), box.height()) * 0.30;
        QPainterPath path;
        if (pointUp) {
            path.moveTo(c.x() - w, c.y() + w / 2);
            path.lineTo(c.x() + w, c.y() + w / 2);
            path.lineTo(c.x(), c.y() - w / 2);
        } else {
            path.moveTo(c.x() - w, c.y() - w / 2);
            path.lineTo(c.x() + w, c.y() - w / 2);
            path.lineTo(c.x(), c.y() + w / 2);
        }
        path.closeSubpath();
        p.fillPath(path, pal.color(isEnabled() ? QPalette::ButtonText : QPalette::Mid));
    };
    arrow(up, true);
    arrow(down, false);
}

void SpinScrollControl::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    pressed_ = event->position().y() < height() / 2.0 ? 1 : 2;
    update();
}

void SpinScrollControl::mouseReleaseEvent(QMouseEvent* event)
{
    if (!pressed_)
        return;
    const bool up = pressed_ == 1;
    pressed_ = 0;
    update();
    if (rect().contains(event->position().toPoint()))
        emit spin(up);
}

// --- StatusPanel --------------------------------------------------------------------

StatusPanel::StatusPanel(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setMargin(2);
}

QSize StatusPanel::minimumSizeHint() const
{
    return {qMin(minimumWidth(), 40), QLabel::minimumSizeHint().height()};
}

void StatusPanel::paintEvent(QPaintEvent* event)
{
    const QRect area = contentsRect().adjusted(margin(), 0, -margin(), 0);
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, area.width());
    const QString tip = shown == text() ? QString() : text();
    if (toolTip() != tip)
        setToolTip(tip);
    if (shown == text())
        return QLabel::paintEvent(event);
    QPainter p(this);
    p.setPen(palette().color(foregroundRole()));
    p.drawText(area, int(alignment()), shown);
}

void StatusPanel::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        emit clicked();
    QLabel::mousePressEvent(event);
}

// --- RunInputGuard ------------------------------------------------------------------

RunInputGuard::RunInputGuard(const QList<QObject*>& passages, QWidget* abortButton)
    : abortButton_(abortButton)
{
    for (QObject* o : passages)
        passages_.append(o);
    qApp->installEventFilter(this);
}

RunInputGuard::~RunInputGuard()
{
    qApp->removeEventFilter(this);
}

bool RunInputGuard::allowed(QObject* receiver) const
{
    // A question asked during the run (a message box) must be answerable.
    if (QWidget* modal = QApplication::activeModalWidget()) {
        auto* w = qobject_cast<QWidget*>(receiver);
        if (w && (w == modal || modal->isAncestorOf(w)))
            return true;
    }
    for (QObject* o = receiver; o; o = o->parent()) {
        for (const QPointer<QObject>& p : passages_)
            if (p && o == p)
                return true;
        if (qobject_cast<QMdiSubWindow*>(o) && o == receiver)
            return true;
        // The buttons of a maximised window live in the menu bar.
        if (o->inherits("QMdi::ControllerWidget"))
            return true;
    }
    if (abortButton_ && receiver == abortButton_)
        return true;
    return false;
}

bool RunInputGuard::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Timer:
        // The shown documents lay themselves out a chunk at a time while the
        // program is idle; during a run that work would only slow it down,
        // and it goes on when the run has ended.
        return watched->inherits("QTextDocumentLayout");
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::ContextMenu:
        if (!watched->isWidgetType() && event->type() != QEvent::Shortcut)
            return false;
        return !allowed(watched);
    default:
        return false;
    }
}

// --- BusyCursor ---------------------------------------------------------------------

BusyCursor::BusyCursor()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
}

BusyCursor::~BusyCursor()
{
    QApplication::restoreOverrideCursor();
}

// --- number formats -------------------------------------------------------------------

QString FormatPercent(double value)
{
    QString s = QString::number(value, 'f', 1);
    if (s.startsWith(QLatin1String("0.")))
        s.remove(0, 1);
    return s;
}

QString FormatSeconds(double seconds)
{
    return QString::number(seconds, 'g', 12);
}

} // namespace filecompare

#include "shell/VanePicture.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace {

// The drawing is made on a 72-pixel square and scaled to the size asked for.
constexpr qreal kDrawnSize = 72.0;

// The icon shows the arrow between two steps of the About box's turn.
constexpr qreal kIconDegrees = 45.0;

} // namespace

QPixmap VanePicture(qreal degrees, int size, qreal ratio)
{
    QPixmap pm(QSize(size, size) * ratio);
    pm.setDevicePixelRatio(ratio);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::TextAntialiasing);
    p.scale(size / kDrawnSize, size / kDrawnSize);
    const QPointF c(kDrawnSize / 2.0, kDrawnSize / 2.0);
    p.setPen(QPen(QColor(0x2A, 0x60, 0x99), 2));
    p.setBrush(QColor(0xEE, 0xF4, 0xFA));
    p.drawEllipse(c, kDrawnSize / 2.0 - 2, kDrawnSize / 2.0 - 2);
    QFont f = p.font();
    f.setPixelSize(9);
    f.setBold(true);
    p.setFont(f);
    p.setPen(QColor(0x55, 0x66, 0x77));
    const qreal r = kDrawnSize / 2.0 - 9;
    const char* points[] = {"N", "E", "S", "W"};
    for (int i = 0; i < 4; ++i) {
        const qreal a = i * M_PI / 2;
        const QPointF at(c.x() + r * std::sin(a), c.y() - r * std::cos(a));
        p.drawText(QRectF(at.x() - 6, at.y() - 6, 12, 12), Qt::AlignCenter, QLatin1String(points[i]));
    }
    p.translate(c);
    p.rotate(degrees);
    QPainterPath arrow;
    arrow.moveTo(0, -22);
    arrow.lineTo(6, -12);
    arrow.lineTo(1.6, -12);
    arrow.lineTo(1.6, 14);
    arrow.lineTo(8, 22);
    arrow.lineTo(-8, 22);
    arrow.lineTo(-1.6, 14);
    arrow.lineTo(-1.6, -12);
    arrow.lineTo(-6, -12);
    arrow.closeSubpath();
    p.setPen(QPen(QColor(0x1F, 0x3A, 0x5A), 1));
    p.setBrush(QColor(0xC9, 0x21, 0x1E));
    p.drawPath(arrow);
    p.setBrush(QColor(0x1F, 0x3A, 0x5A));
    p.drawEllipse(QPointF(0, 0), 3, 3);
    return pm;
}

QIcon ProgramIcon()
{
    QIcon drawn;
    for (int size : {16, 22, 24, 32, 48, 64, 128, 256})
        drawn.addPixmap(VanePicture(kIconDegrees, size, 1.0));
    return QIcon::fromTheme(QStringLiteral("tallyvane"), drawn);
}

#include "ui/queue/list/DragPicture.h"

#include "kit/Glyph.h"
#include "kit/Theme.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>
#include <QTextOption>
#include <QWidget>

namespace vormel {

namespace {

constexpr int airX = 8;
constexpr int airY = 6;

QPixmap emptyPicture(QSize size, qreal ratio)
{
    QPixmap picture((QSizeF(size) * ratio).toSize());
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    return picture;
}

void drawPlate(QPainter& painter, const QRect& whole, const QWidget& widget)
{
    constexpr double corner = 6;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Theme(widget.palette()).color(Tint::tertiary), 1));
    painter.setBrush(widget.palette().color(QPalette::Base));
    painter.drawRoundedRect(QRectF(whole).adjusted(0.5, 0.5, -0.5, -0.5), corner, corner);
}

} // namespace

QPixmap dragPicture(const QString& name, bool isGroup, const QWidget& widget)
{
    constexpr int maxNameWidth = 220;
    const QFontMetrics metrics = widget.fontMetrics();
    const QString shown = metrics.elidedText(name, Qt::ElideMiddle, maxNameWidth);
    const int iconSize = metrics.height();
    const int textWidth = metrics.horizontalAdvance(shown) + 1;
    const QRect whole(0, 0, 3 * airX + iconSize + textWidth, 2 * airY + iconSize);
    const QRect icon(airX, airY, iconSize, iconSize);
    const QRect text(2 * airX + iconSize, airY, textWidth, iconSize);
    const auto visual = [&](const QRect& rect) { return QStyle::visualRect(widget.layoutDirection(), whole, rect); };

    QPixmap picture = emptyPicture(whole.size(), widget.devicePixelRatioF());
    QPainter painter(&picture);
    drawPlate(painter, whole, widget);
    const Theme theme(widget.palette());
    const Glyph glyph = isGroup ? Glyph::docOnDocFill : Glyph::arrowDownCircleFill;
    painter.drawPixmap(visual(icon),
                       glyphPixmap(glyph, theme.color(Tint::secondary), iconSize, picture.devicePixelRatio()));
    painter.setFont(widget.font());
    painter.setPen(theme.color(Tint::text));
    QTextOption place(Qt::AlignCenter);
    place.setWrapMode(QTextOption::NoWrap);
    painter.drawText(visual(text), shown, place);
    return picture;
}

} // namespace vormel

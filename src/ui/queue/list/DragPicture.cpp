#include "ui/queue/list/DragPicture.h"

#include "kit/Glyph.h"
#include "kit/Theme.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>
#include <QTextOption>
#include <QWidget>

namespace vormel {

QPixmap dragPicture(const QString& name, bool isGroup, const QWidget& widget)
{
    constexpr int maxNameWidth = 220;
    constexpr int air = 8;
    constexpr double corner = 6;
    const QFontMetrics metrics = widget.fontMetrics();
    const QString shown = metrics.elidedText(name, Qt::ElideMiddle, maxNameWidth);
    const int iconSize = metrics.height();
    const QSize size(3 * air + iconSize + metrics.horizontalAdvance(shown) + 1, iconSize + 2 * (air - 2));
    const qreal ratio = widget.devicePixelRatioF();
    QPixmap picture((QSizeF(size) * ratio).toSize());
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);

    const Theme theme(widget.palette());
    const QRect whole(QPoint(), size);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme.color(Tint::tertiary), 1));
    painter.setBrush(widget.palette().color(QPalette::Base));
    painter.drawRoundedRect(QRectF(whole).adjusted(0.5, 0.5, -0.5, -0.5), corner, corner);
    const QRect icon(air, air - 2, iconSize, iconSize);
    const QRect text(2 * air + iconSize, icon.top(), size.width() - 3 * air - iconSize, iconSize);
    const auto visual = [&](const QRect& rect) { return QStyle::visualRect(widget.layoutDirection(), whole, rect); };
    const Glyph glyph = isGroup ? Glyph::docOnDocFill : Glyph::arrowDownCircleFill;
    painter.drawPixmap(visual(icon), glyphPixmap(glyph, theme.color(Tint::secondary), iconSize, ratio));
    painter.setFont(widget.font());
    painter.setPen(theme.color(Tint::text));
    QTextOption place(QStyle::visualAlignment(widget.layoutDirection(), Qt::AlignLeading | Qt::AlignVCenter));
    place.setWrapMode(QTextOption::NoWrap);
    painter.drawText(visual(text), shown, place);
    return picture;
}

} // namespace vormel

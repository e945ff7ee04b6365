#include "ui/shell/SidebarDelegate.h"

#include "kit/FocusRing.h"

#include <QApplication>
#include <QPainter>
#include <QTextOption>

namespace vormel {

namespace {

constexpr int pageIconSize = 18;
constexpr int padding = 10;
constexpr double corner = 6;

void paintPlate(QPainter& painter, const QStyleOptionViewItem& option, const Theme& theme)
{
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const bool isHovered = option.state.testFlag(QStyle::State_MouseOver);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isSelected || isHovered) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.color(isSelected ? Tint::highlight : Tint::hairline));
        painter.drawRoundedRect(option.rect, corner, corner);
    }
    if (option.state.testFlag(QStyle::State_HasFocus))
        drawFocusRing(painter, QRectF(option.rect).adjusted(2, 2, -2, -2), theme, corner - 2,
                      isSelected ? Tint::highlightedText : Tint::accent);
}

} // namespace

void SidebarDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const Theme theme(item.palette);
    const bool isSelected = item.state.testFlag(QStyle::State_Selected);
    const QRect inner = item.rect.adjusted(padding, 0, -padding, 0);
    QRect icon(inner.left(), inner.top() + (inner.height() - pageIconSize) / 2, pageIconSize, pageIconSize);
    QRect text = inner.adjusted(pageIconSize + padding, 0, 0, 0);
    icon = QStyle::visualRect(item.direction, item.rect, icon);
    text = QStyle::visualRect(item.direction, item.rect, text);
    painter->save();
    paintPlate(*painter, item, theme);
    item.icon.paint(painter, icon, Qt::AlignCenter, isSelected ? QIcon::Selected : QIcon::Normal);
    painter->setFont(item.font);
    painter->setPen(theme.color(isSelected ? Tint::highlightedText : Tint::text));
    QTextOption leading(QStyle::visualAlignment(item.direction, Qt::AlignLeading | Qt::AlignVCenter));
    leading.setWrapMode(QTextOption::NoWrap);
    painter->drawText(text, item.fontMetrics.elidedText(item.text, Qt::ElideRight, text.width()), leading);
    painter->restore();
}

QSize SidebarDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& /*index*/) const
{
    constexpr int around = 14;
    return {0, qMax(pageIconSize, option.fontMetrics.height()) + around};
}

} // namespace vormel

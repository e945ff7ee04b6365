#include "kit/ReadableStyle.h"

#include "kit/Contrast.h"
#include "kit/FocusRing.h"

#include <QPlainTextEdit>
#include <QStyleOption>

namespace vormel {

namespace {

void drawRing(QPainter& painter, const QStyleOption& option, qreal inset = 0)
{
    constexpr qreal radius = 4;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    drawFocusRing(painter, QRectF(option.rect).adjusted(inset, inset, -inset, -inset), Theme(option.palette),
                  radius - inset);
    painter.restore();
}

/// Where it can be typed, which dark windows would not show.
void drawEdge(QPainter& painter, const QStyleOption& option)
{
    constexpr qreal radius = 2;
    constexpr qreal half = 0.5; // of its width
    const Theme theme(option.palette);
    const QList<QColor> grounds{option.palette.color(QPalette::Base), option.palette.color(QPalette::Window)};
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(standingOut(theme.color(Tint::track), theme.color(Tint::text), grounds, visibleContrast));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(half, half, -half, -half), radius, radius);
    painter.restore();
}

/// What can be typed into shows its focus at all times.
void drawFrameOfField(QPainter& painter, const QStyleOption& option)
{
    if (option.state.testFlag(QStyle::State_HasFocus))
        drawRing(painter, option);
    else
        drawEdge(painter, option);
}

/// What was clicked needs no ring; one appears as soon as the keyboard moves the focus.
void drawRingOfButton(QPainter& painter, const QStyleOption& option, qreal inset = 0)
{
    if (option.state.testFlag(QStyle::State_HasFocus) && option.state.testFlag(QStyle::State_KeyboardFocusChange))
        drawRing(painter, option, inset);
}

} // namespace

void ReadableStyle::polish(QPalette& palette)
{
    QProxyStyle::polish(palette);
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        const Theme theme(palette, group);
        palette.setColor(group, QPalette::PlaceholderText, theme.color(Tint::secondary));
        palette.setColor(group, QPalette::Highlight, theme.color(Tint::highlight));
    }
}

void ReadableStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                  const QWidget* widget) const
{
    if (element == PE_FrameFocusRect) {
        drawRingOfButton(*painter, *option);
        return;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element == PE_FrameLineEdit)
        drawFrameOfField(*painter, *option);
}

void ReadableStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                                const QWidget* widget) const
{
    QProxyStyle::drawControl(element, option, painter, widget);
    constexpr qreal border = 2; // that of the default button is as bright as the ring
    if (element == CE_PushButton)
        drawRingOfButton(*painter, *option, border);
    if (element == CE_ShapedFrame && qobject_cast<const QPlainTextEdit*>(widget))
        drawFrameOfField(*painter, *option);
}

void ReadableStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                       const QWidget* widget) const
{
    const auto* const button = qstyleoption_cast<const QStyleOptionToolButton*>(option);
    if (control == CC_ToolButton && button) {
        QStyleOptionToolButton bare(*button); // its own ring is inside, close to the icon
        bare.state.setFlag(State_HasFocus, false);
        QProxyStyle::drawComplexControl(control, &bare, painter, widget);
        drawRingOfButton(*painter, *option);
        return;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_ComboBox)
        drawRingOfButton(*painter, *option);
    if (control == CC_SpinBox)
        drawFrameOfField(*painter, *option);
}

} // namespace vormel

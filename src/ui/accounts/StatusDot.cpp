#include "ui/accounts/StatusDot.h"

#include <QPainter>

namespace vormel {

QColor dotColor(AccountTestStatus::Kind kind, const Theme& theme)
{
    constexpr float quiet = 0.4F;
    QColor secondary = theme.color(Tint::secondary);
    secondary.setAlphaF(quiet);
    switch (kind) {
    case AccountTestStatus::idle:
        return secondary;
    case AccountTestStatus::testing:
        return theme.color(Tint::orange);
    case AccountTestStatus::success:
        return theme.color(Tint::green);
    case AccountTestStatus::failed:
        return theme.color(Tint::red);
    }
    Q_UNREACHABLE();
}

StatusDot::StatusDot(QWidget* parent)
    : QWidget(parent)
{
    constexpr int diameter = 8;
    setFixedSize(diameter, diameter);
}

void StatusDot::setKind(AccountTestStatus::Kind kind)
{
    m_kind = kind;
    update();
}

void StatusDot::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(dotColor(m_kind, Theme(palette())));
    painter.drawEllipse(rect());
}

} // namespace vormel

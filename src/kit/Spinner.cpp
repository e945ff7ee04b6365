#include "kit/Spinner.h"

#include "kit/SpinnerArc.h"
#include "kit/Theme.h"

#include <QStyle>
#include <QTimerEvent>

namespace vormel {

Spinner::Spinner(int size, QWidget* parent)
    : QWidget(parent)
    , m_size(size)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Spinner::showEvent(QShowEvent* event)
{
    constexpr int stepMilliseconds = 40;
    QWidget::showEvent(event);
    if (style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0)
        m_turning.start(stepMilliseconds, this);
}

void Spinner::hideEvent(QHideEvent* event)
{
    m_turning.stop();
    QWidget::hideEvent(event);
}

void Spinner::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    drawSpinner(painter, rect(), Theme(palette()).color(Tint::secondary), m_angle);
}

void Spinner::timerEvent(QTimerEvent* event)
{
    constexpr int stepDegrees = 12;
    if (event->timerId() != m_turning.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    m_angle = (m_angle + stepDegrees) % 360;
    update();
}

} // namespace vormel

#include "kit/Separator.h"

#include "kit/Theme.h"

#include <QPainter>

namespace vormel {

Separator::Separator(Qt::Orientation orientation, QWidget* parent)
    : QWidget(parent)
{
    if (orientation == Qt::Horizontal)
        setFixedHeight(1);
    else
        setFixedWidth(1);
}

void Separator::paintEvent(QPaintEvent* /*event*/)
{
    QPainter(this).fillRect(rect(), Theme(palette()).color(Tint::track));
}

} // namespace vormel

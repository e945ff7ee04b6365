#include "kit/ElidedLabel.h"

#include <QEvent>

namespace vormel {

void ElidedLabel::setWhole(const QString& text)
{
    m_whole = text;
    setAccessibleName(text);
    showWhatFits();
    updateGeometry();
}

QSize ElidedLabel::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(m_whole) + 1, StyledLabel::sizeHint().height()};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {0, StyledLabel::sizeHint().height()};
}

void ElidedLabel::showWhatFits()
{
    const QString shown = fontMetrics().elidedText(m_whole, Qt::ElideMiddle, width());
    setText(shown);
    setToolTip(shown == m_whole ? QString() : m_whole);
}

void ElidedLabel::resizeEvent(QResizeEvent* event)
{
    StyledLabel::resizeEvent(event);
    showWhatFits();
}

void ElidedLabel::changeEvent(QEvent* event)
{
    StyledLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        showWhatFits();
}

} // namespace vormel

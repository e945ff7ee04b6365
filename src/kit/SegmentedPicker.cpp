#include "kit/SegmentedPicker.h"

#include "kit/SegmentButton.h"
#include "kit/Theme.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPainter>

namespace vormel {

SegmentedPicker::SegmentedPicker(const QStringList& choices, QWidget* parent)
    : QWidget(parent)
    , m_group(new QButtonGroup(this))
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(1, 1, 1, 1);
    row->setSpacing(0);
    int widest = 0;
    for (const QString& choice : choices) {
        auto* button = new SegmentButton(choice, this);
        button->setObjectName(choice);
        button->setAccessibleName(choice);
        m_group->addButton(button, static_cast<int>(m_group->buttons().size()));
        row->addWidget(button);
        widest = qMax(widest, button->sizeHint().width());
    }
    const QList<QAbstractButton*> buttons = m_group->buttons();
    for (QAbstractButton* button : buttons)
        button->setMinimumWidth(widest);
    connect(m_group, &QButtonGroup::idToggled, this, [this](int index, bool isOn) {
        if (isOn)
            Q_EMIT picked(index);
    });
}

int SegmentedPicker::chosen() const
{
    return m_group->checkedId();
}

void SegmentedPicker::choose(int index)
{
    const QSignalBlocker quiet(m_group);
    m_group->button(index)->setChecked(true);
}

void SegmentedPicker::paintEvent(QPaintEvent* /*event*/)
{
    constexpr qreal radius = 7;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Theme(palette()).color(Tint::track));
    painter.setBrush(Theme(palette()).color(Tint::hairline));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

} // namespace vormel

#include "ui/settings/StepperRow.h"

#include "kit/BoundText.h"
#include "kit/Card.h"
#include "kit/Stepper.h"
#include "kit/StyledLabel.h"

#include <QHBoxLayout>
#include <QSignalBlocker>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

StepperRow::StepperRow(AppSettings& settings, Setting<qint64> AppSettings::*setting, const QString& name,
                       const TextPair& label, Range range, QWidget* parent)
    : QWidget(parent)
    , m_settings(settings)
    , m_setting(setting)
    , m_text(new StyledLabel(StyledLabel::Style::body, Tint::text, this))
    , m_stepper(new Stepper(this))
{
    constexpr int air = 20; // for the figures
    m_stepper->setObjectName(name);
    m_stepper->setRange(range.min, range.max);
    m_stepper->setAlignment(Qt::AlignCenter);
    m_stepper->setFixedWidth(m_stepper->sizeHint().width() + air);
    m_text->setObjectName(name + u"Label"_s);
    m_text->setWordWrap(true);
    m_text->setBuddy(m_stepper);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, Card::endOfRow, 0);
    row->setSpacing(16);
    row->addWidget(m_text, 1);
    row->addWidget(m_stepper);
    connect(m_stepper, &QSpinBox::valueChanged, this, [this](int value) { this->setting().set(value); });
    connect(&settings, &AppSettings::changed, this, &StepperRow::showValue);
    bindText(m_text, &QLabel::setText, settings, label);
    bindText(m_stepper, &QWidget::setAccessibleName, settings, label);
    showValue();
}

void StepperRow::showValue()
{
    const QSignalBlocker quiet(m_stepper);
    const qint64 shown = std::clamp<qint64>(setting().value(), m_stepper->minimum(), m_stepper->maximum());
    m_stepper->setValue(static_cast<int>(shown));
}

} // namespace vormel

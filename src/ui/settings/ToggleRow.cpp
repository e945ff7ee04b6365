#include "ui/settings/ToggleRow.h"

#include "kit/BoundText.h"
#include "kit/StyledLabel.h"
#include "kit/TextColumn.h"
#include "kit/ToggleSwitch.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QSignalBlocker>

using namespace Qt::StringLiterals;

namespace vormel {

ToggleRow::ToggleRow(AppSettings& settings, Setting<bool> AppSettings::*setting, const QString& name,
                     const TextPair& label, QWidget* parent)
    : QWidget(parent)
    , m_settings(settings)
    , m_setting(setting)
    , m_text(new StyledLabel(StyledLabel::Style::body, Tint::text, this))
    , m_noteText(new StyledLabel(StyledLabel::Style::caption, Tint::secondary, this))
    , m_toggle(new ToggleSwitch(this))
{
    m_toggle->setObjectName(name);
    m_noteText->setObjectName(name + u"Note"_s);
    m_text->setObjectName(name + u"Label"_s);
    layOut();
    connect(m_toggle, &QCheckBox::toggled, this, [this](bool isOn) { this->setting().set(isOn); });
    connect(&settings, &AppSettings::changed, this, &ToggleRow::showValue);
    bindText(m_text, &QLabel::setText, settings, label);
    bindText(m_toggle, &QWidget::setAccessibleName, settings, label);
    showValue();
}

void ToggleRow::layOut()
{
    m_text->setBuddy(m_toggle);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(16);
    row->addLayout(textColumn({m_text, m_noteText}), 1);
    row->addWidget(m_toggle, 0, Qt::AlignVCenter);
}

void ToggleRow::setNote(const TextPair& note, bool whenOn)
{
    m_isNoteWhenOn = whenOn;
    bindText(m_noteText, &QLabel::setText, m_settings, note);
    bindText(m_toggle, &QWidget::setAccessibleDescription, m_settings, note);
    showValue();
}

void ToggleRow::showValue()
{
    const QSignalBlocker quiet(m_toggle);
    const bool isOn = setting().value();
    m_toggle->setChecked(isOn);
    m_noteText->setVisible(isOn == m_isNoteWhenOn && !m_noteText->text().isEmpty());
}

void ToggleRow::mousePressEvent(QMouseEvent* event)
{
    event->setAccepted(event->button() == Qt::LeftButton); // to get the release as well
}

void ToggleRow::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->pos()))
        m_toggle->click();
}

} // namespace vormel

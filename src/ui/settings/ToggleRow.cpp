#include "ui/settings/ToggleRow.h"

#include "ui/kit/StyledLabel.h"
#include "ui/kit/TextColumn.h"
#include "ui/settings/ToggleSwitch.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QSignalBlocker>

namespace vormel {

ToggleRow::ToggleRow(AppSettings& settings, Setting<bool> AppSettings::*setting, const QString& name,
                     const TextPair& label, QWidget* parent)
    : QWidget(parent)
    , m_settings(settings)
    , m_setting(setting)
    , m_label(label)
    , m_text(new StyledLabel(StyledLabel::Style::body, Tint::text, this))
    , m_noteText(new StyledLabel(StyledLabel::Style::caption, Tint::secondary, this))
    , m_toggle(new ToggleSwitch(this))
{
    m_toggle->setObjectName(name);
    m_noteText->setObjectName(name + QStringLiteral("Note"));
    m_text->setObjectName(name + QStringLiteral("Label"));
    layOut();
    connect(m_toggle, &QCheckBox::toggled, this, [this](bool isOn) { this->setting().set(isOn); });
    connect(&settings, &AppSettings::changed, this, &ToggleRow::showValue);
    connect(&settings, &AppSettings::languageSet, this, &ToggleRow::retranslate);
    retranslate();
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
    m_note = note;
    m_isNoteWhenOn = whenOn;
    retranslate();
    showValue();
}

void ToggleRow::retranslate()
{
    const AppLanguage language = m_settings.language.value();
    m_text->setText(m_label.in(language));
    m_noteText->setText(m_note.in(language));
    m_toggle->setAccessibleName(m_text->text());
    m_toggle->setAccessibleDescription(m_noteText->text());
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

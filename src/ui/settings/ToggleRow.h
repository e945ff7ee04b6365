#pragma once

#include "model/AppSettings.h"

#include <QWidget>

namespace vormel {

class StyledLabel;
class ToggleSwitch;

/// A row with a switch that is bound to one setting, and perhaps a note while the setting has one of its two values.
/// Binds both ways and follows the language. The settings must outlive it.
class ToggleRow final : public QWidget
{
    Q_OBJECT

public:
    /// The switch gets the object name `name`, the note `name` + "Note".
    ToggleRow(AppSettings& settings, Setting<bool> AppSettings::*setting, const QString& name, const TextPair& label,
              QWidget* parent);

    /// Called once at most.
    void setNote(const TextPair& note, bool whenOn);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    [[nodiscard]] Setting<bool>& setting() const { return m_settings.*m_setting; }
    void layOut();
    void showValue();

    AppSettings& m_settings;
    Setting<bool> AppSettings::*m_setting;
    bool m_isNoteWhenOn = false;
    StyledLabel* m_text;
    StyledLabel* m_noteText;
    ToggleSwitch* m_toggle;
};

} // namespace vormel

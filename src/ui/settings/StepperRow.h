#pragma once

#include "model/AppSettings.h"

#include <QWidget>

namespace vormel {

class Stepper;
class StyledLabel;

/// A row with a small number that is bound to one setting, in steps of 1. A stored value outside of the range is shown
/// as the nearest one and stays as it is until the user changes it. The settings must outlive it.
class StepperRow final : public QWidget
{
    Q_OBJECT

public:
    struct Range
    {
        int min;
        int max;
    };

    StepperRow(AppSettings& settings, Setting<qint64> AppSettings::*setting, const QString& name, const TextPair& label,
               Range range, QWidget* parent);

private:
    [[nodiscard]] Setting<qint64>& setting() const { return m_settings.*m_setting; }
    void showValue();

    AppSettings& m_settings;
    Setting<qint64> AppSettings::*m_setting;
    StyledLabel* m_text;
    Stepper* m_stepper;
};

} // namespace vormel

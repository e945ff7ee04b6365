#pragma once

#include "ui/settings/SettingsSection.h"

namespace vormel {

class SegmentedPicker;

/// Picks the language of all visible text.
class LanguageSection final : public SettingsSection
{
    Q_OBJECT

public:
    LanguageSection(AppSettings& settings, QWidget* parent);

private:
    void showLanguage();

    SegmentedPicker* m_picker;
};

} // namespace vormel

#pragma once

#include "kit/Card.h"

namespace vormel {

class SegmentedPicker;

/// Picks the language of all visible text.
class LanguageSection final : public Card
{
    Q_OBJECT

public:
    LanguageSection(AppSettings& settings, QWidget* parent);

private:
    void showLanguage();

    AppSettings& m_settings;
    SegmentedPicker* m_picker;
};

} // namespace vormel

#pragma once

#include <QWidget>

namespace vormel {

struct HelpFeature;
class StyledLabel;

/// Shows one thing that the program can do: its icon in its colour, its title, and the detail under it.
class HelpFeatureRow final : public QWidget
{
    Q_OBJECT

public:
    HelpFeatureRow(const HelpFeature& feature, QWidget* parent);

    /// The same thing in another language.
    void setTexts(const HelpFeature& feature);

private:
    StyledLabel* m_title;
    StyledLabel* m_detail;
};

} // namespace vormel

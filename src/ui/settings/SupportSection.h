#pragma once

#include "kit/Card.h"

class QPushButton;

namespace vormel {

class StyledLabel;
class UrlOpener;

/// Says that the program is free, and where a beer can be bought for its maker.
class SupportSection final : public Card
{
    Q_OBJECT

public:
    /// The opener must outlive it.
    SupportSection(AppSettings& settings, UrlOpener& opener, QWidget* parent);

private:
    [[nodiscard]] QWidget* makeRow();
    void bindTexts(const AppSettings& settings);

    StyledLabel* m_free;
    StyledLabel* m_please;
    StyledLabel* m_fees;
    QPushButton* m_beer;
};

} // namespace vormel

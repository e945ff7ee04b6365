#pragma once

#include "model/AppLanguage.h"
#include "model/PremiumAccountInfo.h"

#include <QWidget>

namespace vormel {

class StyledLabel;
class TagLabel;

[[nodiscard]] bool isExpired(const PremiumAccountInfo& info, WallTime now);
/// When the plan ends and how much traffic is left, as far as that is known.
[[nodiscard]] QString premiumDetails(const PremiumAccountInfo& info, AppLanguage language,
                                     const QLocale& locale = QLocale());

/// What a host told of an account: the plan, and what there is to know of it.
class PremiumBlock final : public QWidget
{
    Q_OBJECT

public:
    explicit PremiumBlock(QWidget* parent);

    void showInfo(const PremiumAccountInfo& info, AppLanguage language, WallTime now);

private:
    TagLabel* m_plan;
    StyledLabel* m_details;
};

} // namespace vormel

#include "ui/accounts/PremiumBlock.h"

#include "kit/TagLabel.h"

#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

bool isExpired(const PremiumAccountInfo& info, WallTime now)
{
    const qint64 nowMs = std::chrono::floor<std::chrono::milliseconds>(now.time_since_epoch()).count();
    return info.expiresAt && info.expiresAt->toMSecsSinceEpoch() < nowMs;
}

QString premiumDetails(const PremiumAccountInfo& info, AppLanguage language, const QLocale& locale)
{
    QStringList parts;
    if (const std::optional<QString> expires = expiresText(info, locale))
        parts << *expires;
    if (const std::optional<QString> traffic = trafficText(info))
        parts << u"· "_s + *traffic + pair(language, u" traffic", u" traffico");
    return parts.join(u' ');
}

PremiumBlock::PremiumBlock(QWidget* parent)
    : QWidget(parent)
    , m_plan(new TagLabel(Tint::green, this))
    , m_details(new StyledLabel(StyledLabel::Style::caption, Tint::secondary, this))
{
    m_plan->setObjectName(u"premiumPlan"_s);
    m_details->setObjectName(u"premiumDetails"_s);
    m_details->setWordWrap(true);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    row->addWidget(m_plan, 0, Qt::AlignTop);
    row->addWidget(m_details, 1);
}

void PremiumBlock::showInfo(const PremiumAccountInfo& info, AppLanguage language, WallTime now)
{
    m_plan->setText(info.plan);
    m_plan->setGround(isExpired(info, now) ? Tint::red : Tint::green);
    m_details->setText(premiumDetails(info, language));
}

} // namespace vormel

#include "engine/tries/RetryBudget.h"

#include <algorithm>

namespace vormel {

std::optional<std::chrono::seconds> RetryBudget::spend(const ItemId& id)
{
    if (spent(id) >= maxNetworkRetries)
        return std::nullopt;
    const int attempt = ++m_networkRetries[id];
    return std::chrono::seconds(2 * std::min(attempt, 5));
}

void RetryBudget::giveBack(const ItemId& id)
{
    if (const auto found = m_networkRetries.find(id); found != m_networkRetries.end() && *found > 0)
        --*found;
}

} // namespace vormel

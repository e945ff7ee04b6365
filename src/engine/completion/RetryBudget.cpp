#include "engine/completion/RetryBudget.h"

#include <algorithm>

namespace vormel {

std::optional<std::chrono::seconds> RetryBudget::spend(const ItemId& id)
{
    if (spent(id) >= maxNetworkRetries)
        return std::nullopt;
    const int attempt = ++m_networkRetries[id];
    return std::chrono::seconds(2 * std::min(attempt, 5));
}

} // namespace vormel

#pragma once

#include "model/ItemId.h"

#include <QHash>

#include <chrono>
#include <optional>

namespace vormel {

/// How often each item may still be tried again after a failure without progress in between.
class RetryBudget
{
public:
    static constexpr int maxNetworkRetries = 8;

    /// Spends one attempt. Gives the time until it is due, which grows; nothing if all are spent.
    [[nodiscard]] std::optional<std::chrono::seconds> spend(const ItemId& id);
    /// The whole budget is there again.
    void restore(const ItemId& id) { m_networkRetries.remove(id); }
    /// The last attempt counts no more.
    void giveBack(const ItemId& id);
    [[nodiscard]] int spent(const ItemId& id) const { return m_networkRetries.value(id); }

private:
    QHash<ItemId, int> m_networkRetries;
};

} // namespace vormel

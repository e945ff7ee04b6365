#pragma once

#include "model/ItemId.h"
#include "platform/clock/Clock.h"

#include <vector>

namespace vormel {

/// The failures of the last few seconds: a desktop notices a little later than transfers do that the network has gone.
class RecentFailures
{
public:
    struct Failure
    {
        ItemId id;
        SteadyTime at;
    };

    void note(const ItemId& id, SteadyTime now);
    void forget(const ItemId& id);
    /// The items, each as often as it failed; they are known no longer.
    [[nodiscard]] std::vector<ItemId> take(SteadyTime now);

private:
    void dropOld(SteadyTime now);

    std::vector<Failure> m_failures; ///< in the order of their times
};

} // namespace vormel

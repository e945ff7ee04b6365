#include "engine/tries/RecentFailures.h"

#include <utility>

namespace vormel {

namespace {

constexpr std::chrono::seconds shortTime(5);

} // namespace

void RecentFailures::note(const ItemId& id, SteadyTime now)
{
    dropOld(now);
    m_failures.push_back({id, now});
}

void RecentFailures::forget(const ItemId& id)
{
    std::erase_if(m_failures, [&id](const Failure& failure) { return failure.id == id; });
}

std::vector<ItemId> RecentFailures::take(SteadyTime now)
{
    dropOld(now);
    std::vector<ItemId> ids;
    for (const Failure& failure : std::exchange(m_failures, {}))
        ids.push_back(failure.id);
    return ids;
}

void RecentFailures::dropOld(SteadyTime now)
{
    std::erase_if(m_failures, [now](const Failure& failure) { return now - failure.at > shortTime; });
}

} // namespace vormel

#pragma once

#include "model/ItemId.h"
#include "platform/clock/Clock.h"

#include <unordered_map>

namespace vormel {

/// The queued items that wait for their next try, as their host had failed them. UI thread only.
class NextTries
{
public:
    /// `onDue` is called each time when an item's time has come. The clock must outlive this.
    NextTries(Clock& clock, std::function<void()> onDue)
        : m_clock(clock)
        , m_onDue(std::move(onDue))
    {}

    void wait(const ItemId& id, std::chrono::nanoseconds delay);
    [[nodiscard]] bool isWaiting(const ItemId& id) const { return m_timers.contains(id); }
    /// The item may be taken at once.
    void forget(const ItemId& id) { m_timers.erase(id); }

private:
    Clock& m_clock;
    std::function<void()> m_onDue;
    std::unordered_map<ItemId, Timer> m_timers;
};

} // namespace vormel

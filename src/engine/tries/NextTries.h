#pragma once

#include "model/ItemId.h"
#include "model/ItemWait.h"
#include "platform/clock/Clock.h"

#include <functional>
#include <unordered_map>
#include <vector>

namespace vormel {

/// The queued items that wait for their next try, as their host had failed them or asked for it. UI thread only.
class NextTries
{
public:
    /// `onDue` is called each time when an item's time has come. The clock must outlive this.
    NextTries(Clock& clock, std::function<void(const ItemId&)> onDue)
        : m_clock(clock)
        , m_onDue(std::move(onDue))
    {}

    void wait(const ItemId& id, std::chrono::nanoseconds delay, ItemWait::Kind kind = ItemWait::nextTry);
    [[nodiscard]] bool isWaiting(const ItemId& id) const { return m_waits.contains(id); }
    /// What an item waits for that waits, and none otherwise.
    [[nodiscard]] ItemWait waitOf(const ItemId& id) const;
    /// All items that wait for a try of this kind.
    [[nodiscard]] std::vector<ItemId> waiting(ItemWait::Kind kind) const;
    /// The item may be taken at once.
    void forget(const ItemId& id) { m_waits.erase(id); }

private:
    struct Waiting
    {
        Timer timer;
        ItemWait wait;
    };

    Clock& m_clock;
    std::function<void(const ItemId&)> m_onDue;
    std::unordered_map<ItemId, Waiting> m_waits;
};

} // namespace vormel

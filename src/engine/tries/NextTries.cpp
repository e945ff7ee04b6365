#include "engine/tries/NextTries.h"

namespace vormel {

void NextTries::wait(const ItemId& id, std::chrono::nanoseconds delay, ItemWait::Kind kind)
{
    Timer timer = m_clock.after(delay, [this, id] {
        m_waits.erase(id);
        m_onDue(id);
    });
    m_waits.insert_or_assign(id, Waiting{std::move(timer), {kind, m_clock.steadyNow() + delay, {}}});
}

ItemWait NextTries::waitOf(const ItemId& id) const
{
    const auto found = m_waits.find(id);
    return found == m_waits.end() ? ItemWait() : found->second.wait;
}

std::vector<ItemId> NextTries::waiting(ItemWait::Kind kind) const
{
    std::vector<ItemId> ids;
    for (const auto& [id, waiting] : m_waits) {
        if (waiting.wait.kind == kind)
            ids.push_back(id);
    }
    return ids;
}

} // namespace vormel

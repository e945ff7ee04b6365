#include "engine/completion/NextTries.h"

namespace vormel {

void NextTries::wait(const ItemId& id, std::chrono::nanoseconds delay)
{
    Timer timer = m_clock.after(delay, [this, id] {
        m_timers.erase(id);
        m_onDue();
    });
    m_timers.insert_or_assign(id, std::move(timer));
}

} // namespace vormel

#include "ui/queue/list/CountdownWake.h"

#include "ui/queue/list/QueueView.h"
#include "ui/queue/rows/RowCountdowns.h"
#include "ui/queue/tree/QueueModel.h"

namespace vormel {

CountdownWake::CountdownWake(QueueView& view, RowCountdowns& countdowns, Clock& clock)
    : m_view(view)
    , m_countdowns(countdowns)
    , m_clock(clock)
{}

void CountdownWake::await()
{
    const std::optional<SteadyTime> next = m_countdowns.next();
    if (next && m_timer.isPending() && m_due == *next)
        return;
    m_timer.cancel();
    if (!next)
        return;
    m_due = *next;
    m_timer = m_clock.after(*next - m_clock.steadyNow(), [this] { step(); });
}

void CountdownWake::step()
{
    const SteadyTime now = m_clock.steadyNow();
    for (const QModelIndex& row : m_view.rowsInSight()) {
        if (m_countdowns.isOver(row.data(QueueModel::idRole).value<ItemId>(), now))
            m_view.update(row);
    }
    m_countdowns.forgetOver(now);
    await();
}

} // namespace vormel

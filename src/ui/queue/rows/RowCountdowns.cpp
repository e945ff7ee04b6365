#include "ui/queue/rows/RowCountdowns.h"

#include <algorithm>

namespace vormel {

void RowCountdowns::note(const ItemId& row, std::optional<SteadyTime> staysUntil)
{
    if (staysUntil)
        m_staysUntil.insert(row, *staysUntil);
    else
        m_staysUntil.remove(row);
}

std::optional<SteadyTime> RowCountdowns::next() const
{
    std::optional<SteadyTime> first;
    for (const SteadyTime staysUntil : m_staysUntil)
        first = std::min(first.value_or(staysUntil), staysUntil);
    return first;
}

bool RowCountdowns::isOver(const ItemId& row, SteadyTime now) const
{
    const auto found = m_staysUntil.find(row);
    return found != m_staysUntil.end() && *found <= now;
}

void RowCountdowns::forgetOver(SteadyTime now)
{
    m_staysUntil.removeIf([now](const auto& row) { return row.value() <= now; });
}

} // namespace vormel

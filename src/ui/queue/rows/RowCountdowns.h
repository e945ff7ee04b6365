#pragma once

#include "model/ItemId.h"
#include "platform/clock/Clock.h"

#include <QHash>

#include <optional>

namespace vormel {

/// Until when the rows that count down, as they were painted last, show what they should.
class RowCountdowns
{
public:
    /// The row was painted. Without a time it does not count.
    void note(const ItemId& row, std::optional<SteadyTime> staysUntil);

    /// When the first of them is out of date.
    [[nodiscard]] std::optional<SteadyTime> next() const;
    [[nodiscard]] bool isOver(const ItemId& row, SteadyTime now) const;
    /// Those that are out of date: in sight they are painted and noted anew, and the others need no watch.
    void forgetOver(SteadyTime now);

private:
    QHash<ItemId, SteadyTime> m_staysUntil;
};

} // namespace vormel

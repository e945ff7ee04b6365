#pragma once

#include "engine/queue/ItemTable.h"

namespace vormel {

/// What a scheduler pass asks about single items.
class SchedulingRules
{
public:
    /// Is the item held back, because a login is awaited, its start is under way already, its next try is not due, its
    /// host rests, there is no network, or another transfer is writing the very file that it would write? The item may
    /// be told why.
    [[nodiscard]] virtual bool isHeldBack(DownloadItem& item) = 0;
    /// May this recovery volume be fetched now?
    [[nodiscard]] virtual bool mayFetchRev(const DownloadItem& item) const = 0;

protected:
    ~SchedulingRules() = default;
};

/// The items to be started now: the first queued ones in queue order, as many as there are free slots. `startsUnderWay`
/// counts starts that were decided but do not show in a status yet. Queue order alone decides; there is no fairness
/// between hosts or groups.
[[nodiscard]] std::vector<ItemPtr> chooseStarts(const ItemTable& table, qint64 limit, qint64 startsUnderWay,
                                                SchedulingRules& rules);

/// The same for items that the user chose: of those that are queued, the first as many as there are free slots.
[[nodiscard]] std::vector<ItemPtr> chooseStartsAhead(const std::vector<ItemPtr>& items, const ItemTable& table,
                                                     qint64 limit, qint64 startsUnderWay, SchedulingRules& rules);

} // namespace vormel

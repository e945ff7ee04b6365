#include "engine/schedule/Scheduler.h"

namespace vormel {

std::vector<ItemPtr> chooseStarts(const ItemTable& table, qint64 limit, qint64 startsUnderWay,
                                  const SchedulingRules& rules)
{
    std::vector<ItemPtr> chosen;
    const qint64 taken = table.activeCount() + startsUnderWay;
    qint64 slots = limit > taken ? limit - taken : 0;
    const std::span<const ItemTable::Row> rows = table.rows();
    for (std::size_t i = 0; i < rows.size() && slots > 0; ++i) {
        if (rows[i].status != DownloadStatus::queued)
            continue;
        const ItemPtr& item = table.items()[i];
        if (rules.isHeldBack(*item) || (rows[i].isRev && !rules.mayFetchRev(*item)))
            continue;
        chosen.push_back(item);
        --slots;
    }
    return chosen;
}

} // namespace vormel

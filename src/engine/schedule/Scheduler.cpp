#include "engine/schedule/Scheduler.h"

#include "model/SetName.h"

namespace vormel {

namespace {

qint64 freeSlots(const ItemTable& table, qint64 limit, qint64 startsUnderWay)
{
    const qint64 taken = table.activeCount() + startsUnderWay;
    return limit > taken ? limit - taken : 0;
}

bool mayStart(DownloadItem& item, bool isRev, SchedulingRules& rules)
{
    return (!isRev || rules.mayFetchRev(item)) && !rules.isHeldBack(item);
}

} // namespace

std::vector<ItemPtr> chooseStarts(const ItemTable& table, qint64 limit, qint64 startsUnderWay, SchedulingRules& rules)
{
    std::vector<ItemPtr> chosen;
    const qint64 slots = freeSlots(table, limit, startsUnderWay);
    const std::span<const ItemTable::Row> rows = table.rows();
    for (std::size_t i = 0; i < rows.size() && std::ssize(chosen) < slots; ++i) {
        const ItemPtr& item = table.items()[i];
        if (rows[i].status == DownloadStatus::queued && mayStart(*item, rows[i].isRev, rules))
            chosen.push_back(item);
    }
    return chosen;
}

std::vector<ItemPtr> chooseStartsAhead(const std::vector<ItemPtr>& items, const ItemTable& table, qint64 limit,
                                       qint64 startsUnderWay, SchedulingRules& rules)
{
    std::vector<ItemPtr> chosen;
    const qint64 slots = freeSlots(table, limit, startsUnderWay);
    for (const ItemPtr& item : items) {
        if (std::ssize(chosen) >= slots)
            break;
        if (item->status() == DownloadStatus::queued && mayStart(*item, isRevName(item->filename()), rules))
            chosen.push_back(item);
    }
    return chosen;
}

} // namespace vormel

#include "engine/commands/GroupOrder.h"

#include <algorithm>

namespace vormel {

std::vector<DownloadGroup> inDisplayOrder(std::vector<DownloadGroup> groups, const QStringList& ids)
{
    QHash<QString, std::vector<std::size_t>> places;
    for (auto id = ids.size(); id > 0; --id)
        places[ids[id - 1]].push_back(static_cast<std::size_t>(id - 1));
    std::vector<std::pair<std::size_t, DownloadGroup>> placed;
    placed.reserve(groups.size());
    for (DownloadGroup& group : groups) {
        std::vector<std::size_t>& free = places[group.id];
        const std::size_t place = free.empty() ? std::numeric_limits<std::size_t>::max() : free.back();
        if (!free.empty())
            free.pop_back();
        placed.emplace_back(place, std::move(group));
    }
    std::stable_sort(placed.begin(), placed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    groups.clear();
    for (auto& entry : placed)
        groups.push_back(std::move(entry.second));
    return groups;
}

QHash<ItemId, std::size_t> ranksAfterMove(const std::vector<DownloadGroup>& groups, const std::set<qsizetype>& sources,
                                          qsizetype destination)
{
    QHash<ItemId, std::size_t> ranks;
    const auto number = [&](qsizetype offset) {
        for (const ItemPtr& item : groups[static_cast<std::size_t>(offset)].items)
            ranks.insert(item->id(), static_cast<std::size_t>(ranks.size()));
    };
    const auto count = static_cast<qsizetype>(groups.size());
    const auto numberStaying = [&](qsizetype from, qsizetype end) {
        for (qsizetype offset = from; offset < end; ++offset) {
            if (!sources.contains(offset))
                number(offset);
        }
    };
    const qsizetype target = qBound<qsizetype>(0, destination, count);
    numberStaying(0, target);
    for (const qsizetype offset : sources) {
        if (offset >= 0 && offset < count)
            number(offset);
    }
    numberStaying(target, count);
    return ranks;
}

} // namespace vormel

#include "engine/commands/FormerPlaces.h"

namespace vormel {

std::vector<ItemPtr> orderWithMissing(const std::vector<ItemPtr>& former, const ItemTable& table,
                                      const QSet<ItemId>& missing)
{
    std::vector<ItemPtr> order;
    order.reserve(table.items().size() + static_cast<std::size_t>(missing.size()));
    std::unordered_map<ItemId, std::vector<ItemPtr>> followers;
    const ItemId* neighbour = nullptr;
    for (const ItemPtr& item : former) {
        if (table.find(item->id()))
            neighbour = &item->id();
        else if (missing.contains(item->id()) && neighbour)
            followers[*neighbour].push_back(item);
        else if (missing.contains(item->id()))
            order.push_back(item); // in front of all that are left
    }
    for (const ItemPtr& item : table.items()) {
        order.push_back(item);
        if (const auto behind = followers.find(item->id()); behind != followers.end())
            order.insert(order.end(), behind->second.begin(), behind->second.end());
    }
    return order;
}

std::vector<ItemTable::Placed> formerPlaces(const std::vector<ItemPtr>& former, const ItemTable& table,
                                            const QSet<ItemId>& missing)
{
    std::vector<ItemTable::Placed> places;
    places.reserve(static_cast<std::size_t>(missing.size()));
    const std::vector<ItemPtr> order = orderWithMissing(former, table, missing);
    for (std::size_t place = 0; place < order.size(); ++place) {
        if (missing.contains(order[place]->id()))
            places.push_back({place, order[place]});
    }
    return places;
}

} // namespace vormel

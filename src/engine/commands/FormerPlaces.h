#pragma once

#include "engine/queue/ItemTable.h"

namespace vormel {

/// The order of a queue that some items were taken out of: those that are there now, as they stand now, and the missing
/// ones behind the neighbours that they had. `former` is the order with all of them; what is neither there nor missing
/// is left out. Goes over either list once.
[[nodiscard]] std::vector<ItemPtr> orderWithMissing(const std::vector<ItemPtr>& former, const ItemTable& table,
                                                    const QSet<ItemId>& missing);

/// The places of the missing items in that order, ascending.
[[nodiscard]] std::vector<ItemTable::Placed> formerPlaces(const std::vector<ItemPtr>& former, const ItemTable& table,
                                                          const QSet<ItemId>& missing);

} // namespace vormel

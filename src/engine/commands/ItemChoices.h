#pragma once

#include "engine/queue/ItemTable.h"

namespace vormel {

// Which items a command for many is about. Each walks over the queue once, but for membersOf().

[[nodiscard]] QSet<ItemId> allItems(const ItemTable& table);
[[nodiscard]] QSet<ItemId> completedItems(const ItemTable& table);
[[nodiscard]] QSet<ItemId> failedItems(const ItemTable& table);
/// Everything but what is completed.
[[nodiscard]] QSet<ItemId> unfinishedItems(const ItemTable& table);
/// All members of the groups of which one is extracted.
[[nodiscard]] QSet<ItemId> extractedItems(const ItemTable& table);
/// A whole set by its base name, hidden volumes included, or one plain file by its id.
[[nodiscard]] QSet<ItemId> membersOf(const ItemTable& table, const QString& groupId);

} // namespace vormel

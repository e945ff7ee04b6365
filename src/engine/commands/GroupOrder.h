#pragma once

#include "engine/groups/DownloadGroup.h"

#include <QHash>
#include <QStringList>

#include <set>

namespace vormel {

/// The groups in the order of their ids; those that are not named follow in their own order. Where several have one id,
/// the first of them is meant first.
[[nodiscard]] std::vector<DownloadGroup> inDisplayOrder(std::vector<DownloadGroup> groups, const QStringList& ids);

/// The items of the groups numbered through after a list move: the moved groups keep their order among themselves and
/// land in front of the one that stood at the destination. Offsets that do not exist are ignored.
[[nodiscard]] QHash<ItemId, std::size_t> ranksAfterMove(const std::vector<DownloadGroup>& groups,
                                                        const std::set<qsizetype>& sources, qsizetype destination);

} // namespace vormel

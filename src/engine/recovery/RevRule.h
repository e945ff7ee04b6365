#pragma once

#include "engine/queue/ItemTable.h"

namespace vormel {

/// May this recovery volume still help? Only while its set is not extracted and the RAR side of the set is there but
/// not complete.
[[nodiscard]] bool shouldDownloadRev(const DownloadItem& item, const ItemTable& table);

} // namespace vormel

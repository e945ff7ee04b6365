#pragma once

#include "engine/queue/ItemTable.h"

namespace vormel {

/// The item that has the first volume of the item's set on disk; null if none has.
[[nodiscard]] ItemPtr firstVolumeBeside(const DownloadItem& item, const ItemTable& table);

/// The first item of a set that has a volume of it on disk; null if none has.
[[nodiscard]] ItemPtr volumeOnDisk(const QString& base, const ItemTable& table);

} // namespace vormel

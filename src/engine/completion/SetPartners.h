#pragma once

#include "engine/queue/ItemTable.h"

namespace vormel {

class Trash;

/// The item that has the first volume of the item's set on disk; null if none has.
[[nodiscard]] ItemPtr firstVolumeBeside(const DownloadItem& item, const ItemTable& table);

/// The first item of a set that has a volume of it on disk; null if none has.
[[nodiscard]] ItemPtr volumeOnDisk(const QString& base, const ItemTable& table);

/// Moves a recovery volume that lies at the path to the volumes of its set, in place of what else has its name there,
/// which goes to the Trash. Gives where it lies then.
[[nodiscard]] QString broughtToItsArchive(const DownloadItem& rev, const QString& path, const ItemTable& table,
                                          Trash& trash);

} // namespace vormel

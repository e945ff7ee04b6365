#pragma once

#include "engine/queue/ItemTable.h"

namespace vormel {

class Trash;

/// Moves a recovery volume that lies at the path to the volumes of its set, in place of what else has its name there,
/// which goes to the Trash. Gives where it lies then.
[[nodiscard]] QString broughtToItsArchive(const DownloadItem& rev, const QString& path, const ItemTable& table,
                                          Trash& trash);

} // namespace vormel

#pragma once

#include "engine/queue/ItemTable.h"
#include "model/DownloadPaths.h"

namespace vormel {

/// Do both paths lead to one file, also where a folder is reached by a link? Looks at the disk.
[[nodiscard]] bool isSameFile(const QString& a, const QString& b);

/// Does the file belong to another item, because that item's finished file is this very one?
[[nodiscard]] bool isFileOfAnother(const DownloadItem& item, const QString& path, const ItemTable& table);

/// What somebody puts under the name of an item that has begun is its file only if it is as large as the item's total.
[[nodiscard]] bool mayBeFileOf(const DownloadItem& item, const QString& path);

/// The item's finished file: the one that it left on disk, or, where that is gone or never was, the one that stands
/// under its name. What is no file does not count, and neither does another item's, unless the names tell that both
/// links lead to one file: volumes of one set, and names that hosts have told, are no chance. Looks at the disk.
[[nodiscard]] std::optional<QString> finishedFileOf(const DownloadItem& item, const ItemTable& table,
                                                    const DownloadPaths& paths);

/// The item is done with a file that stands at its place already.
void completeWithFile(DownloadItem& item, const QString& path);

} // namespace vormel

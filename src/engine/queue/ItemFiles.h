#pragma once

#include "model/DownloadItem.h"
#include "model/DownloadPaths.h"

#include <QSet>

#include <vector>

namespace vormel {

/// Where the files and part files of the items lie, or will, leaving out some items. Pure: the disk is not looked at.
[[nodiscard]] QSet<QString> filesOfItems(const std::vector<ItemPtr>& items, const DownloadPaths& paths,
                                         const QSet<ItemId>& leftOut);

} // namespace vormel

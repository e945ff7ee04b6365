#pragma once

#include "model/DownloadItem.h"
#include "model/DownloadPaths.h"

#include <vector>

namespace vormel {

/// What lies on the disk where the finished files of some items belong. Reads sizes only.
class DiskState
{
public:
    /// The largest RAR volume among the items is the measure for the others.
    DiskState(const std::vector<ItemPtr>& items, DownloadPaths paths);

    [[nodiscard]] QString path(const DownloadItem& item) const { return m_paths.finalFile(item.filename()); }

    /// Is the item's file there, and no shorter than it should be? A RAR volume far smaller than its siblings is a web
    /// page that was saved under its name, even when no size was ever known.
    [[nodiscard]] bool isWhole(const DownloadItem& item) const;

private:
    DownloadPaths m_paths;
    qint64 m_largestVolume = 0;
};

} // namespace vormel

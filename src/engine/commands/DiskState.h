#pragma once

#include "engine/queue/ItemTable.h"
#include "model/DownloadPaths.h"

#include <unordered_map>

namespace vormel {

/// What lies on the disk of the finished files of some items. Looks once, when it is made, and reads sizes only.
class DiskState
{
public:
    /// The largest RAR volume among the items is the measure for the others.
    DiskState(const std::vector<ItemPtr>& items, const ItemTable& table, const DownloadPaths& paths);

    /// Where the item's file is; nothing if it is missing.
    [[nodiscard]] std::optional<QString> path(const DownloadItem& item) const;

    /// Is the item's file there, and no shorter than it should be? A RAR volume far smaller than its siblings is a web
    /// page that was saved under its name, if no size was ever known.
    [[nodiscard]] bool isWhole(const DownloadItem& item) const;

private:
    struct File
    {
        QString path;
        qint64 size = 0;
    };

    std::unordered_map<ItemId, File> m_files;
    qint64 m_largestVolume = 0;
};

} // namespace vormel

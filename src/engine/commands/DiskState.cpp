#include "engine/commands/DiskState.h"

#include <QFileInfo>

namespace vormel {

namespace {

constexpr qint64 smallestTellingVolume = 10'000'000;
constexpr qint64 smallestShare = 10;

bool isRar(const DownloadItem& item)
{
    return item.filename().endsWith(u".rar", Qt::CaseInsensitive);
}

} // namespace

DiskState::DiskState(const std::vector<ItemPtr>& items, DownloadPaths paths)
    : m_paths(std::move(paths))
{
    for (const ItemPtr& item : items) {
        if (isRar(*item))
            m_largestVolume = qMax(m_largestVolume, QFileInfo(path(*item)).size());
    }
}

bool DiskState::isWhole(const DownloadItem& item) const
{
    const QFileInfo file(path(item));
    if (!file.isFile())
        return false;
    if (item.totalBytes() >= 1 && file.size() < item.totalBytes())
        return false;
    return !isRar(item) || m_largestVolume <= smallestTellingVolume || file.size() >= m_largestVolume / smallestShare;
}

} // namespace vormel

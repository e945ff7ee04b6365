#include "engine/commands/DiskState.h"

#include "engine/completion/FinishedFile.h"
#include "model/SetName.h"

#include <QFileInfo>

namespace vormel {

namespace {

constexpr qint64 minTellingVolume = 10'000'000;
constexpr qint64 minShare = 10;

} // namespace

DiskState::DiskState(const std::vector<ItemPtr>& items, const ItemTable& table, const DownloadPaths& paths)
{
    for (const ItemPtr& item : items) {
        const std::optional<QString> path = finishedFileOf(*item, table, paths);
        if (!path)
            continue;
        const qint64 size = QFileInfo(*path).size();
        m_files.insert_or_assign(item->id(), File{*path, size});
        if (isRarName(item->filename()))
            m_largestVolume = qMax(m_largestVolume, size);
    }
}

std::optional<QString> DiskState::path(const DownloadItem& item) const
{
    const auto file = m_files.find(item.id());
    return file == m_files.end() ? std::nullopt : std::optional(file->second.path);
}

bool DiskState::isWhole(const DownloadItem& item) const
{
    const auto file = m_files.find(item.id());
    if (file == m_files.end())
        return false;
    const qint64 size = file->second.size;
    if (!mayBeFileOf(item, file->second.path))
        return false;
    if (item.totalBytes() >= 1)
        return size >= item.totalBytes();
    return !isRarName(item.filename()) || m_largestVolume <= minTellingVolume || size >= m_largestVolume / minShare;
}

} // namespace vormel

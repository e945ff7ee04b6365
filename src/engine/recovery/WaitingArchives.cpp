#include "engine/recovery/WaitingArchives.h"

#include "archive/pipeline/PostDownload.h"
#include "engine/queue/SetPartners.h"
#include "engine/recovery/RevFiles.h"
#include "model/AppSettings.h"
#include "model/SetName.h"

#include <algorithm>

namespace vormel {

WaitingArchives::WaitingArchives(const ItemTable& table, const AppSettings& settings, const RevFiles& revFiles,
                                 PostDownload& postDownload, QueueTurn& queue)
    : m_table(table)
    , m_settings(settings)
    , m_revFiles(revFiles)
    , m_postDownload(postDownload)
    , m_queue(queue)
{}

void WaitingArchives::failed(const DownloadItem& item)
{
    if (!isSetMember(item.filename()))
        return;
    // Without a part an archive needs recovery volumes, and as long as some are left to fetch, those come first.
    m_queue.later([this, base = setBaseName(item.filename()), isRev = isRevName(item.filename())] {
        if (isRev || m_revFiles.areAllThere(base))
            lookAt(base);
    });
}

void WaitingArchives::offItsWay(const DownloadItem& item)
{
    if (isRevName(item.filename()) && item.status() != DownloadStatus::completed)
        lookLaterAt(setBaseName(item.filename()));
}

void WaitingArchives::willBeRemoved(const DownloadItem& item)
{
    if (const std::optional<QString> base = setAwaiting(item))
        lookLaterAt(*base);
}

std::optional<QString> WaitingArchives::setAwaiting(const DownloadItem& item) const
{
    if (item.status() == DownloadStatus::completed || !isSetMember(item.filename()))
        return std::nullopt;
    const bool isAwaited =
        isRevName(item.filename()) ? m_revFiles.isComing(item) : item.status() != DownloadStatus::failed;
    return isAwaited ? std::optional(setBaseName(item.filename())) : std::nullopt;
}

bool WaitingArchives::isWaiting(const QString& base) const
{
    return std::ranges::any_of(m_table.itemsOfSet(base),
                               [this](const ItemPtr& item) { return setAwaiting(*item).has_value(); });
}

void WaitingArchives::lookLaterAt(const QString& base)
{
    if (m_due.contains(base))
        return;
    m_due.insert(base);
    m_queue.later([this, base] {
        m_due.remove(base);
        lookAt(base);
    });
}

void WaitingArchives::lookAt(const QString& base)
{
    const ItemPtr volume = volumeOnDisk(base, m_table);
    if (m_settings.autoExtract.value() && volume)
        m_postDownload.autoExtractAfterDownload(volume->id());
}

} // namespace vormel

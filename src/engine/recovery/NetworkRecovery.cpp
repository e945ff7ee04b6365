#include "engine/recovery/NetworkRecovery.h"

#include "engine/recovery/RevFiles.h"
#include "model/AppSettings.h"
#include "model/SetName.h"

#include <algorithm>

namespace vormel {

namespace {

constexpr std::chrono::seconds recoveryCheckDelay{60};

bool isAtWork(const DownloadItem& item)
{
    const DownloadStatus::Kind status = item.status().kind();
    return status == DownloadStatus::queued || status == DownloadStatus::resolving ||
           status == DownloadStatus::downloading;
}

} // namespace

NetworkRecovery::NetworkRecovery(const ItemTable& table, const AppSettings& settings, Clock& clock, RevFiles& revFiles)
    : m_table(table)
    , m_settings(settings)
    , m_clock(clock)
    , m_revFiles(revFiles)
{}

void NetworkRecovery::startRecoveryCountdown(DownloadItem& item, int seconds)
{
    if (m_settings.downloadRevFiles.value() || !isRarPart(item.filename()))
        return;
    const std::vector<ItemPtr> volumes = m_revFiles.revItems(setBaseName(item.filename()));
    const bool isAnyMissing = std::any_of(volumes.begin(), volumes.end(), [](const ItemPtr& volume) {
        return volume->status() != DownloadStatus::completed;
    });
    if (!isAnyMissing || m_recoveryCountdowns.contains(item.id()))
        return;
    countDown(item.id(), seconds);
}

void NetworkRecovery::countDown(const ItemId& id, int seconds)
{
    const ItemPtr item = m_table.find(id);
    if (seconds > 0) {
        item->setRecoveryCountdown(seconds);
        waitASecond(id, seconds);
        return;
    }
    cancelCountdown(*item);
    m_revFiles.allowRevFiles(setBaseName(item->filename()));
}

void NetworkRecovery::waitASecond(const ItemId& id, int seconds)
{
    m_recoveryCountdowns[id] = m_clock.after(std::chrono::seconds(1), [this, id, seconds] {
        const ItemPtr item = m_table.find(id);
        if (item && item->status() == DownloadStatus::failed)
            countDown(id, seconds - 1);
        else if (item)
            cancelCountdown(*item);
        else
            m_recoveryCountdowns.erase(id);
    });
}

void NetworkRecovery::cancelCountdown(DownloadItem& item)
{
    if (m_recoveryCountdowns.erase(item.id()) > 0)
        item.setRecoveryCountdown(std::nullopt);
}

void NetworkRecovery::scheduleRecoveryCheck(const DownloadItem& item)
{
    if (!m_settings.downloadRevFiles.value() && isRarPart(item.filename()))
        scheduleRecoveryCheck(setBaseName(item.filename()), recoveryCheckDelay);
}

void NetworkRecovery::scheduleRecoveryCheck(const QString& base, std::chrono::seconds delay)
{
    m_pendingRecovery[base] = m_clock.after(delay, [this, base] { runRecoveryCheck(base); });
}

void NetworkRecovery::runRecoveryCheck(const QString& base)
{
    m_pendingRecovery.erase(base);
    bool isAnyPartFailed = false;
    for (const ItemPtr& item : m_table.itemsOfSet(base)) {
        if (isRevName(item->filename()))
            continue;
        if (isAtWork(*item))
            return;
        isAnyPartFailed |= isRarName(item->filename()) && item->status() == DownloadStatus::failed;
    }
    if (isAnyPartFailed)
        m_revFiles.allowRevFiles(base);
}

void NetworkRecovery::retryWithRevFiles(const std::vector<ItemPtr>& items)
{
    for (const QString& base : baseNames(items)) {
        for (const ItemPtr& item : m_table.itemsOfSet(base)) {
            if (item->extractionStatus() == ExtractionStatus::failed)
                item->setExtractionStatus(ExtractionStatus::idle);
        }
        m_revFiles.fetchRevFiles(base);
    }
}

} // namespace vormel

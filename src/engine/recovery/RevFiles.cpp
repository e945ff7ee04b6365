#include "engine/recovery/RevFiles.h"

#include "engine/recovery/RevRule.h"
#include "model/AppSettings.h"
#include "model/SetName.h"

#include <algorithm>

namespace vormel {

namespace {

bool isThereOrComing(const DownloadItem& item)
{
    return item.status() == DownloadStatus::completed || item.status() == DownloadStatus::downloading;
}

} // namespace

RevFiles::RevFiles(const ItemTable& table, const AppSettings& settings, QueueTurn& queue)
    : m_table(table)
    , m_settings(settings)
    , m_queue(queue)
{}

std::vector<ItemPtr> RevFiles::revItems(const QString& base) const
{
    std::vector<ItemPtr> volumes;
    for (const ItemPtr& item : m_table.itemsOfSet(base)) {
        if (isRevName(item->filename()))
            volumes.push_back(item);
    }
    return volumes;
}

bool RevFiles::mayFetch(const DownloadItem& item) const
{
    return isAllowed(item.id()) || (m_settings.downloadRevFiles.value() && shouldDownloadRev(item, m_table));
}

bool RevFiles::isHeldBack(const DownloadItem& item) const
{
    return isRevName(item.filename()) && !mayFetch(item);
}

bool RevFiles::isComing(const DownloadItem& item) const
{
    const DownloadStatus::Kind status = item.status().kind();
    if (status == DownloadStatus::stopped || status == DownloadStatus::failed)
        return false;
    return status == DownloadStatus::resolving || status == DownloadStatus::downloading || mayFetch(item);
}

bool RevFiles::allowRevFiles(const QString& base)
{
    return release(base, [this](const DownloadItem& item) { return !isAllowed(item.id()); });
}

void RevFiles::fetchRevFiles(const QString& base)
{
    release(base, [this](const DownloadItem& item) {
        const DownloadStatus::Kind status = item.status().kind();
        return !isAllowed(item.id()) || (status != DownloadStatus::queued && status != DownloadStatus::resolving);
    });
}

bool RevFiles::release(const QString& base, const std::function<bool(const DownloadItem&)>& isWanted)
{
    std::vector<ItemPtr> released = revItems(base);
    std::erase_if(released, [&](const ItemPtr& item) { return isThereOrComing(*item) || !isWanted(*item); });
    if (released.empty())
        return false;
    for (const ItemPtr& item : released) {
        m_revAllowlist.insert(item->id());
        item->setStatus(DownloadStatus::queued);
    }
    m_queue.processQueue();
    m_queue.saveQueue();
    return true;
}

bool RevFiles::areAllThere(const QString& base) const
{
    bool isAnyThere = false;
    for (const ItemPtr& item : revItems(base)) {
        isAnyThere |= item->status() == DownloadStatus::completed;
        if (item->status() != DownloadStatus::completed && item->status() != DownloadStatus::failed)
            return false;
    }
    return isAnyThere;
}

bool RevFiles::hasPendingRevFiles(const std::vector<ItemPtr>& items) const
{
    const QSet<QString> bases = baseNames(items);
    return std::any_of(bases.begin(), bases.end(), [this](const QString& base) {
        const std::vector<ItemPtr> volumes = revItems(base);
        return !std::all_of(volumes.begin(), volumes.end(), [](const ItemPtr& item) { return isThereOrComing(*item); });
    });
}

bool RevFiles::areRevFilesComing(const std::vector<ItemPtr>& items) const
{
    const QSet<QString> bases = baseNames(items);
    return std::any_of(bases.begin(), bases.end(), [this](const QString& base) {
        const std::vector<ItemPtr> volumes = revItems(base);
        return std::any_of(volumes.begin(), volumes.end(), [this](const ItemPtr& item) {
            return item->status() != DownloadStatus::completed && isComing(*item);
        });
    });
}

QSet<QString> baseNames(const std::vector<ItemPtr>& items)
{
    QSet<QString> bases;
    for (const ItemPtr& item : items)
        bases.insert(setBaseName(item->filename()));
    return bases;
}

} // namespace vormel

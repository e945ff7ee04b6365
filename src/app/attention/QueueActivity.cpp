#include "app/attention/QueueActivity.h"

#include "model/SetName.h"

#include <algorithm>

namespace vormel {

namespace {

bool holdsSlot(DownloadStatus::Kind status)
{
    return status == DownloadStatus::resolving || status == DownloadStatus::downloading;
}

/// A queued recovery volume may never be fetched.
bool isLeft(const DownloadItem& item)
{
    const DownloadStatus::Kind status = item.status().kind();
    return holdsSlot(status) || (status == DownloadStatus::queued && !isRevName(item.filename()));
}

bool hasToolAtWork(const DownloadItem& item)
{
    const ExtractionStatus::Kind extraction = item.extractionStatus().kind();
    return extraction == ExtractionStatus::extracting || extraction == ExtractionStatus::repairing ||
           item.verification().kind == VerificationResult::running;
}

} // namespace

QueueActivity::Share& QueueActivity::Share::operator+=(const Share& other)
{
    moving += other.moving;
    tools += other.tools;
    left += other.left;
    files += other.files;
    sized += other.sized;
    received += other.received;
    total += other.total;
    return *this;
}

QueueActivity::Share& QueueActivity::Share::operator-=(const Share& other)
{
    moving -= other.moving;
    tools -= other.tools;
    left -= other.left;
    files -= other.files;
    sized -= other.sized;
    received -= other.received;
    total -= other.total;
    return *this;
}

QueueActivity::QueueActivity(DownloadManager& manager)
    : m_manager(manager)
{
    add(0, static_cast<qsizetype>(manager.items().size()));
    connect(&manager, &DownloadManager::itemsInserted, this, &QueueActivity::add);
    connect(&manager, &DownloadManager::itemsPutBack, this, &QueueActivity::putBack);
    connect(&manager, &DownloadManager::itemsRemoved, this, &QueueActivity::remove);
    connect(&manager, &DownloadManager::itemChanged, this, &QueueActivity::recount);
}

std::optional<double> QueueActivity::fraction() const
{
    if (m_sums.total < 1)
        return std::nullopt;
    const double mean = static_cast<double>(m_sums.total) / static_cast<double>(m_sums.sized);
    const double whole = mean * static_cast<double>(m_sums.files);
    return std::clamp(static_cast<double>(m_sums.received) / whole, 0.0, 1.0);
}

QueueActivity::Share QueueActivity::shareOf(const DownloadItem& item, const Share& before)
{
    Share share;
    share.moving = holdsSlot(item.status().kind()) ? 1 : 0;
    share.tools = hasToolAtWork(item) ? 1 : 0;
    share.left = isLeft(item) ? 1 : 0;
    const bool hasCome = item.status() == DownloadStatus::completed && before.files > 0;
    if (share.left == 0 && !hasCome)
        return share;
    share.files = 1;
    if (item.totalBytes() < 1)
        return share;
    share.sized = 1;
    share.total = item.totalBytes();
    share.received = hasCome ? share.total : std::min(item.bytesReceived(), share.total);
    return share;
}

void QueueActivity::add(qsizetype first, qsizetype count)
{
    for (qsizetype i = first; i < first + count; ++i) {
        const DownloadItem& item = *m_manager.items()[static_cast<std::size_t>(i)];
        replace(item.id(), shareOf(item, {}));
    }
    Q_EMIT changed();
}

void QueueActivity::putBack(const QSet<ItemId>& ids)
{
    for (const ItemId& id : ids)
        replace(id, shareOf(*m_manager.item(id), {}));
    Q_EMIT changed();
}

void QueueActivity::remove(const QSet<ItemId>& ids)
{
    for (const ItemId& id : ids)
        replace(id, {});
    forgetWhatHasCome();
    Q_EMIT changed();
}

void QueueActivity::recount(const ItemId& id, ItemField field)
{
    constexpr ItemFields counted = ItemFields(ItemField::status) | ItemField::filename | ItemField::bytesReceived |
                                   ItemField::totalBytes | ItemField::extractionStatus | ItemField::verification;
    const ItemPtr item = counted.testFlag(field) ? m_manager.item(id) : nullptr;
    if (!item)
        return;
    const Share before = m_shares.value(id);
    const Share now = shareOf(*item, before);
    if (now == before)
        return;
    replace(id, now);
    if (before.left > now.left)
        forgetWhatHasCome();
    Q_EMIT changed();
}

void QueueActivity::replace(const ItemId& id, const Share& share)
{
    m_sums -= m_shares.take(id);
    m_sums += share;
    if (share != Share())
        m_shares.insert(id, share);
}

/// When no file is left, the next ones begin anew.
void QueueActivity::forgetWhatHasCome()
{
    if (m_sums.left > 0)
        return;
    for (Share& share : m_shares)
        share = {.moving = share.moving, .tools = share.tools};
    m_shares.removeIf([](const std::pair<const ItemId&, Share&>& entry) { return entry.second == Share(); });
    m_sums = {.moving = m_sums.moving, .tools = m_sums.tools};
}

} // namespace vormel

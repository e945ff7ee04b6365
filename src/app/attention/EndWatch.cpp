#include "app/attention/EndWatch.h"

#include "model/SetName.h"

namespace vormel {

namespace {

bool isOnItsWay(DownloadStatus::Kind status)
{
    return status == DownloadStatus::resolving || status == DownloadStatus::downloading ||
           status == DownloadStatus::expanding;
}

bool isOver(DownloadStatus::Kind status)
{
    return status == DownloadStatus::completed || status == DownloadStatus::failed;
}

/// Idle again is one that was stopped, waits for its password or for more to come.
bool isSettled(ExtractionStatus::Kind extraction)
{
    return extraction == ExtractionStatus::done || extraction == ExtractionStatus::failed;
}

} // namespace

EndWatch::EndWatch(DownloadManager& manager, Clock& clock, std::function<bool()> isLookedAt)
    : m_manager(manager)
    , m_clock(clock)
    , m_isLookedAt(std::move(isLookedAt))
{
    connect(&manager, &DownloadManager::itemChanged, this, &EndWatch::itemChanged);
    connect(&manager, &DownloadManager::itemsRemoved, this, &EndWatch::forget);
}

bool EndWatch::isAwaited() const
{
    return m_manager.settings().notifyWhenDone.value() && !m_isLookedAt();
}

void EndWatch::itemChanged(const ItemId& id, ItemField field)
{
    const bool isSign =
        field == ItemField::status || field == ItemField::extractionStatus || field == ItemField::recoveryCountdown;
    const ItemPtr item = isSign ? m_manager.item(id) : nullptr;
    if (!item)
        return;
    if (field == ItemField::status)
        statusChanged(*item);
    else if (field == ItemField::recoveryCountdown ? !item->recoveryCountdown()
                                                   : isSettled(item->extractionStatus().kind()))
        note(*item);
}

void EndWatch::statusChanged(const DownloadItem& item)
{
    const DownloadStatus::Kind status = item.status().kind();
    if (isOnItsWay(status)) {
        m_onTheirWay.insert(item.id());
        m_recoveries.erase(item.id());
    } else if (m_onTheirWay.remove(item.id()) && isOver(status)) {
        note(item);
    }
}

void EndWatch::forget(const QSet<ItemId>& ids)
{
    const bool isExtractedTakenOut = m_manager.settings().removeGroupAfterExtract.value();
    for (const ItemId& id : ids) {
        m_onTheirWay.remove(id);
        m_recoveries.erase(id);
        if (!isExtractedTakenOut || !m_signs.value(id).extracted)
            m_signs.remove(id);
    }
}

void EndWatch::note(const DownloadItem& item)
{
    const ExtractionStatus& extraction = item.extractionStatus();
    if (!isOver(item.status().kind()) || extraction == ExtractionStatus::extracting ||
        extraction == ExtractionStatus::repairing)
        return;
    note(item.id(), {extraction == ExtractionStatus::done && isAwaited() ? currentEnd(item) : std::nullopt, false});
}

void EndWatch::note(const ItemId& id, const Sign& sign)
{
    constexpr std::chrono::seconds gathering{2};
    if (!isAwaited())
        return;
    m_signs.insert(id, sign);
    if (!m_tell.isPending())
        m_tell = m_clock.after(gathering, [this] { tell(); });
}

std::optional<GroupEnd> EndWatch::currentEnd(const DownloadItem& item) const
{
    const std::optional<DownloadGroup> group = m_manager.visibleGroupOf(item);
    if (!group)
        return std::nullopt;
    std::optional<GroupEnd> end = endOf(*group, m_manager.groupNames(), m_manager.settings(), m_manager.questions());
    // Recovery volumes that await their turn have no rows; each that comes is a sign of its own.
    if (end && end->kind == GroupEnd::downloadFailed && m_manager.areRevFilesComing(group->items))
        end.reset();
    return end;
}

/// A minute after the failure of a part, recovery volumes are let through where there are some.
bool EndWatch::mayBeSaved(const DownloadItem& item, const GroupEnd& end) const
{
    return end.kind == GroupEnd::downloadFailed && isSetMember(item.filename()) &&
           m_manager.hasPendingRevFiles({m_manager.item(item.id())});
}

void EndWatch::waitForRecovery(const ItemId& id)
{
    constexpr std::chrono::seconds untilItBegins{65};
    m_recoveries[id] = m_clock.after(untilItBegins, [this, id] {
        note(id, {std::nullopt, true});
        m_recoveries.erase(id);
    });
}

void EndWatch::stopWaiting(const DownloadItem& item)
{
    const std::optional<DownloadGroup> group = m_manager.visibleGroupOf(item);
    if (!group)
        return;
    for (const ItemPtr& mate : group->items)
        m_recoveries.erase(mate->id());
}

void EndWatch::tell()
{
    const QHash<ItemId, Sign> signs = std::exchange(m_signs, {});
    if (!isAwaited())
        return;
    std::vector<GroupEnd> ends;
    QSet<QString> seen;
    for (auto sign = signs.begin(); sign != signs.end(); ++sign) {
        const ItemPtr item = m_manager.item(sign.key());
        const QString group = item ? groupKey(*item) : QString();
        if (seen.contains(group))
            continue;
        const std::optional<GroupEnd> end = item ? currentEnd(*item) : sign->extracted;
        if (sign->isLast && end && end->kind != GroupEnd::downloadFailed)
            continue; // it was saved, and that has signs of its own
        if (item)
            seen.insert(group);
        if (item && end)
            stopWaiting(*item);
        if (item && end && !sign->isLast && mayBeSaved(*item, *end))
            waitForRecovery(item->id());
        else if (end)
            ends.push_back(*end);
    }
    if (!ends.empty())
        Q_EMIT ended(ends);
}

} // namespace vormel

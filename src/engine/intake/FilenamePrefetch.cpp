#include "engine/intake/FilenamePrefetch.h"

#include "engine/accounts/Accounts.h"
#include "model/AppSettings.h"
#include "model/SetName.h"
#include "platform/async/Spawn.h"
#include "resolvers/ResolverError.h"
#include "resolvers/ResolverTables.h"

namespace vormel {

namespace {

constexpr int maxLookUps = 5;

bool isWaiting(const DownloadItem& item)
{
    return item.status() == DownloadStatus::queued || item.status() == DownloadStatus::paused;
}

/// A file that has begun to come keeps the name under which it lies on the disk.
bool mayBeRenamed(const DownloadItem& item)
{
    return isWaiting(item) && item.bytesReceived() == 0;
}

/// What the link itself says, without what trails behind the last letter or digit.
QString nameFromLink(const Link& url)
{
    QString name = url.lastPathComponent();
    while (!name.isEmpty() && !name.back().isLetterOrNumber())
        name.chop(1);
    return name;
}

} // namespace

FilenamePrefetch::FilenamePrefetch(ItemTable& table, const AppSettings& settings, const ResolverTables& resolvers,
                                   const Accounts& accounts, QueueTurn& queue)
    : m_table(table)
    , m_settings(settings)
    , m_resolvers(resolvers)
    , m_accounts(accounts)
    , m_queue(queue)
{}

void FilenamePrefetch::prefetchFilenames()
{
    auto run = std::make_shared<Run>();
    for (const ItemPtr& item : m_table.items()) {
        if (isWaiting(*item) && !item->resolvedURL())
            run->candidates.push_back(item->id());
    }
    if (run->candidates.empty())
        return;
    if (m_prefetchTask)
        m_prefetchTask->isCancelled = true;
    m_prefetchTask = run;
    m_queue.later([this, run] { advance(run); });
}

void FilenamePrefetch::advance(const std::shared_ptr<Run>& run)
{
    while (!run->isCancelled && run->next < run->candidates.size() && m_lookUps < maxLookUps) {
        const ItemPtr item = m_table.find(run->candidates[run->next++]);
        const HostAccount* const account = item ? accountFor(*item) : nullptr;
        if (!account)
            continue;
        ++run->inFlight;
        ++m_lookUps;
        spawn(lookUp(run, item, *account));
    }
    const bool hasMore = !run->isCancelled && run->next < run->candidates.size();
    if (run->inFlight == 0 && !hasMore && !std::exchange(run->isOver, true))
        removeDuplicateNames();
}

const HostAccount* FilenamePrefetch::accountFor(const DownloadItem& item) const
{
    const Link& url = item.originalURL();
    if (!isWaiting(item) || !m_resolvers.profiles().mayLookUpNames(url))
        return nullptr;
    if (!m_settings.downloadRevFiles.value() && isRevName(url.lastPathComponent()))
        return nullptr;
    const HostResolver* const resolver = m_resolvers.hostResolverForURL(url);
    return resolver ? m_accounts.firstEnabled(resolver->supportedHost()) : nullptr;
}

QCoro::Task<> FilenamePrefetch::lookUp(std::shared_ptr<Run> run, ItemPtr item, HostAccount account)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    std::optional<QString> name;
    bool isTold = true;
    try {
        name = co_await m_resolvers.hostResolverForURL(item->originalURL())
                   ->fetchFilename(item->originalURL(), account, {});
    } catch (const ResolverError& error) {
        isTold = false;
        if (error.kind() == ResolverError::Kind::linkNotFound)
            name = nameFromLink(item->originalURL());
    } catch (const std::exception&) {
        // No name is no harm; the download itself will tell what is wrong.
    }
    if (lifetime.isOver())
        co_return;
    if (name && !name->isEmpty() && mayBeRenamed(*item)) {
        if (isTold)
            item->setToldFilename(*name);
        else
            item->setFilename(*name);
    }
    m_queue.later([this, run] { lookUpEnded(run); });
}

void FilenamePrefetch::lookUpEnded(const std::shared_ptr<Run>& run)
{
    --run->inFlight;
    --m_lookUps;
    advance(run);
    if (m_prefetchTask != run)
        advance(m_prefetchTask);
}

void FilenamePrefetch::removeDuplicateNames()
{
    QSet<QString> seen;
    QSet<ItemId> duplicates;
    for (const ItemPtr& item : m_table.items()) {
        if (!isWaiting(*item) || !item->isNameTold())
            continue;
        const qsizetype known = seen.size();
        seen.insert(item->filename().toLower());
        if (seen.size() == known)
            duplicates.insert(item->id());
    }
    if (duplicates.isEmpty())
        return;
    m_table.remove(duplicates);
    m_queue.saveQueue();
}

} // namespace vormel

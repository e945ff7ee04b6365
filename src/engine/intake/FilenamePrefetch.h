#pragma once

#include "engine/queue/ItemTable.h"
#include "engine/queue/QueueTurn.h"
#include "model/HostAccount.h"
#include "platform/async/Lifetime.h"

#include <QCoroTask>

namespace vormel {

class Accounts;
class AppSettings;
class ResolverTables;

/// Looks up the real names of files before they are fetched, and then drops items that turned out to be the same file.
/// A new run ends the one before, whose last look-ups go on and count: at most five are under way. UI thread only.
class FilenamePrefetch
{
public:
    /// All must outlive this.
    FilenamePrefetch(ItemTable& table, const AppSettings& settings, const ResolverTables& resolvers,
                     const Accounts& accounts, QueueTurn& queue);

    void prefetchFilenames();

    /// Of queued and paused items with the same name, in any letter case, only the first stays. Names that nobody has
    /// told since the start of the program prove nothing: many links of one script end alike.
    void removeDuplicateNames();

private:
    struct Run
    {
        std::vector<ItemId> candidates;
        std::size_t next = 0;
        int inFlight = 0;
        bool isCancelled = false;
        bool isOver = false;
    };

    void advance(const std::shared_ptr<Run>& run);
    void lookUpEnded(const std::shared_ptr<Run>& run);
    /// The account to ask for the item's name, if it is to be asked for.
    [[nodiscard]] const HostAccount* accountFor(const DownloadItem& item) const;
    QCoro::Task<> lookUp(std::shared_ptr<Run> run, ItemPtr item, HostAccount account);

    ItemTable& m_table;
    const AppSettings& m_settings;
    const ResolverTables& m_resolvers;
    const Accounts& m_accounts;
    QueueTurn& m_queue;
    std::shared_ptr<Run> m_prefetchTask;
    int m_lookUps = 0; ///< of all runs
    Lifetime m_lifetime;
};

} // namespace vormel

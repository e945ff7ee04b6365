#pragma once

#include "engine/queue/ItemTable.h"
#include "engine/queue/QueueTurn.h"
#include "model/HostAccount.h"
#include "platform/async/Lifetime.h"

#include <QCoroTask>

#include <chrono>
#include <stop_token>

namespace vormel {

class Accounts;
class AppSettings;
class HostRests;
class NetworkRecovery;
class Offline;
class PartFile;
class PostDownload;
class Questions;
class ResolverError;
class ResolverTables;
class RevFiles;
class SameNames;
class TransferSession;
class Tries;

/// Takes a queued item to a running transfer: account, download address, folder, part file, request. UI thread only.
class DownloadStarter
{
public:
    /// All must outlive this. A start that is still waiting when this goes comes to nothing.
    struct Ports
    {
        ItemTable& table;
        const AppSettings& settings;
        Clock& clock;
        const ResolverTables& resolvers;
        TransferSession& session;
        PostDownload& postDownload;
        NetworkRecovery& recovery;
        const RevFiles& revFiles;
        Questions& questions;
        const Accounts& accounts;
        Tries& tries;
        const Offline& offline;
        HostRests& hosts;
        SameNames& sameNames;
        QueueTurn& queue;
    };
    explicit DownloadStarter(const Ports& ports);
    DownloadStarter(const DownloadStarter&) = delete;
    DownloadStarter& operator=(const DownloadStarter&) = delete;
    ~DownloadStarter();

    /// Never throws; every failure ends in the item's status.
    QCoro::Task<> startDownload(ItemPtr item);

    /// A start of the item that is still resolving comes to nothing, and asks nobody any more.
    void abandon(const ItemId& id);

private:
    /// One try to start an item; stopped once it comes to nothing.
    using Attempt = std::stop_source;

    /// The address to download from. May throw ResolverError.
    [[nodiscard]] QCoro::Task<Link> downloadAddress(ItemPtr item, Attempt attempt);
    [[nodiscard]] bool isCurrent(const ItemPtr& item, const Attempt& attempt) const;
    void beginTransfer(DownloadItem& item, const Link& address);
    /// May the address not be asked now that it is known?
    [[nodiscard]] bool mustWait(const DownloadItem& item, const Link& address);
    /// What is in the part file is what the item has.
    void takeOver(DownloadItem& item, PartFile& file, const QString& usualPath);
    void resolveFailed(DownloadItem& item, const ResolverError& error, SteadyTime beganAt);
    void startFailed(DownloadItem& item, const QString& message);

    Ports m_ports;
    Lifetime m_lifetime;
    /// The latest attempt of each item that is being started.
    std::unordered_map<ItemId, Attempt> m_attempts;
};

} // namespace vormel

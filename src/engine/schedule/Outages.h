#pragma once

#include "engine/queue/ItemTable.h"
#include "engine/queue/QueueTurn.h"

namespace vormel {

class DownloadStarter;
class HttpClient;
class Offline;
class TransferSession;
class Tries;

/// What the queue does when the network goes or comes and when the machine wakes up: nothing is spent by it, and what
/// hangs on a dead connection begins anew from where it is. UI thread only.
class Outages
{
public:
    /// All must outlive this.
    struct Ports
    {
        const ItemTable& table;
        Clock& clock;
        HttpClient& http;
        TransferSession& session;
        DownloadStarter& starter;
        Offline& offline;
        Tries& tries;
        QueueTurn& queue;
    };
    explicit Outages(const Ports& ports);

    /// The desktop has said something of the network. True if that was news.
    bool networkChanged();
    /// The user knows that there is a network.
    void goOnThoughOffline();
    void machineWokeUp();

    /// Is there anything that waits for the network?
    [[nodiscard]] bool isAnythingHeldBack() const;

private:
    /// A transfer that was running when its connection became doubtful.
    struct Doubtful
    {
        ItemId id;
        quint64 run = 0;
        qint64 bytes = 0;
    };

    void renewConnections();
    void beginAnewWhatHangs();
    void putBack(DownloadItem& item);

    Ports m_ports;
    bool m_wasOffline;
    std::vector<Doubtful> m_doubtful;
    Timer m_look;
};

} // namespace vormel

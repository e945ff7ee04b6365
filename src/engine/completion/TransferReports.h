#pragma once

#include "engine/queue/ItemTable.h"
#include "engine/transfer/TransferSession.h"

#include <functional>

namespace vormel {

class AppSettings;
class QueueTurn;
class TransferCompletion;

/// Keeps the items true to what their transfers tell, and the speed of all together. UI thread only.
class TransferReports final : public TransferSession::Owner
{
public:
    /// All must outlive this. The speed of all is told after each tick.
    struct Ports
    {
        const ItemTable& table;
        const AppSettings& settings;
        TransferSession& session;
        TransferCompletion& completion;
        QueueTurn& queue;
        std::function<void()> speedChanged;
    };
    explicit TransferReports(Ports ports);

    [[nodiscard]] double totalSpeedBytesPerSec() const { return m_totalSpeedBytesPerSec; }

private:
    void transferAnswered(const ItemId& id, const HeadFacts& facts) override;
    void transferTicked(const ItemId& id, qint64 bytes, double bytesPerSecond) override;
    void partIsGone(const ItemId& id) override;
    void transferEnded(const ItemId& id, TransferEnd end) override;

    Ports m_ports;
    double m_totalSpeedBytesPerSec = 0;
};

} // namespace vormel

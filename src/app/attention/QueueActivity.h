#pragma once

#include "engine/DownloadManager.h"

#include <QHash>
#include <QObject>

#include <optional>

namespace vormel {

/// What is going on in the queue as a whole, in sums that are kept up with each change of an item, whatever the length
/// of the queue. UI thread only.
class QueueActivity final : public QObject
{
    Q_OBJECT

public:
    /// Goes through the queue once. The manager must outlive this.
    explicit QueueActivity(DownloadManager& manager);

    /// Do bytes move, or are they about to?
    [[nodiscard]] bool isMoving() const { return m_sums.moving > 0; }
    /// Does a tool work on an archive, or will it in its turn?
    [[nodiscard]] bool areToolsAtWork() const { return m_sums.tools > 0; }
    /// How many files are on their way or queued.
    [[nodiscard]] qsizetype filesLeft() const { return m_sums.left; }
    /// How far these files are, and those that have come since the last time when none was left. A file of which
    /// nobody has told a size counts as the others do on average; nothing as long as that is true of all.
    [[nodiscard]] std::optional<double> fraction() const;

Q_SIGNALS:
    void changed();

private:
    /// What one item adds to the sums.
    struct Share
    {
        qsizetype moving = 0;
        qsizetype tools = 0;
        qsizetype left = 0;
        qsizetype files = 0;
        qsizetype sized = 0;
        qint64 received = 0;
        qint64 total = 0;

        Share& operator+=(const Share& other);
        Share& operator-=(const Share& other);
        friend bool operator==(const Share&, const Share&) = default;
    };

    [[nodiscard]] static Share shareOf(const DownloadItem& item, const Share& before);
    void add(qsizetype first, qsizetype count);
    void putBack(const QSet<ItemId>& ids);
    void remove(const QSet<ItemId>& ids);
    void recount(const ItemId& id, ItemField field);
    void replace(const ItemId& id, const Share& share);
    void forgetWhatHasCome();

    DownloadManager& m_manager;
    QHash<ItemId, Share> m_shares; ///< of the items that add something
    Share m_sums;
};

} // namespace vormel

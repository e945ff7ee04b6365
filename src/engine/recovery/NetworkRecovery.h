#pragma once

#include "engine/queue/ItemTable.h"

namespace vormel {

class AppSettings;
class RevFiles;

/// Saves a set one of whose parts has failed for good: after a countdown on that part, and once more when the set has
/// come to rest, its recovery volumes are let through. UI thread only.
class NetworkRecovery
{
public:
    /// All must outlive this.
    NetworkRecovery(const ItemTable& table, const AppSettings& settings, Clock& clock, RevFiles& revFiles);

    /// Shows the countdown on the failed part of a set that has recovery volumes left to fetch. One that is running
    /// goes on.
    void startRecoveryCountdown(DownloadItem& item, int seconds);
    /// Looks at the item's set when no part of it has ended for a minute.
    void scheduleRecoveryCheck(const DownloadItem& item);

    /// The user wants the sets of these items repaired: failed archives may be tried again, and the recovery volumes
    /// are let through.
    void retryWithRevFiles(const std::vector<ItemPtr>& items);

    /// Stops the item's countdown, if one is running.
    void cancelCountdown(DownloadItem& item);

private:
    void scheduleRecoveryCheck(const QString& base, std::chrono::seconds delay);
    void runRecoveryCheck(const QString& base);
    void countDown(const ItemId& id, int seconds);
    void waitASecond(const ItemId& id, int seconds);

    const ItemTable& m_table;
    const AppSettings& m_settings;
    Clock& m_clock;
    RevFiles& m_revFiles;
    std::unordered_map<ItemId, Timer> m_recoveryCountdowns;
    std::unordered_map<QString, Timer> m_pendingRecovery; ///< by base name
};

inline constexpr int recoveryCountdownSeconds = 10;

} // namespace vormel

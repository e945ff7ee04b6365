#pragma once

#include "engine/queue/ItemTable.h"

namespace vormel {

class AppSettings;
class TransferSession;

/// The items that wait because another is fetching a file of their very name. UI thread only.
class SameNames
{
public:
    /// All must outlive this.
    SameNames(const ItemTable& table, const AppSettings& settings, const TransferSession& session);

    /// Is another item fetching a file of its name?
    [[nodiscard]] bool isTaken(const DownloadItem& item) const;
    /// The same for a queued item, which says so then.
    [[nodiscard]] bool holdBack(DownloadItem& item);
    /// Items whose name has become free no longer say that they wait for it.
    void review();

private:
    const ItemTable& m_table;
    const AppSettings& m_settings;
    const TransferSession& m_session;
    QSet<ItemId> m_waiting;
};

} // namespace vormel

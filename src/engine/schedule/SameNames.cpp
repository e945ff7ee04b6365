#include "engine/schedule/SameNames.h"

#include "engine/transfer/TransferSession.h"
#include "model/AppSettings.h"
#include "model/DownloadPaths.h"

namespace vormel {

SameNames::SameNames(const ItemTable& table, const AppSettings& settings, const TransferSession& session)
    : m_table(table)
    , m_settings(settings)
    , m_session(session)
{}

bool SameNames::isTaken(const DownloadItem& item) const
{
    return m_session.isFetching(m_settings.paths().finalFile(item.filename()));
}

bool SameNames::holdBack(DownloadItem& item)
{
    if (!isTaken(item))
        return false;
    item.setWait({ItemWait::sameName, {}, {}});
    m_waiting.insert(item.id());
    return true;
}

void SameNames::review()
{
    m_waiting.removeIf([this](const ItemId& id) {
        const ItemPtr item = m_table.find(id);
        const bool isWaiting = item && item->wait().kind == ItemWait::sameName;
        if (isWaiting && isTaken(*item))
            return false;
        if (isWaiting)
            item->setWait({});
        return true;
    });
}

} // namespace vormel

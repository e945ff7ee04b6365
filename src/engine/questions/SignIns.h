#pragma once

#include "model/HostAccount.h"
#include "model/ItemId.h"

#include <QSet>

#include <optional>
#include <utility>

namespace vormel {

/// The queued items that wait until the user has signed in to their host, and the host whose sheet is shown. UI thread
/// only.
class SignIns
{
public:
    /// The host that the user is asked about; another one waits until its items are tried again.
    [[nodiscard]] const std::optional<SupportedHost>& pendingLogin() const { return m_pendingLogin; }
    [[nodiscard]] bool isAwaited(const ItemId& id) const { return m_itemsAwaitingLogin.contains(id); }

    /// True if the user is to be asked now.
    bool await(const ItemId& id, SupportedHost host)
    {
        m_itemsAwaitingLogin.insert(id);
        const bool isNew = !m_pendingLogin;
        if (isNew)
            m_pendingLogin = host;
        return isNew;
    }
    /// The question is answered. Gives the items that waited for it.
    QSet<ItemId> answered()
    {
        m_pendingLogin.reset();
        return std::exchange(m_itemsAwaitingLogin, {});
    }
    /// The item waits no longer: it has been paused, stopped, completed or removed.
    void forget(const ItemId& id) { m_itemsAwaitingLogin.remove(id); }

private:
    std::optional<SupportedHost> m_pendingLogin;
    QSet<ItemId> m_itemsAwaitingLogin;
};

} // namespace vormel

#pragma once

#include "model/HostAccount.h"
#include "model/ItemId.h"
#include "platform/clock/Clock.h"

#include <QSet>

#include <map>
#include <optional>
#include <utility>

namespace vormel {

/// The queued items that wait until the user has signed in to their host, and the host whose sheet is shown. Where a
/// host that the user has just signed in to asks again, the sheet would open for ever: it stays closed for a minute. UI
/// thread only.
class SignIns
{
public:
    /// The host that the user is asked about; another one waits until its items are tried again.
    [[nodiscard]] const std::optional<SupportedHost>& pendingLogin() const { return m_pendingLogin; }
    [[nodiscard]] bool isAwaited(const ItemId& id) const { return m_itemsAwaitingLogin.contains(id); }

    /// Has a sign-in that the user ended so short a time ago been of no use to a try that began after it?
    [[nodiscard]] bool wasInVain(SupportedHost host, SteadyTime triedAt, SteadyTime now) const
    {
        constexpr std::chrono::minutes rest(1);
        const auto found = m_signedInAt.find(host);
        return found != m_signedInAt.end() && triedAt >= found->second && now - found->second <= rest;
    }
    /// Did the user sign in to the host after that?
    [[nodiscard]] bool hasSignedInSince(SupportedHost host, SteadyTime triedAt) const
    {
        const auto found = m_signedInAt.find(host);
        return found != m_signedInAt.end() && triedAt < found->second;
    }
    /// True if the user is to be asked now.
    bool await(const ItemId& id, SupportedHost host)
    {
        m_itemsAwaitingLogin.insert(id);
        const bool isNew = !m_pendingLogin;
        if (isNew)
            m_pendingLogin = host;
        return isNew;
    }
    void signedIn(SteadyTime now)
    {
        if (m_pendingLogin)
            m_signedInAt[*m_pendingLogin] = now;
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
    std::map<SupportedHost, SteadyTime> m_signedInAt; ///< last
};

} // namespace vormel

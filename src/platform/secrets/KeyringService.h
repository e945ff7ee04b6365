#pragma once

#include "platform/async/GlibContext.h"
#include "platform/async/SharedWork.h"
#include "platform/clock/Clock.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <libsecret/secret.h>
#include <memory>

namespace vormel {

/// The way to the desktop's Secret Service on a session bus: whether there is one, and an open session with it. The
/// connection is its own, so that the end of the bus does not end the program. UI thread only.
class KeyringService
{
public:
    using Session = std::shared_ptr<SecretService>;

    /// Looks at once whether there is a service, and starts none. A bus that says nothing for a while is none. An empty
    /// address is a machine without a bus. `changed` is told in the middle of GLib's work whenever isThere() is
    /// another. All calls must have ended before this does.
    KeyringService(GlibContext& glib, Clock& clock, const QString& busAddress, std::function<void()> changed);
    KeyringService(const KeyringService&) = delete;
    KeyringService& operator=(const KeyringService&) = delete;
    ~KeyringService();

    /// Lets go of the bus, so that no call waits for an answer any more.
    void close();

    /// Does one answer, or can one be started? Yes until it is known.
    [[nodiscard]] bool isThere() const { return m_isThere; }

    /// Starts the service if it can be. Null where none answers.
    [[nodiscard]] SharedEventual<Session> open();
    /// The next one to ask gets a new session.
    void forget() { m_session.reset(); }

private:
    [[nodiscard]] QCoro::Task<bool> connect();
    [[nodiscard]] QCoro::Task<> reachBus();
    [[nodiscard]] QCoro::Task<Session> openSession();
    [[nodiscard]] QCoro::Task<bool> findsStarter();
    [[nodiscard]] SharedEventual<bool> connected();
    void watch();
    void unwatch();
    void setThere(bool isThere);

    GlibContext& m_glib;
    Clock& m_clock;
    QByteArray m_busAddress;
    std::function<void()> m_changed;
    std::shared_ptr<GDBusConnection> m_connection;
    guint m_watch = 0;
    Session m_session;
    SharedWork<bool> m_connecting;
    SharedWork<Session> m_opening;
    bool m_canBeStarted = false;
    bool m_isThere = true;
};

} // namespace vormel

#include "platform/desktop/DesktopNetwork.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QNetworkInformation>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

using Reachability = QNetworkInformation::Reachability;

/// What the backends ask for first. A mere ping would be answered by the manager's bus library though it hangs.
QDBusMessage stateCall()
{
    const QString manager = u"org.freedesktop.NetworkManager"_s;
    QDBusMessage call = QDBusMessage::createMethodCall(manager, u"/org/freedesktop/NetworkManager"_s,
                                                       u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call << manager << u"State"_s;
    call.setAutoStartService(false);
    return call;
}

} // namespace

DesktopNetwork::DesktopNetwork(Clock& clock, std::chrono::milliseconds patience, Loader loader)
    : m_clock(clock)
    , m_patience(patience)
    , m_loader(std::move(loader))
{}

bool DesktopNetwork::loadBackend()
{
    return QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Reachability);
}

void DesktopNetwork::begin(const QDBusConnection& systemBus)
{
    constexpr int mostTimes = 4;
    if (systemBus.isConnected())
        ask(systemBus, mostTimes - 1);
    else
        load();
}

void DesktopNetwork::ask(const QDBusConnection& systemBus, int timesLeft)
{
    const QDBusPendingCall call = systemBus.asyncCall(stateCall(), static_cast<int>(m_patience.count()));
    auto* const answer = new QDBusPendingCallWatcher(call, this); // deletes itself
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, systemBus, timesLeft] {
        constexpr std::chrono::seconds pause(30);
        answer->deleteLater();
        // That there is no such manager is an answer, too: other backends do without it.
        const QDBusError::ErrorType error = answer->error().type();
        if (error != QDBusError::NoReply && error != QDBusError::Timeout && error != QDBusError::TimedOut)
            load();
        else if (timesLeft > 0)
            m_askAgain = m_clock.after(pause, [this, systemBus, timesLeft] { ask(systemBus, timesLeft - 1); });
    });
}

void DesktopNetwork::load()
{
    if (!m_loader() || !QNetworkInformation::instance())
        return;
    const QNetworkInformation* const information = QNetworkInformation::instance();
    // "Unknown" and networks that only lead to neighbours are no reason to wait.
    connect(information, &QNetworkInformation::reachabilityChanged, this,
            [this](Reachability now) { take(now != Reachability::Disconnected); });
    take(information->reachability() != Reachability::Disconnected);
}

void DesktopNetwork::take(bool isOnline)
{
    if (std::exchange(m_isOnline, isOnline) != isOnline)
        Q_EMIT changed();
}

} // namespace vormel

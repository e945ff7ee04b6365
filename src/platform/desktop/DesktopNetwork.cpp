#include "platform/desktop/DesktopNetwork.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QNetworkInformation>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

using Reachability = QNetworkInformation::Reachability;

QDBusMessage ping()
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(u"org.freedesktop.NetworkManager"_s, u"/org/freedesktop/NetworkManager"_s,
                                       u"org.freedesktop.DBus.Peer"_s, u"Ping"_s);
    call.setAutoStartService(false);
    return call;
}

} // namespace

void DesktopNetwork::begin(const QDBusConnection& systemBus)
{
    if (!systemBus.isConnected())
        return load();
    auto* const answer = new QDBusPendingCallWatcher(systemBus.asyncCall(ping()), this); // deletes itself
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        // That there is no such manager is an answer, too: other backends do without it.
        const QDBusError::ErrorType error = answer->error().type();
        if (error != QDBusError::NoReply && error != QDBusError::Timeout && error != QDBusError::TimedOut)
            load();
    });
}

void DesktopNetwork::load()
{
    if (!QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Reachability))
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

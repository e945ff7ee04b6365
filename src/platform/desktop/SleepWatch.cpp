#include "platform/desktop/SleepWatch.h"

#include "platform/async/Spawn.h"

using namespace Qt::StringLiterals;

namespace vormel {

SleepWatch::SleepWatch(QObject* parent)
    : QObject(parent)
{}

void SleepWatch::follow(QDBusConnection bus)
{
    if (!bus.isConnected())
        return;
    m_calls.emplace(bus);
    // To whoever that is: to name it here would mean to wait until the bus has told who has the name.
    bus.connect({}, u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s, this,
                SLOT(prepareForSleep(bool, QDBusMessage)));
}

void SleepWatch::prepareForSleep(bool isGoingToSleep, const QDBusMessage& message)
{
    if (!isGoingToSleep)
        spawn(wakeUpIfTold(message.service()));
}

/// Anybody may send such a signal; it counts from the login manager alone.
QCoro::Task<> SleepWatch::wakeUpIfTold(QString sender)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    QDBusMessage ask = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                      u"org.freedesktop.DBus"_s, u"GetNameOwner"_s);
    ask << u"org.freedesktop.login1"_s;
    const QDBusMessage owner = co_await m_calls->call(ask);
    if (!lifetime.isOver() && owner.type() == QDBusMessage::ReplyMessage && owner.arguments().value(0) == sender)
        Q_EMIT wokeUp();
}

} // namespace vormel

#include "platform/desktop/SleepInhibitor.h"

#include "platform/async/Spawn.h"

#include <QDBusUnixFileDescriptor>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

QDBusMessage loginCall(const QString& reason)
{
    QDBusMessage call = QDBusMessage::createMethodCall(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
                                                       u"org.freedesktop.login1.Manager"_s, u"Inhibit"_s);
    // This covers the sleep of an idle machine, too. The lid and the power key stay the user's.
    call << u"sleep"_s << u"Vormel"_s << reason << u"block"_s;
    return call;
}

/// Asks a service of the session, if it is there.
QDBusMessage sessionCall(const QString& service, const QString& path, const QString& interface, const QString& method)
{
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setAutoStartService(false);
    return call;
}

QDBusMessage powerCall(const QString& method)
{
    const QString service = u"org.freedesktop.PowerManagement"_s;
    return sessionCall(service, u"/org/freedesktop/PowerManagement/Inhibit"_s, service + u".Inhibit"_s, method);
}

QDBusMessage sessionManagerCall(const QString& method)
{
    const QString service = u"org.gnome.SessionManager"_s;
    return sessionCall(service, u"/org/gnome/SessionManager"_s, service, method);
}

} // namespace

DesktopSleepInhibitor::DesktopSleepInhibitor(QString systemBus, QDBusConnection sessionBus)
    : m_systemBus(std::move(systemBus))
    , m_session(std::move(sessionBus))
{}

DesktopSleepInhibitor::~DesktopSleepInhibitor()
{
    release();
}

void DesktopSleepInhibitor::hold(const QString& reason)
{
    const bool isDone =
        std::ranges::any_of(m_locks, [](const Lock& lock) { return lock.isAsked || lock.held.isGiven(); });
    if (std::exchange(m_isWanted, true) && isDone)
        return;
    for (Lock& lock : m_locks) {
        if (!lock.isAsked)
            spawn(take(lock, reason));
    }
}

void DesktopSleepInhibitor::release()
{
    m_isWanted = false;
    for (Lock& lock : m_locks)
        const Turn given = std::exchange(lock.held, Turn());
}

QCoro::Task<> DesktopSleepInhibitor::take(Lock& lock, QString reason)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    lock.isAsked = true;
    Turn given = co_await (this->*lock.ask)(reason);
    if (lifetime.isOver())
        co_return;
    lock.isAsked = false;
    if (m_isWanted) // or it goes back at once
        lock.held = std::move(given);
}

QCoro::Task<Turn> DesktopSleepInhibitor::askLogin(QString reason)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    const std::optional<QDBusConnection> bus = co_await m_systemBus.open();
    if (lifetime.isOver() || !bus)
        co_return Turn();
    if (!m_system)
        m_system.emplace(*bus);
    const QDBusMessage answer = co_await m_system->call(loginCall(reason));
    const auto descriptor = answer.arguments().value(0).value<QDBusUnixFileDescriptor>();
    if (answer.type() != QDBusMessage::ReplyMessage || !descriptor.isValid())
        co_return Turn();
    // Whoever closes the last copy of it gives sleep back.
    co_return Turn([kept = descriptor]() mutable { kept = QDBusUnixFileDescriptor(); });
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the same for all who are asked, of which one is a coroutine
QCoro::Task<Turn> DesktopSleepInhibitor::askPowerManagement(QString reason)
{
    QDBusMessage ask = powerCall(u"Inhibit"_s);
    ask << u"Vormel"_s << reason;
    return askSession(ask, powerCall(u"UnInhibit"_s));
}

// NOLINTNEXTLINE(performance-unnecessary-value-param)
QCoro::Task<Turn> DesktopSleepInhibitor::askSessionManager(QString reason)
{
    constexpr uint noWindow = 0;
    constexpr uint suspend = 4;
    QDBusMessage ask = sessionManagerCall(u"Inhibit"_s);
    ask << u"org.vormel.Vormel"_s << noWindow << reason << suspend;
    return askSession(ask, sessionManagerCall(u"Uninhibit"_s));
}

QCoro::Task<Turn> DesktopSleepInhibitor::askSession(QDBusMessage ask, QDBusMessage giveBack)
{
    const QDBusConnection bus = m_session.bus();
    const QDBusMessage answer = co_await m_session.call(ask);
    if (answer.type() != QDBusMessage::ReplyMessage)
        co_return Turn();
    giveBack << answer.arguments().value(0).toUInt(); // the cookie
    co_return Turn([bus, giveBack] { (void)bus.send(giveBack); });
}

} // namespace vormel

#include "platform/desktop/SleepInhibitor.h"

#include "platform/async/Spawn.h"

#include <QDBusUnixFileDescriptor>
#include <QUuid>

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

QDBusMessage powerCall(const QString& method, const QVariant& argument)
{
    const QString service = u"org.freedesktop.PowerManagement"_s;
    QDBusMessage call = QDBusMessage::createMethodCall(service, u"/org/freedesktop/PowerManagement/Inhibit"_s,
                                                       service + u".Inhibit"_s, method);
    call.setAutoStartService(false);
    call << argument;
    return call;
}

} // namespace

DesktopSleepInhibitor::DesktopSleepInhibitor(QString systemBus, QDBusConnection sessionBus)
    : m_systemAddress(std::move(systemBus))
    , m_systemName(u"vormel-sleep-"_s + QUuid::createUuid().toString(QUuid::WithoutBraces))
    , m_session(std::move(sessionBus))
{}

DesktopSleepInhibitor::~DesktopSleepInhibitor()
{
    release();
    QDBusConnection::disconnectFromBus(m_systemName);
}

void DesktopSleepInhibitor::hold(const QString& reason)
{
    m_isWanted = true;
    if (!m_held.isGiven() && !m_isAsking)
        spawn(take(reason));
}

void DesktopSleepInhibitor::release()
{
    m_isWanted = false;
    const Turn given = std::exchange(m_held, Turn());
}

QCoro::Task<> DesktopSleepInhibitor::take(QString reason)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    m_isAsking = true;
    Turn given = co_await askLogin(reason);
    if (lifetime.isOver())
        co_return;
    if (!given.isGiven())
        given = co_await askPowerManagement(reason);
    if (lifetime.isOver())
        co_return;
    m_isAsking = false;
    if (m_isWanted) // or it goes back at once
        m_held = std::move(given);
}

QCoro::Task<> DesktopSleepInhibitor::openSystemBus()
{
    if (m_system)
        co_return;
    const Lifetime::Watch lifetime = m_lifetime.watch();
    const QString name = m_systemName;
    auto open = [address = m_systemAddress, name] { return QDBusConnection::connectToBus(address, name); };
    const QDBusConnection bus = co_await m_opening.run(open);
    if (lifetime.isOver())
        QDBusConnection::disconnectFromBus(name);
    else
        m_system.emplace(bus);
}

QCoro::Task<Turn> DesktopSleepInhibitor::askLogin(QString reason)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    co_await openSystemBus();
    if (lifetime.isOver())
        co_return Turn();
    const QDBusMessage answer = co_await m_system->call(loginCall(reason));
    const auto descriptor = answer.arguments().value(0).value<QDBusUnixFileDescriptor>();
    if (answer.type() != QDBusMessage::ReplyMessage || !descriptor.isValid())
        co_return Turn();
    // Whoever closes the last copy of it gives sleep back.
    co_return Turn([kept = descriptor]() mutable { kept = QDBusUnixFileDescriptor(); });
}

QCoro::Task<Turn> DesktopSleepInhibitor::askPowerManagement(QString reason)
{
    QDBusMessage ask = powerCall(u"Inhibit"_s, u"Vormel"_s);
    ask << reason;
    const QDBusConnection bus = m_session.bus();
    const QDBusMessage answer = co_await m_session.call(ask);
    if (answer.type() != QDBusMessage::ReplyMessage)
        co_return Turn();
    const uint cookie = answer.arguments().value(0).toUInt();
    co_return Turn([bus, cookie] { (void)bus.send(powerCall(u"UnInhibit"_s, cookie)); });
}

} // namespace vormel

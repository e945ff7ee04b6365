#include "platform/desktop/SystemBus.h"

#include <QUuid>

using namespace Qt::StringLiterals;

namespace vormel {

SystemBus::SystemBus(QString address)
    : m_address(std::move(address))
    , m_name(u"vormel-system-"_s + QUuid::createUuid().toString(QUuid::WithoutBraces))
{}

SystemBus::~SystemBus()
{
    QDBusConnection::disconnectFromBus(m_name);
}

QCoro::Task<std::optional<QDBusConnection>> SystemBus::open()
{
    if (m_bus)
        co_return *m_bus;
    const Lifetime::Watch lifetime = m_lifetime.watch();
    const QString name = m_name;
    auto connect = [address = m_address, name] { return QDBusConnection::connectToBus(address, name); };
    const QDBusConnection bus = co_await m_opening.run(connect);
    if (lifetime.isOver()) {
        QDBusConnection::disconnectFromBus(name);
        co_return std::nullopt;
    }
    m_bus.emplace(bus);
    co_return bus;
}

} // namespace vormel

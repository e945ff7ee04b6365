#pragma once

#include <QCoroTask>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

namespace vormel {

/// Calls on one connection to a bus whose answers are awaited. UI thread only, which never waits for the bus.
class BusCalls
{
public:
    explicit BusCalls(QDBusConnection bus)
        : m_bus(std::move(bus))
    {}

    [[nodiscard]] QDBusConnection& bus() { return m_bus; }

    /// The answer, or the error that came in its place: after half a minute at the latest, also where there is no bus.
    /// At the end of this all that is awaited is an invalid message.
    [[nodiscard]] QCoro::Task<QDBusMessage> call(QDBusMessage message);

private:
    QDBusConnection m_bus;
    QObject m_pending; ///< owns what waits for an answer
};

} // namespace vormel

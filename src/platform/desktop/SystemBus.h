#pragma once

#include "platform/async/Background.h"
#include "platform/async/Lifetime.h"

#include <QDBusConnection>
#include <QString>

#include <optional>

namespace vormel {

/// A way of our own to the bus of the whole machine, which is not opened before somebody needs it, and then on another
/// thread: a bus may accept and be silent. UI thread only. Its end closes the way.
class SystemBus
{
public:
    explicit SystemBus(QString address);
    SystemBus(const SystemBus&) = delete;
    SystemBus& operator=(const SystemBus&) = delete;
    ~SystemBus();

    /// Not connected where there is no bus; nothing if this has gone meanwhile.
    [[nodiscard]] QCoro::Task<std::optional<QDBusConnection>> open();

private:
    QString m_address;
    QString m_name; ///< of the connection
    std::optional<QDBusConnection> m_bus;
    Background m_opening;
    Lifetime m_lifetime;
};

} // namespace vormel

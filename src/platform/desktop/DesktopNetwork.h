#pragma once

#include "platform/desktop/NetworkState.h"

#include <QDBusConnection>

namespace vormel {

/// NetworkState by whatever backend Qt finds for this desktop. Online until begin(), and for good where there is no
/// backend.
class DesktopNetwork final : public NetworkState
{
    Q_OBJECT

public:
    /// Looks for a backend; costs a moment, so the window comes first. Qt's backends wait for the network manager on
    /// the bus, which is therefore asked to show itself before: one that hangs is left alone.
    void begin(const QDBusConnection& systemBus);

    [[nodiscard]] bool isOnline() const override { return m_isOnline; }

private:
    void load();
    void take(bool isOnline);

    bool m_isOnline = true;
};

} // namespace vormel

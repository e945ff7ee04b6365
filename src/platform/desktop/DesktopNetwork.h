#pragma once

#include "platform/clock/Clock.h"
#include "platform/desktop/NetworkState.h"

#include <QDBusConnection>

#include <chrono>
#include <functional>

namespace vormel {

/// NetworkState by whatever backend Qt finds for this desktop. Online until begin(), and for good where there is no
/// backend.
class DesktopNetwork final : public NetworkState
{
    Q_OBJECT

public:
    /// Loads a backend of Qt's; false if there is none.
    using Loader = std::function<bool()>;

    /// The clock must outlive this. The patience is with the network manager, each time that it is asked.
    explicit DesktopNetwork(Clock& clock, std::chrono::milliseconds patience = std::chrono::seconds(25),
                            Loader loader = loadBackend);

    /// Looks for a backend; costs a moment, so the window comes first. Qt's backends wait for the network manager on
    /// the bus, which is therefore asked to show itself before. One that does not is asked again some times, as it may
    /// just begin anew, and then left alone.
    void begin(const QDBusConnection& systemBus);

    [[nodiscard]] bool isOnline() const override { return m_isOnline; }

private:
    static bool loadBackend();
    void ask(const QDBusConnection& systemBus, int timesLeft);
    void load();
    void take(bool isOnline);

    Clock& m_clock;
    std::chrono::milliseconds m_patience;
    Loader m_loader;
    Timer m_askAgain;
    bool m_isOnline = true;
};

} // namespace vormel

#pragma once

#include "platform/clock/Clock.h"

#include <QObject>

namespace vormel {

/// The machine's own clocks, with timers run by the event loop of the thread that made this object.
class SystemClock final : public Clock
{
public:
    [[nodiscard]] WallTime wallNow() const override;
    [[nodiscard]] SteadyTime steadyNow() const override;
    [[nodiscard]] Timer after(std::chrono::nanoseconds delay, std::function<void()> action) override;

private:
    QObject m_context;
};

} // namespace vormel

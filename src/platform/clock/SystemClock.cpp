#include "platform/clock/SystemClock.h"

#include <QTimer>

namespace vormel {

WallTime SystemClock::wallNow() const
{
    return std::chrono::system_clock::now();
}

SteadyTime SystemClock::steadyNow() const
{
    return std::chrono::steady_clock::now();
}

Timer SystemClock::after(std::chrono::nanoseconds delay, std::function<void()> action)
{
    auto pending = std::make_shared<Timer::Pending>(Timer::Pending{std::move(action)});
    // Rounded up: a timer that fires early would find the time it waited for not yet come.
    const auto milliseconds =
        std::chrono::ceil<std::chrono::milliseconds>(std::max(delay, std::chrono::nanoseconds{0}));
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &m_context, [pending] { pending->fire(); });
    return Timer(pending);
}

} // namespace vormel

#pragma once

#include "platform/clock/Clock.h"

#include <QtGlobal>

namespace vormel {

/// The one budget of bytes of all transfers together. It refills with time up to one second's worth of the cap and may
/// run into debt, which only time pays off.
class GlobalThrottleTracker
{
public:
    explicit GlobalThrottleTracker(SteadyTime now)
        : m_lastCheck(now)
    {}

    /// Takes the bytes from the budget; `limit` is in bytes per second and above 0. Gives the seconds until the debt is
    /// paid, 0 without one.
    [[nodiscard]] double consume(qint64 bytes, qint64 limit, SteadyTime now);

    [[nodiscard]] double availableBytes() const { return m_availableBytes; }

private:
    SteadyTime m_lastCheck;
    double m_availableBytes = 0;
};

/// A wait of this many seconds or less is not carried out.
inline constexpr double minPause = 0.05;

} // namespace vormel

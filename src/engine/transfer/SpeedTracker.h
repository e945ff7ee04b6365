#pragma once

#include "platform/clock/Clock.h"

#include <QtGlobal>

#include <optional>

namespace vormel {

/// Turns the blocks of one transfer into a speed about twice a second, and thereby sets the rhythm in which the item's
/// fields change. A figure is the plain average since the one before.
class SpeedTracker
{
public:
    explicit SpeedTracker(SteadyTime now)
        : m_lastTime(now)
    {}

    /// Counts the bytes; a figure in bytes per second comes back when half a second or more has passed.
    [[nodiscard]] std::optional<double> record(qint64 bytes, SteadyTime now);

private:
    SteadyTime m_lastTime;
    qint64 m_accumulated = 0;
};

} // namespace vormel

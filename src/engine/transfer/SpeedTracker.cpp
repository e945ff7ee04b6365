#include "engine/transfer/SpeedTracker.h"

namespace vormel {

namespace {

constexpr std::chrono::duration<double> measuringInterval{0.5};

} // namespace

std::optional<double> SpeedTracker::record(qint64 bytes, SteadyTime now)
{
    m_accumulated += bytes;
    const std::chrono::duration<double> elapsed = now - m_lastTime;
    if (elapsed < measuringInterval)
        return std::nullopt;
    const double figure = static_cast<double>(m_accumulated) / elapsed.count();
    m_accumulated = 0;
    m_lastTime = now;
    return figure;
}

} // namespace vormel

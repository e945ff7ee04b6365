#include "engine/transfer/GlobalThrottleTracker.h"

#include <algorithm>

namespace vormel {

double GlobalThrottleTracker::consume(qint64 bytes, qint64 limit, SteadyTime now)
{
    const std::chrono::duration<double> elapsed = now - m_lastCheck;
    m_lastCheck = now;
    const auto cap = static_cast<double>(limit);
    const double refilled = elapsed.count() * cap + m_availableBytes;
    m_availableBytes = std::min(refilled, cap) - static_cast<double>(bytes);
    return m_availableBytes < 0 ? -m_availableBytes / cap : 0;
}

} // namespace vormel

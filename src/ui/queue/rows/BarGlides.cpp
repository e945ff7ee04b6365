#include "ui/queue/rows/BarGlides.h"

#include <algorithm>

namespace vormel {

namespace {

/// A bar that comes back into sight later than this has nothing to glide from.
constexpr std::chrono::seconds memory(2);

} // namespace

double BarGlides::Glide::at(SteadyTime now) const
{
    if (now >= begin + duration)
        return to;
    const double share = std::chrono::duration<double>(now - begin) / std::chrono::duration<double>(duration);
    return from + (to - from) * std::max(0.0, share);
}

double BarGlides::value(const QString& bar, double target, Duration duration)
{
    const SteadyTime now = m_clock.steadyNow();
    const auto known = m_glides.find(bar);
    // One that falls back has begun anew.
    if (known == m_glides.end() || now - known->seen > memory || target < known->to || duration <= Duration(0)) {
        m_glides.insert(bar, {target, target, now, Duration(0), now});
        return target;
    }
    if (known->to != target)
        *known = {known->at(now), target, now, duration, now};
    known->seen = now;
    return known->at(now);
}

bool BarGlides::isGliding(const QString& bar) const
{
    const auto known = m_glides.find(bar);
    return known != m_glides.end() && known->seen < known->begin + known->duration;
}

void BarGlides::forgetUnseen()
{
    const SteadyTime now = m_clock.steadyNow();
    m_glides.removeIf([now](const auto& glide) { return now - glide.value().seen > memory; });
}

} // namespace vormel

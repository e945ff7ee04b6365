#pragma once

#include "platform/clock/Clock.h"

#include <QHash>
#include <QString>

namespace vormel {

/// Lets bars glide from one value to the next instead of jumping. A bar is known from the first time it is drawn, and
/// forgotten when it has not been drawn for a while; the clock must outlive it.
class BarGlides
{
public:
    using Duration = std::chrono::milliseconds;

    explicit BarGlides(const Clock& clock)
        : m_clock(clock)
    {}

    /// What to draw now for a bar that is to stand at `target`, and get there in that time.
    [[nodiscard]] double value(const QString& bar, double target, Duration duration);
    /// Is the bar, as it was drawn last, still on its way?
    [[nodiscard]] bool isGliding(const QString& bar) const;
    void forgetUnseen();

private:
    struct Glide
    {
        double from = 0;
        double to = 0;
        SteadyTime begin;
        Duration duration{0};
        SteadyTime seen;

        [[nodiscard]] double at(SteadyTime now) const;
    };

    const Clock& m_clock;
    QHash<QString, Glide> m_glides;
};

} // namespace vormel

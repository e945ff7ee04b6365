#pragma once

#include "platform/clock/Clock.h"

namespace vormel {

class QueueView;
class RowCountdowns;

/// Paints the rows in sight that count down, each when it shows another second. Wakes up for the first of them, and
/// never in between. UI thread only.
class CountdownWake
{
public:
    /// All must outlive it.
    CountdownWake(QueueView& view, RowCountdowns& countdowns, Clock& clock);

    /// Rows have been painted.
    void await();

private:
    void step();

    QueueView& m_view;
    RowCountdowns& m_countdowns;
    Clock& m_clock;
    Timer m_timer;
    SteadyTime m_due; ///< of the timer
};

} // namespace vormel

#pragma once

#include "platform/clock/Clock.h"

#include <QCoroTask>

namespace vormel {

/// Goes on when the time has passed. The clock must outlive the sleep. UI thread only.
[[nodiscard]] QCoro::Task<> sleepFor(Clock& clock, std::chrono::nanoseconds time);

} // namespace vormel

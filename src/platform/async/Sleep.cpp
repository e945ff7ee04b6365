#include "platform/async/Sleep.h"

#include "platform/async/Eventual.h"

namespace vormel {

QCoro::Task<> sleepFor(Clock& clock, std::chrono::nanoseconds time) // NOLINT(*-reference-coroutine-parameters)
{
    EventualSource<bool> source(false);
    const Timer timer = clock.after(time, [&source] { source.deliver(true); });
    Eventual<bool> over = source.eventual();
    static_cast<void>(co_await over);
}

} // namespace vormel

#pragma once

#include "platform/async/SerialQueue.h"
#include "resolvers/terabytez/TerabytezResolveResult.h"

#include <functional>
#include <stop_token>

namespace vormel {

/// Lets one walk after another go to the files of Terabytez, in the order in which they came. UI thread only.
class TerabytezGate
{
public:
    using Work = std::function<QCoro::Task<TerabytezResolveResult>()>;

    /// Gives what the work gives, or throws what it throws; the next one goes on in either case. Who is stopped while
    /// it waits leaves the line at once, as does everybody when this goes: WalkStopped, and the work never begins.
    [[nodiscard]] QCoro::Task<TerabytezResolveResult> runSerial(Work work, std::stop_token stop);

private:
    SerialQueue m_line;
};

} // namespace vormel

#include "resolvers/terabytez/TerabytezGate.h"

#include "platform/async/Spawn.h"
#include "resolvers/terabytez/WalkStopped.h"

namespace vormel {

namespace {

using Place = std::shared_ptr<EventualSource<Turn>>;

/// A turn that comes to a place which was left goes to the next.
QCoro::Task<> handOn(Eventual<Turn> called, Place place)
{
    Turn turn = co_await called;
    place->deliver(std::move(turn));
}

} // namespace

QCoro::Task<TerabytezResolveResult> TerabytezGate::runSerial(Work work, std::stop_token stop)
{
    if (stop.stop_requested())
        throw WalkStopped();
    const auto place = std::make_shared<EventualSource<Turn>>(Turn());
    spawn(handOn(m_line.take(), place));
    const auto leave = [place] { place->deliver(Turn()); };
    const std::stop_callback onStop(std::move(stop), leave);
    Eventual<Turn> called = place->eventual();
    const Turn turn = co_await called;
    if (!turn.isGiven())
        throw WalkStopped();
    co_return co_await work();
}

} // namespace vormel

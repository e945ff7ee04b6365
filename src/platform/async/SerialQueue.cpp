#include "platform/async/SerialQueue.h"

#include <utility>

namespace vormel {

SerialQueue::~SerialQueue()
{
    // Whoever waits goes on in here and must find a whole object.
    const std::deque<Waiting> abandoned = std::exchange(m_waiting, {});
}

Eventual<Turn> SerialQueue::take()
{
    auto waiting = std::make_unique<EventualSource<Turn>>(Turn());
    Eventual<Turn> eventual = waiting->eventual();
    if (std::exchange(m_isTaken, true))
        m_waiting.push_back(std::move(waiting));
    else
        waiting->deliver(newTurn());
    return eventual;
}

Turn SerialQueue::newTurn()
{
    return Turn([this, lifetime = m_lifetime.watch()] {
        if (!lifetime.isOver())
            giveBack();
    });
}

void SerialQueue::giveBack()
{
    // Later, as it is the end of one that has worked which leads here.
    QMetaObject::invokeMethod(
        &m_later, [this] { callNext(); }, Qt::QueuedConnection);
}

void SerialQueue::callNext()
{
    if (m_waiting.empty()) {
        m_isTaken = false;
        return;
    }
    const Waiting called = std::move(m_waiting.front());
    m_waiting.pop_front();
    called->deliver(newTurn());
}

} // namespace vormel

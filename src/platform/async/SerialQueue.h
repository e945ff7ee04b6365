#pragma once

#include "platform/async/Eventual.h"
#include "platform/async/Lifetime.h"
#include "platform/async/Turn.h"

#include <QObject>

#include <deque>
#include <memory>

namespace vormel {

/// Lets one job after another do its work, in the order in which they came. UI thread only.
class SerialQueue
{
public:
    SerialQueue() = default;
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;
    ~SerialQueue();

    /// Comes at once where nobody works and nobody waits. One that is still waiting when this goes is not given; a turn
    /// may end after this.
    [[nodiscard]] Eventual<Turn> take();

private:
    using Waiting = std::unique_ptr<EventualSource<Turn>>;

    [[nodiscard]] Turn newTurn();
    void giveBack();
    void callNext();

    QObject m_later; ///< context of what is posted
    Lifetime m_lifetime;
    std::deque<Waiting> m_waiting;
    bool m_isTaken = false;
};

} // namespace vormel

#include "archive/pipeline/ToolTurns.h"

#include <algorithm>
#include <utility>

namespace vormel {

ToolTurns::ToolTurns(Place place)
    : m_place(std::move(place))
{}

ToolTurns::~ToolTurns()
{
    // Whoever waits goes on in here and must find a whole object.
    const WaitingList abandoned = std::exchange(m_waiting, {});
}

Eventual<Turn> ToolTurns::take(const ItemId& id)
{
    auto waiting = std::make_unique<Waiting>();
    waiting->id = id;
    Eventual<Turn> eventual = waiting->source.eventual();
    if (isAnyFree()) {
        --m_free;
        waiting->source.deliver(newTurn());
    } else {
        m_waiting.push_back(std::move(waiting));
    }
    return eventual;
}

void ToolTurns::withdraw(const ItemId& id)
{
    const auto found = find(id);
    if (found == m_waiting.end())
        return;
    const std::unique_ptr<Waiting> withdrawn = std::move(*found);
    m_waiting.erase(found);
}

ToolTurns::WaitingList::iterator ToolTurns::find(const ItemId& id)
{
    return std::find_if(m_waiting.begin(), m_waiting.end(), [&id](const auto& waiting) { return waiting->id == id; });
}

Turn ToolTurns::newTurn()
{
    return Turn([this, lifetime = m_lifetime.watch()] {
        if (!lifetime.isOver())
            giveBack();
    });
}

void ToolTurns::giveBack()
{
    ++m_free;
    // Later, as it is the end of one that has worked which leads here.
    QMetaObject::invokeMethod(
        &m_later, [this] { callNext(); }, Qt::QueuedConnection);
}

void ToolTurns::callNext()
{
    if (m_free == 0 || m_waiting.empty())
        return;
    const auto next = std::min_element(m_waiting.begin(), m_waiting.end(), [this](const auto& a, const auto& b) {
        return m_place(a->id) < m_place(b->id);
    });
    const std::unique_ptr<Waiting> called = std::move(*next);
    m_waiting.erase(next);
    --m_free;
    called->source.deliver(newTurn());
}

} // namespace vormel

#pragma once

#include "model/ItemId.h"
#include "platform/async/Eventual.h"
#include "platform/async/Lifetime.h"
#include "platform/async/Turn.h"

#include <QObject>

#include <functional>
#include <memory>
#include <vector>

namespace vormel {

/// Lets two archives be worked on at a time, however many are ready; more would only take the disk from each other. The
/// others wait for their turn, and the next is the one that stands first in the queue by then. UI thread only.
class ToolTurns
{
public:
    /// Where an item stands in the queue.
    using Place = std::function<std::size_t(const ItemId&)>;

    explicit ToolTurns(Place place);
    ToolTurns(const ToolTurns&) = delete;
    ToolTurns& operator=(const ToolTurns&) = delete;
    ~ToolTurns();

    /// Comes at once where a turn is free and nobody waits. One that is withdrawn, or still waiting when this goes, is
    /// not given. A turn may end after this.
    [[nodiscard]] Eventual<Turn> take(const ItemId& id);
    void withdraw(const ItemId& id);
    /// For one who comes now?
    [[nodiscard]] bool isAnyFree() const { return m_free > 0 && m_waiting.empty(); }

private:
    struct Waiting
    {
        ItemId id;
        EventualSource<Turn> source{Turn()};
    };
    using WaitingList = std::vector<std::unique_ptr<Waiting>>;

    [[nodiscard]] Turn newTurn();
    void giveBack();
    void callNext();
    [[nodiscard]] WaitingList::iterator find(const ItemId& id);

    static constexpr int turnsAtOnce = 2;

    Place m_place;
    QObject m_later; ///< context of what is posted
    Lifetime m_lifetime;
    WaitingList m_waiting;
    int m_free = turnsAtOnce;
};

} // namespace vormel

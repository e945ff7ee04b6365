#include "engine/intake/Additions.h"

#include <utility>

namespace vormel {

class Additions::Stroke
{
public:
    int number = 0;
    std::vector<ItemId> items;
    Addition untold;
    int tellings = 0; ///< that are still to come in this turn
    bool wasLast = false;
    bool wasTold = false;
};

Additions::Additions(QueueTurn& queue)
    : m_queue(queue)
{}

Additions::~Additions() = default;

Additions::StrokePtr Additions::current()
{
    if (!m_current)
        m_current = makeStroke();
    return m_current;
}

Additions::StrokePtr Additions::makeStroke()
{
    auto stroke = std::make_shared<Stroke>();
    stroke->number = ++m_strokes;
    return stroke;
}

Additions::StrokePtr Additions::ofContainer(const ItemId& id)
{
    const auto known = m_containers.find(id);
    if (known != m_containers.end())
        return known->second;
    StrokePtr former = makeStroke();
    former->wasTold = true;
    return former;
}

void Additions::noteItems(const StrokePtr& stroke, const std::vector<ItemPtr>& items)
{
    for (const ItemPtr& item : items) {
        stroke->items.push_back(item->id());
        stroke->untold.items.push_back(item->id());
    }
}

void Additions::noteContainer(const StrokePtr& stroke, const DownloadItem& placeholder)
{
    stroke->items.push_back(placeholder.id());
    stroke->untold.items.push_back(placeholder.id());
    m_containers.insert_or_assign(placeholder.id(), stroke);
}

void Additions::noteRead(const StrokePtr& stroke, const ItemId& container)
{
    stroke->untold.read.push_back(container);
}

void Additions::noteQuestion(const StrokePtr& stroke, const ItemId& container)
{
    m_containers.insert_or_assign(container, stroke);
}

void Additions::noteKnown(const StrokePtr& stroke, qsizetype count)
{
    stroke->untold.known += count;
}

void Additions::tellLater(const StrokePtr& stroke)
{
    ++stroke->tellings;
    m_queue.later([this, stroke] {
        if (--stroke->tellings == 0)
            tell(stroke);
    });
}

void Additions::tell(const StrokePtr& stroke)
{
    if (m_current == stroke)
        m_current.reset();
    if (!stroke->items.empty() && !std::exchange(stroke->wasLast, true))
        m_last = stroke;
    Addition addition = std::exchange(stroke->untold, {});
    addition.stroke = stroke->number;
    addition.isFirst = !std::exchange(stroke->wasTold, true);
    Q_EMIT told(addition);
}

void Additions::forget(const QSet<ItemId>& ids)
{
    for (const ItemId& id : ids)
        m_containers.erase(id);
}

std::vector<ItemId> Additions::last() const
{
    return m_last ? m_last->items : std::vector<ItemId>();
}

} // namespace vormel

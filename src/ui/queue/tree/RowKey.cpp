#include "ui/queue/tree/RowKey.h"

#include "ui/queue/tree/QueueModel.h"

namespace vormel {

size_t qHash(const RowKey& key, size_t seed) noexcept
{
    return key.item.isNull() ? ::qHash(key.groupId, seed) : qHash(key.item, seed);
}

RowKey keyOf(const QueueModel& model, const QModelIndex& index)
{
    if (const ItemPtr item = model.item(index))
        return {item->id(), {}};
    return {{}, model.group(index).id};
}

QModelIndex indexOf(const QueueModel& model, const RowKey& key)
{
    return key.item.isNull() ? model.headerOf(key.groupId) : model.indexOf(key.item);
}

} // namespace vormel

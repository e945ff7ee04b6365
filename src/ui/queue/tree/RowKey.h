#pragma once

#include "model/ItemId.h"

#include <QModelIndex>
#include <QString>

namespace vormel {

class QueueModel;

/// A row by what it shows, wherever it stands: the row of an item, or the header of a group.
struct RowKey
{
    ItemId item;     ///< null for a header
    QString groupId; ///< of a header

    friend bool operator==(const RowKey&, const RowKey&) = default;
};

[[nodiscard]] size_t qHash(const RowKey& key, size_t seed = 0) noexcept;

/// The index must be valid.
[[nodiscard]] RowKey keyOf(const QueueModel& model, const QModelIndex& index);

/// Invalid once the queue has no such row any more.
[[nodiscard]] QModelIndex indexOf(const QueueModel& model, const RowKey& key);

} // namespace vormel

#pragma once

#include "model/DownloadItem.h"

#include <QHash>

#include <span>
#include <vector>

namespace vormel {

/// Which items have a finished file of one name, in whatever folder. UI thread only.
class FileIndex
{
public:
    void insert(const ItemPtr& item);
    void remove(const ItemId& id);
    /// The item's file may lie elsewhere now, or nowhere.
    void update(const ItemPtr& item);

    /// Valid until the next change.
    [[nodiscard]] std::span<const ItemPtr> find(const QString& name) const;

private:
    QHash<QString, std::vector<ItemPtr>> m_holders;
    QHash<ItemId, QString> m_names;
};

} // namespace vormel

#pragma once

#include "model/DownloadItem.h"

#include <QSet>

#include <vector>

namespace vormel {

/// Links as the queue tells them apart: normalised, in any letter case.
class KnownLinks
{
public:
    KnownLinks() = default;
    /// Those of the items.
    explicit KnownLinks(const std::vector<ItemPtr>& items);

    [[nodiscard]] bool contains(const Link& url) const;
    /// False if it was there already.
    bool insert(const Link& url);

private:
    QSet<QString> m_keys;
};

} // namespace vormel

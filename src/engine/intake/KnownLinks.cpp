#include "engine/intake/KnownLinks.h"

#include "model/NormalizeURL.h"

namespace vormel {

namespace {

QString duplicateKey(const Link& url)
{
    return normalizeURL(url).absoluteString().toLower();
}

} // namespace

KnownLinks::KnownLinks(const std::vector<ItemPtr>& items)
{
    m_keys.reserve(static_cast<qsizetype>(items.size()));
    for (const ItemPtr& item : items)
        insert(item->originalURL());
}

bool KnownLinks::contains(const Link& url) const
{
    return m_keys.contains(duplicateKey(url));
}

bool KnownLinks::insert(const Link& url)
{
    const qsizetype before = m_keys.size();
    m_keys.insert(duplicateKey(url));
    return m_keys.size() > before;
}

} // namespace vormel

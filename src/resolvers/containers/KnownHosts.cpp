#include "resolvers/containers/KnownHosts.h"

#include <algorithm>

namespace vormel {

bool isHostAmong(const Link& url, const QStringList& domains)
{
    const QString host = url.host().toString().toLower();
    return std::any_of(domains.begin(), domains.end(),
                       [&host](const QString& domain) { return host.contains(domain); });
}

bool acceptKnownHost(const Link& url, const QStringList& knownFileHosts)
{
    const QStringView path = url.encodedPath();
    const bool hasName = std::any_of(path.begin(), path.end(), [](QChar letter) { return letter != u'/'; });
    return hasName && url.isHttp() && isHostAmong(url, knownFileHosts);
}

} // namespace vormel

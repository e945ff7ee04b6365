#include "ui/sheets/LinkPaste.h"

#include "model/HostGroups.h"
#include "resolvers/ResolverTables.h"
#include "text/HttpLinks.h"

#include <QHash>

namespace vormel {

LinkPaste::LinkPaste(QStringView text, const ResolverTables& resolvers)
    : m_valid(httpLinks(text))
{
    for (const Link& link : m_valid)
        (resolvers.containerResolverForURL(link) ? m_containers : m_direct).push_back(link);
}

std::vector<PendingHostSelection::HostGroup> LinkPaste::hostGroups(const HostProfiles& profiles) const
{
    std::vector<PendingHostSelection::HostGroup> groups;
    QHash<QString, std::size_t> places;
    for (const Link& link : m_direct) {
        const QString host = plainHost(link);
        const auto place = places.constFind(host);
        if (place == places.constEnd()) {
            places.insert(host, groups.size());
            groups.push_back({host, {link}});
        } else {
            groups[*place].urls.push_back(link);
        }
    }
    sortHostGroups(groups, profiles);
    return groups;
}

} // namespace vormel

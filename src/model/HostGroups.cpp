#include "model/HostGroups.h"

#include "config/Services.h"

#include <algorithm>

namespace vormel {

QString plainHost(const Link& url)
{
    QString host = url.host().toString().toLower();
    if (host.isEmpty())
        return QStringLiteral("unknown");
    if (host.startsWith(u"www."))
        host.remove(0, 4);
    return host;
}

QString hostGroupLabel(const Link& url)
{
    QString host = plainHost(url);
    if (host.contains(u"terabytez"))
        return terabytezDisplayName;
    if (host.contains(u"filestore"))
        return filestoreDisplayName;
    return host;
}

int hostSortRank(QStringView name)
{
    if (name.contains(u"terabytez", Qt::CaseInsensitive))
        return 0;
    return name.contains(u"filestore", Qt::CaseInsensitive) ? 1 : 2;
}

void sortHostGroups(std::vector<PendingHostSelection::HostGroup>& groups)
{
    std::stable_sort(groups.begin(), groups.end(), [](const auto& a, const auto& b) {
        const int rankA = hostSortRank(a.displayName);
        const int rankB = hostSortRank(b.displayName);
        return rankA != rankB ? rankA < rankB : a.displayName < b.displayName;
    });
}

std::vector<PendingHostSelection::HostGroup> groupURLsByHost(const std::vector<Link>& urls)
{
    std::vector<PendingHostSelection::HostGroup> groups;
    for (const Link& url : urls) {
        const QString label = hostGroupLabel(url);
        auto group =
            std::find_if(groups.begin(), groups.end(), [&label](const auto& g) { return g.displayName == label; });
        if (group == groups.end())
            group = groups.insert(groups.end(), {label, {}});
        group->urls.push_back(url);
    }
    sortHostGroups(groups);
    return groups;
}

} // namespace vormel

#include "model/HostGroups.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// Null for a host or name that is none of the premium hosts'.
const HostProfile* profileNamedIn(QStringView name, const HostProfiles& profiles)
{
    const std::span<const HostProfile> all = profiles.inRankOrder();
    const auto found = std::find_if(all.begin(), all.end(), [name](const HostProfile& profile) {
        return name.contains(profile.groupFragment, Qt::CaseInsensitive) ||
               name.contains(profile.domain, Qt::CaseInsensitive) || name == profile.label;
    });
    return found == all.end() ? nullptr : &*found;
}

} // namespace

QString plainHost(const Link& url)
{
    QString host = url.host().toString().toLower();
    if (host.isEmpty())
        return u"unknown"_s;
    if (host.startsWith(u"www."))
        host.remove(0, 4);
    return host;
}

QString hostGroupLabel(const Link& url, const HostProfiles& profiles)
{
    QString host = plainHost(url);
    const HostProfile* const profile = profileNamedIn(host, profiles);
    return profile ? profile->label : host;
}

int hostSortRank(QStringView name, const HostProfiles& profiles)
{
    const HostProfile* const profile = profileNamedIn(name, profiles);
    return profile ? profile->rank : static_cast<int>(profiles.inRankOrder().size());
}

void sortHostGroups(std::vector<PendingHostSelection::HostGroup>& groups, const HostProfiles& profiles)
{
    std::stable_sort(groups.begin(), groups.end(), [&profiles](const auto& a, const auto& b) {
        const int rankA = hostSortRank(a.displayName, profiles);
        const int rankB = hostSortRank(b.displayName, profiles);
        return rankA != rankB ? rankA < rankB : a.displayName < b.displayName;
    });
}

std::vector<PendingHostSelection::HostGroup> groupURLsByHost(const std::vector<Link>& urls,
                                                             const HostProfiles& profiles)
{
    std::vector<PendingHostSelection::HostGroup> groups;
    for (const Link& url : urls) {
        const QString label = hostGroupLabel(url, profiles);
        auto group =
            std::find_if(groups.begin(), groups.end(), [&label](const auto& g) { return g.displayName == label; });
        if (group == groups.end())
            group = groups.insert(groups.end(), {label, {}});
        group->urls.push_back(url);
    }
    sortHostGroups(groups, profiles);
    return groups;
}

} // namespace vormel

#include "model/HostGroups.h"

#include "model/HostProfile.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// Null for a host or name that is none of the premium hosts'.
const HostProfile* profileNamedIn(QStringView name)
{
    const std::span<const HostProfile> profiles = hostProfiles();
    const auto found = std::find_if(profiles.begin(), profiles.end(), [name](const HostProfile& profile) {
        return name.contains(profile.groupFragment, Qt::CaseInsensitive);
    });
    return found == profiles.end() ? nullptr : &*found;
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

QString hostGroupLabel(const Link& url)
{
    QString host = plainHost(url);
    const HostProfile* const profile = profileNamedIn(host);
    return profile ? profile->label : host;
}

int hostSortRank(QStringView name)
{
    const HostProfile* const profile = profileNamedIn(name);
    return profile ? profile->rank : static_cast<int>(hostProfiles().size());
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

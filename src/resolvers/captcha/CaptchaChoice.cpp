#include "resolvers/captcha/CaptchaChoice.h"

#include "model/HostGroups.h"

#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

std::vector<Link> linksOf(const std::vector<SupportedHost>& hosts, const std::vector<Link>& urls,
                          const HostProfiles& profiles)
{
    std::vector<Link> links;
    std::copy_if(urls.begin(), urls.end(), std::back_inserter(links), [&](const Link& url) {
        return std::any_of(hosts.begin(), hosts.end(),
                           [&](SupportedHost host) { return isLinkOf(profiles.of(host), url); });
    });
    return links;
}

std::vector<PendingHostSelection::HostGroup> groupsByHost(const std::vector<Link>& urls)
{
    std::vector<PendingHostSelection::HostGroup> groups;
    QHash<QString, std::size_t> places;
    for (const Link& url : urls) {
        const QString host = url.host().isEmpty() ? u"unknown"_s : url.host().toString().toLower();
        const auto place = places.constFind(host);
        if (place != places.constEnd()) {
            groups[*place].urls.push_back(url);
            continue;
        }
        places.insert(host, groups.size());
        groups.push_back({host, {url}});
    }
    return groups;
}

} // namespace

CaptchaChoice chooseLinks(const std::vector<Link>& urls, const std::vector<SupportedHost>& accountHosts,
                          const HostProfiles& profiles)
{
    std::vector<Link> preferred = linksOf(accountHosts, urls, profiles);
    if (!preferred.empty())
        return {std::move(preferred), {}};
    std::vector<PendingHostSelection::HostGroup> groups = groupsByHost(urls);
    if (groups.size() < 2)
        groups.clear();
    sortHostGroups(groups, profiles);
    return {urls, std::move(groups)};
}

} // namespace vormel

#include "model/HostProfile.h"

#include "config/Services.h"

#include <algorithm>
#include <array>

namespace vormel {

std::span<const HostProfile> hostProfiles()
{
    using namespace Qt::StringLiterals;
    static const std::array profiles{
        HostProfile{.host = SupportedHost::terabytez,
                    .key = terabytezHostKey,
                    .label = terabytezDisplayName,
                    .domain = terabytezDomain,
                    .linkFragment = "terabytez."_L1,
                    .groupFragment = "terabytez"_L1,
                    // Cut behind its first dot, so that mirrors under other top-level domains pass.
                    .certificateFragment = terabytezDomain.first(terabytezDomain.indexOf(QLatin1Char('.')) + 1),
                    .rank = 0,
                    .looksUpNames = false},
        HostProfile{.host = SupportedHost::filestore,
                    .key = filestoreDomain,
                    .label = filestoreDisplayName,
                    .domain = filestoreDomain,
                    .linkFragment = filestoreDomain,
                    .groupFragment = "filestore"_L1,
                    .certificateFragment = filestoreDomain,
                    .rank = 1,
                    .looksUpNames = true},
    };
    return profiles;
}

const HostProfile& profileOf(SupportedHost host)
{
    const std::span<const HostProfile> profiles = hostProfiles();
    return *std::find_if(profiles.begin(), profiles.end(),
                         [host](const HostProfile& profile) { return profile.host == host; });
}

std::optional<SupportedHost> supportedHostFromRawValue(QStringView key)
{
    const std::span<const HostProfile> profiles = hostProfiles();
    const auto found = std::find_if(profiles.begin(), profiles.end(),
                                    [key](const HostProfile& profile) { return profile.key == key; });
    return found == profiles.end() ? std::nullopt : std::optional(found->host);
}

QString rawValue(SupportedHost host)
{
    return profileOf(host).key;
}

QString displayName(SupportedHost host)
{
    return profileOf(host).label;
}

bool isLinkOf(const HostProfile& profile, const Link& url)
{
    return url.host().contains(profile.linkFragment, Qt::CaseInsensitive);
}

bool mayLookUpNames(const Link& url)
{
    const std::span<const HostProfile> profiles = hostProfiles();
    return std::none_of(profiles.begin(), profiles.end(),
                        [&url](const HostProfile& profile) { return !profile.looksUpNames && isLinkOf(profile, url); });
}

bool isTlsTrustedHost(const QString& host)
{
    const std::span<const HostProfile> profiles = hostProfiles();
    return std::any_of(profiles.begin(), profiles.end(),
                       [&host](const HostProfile& profile) { return host.contains(profile.certificateFragment); });
}

} // namespace vormel

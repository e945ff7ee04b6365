#include "model/HostProfiles.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// Cut behind the first dot, so that mirrors under other top-level domains pass. What stands before that dot names the
/// service only where nothing more than such a domain follows: "www." names nobody.
QString mirrorFragment(const QString& domain)
{
    return domain.count(u'.') == 1 ? domain.first(domain.indexOf(u'.') + 1) : domain;
}

HostProfile terabytez(const Services& services)
{
    return {.host = SupportedHost::terabytez,
            .key = services.terabytezHostKey,
            .label = services.terabytezDisplayName,
            .domain = services.terabytezDomain,
            .linkFragment = u"terabytez."_s,
            .groupFragment = u"terabytez"_s,
            .certificateFragment = mirrorFragment(services.terabytezDomain),
            .rank = 0,
            .looksUpNames = false,
            .signsInInBrowser = true};
}

HostProfile filestore(const Services& services)
{
    return {.host = SupportedHost::filestore,
            .key = services.filestoreKey,
            .label = services.filestoreDisplayName,
            .domain = services.filestoreDomain,
            .linkFragment = services.filestoreDomain,
            .groupFragment = u"filestore"_s,
            .certificateFragment = services.filestoreDomain,
            .rank = 1,
            .looksUpNames = true,
            .signsInInBrowser = false};
}

} // namespace

HostProfiles::HostProfiles(const Services& services)
    : m_profiles{terabytez(services), filestore(services)}
{}

const HostProfile& HostProfiles::of(SupportedHost host) const
{
    return *std::find_if(m_profiles.begin(), m_profiles.end(),
                         [host](const HostProfile& profile) { return profile.host == host; });
}

std::optional<SupportedHost> HostProfiles::hostOfKey(QStringView key) const
{
    const auto* const found = std::find_if(m_profiles.begin(), m_profiles.end(),
                                           [key](const HostProfile& profile) { return profile.key == key; });
    return found == m_profiles.end() ? std::nullopt : std::optional(found->host);
}

bool HostProfiles::mayLookUpNames(const Link& url) const
{
    return std::none_of(m_profiles.begin(), m_profiles.end(),
                        [&url](const HostProfile& profile) { return !profile.looksUpNames && isLinkOf(profile, url); });
}

bool HostProfiles::isTlsTrustedHost(const QString& host) const
{
    return std::any_of(m_profiles.begin(), m_profiles.end(),
                       [&host](const HostProfile& profile) { return host.contains(profile.certificateFragment); });
}

} // namespace vormel

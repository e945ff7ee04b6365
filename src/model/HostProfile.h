#pragma once

#include "text/Link.h"

#include <QLatin1StringView>

#include <optional>
#include <span>

namespace vormel {

/// The premium file hosts.
enum class SupportedHost
{
    filestore,
    terabytez,
};

/// All that is peculiar to one premium host, but for the walk through its pages: a new host is a row here and a
/// resolver.
struct HostProfile
{
    SupportedHost host = SupportedHost::filestore;
    QLatin1StringView key;                 ///< what is stored
    QLatin1StringView label;               ///< what is shown
    QLatin1StringView domain;              ///< of its web site
    QLatin1StringView linkFragment;        ///< the host of its links has this in it
    QLatin1StringView groupFragment;       ///< a host with this in it stands under the label in a choice of hosts
    QLatin1StringView certificateFragment; ///< a host with this in it may have any certificate
    int rank = 0;                          ///< its place in a choice of hosts
    bool looksUpNames = false;             ///< else names come from its web session alone
};

/// In order of rank. Where a host has the fragments of several in it, the first counts.
[[nodiscard]] std::span<const HostProfile> hostProfiles();

[[nodiscard]] const HostProfile& profileOf(SupportedHost host);
/// Nothing for a key that no host has.
[[nodiscard]] std::optional<SupportedHost> supportedHostFromRawValue(QStringView key);

[[nodiscard]] QString rawValue(SupportedHost host);
[[nodiscard]] QString displayName(SupportedHost host);

[[nodiscard]] bool isLinkOf(const HostProfile& profile, const Link& url);
/// False for links of hosts whose names come from a web session alone.
[[nodiscard]] bool mayLookUpNames(const Link& url);
/// May this host, in small letters, have any certificate?
[[nodiscard]] bool isTlsTrustedHost(const QString& host);

} // namespace vormel

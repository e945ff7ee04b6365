#pragma once

#include "model/HostProfile.h"
#include "model/Services.h"

#include <array>
#include <optional>
#include <span>

namespace vormel {

/// The profiles of all premium hosts. A value that never changes, which any thread may ask.
class HostProfiles
{
public:
    explicit HostProfiles(const Services& services = Services::builtIn());

    /// Where a host has the fragments of several in it, the first counts.
    [[nodiscard]] std::span<const HostProfile> inRankOrder() const { return m_profiles; }
    [[nodiscard]] const HostProfile& of(SupportedHost host) const;
    /// Nothing for a key that no host has.
    [[nodiscard]] std::optional<SupportedHost> hostOfKey(QStringView key) const;
    [[nodiscard]] const QString& rawValue(SupportedHost host) const { return of(host).key; }
    [[nodiscard]] const QString& displayName(SupportedHost host) const { return of(host).label; }

    /// False for links of hosts whose names come from a web session alone.
    [[nodiscard]] bool mayLookUpNames(const Link& url) const;
    /// May this host, in small letters, have any certificate?
    [[nodiscard]] bool isTlsTrustedHost(const QString& host) const;

private:
    std::array<HostProfile, 2> m_profiles;
};

} // namespace vormel

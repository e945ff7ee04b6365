#pragma once

#include "resolvers/ContainerResolver.h"
#include "resolvers/HostResolver.h"

#include <memory>
#include <vector>

namespace vormel {

/// The services that the program knows, in the order in which they are asked. Built once.
class ResolverTables
{
public:
    /// The built-in profiles and no resolvers.
    ResolverTables() = default;
    ResolverTables(HostProfiles profiles, std::vector<std::unique_ptr<HostResolver>> hosts,
                   std::vector<std::unique_ptr<ContainerResolver>> containers);

    [[nodiscard]] const HostProfiles& profiles() const { return m_profiles; }
    /// The first container service that claims the link; null if none does.
    [[nodiscard]] const ContainerResolver* containerResolverForURL(const Link& url) const;
    /// The premium host that the link belongs to; null for a direct link.
    [[nodiscard]] const HostResolver* hostResolverForURL(const Link& url) const;
    /// That of the host itself; null where there is none.
    [[nodiscard]] const HostResolver* hostResolver(SupportedHost host) const;

private:
    HostProfiles m_profiles;
    std::vector<std::unique_ptr<HostResolver>> m_hosts;
    std::vector<std::unique_ptr<ContainerResolver>> m_containers;
};

} // namespace vormel

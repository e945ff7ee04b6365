#include "resolvers/ResolverTables.h"

namespace vormel {

ResolverTables::ResolverTables(HostProfiles profiles, std::vector<std::unique_ptr<HostResolver>> hosts,
                               std::vector<std::unique_ptr<ContainerResolver>> containers)
    : m_profiles(std::move(profiles))
    , m_hosts(std::move(hosts))
    , m_containers(std::move(containers))
{}

const ContainerResolver* ResolverTables::containerResolverForURL(const Link& url) const
{
    for (const auto& resolver : m_containers) {
        if (resolver->canHandle(url))
            return resolver.get();
    }
    return nullptr;
}

const HostResolver* ResolverTables::hostResolverForURL(const Link& url) const
{
    for (const auto& resolver : m_hosts) {
        if (isLinkOf(m_profiles.of(resolver->supportedHost()), url))
            return resolver.get();
    }
    return nullptr;
}

const HostResolver* ResolverTables::hostResolver(SupportedHost host) const
{
    for (const auto& resolver : m_hosts) {
        if (resolver->supportedHost() == host)
            return resolver.get();
    }
    return nullptr;
}

} // namespace vormel

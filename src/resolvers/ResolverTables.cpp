#include "resolvers/ResolverTables.h"

#include "config/Services.h"

namespace vormel {

namespace {

bool belongsTo(SupportedHost supported, const QString& host)
{
    if (supported == SupportedHost::terabytez)
        return host.contains(u"terabytez.");
    return host.contains(filestoreDomain);
}

} // namespace

ResolverTables::ResolverTables(std::vector<std::unique_ptr<HostResolver>> hosts,
                               std::vector<std::unique_ptr<ContainerResolver>> containers)
    : m_hosts(std::move(hosts))
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
    const QString host = url.host().toString().toLower();
    if (host.isEmpty())
        return nullptr;
    for (const auto& resolver : m_hosts) {
        if (belongsTo(resolver->supportedHost(), host))
            return resolver.get();
    }
    return nullptr;
}

} // namespace vormel

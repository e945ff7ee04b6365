#include "resolvers/services/ServiceResolvers.h"

#include "model/Services.h"
#include "resolvers/containers/CryptResolver.h"
#include "resolvers/containers/KeeplinksResolver.h"
#include "resolvers/filestore/FilestoreResolver.h"
#include "resolvers/terabytez/TerabytezResolver.h"

namespace vormel {

namespace {

template <std::size_t count>
QStringList listOf(const std::array<QString, count>& domains)
{
    return {domains.begin(), domains.end()};
}

} // namespace

bool isSignInCookie(const Services& services, const QByteArray& domain)
{
    return TerabytezSite{services.terabytezDomain}.owns(QString::fromUtf8(domain));
}

ResolverTables serviceResolvers(const Services& services, const ServicePorts& ports)
{
    const HostProfiles profiles(services);
    std::vector<std::unique_ptr<HostResolver>> hosts;
    hosts.push_back(std::make_unique<FilestoreResolver>(
        FilestoreResolver::Ports{ports.http, ports.sharedCookies, ports.secrets, ports.clock, ports.background,
                                 ports.filestoreLogins},
        profiles));
    hosts.push_back(std::make_unique<TerabytezResolver>(
        TerabytezResolver::Ports{ports.web, ports.keptCookies, ports.sharedCookies, ports.clock, ports.background},
        profiles));

    const ContainerPorts reading{ports.http, ports.background,
                                 std::make_shared<const QStringList>(services.knownFileHostDomains())};
    std::vector<std::unique_ptr<ContainerResolver>> containers;
    containers.push_back(std::make_unique<KeeplinksResolver>(
        reading, KeeplinksResolver::Site{listOf(services.keeplinksDomains), services.keeplinksRootUrl}));
    containers.push_back(std::make_unique<FileCryptResolver>(reading, listOf(services.fileCryptDomains)));
    containers.push_back(std::make_unique<LFileCryptResolver>(reading, listOf(services.lfileCryptDomains)));
    return {profiles, std::move(hosts), std::move(containers)};
}

} // namespace vormel

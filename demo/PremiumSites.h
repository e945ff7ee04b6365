#pragma once

#include "demo/FilmSet.h"
#include "model/Services.h"
#include "platform/http/CurlHttpClient.h"
#include "sites/services/ContainerSite.h"
#include "sites/services/FilestoreSite.h"

namespace vormel::demo {

/// Two premium hosts that have the same film, and a container whose page, behind a password, lists the links to both.
/// They speak https, with certificates of their own making.
class PremiumSites
{
public:
    static constexpr QLatin1StringView username{"anna"};
    static constexpr QLatin1StringView password{"lighthouse-42"};
    static constexpr QLatin1StringView containerPassword{"tide-table-7"};

    /// The folder is for what the program needs to trust the sites.
    PremiumSites(const FilmSet& film, const QString& folder);

    /// Leads the program to these sites, whatever else it is led to.
    void joinIn(CurlHttpClient::Options& network) const;

    [[nodiscard]] const QString& containerLink() const { return m_containerLink; }
    /// The host with the account, as the program calls it.
    [[nodiscard]] const QString& hostName() const { return m_services.filestoreDisplayName; }
    /// What it calls the other one.
    [[nodiscard]] const QString& otherHostName() const { return m_services.terabytezDisplayName; }
    [[nodiscard]] const QString& hostDomain() const { return m_services.filestoreDomain; }

    /// How often somebody has signed in at the host with the account.
    [[nodiscard]] int logins() const { return m_host.logins(); }
    [[nodiscard]] int connectionsToOtherHost() const { return m_otherHost.connectionsAccepted(); }
    [[nodiscard]] std::size_t recoveryVolumesAskedFor() const;

private:
    [[nodiscard]] std::string linksAtHost(const FilmSet& film);
    [[nodiscard]] std::string linksAtOtherHost(const FilmSet& film) const;

    const Services m_services = Services::builtIn();
    sites::TestCertificates m_certificates;
    QString m_authority; ///< file
    sites::FilestoreSite m_host;
    sites::FileServer m_otherHost;
    sites::ContainerSite m_containers;
    std::vector<std::string> m_recoveryPaths; ///< on the server of the host's files
    QString m_containerLink;
};

} // namespace vormel::demo

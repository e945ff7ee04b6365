#pragma once

#include "demo/FilmSet.h"
#include "demo/PremiumServices.h"

namespace vormel::demo {

/// Two premium hosts that have the same film, and a container whose page, behind a password, lists the links to both.
class PremiumSites
{
public:
    static constexpr QLatin1StringView username{"anna"};
    static constexpr QLatin1StringView password{"lighthouse-42"};
    static constexpr QLatin1StringView containerPassword{"tide-table-7"};

    /// Puts all that on the services, which must outlive this.
    PremiumSites(const FilmSet& film, PremiumServices& services);

    [[nodiscard]] const QString& containerLink() const { return m_containerLink; }
    /// The host with the account, as the program calls it.
    [[nodiscard]] const QString& hostName() const { return m_services.names.filestoreDisplayName; }
    /// What it calls the other one.
    [[nodiscard]] const QString& otherHostName() const { return m_services.names.terabytezDisplayName; }
    [[nodiscard]] const QString& hostDomain() const { return m_services.names.filestoreDomain; }

    /// How often somebody has signed in at the host with the account.
    [[nodiscard]] int logins() const { return m_services.filestore.logins(); }
    [[nodiscard]] int connectionsToOtherHost() const;
    [[nodiscard]] std::size_t recoveryVolumesAskedFor() const;

private:
    [[nodiscard]] std::string linksAtHost(const FilmSet& film);
    [[nodiscard]] std::string linksAtOtherHost(const FilmSet& film);

    PremiumServices& m_services;
    std::vector<std::string> m_recoveryPaths; ///< on the server of the host's files
    QString m_containerLink;
};

} // namespace vormel::demo

#pragma once

#include "demo/FilmSet.h"
#include "demo/PremiumServices.h"

namespace vormel::demo {

/// A film whose volumes lie at both premium hosts by turns, of which Terabytez wants a sign-in on its own page, and a
/// container behind a CAPTCHA with a page for each of their links.
class WebSites
{
public:
    static constexpr QLatin1StringView username{"anna"};
    static constexpr QLatin1StringView password{"breakwater-9"};

    /// Puts all that on the services, which must outlive this.
    WebSites(const FilmSet& film, PremiumServices& services);

    [[nodiscard]] const QString& containerLink() const { return m_containerLink; }
    /// Of the host that wants the sign-in.
    [[nodiscard]] const QString& hostDomain() const { return m_services.names.terabytezDomain; }
    /// How often somebody has signed in there.
    [[nodiscard]] int signIns() const { return m_services.terabytez.signIns(); }
    [[nodiscard]] int loginsAtOtherHost() const { return m_services.filestore.logins(); }

    // What speaks against a claim; nothing where it holds.
    /// The form on each page of a file there was sent once.
    [[nodiscard]] QString objectionToForms() const;
    /// The servers with the files, of both hosts, were asked for each volume once, and by no browser.
    [[nodiscard]] QString objectionToTransfers() const;

private:
    [[nodiscard]] std::string addVolume(const FilmSet::Volume& volume, bool isAtOtherHost);

    PremiumServices& m_services;
    std::vector<std::string> m_pages;     ///< of the files at Terabytez
    std::vector<std::string> m_filePaths; ///< of all volumes
    QString m_containerLink;
};

} // namespace vormel::demo

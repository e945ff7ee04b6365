#pragma once

#include "resolvers/ContainerResolver.h"
#include "resolvers/containers/ContainerRequests.h"

namespace vormel {

/// Reads the containers of Keeplinks: a password form where there is one, then the addresses on the page, or on the
/// page that it sends its reader to.
class KeeplinksResolver final : public ContainerResolver
{
public:
    struct Site
    {
        QStringList domains; ///< hosts of its containers have one of these in them
        QString rootUrl;     ///< where a reader is said to come from
    };

    KeeplinksResolver(ContainerPorts ports, Site site);

    [[nodiscard]] QString name() const override { return QStringLiteral("Keeplinks"); }
    [[nodiscard]] bool canHandle(const Link& url) const override;
    [[nodiscard]] QCoro::Task<std::vector<Link>> resolveContainer(Link url, std::optional<QString> password,
                                                                  std::stop_token stop) const override;

private:
    [[nodiscard]] QCoro::Task<QString> openPage(const PageSession& session, Link url,
                                                std::optional<QString> password) const;
    [[nodiscard]] QCoro::Task<std::vector<Link>> linksOf(const QString& html) const;

    ContainerPorts m_ports;
    Site m_site;
};

} // namespace vormel

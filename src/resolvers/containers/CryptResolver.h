#pragma once

#include "resolvers/ContainerResolver.h"
#include "resolvers/containers/ContainerLinks.h"
#include "resolvers/containers/ContainerRequests.h"

namespace vormel {

/// Reads the containers of FileCrypt and of services that are built like it: a password form where there is one, then
/// Click'N'Load calls, /go/ links and addresses in plain sight.
class CryptResolver : public ContainerResolver
{
public:
    [[nodiscard]] QString name() const override { return m_site.name; }
    [[nodiscard]] bool canHandle(const Link& url) const override;
    [[nodiscard]] QCoro::Task<std::vector<Link>> resolveContainer(Link url, std::optional<QString> password,
                                                                  std::stop_token stop) const override;

protected:
    /// All in which these services differ.
    struct Site
    {
        QString name;
        QStringList domains; ///< hosts of its containers have one of these in them
        const HrefScan& hrefs;
    };
    CryptResolver(ContainerPorts ports, Site site);

private:
    [[nodiscard]] QCoro::Task<QString> openPage(const PageSession& session, Link url,
                                                std::optional<QString> password) const;

    ContainerPorts m_ports;
    Site m_site;
};

class FileCryptResolver final : public CryptResolver
{
public:
    FileCryptResolver(ContainerPorts ports, QStringList domains)
        : CryptResolver(std::move(ports), {QStringLiteral("FileCrypt"), std::move(domains), HrefScan::fileCrypt()})
    {}
};

class LFileCryptResolver final : public CryptResolver
{
public:
    LFileCryptResolver(ContainerPorts ports, QStringList domains)
        : CryptResolver(std::move(ports), {QStringLiteral("LFileCrypt"), std::move(domains), HrefScan::lfileCrypt()})
    {}
};

} // namespace vormel

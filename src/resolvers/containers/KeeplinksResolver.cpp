#include "resolvers/containers/KeeplinksResolver.h"

#include "platform/async/Background.h"
#include "resolvers/ResolverError.h"
#include "resolvers/containers/ContainerPage.h"
#include "resolvers/containers/KeeplinksPage.h"
#include "resolvers/containers/KnownHosts.h"

namespace vormel {

KeeplinksResolver::KeeplinksResolver(ContainerPorts ports, Site site)
    : m_ports(std::move(ports))
    , m_site(std::move(site))
{}

bool KeeplinksResolver::canHandle(const Link& url) const
{
    return isHostAmong(url, m_site.domains);
}

QCoro::Task<std::vector<Link>> KeeplinksResolver::resolveContainer(Link url, std::optional<QString> password,
                                                                   std::stop_token stop) const
{
    const PageSession session(m_ports.http, fullBrowserUA, std::move(stop));
    const QString html = co_await openPage(session, url, password);
    std::vector<Link> links = co_await linksOf(html);
    if (links.empty()) {
        const auto read = [html, url] { return followMetaRefresh(html, url); };
        if (const std::optional<Link> next = co_await m_ports.background.run(read)) {
            const QString nextHtml = co_await containerPage(session, *next, std::nullopt);
            links = co_await linksOf(nextHtml);
        }
    }
    if (links.empty())
        throw ContainerError::noLinksFound();
    co_return links;
}

QCoro::Task<QString> KeeplinksResolver::openPage(const PageSession& session, Link url,
                                                 std::optional<QString> password) const
{
    QString html = co_await containerPage(session, url, m_site.rootUrl);
    const auto asks = [html] { return hasPasswordField(html); };
    if (!co_await m_ports.background.run(asks))
        co_return html;
    if (!password || password->isEmpty())
        throw ContainerError::wrongPassword();
    html = co_await postContainerPassword(session, m_ports.background, url, html, *password);
    const auto refuses = [html] { return saysKeeplinksWrongPassword(html); };
    if (co_await m_ports.background.run(refuses))
        throw ContainerError::wrongPassword();
    co_return html;
}

QCoro::Task<std::vector<Link>> KeeplinksResolver::linksOf(const QString& html) const
{
    const auto read = [html, knownFileHosts = m_ports.knownFileHosts] {
        return extractKeeplinksHrefs(html, *knownFileHosts);
    };
    return m_ports.background.run(read);
}

} // namespace vormel

#include "resolvers/containers/CryptResolver.h"

#include "platform/async/Background.h"
#include "resolvers/ResolverError.h"
#include "resolvers/containers/ContainerFiles.h"
#include "resolvers/containers/ContainerPage.h"
#include "resolvers/containers/KnownHosts.h"

namespace vormel {

namespace {

/// What a page asks of its reader.
struct PageDemand
{
    bool captcha = false;
    bool password = false;
    bool otherPassword = false;
};

PageDemand demandOf(const QString& html)
{
    return {containsCaptcha(html), hasPasswordField(html), saysWrongPassword(html)};
}

} // namespace

CryptResolver::CryptResolver(ContainerPorts ports, Site site)
    : m_ports(std::move(ports))
    , m_site(std::move(site))
{}

bool CryptResolver::canHandle(const Link& url) const
{
    return isHostAmong(url, m_site.domains);
}

QCoro::Task<std::vector<Link>> CryptResolver::resolveContainer(Link url, std::optional<QString> password,
                                                               std::stop_token stop) const
{
    const PageSession session(m_ports.http, fullBrowserUA, stop);
    const QString html = co_await openPage(session, url, password);
    std::vector<Link> links = co_await extractContainerLinks(m_ports, m_site.hrefs, html, url, fullBrowserUA, stop);
    if (links.empty())
        throw ContainerError::noLinksFound();
    co_return links;
}

QCoro::Task<QString> CryptResolver::openPage(const PageSession& session, Link url,
                                             std::optional<QString> password) const
{
    QString html = co_await containerPage(session, url, url.absoluteString());
    const auto readFirst = [html] { return demandOf(html); };
    const PageDemand first = co_await m_ports.background.run(readFirst);
    if (first.captcha)
        throw ContainerError::captchaRequired();
    if (!first.password)
        co_return html;
    if (!password || password->isEmpty())
        throw ContainerError::wrongPassword();
    html = co_await postContainerPassword(session, m_ports.background, url, html, *password);
    const auto readAnswer = [html] { return demandOf(html); };
    const PageDemand then = co_await m_ports.background.run(readAnswer);
    if (then.captcha)
        throw ContainerError::captchaRequired();
    if (then.otherPassword)
        throw ContainerError::wrongPassword();
    co_return html;
}

} // namespace vormel

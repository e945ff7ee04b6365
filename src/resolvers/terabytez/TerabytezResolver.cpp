#include "resolvers/terabytez/TerabytezResolver.h"

#include "platform/async/Background.h"
#include "platform/web/KeptCookies.h"
#include "resolvers/ResolverError.h"
#include "resolvers/terabytez/TerabytezAccountPage.h"
#include "resolvers/terabytez/TerabytezAccountWalk.h"
#include "resolvers/terabytez/TerabytezCookies.h"
#include "resolvers/terabytez/TerabytezFileWalk.h"
#include "resolvers/terabytez/WalkStopped.h"

namespace vormel {

TerabytezResolver::TerabytezResolver(const Ports& ports, const HostProfiles& profiles)
    : m_ports(ports)
    , m_profile(profiles.of(SupportedHost::terabytez))
    , m_site{m_profile.domain}
{}

QCoro::Task<ResolvedDownload> TerabytezResolver::resolveDownload(Link url, HostAccount /*account*/,
                                                                 std::stop_token stop) const
{
    expectBrowser();
    const TerabytezGate::Work walk = [this, url, stop] { return walkToFile(url, stop); };
    TerabytezResolveResult result = co_await m_gate->runSerial(walk, stop);
    switch (result.kind) {
    case TerabytezResolveResult::Kind::resolved:
        co_return std::move(result.download);
    case TerabytezResolveResult::Kind::needsLogin:
        throw loginRequired();
    case TerabytezResolveResult::Kind::failed:
        break;
    }
    throw ResolverError::linkNotFound();
}

QCoro::Task<TerabytezResolveResult> TerabytezResolver::walkToFile(Link url, std::stop_token stop) const
{
    co_await restoreSignIn(stop);
    TerabytezWebSession session({m_ports.browser, m_ports.sharedCookies, m_ports.clock}, m_site, stop);
    if (!session.hasPage())
        throw loginRequired();
    TerabytezFileWalk walk(session, m_ports.background, m_site);
    co_return co_await walk.run(url);
}

QCoro::Task<PremiumAccountInfo> TerabytezResolver::checkAccount(HostAccount /*account*/, std::stop_token stop) const
{
    expectBrowser();
    co_await restoreSignIn(stop);
    std::optional<QString> page;
    {
        TerabytezWebSession session({m_ports.browser, m_ports.sharedCookies, m_ports.clock}, m_site, stop);
        if (!session.hasPage())
            throw loginRequired();
        TerabytezAccountWalk walk(session, m_ports.background, m_site);
        page = co_await walk.run();
    }
    if (!page)
        throw loginRequired();
    const auto read = [html = *page, now = m_ports.clock.wallNow()] { return terabytezAccountOrUnknown(html, now); };
    co_return co_await m_ports.background.run(read);
}

QCoro::Task<> TerabytezResolver::prepareTransfer(std::stop_token stop) const
{
    co_await restoreSignIn(stop);
    syncTerabytezCookies(m_ports.browser, m_ports.sharedCookies, m_site);
}

QCoro::Task<> TerabytezResolver::restoreSignIn(std::stop_token stop) const
{
    co_await m_ports.keptCookies.restore();
    if (stop.stop_requested())
        throw WalkStopped();
}

void TerabytezResolver::expectBrowser() const
{
    if (m_ports.browser.absence())
        throw loginRequired();
}

ResolverError TerabytezResolver::loginRequired() const
{
    return ResolverError::loginRequired(m_profile);
}

} // namespace vormel

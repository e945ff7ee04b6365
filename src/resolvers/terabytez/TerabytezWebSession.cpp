#include "resolvers/terabytez/TerabytezWebSession.h"

#include "resolvers/terabytez/TerabytezCookies.h"
#include "resolvers/terabytez/TerabytezLinks.h"
#include "resolvers/terabytez/WalkStopped.h"

namespace vormel {

TerabytezWebSession::TerabytezWebSession(const Ports& ports, const TerabytezSite& site, std::stop_token stop)
    : m_ports(ports)
    , m_site(site)
    , m_stop(std::move(stop))
    , m_page(m_stop.stop_requested() ? nullptr : m_ports.browser.makePage(*this))
    , m_onStop(m_stop, [this] { this->stop(); })
{}

QCoro::Task<> TerabytezWebSession::loadURL(Link url, std::chrono::nanoseconds timeout)
{
    const Wait wait = m_navCont.emplace();
    m_wasSentToLogin = false;
    page().load(url);
    co_await over(wait, timeout);
}

QCoro::Task<> TerabytezWebSession::waitForNextNavigation(std::chrono::nanoseconds timeout)
{
    expectGoingOn();
    if (m_pendingNavCount > 0) {
        --m_pendingNavCount;
        co_return;
    }
    const Wait wait = m_navCont.emplace();
    co_await over(wait, timeout);
}

QCoro::Task<> TerabytezWebSession::pause(std::chrono::nanoseconds time)
{
    expectGoingOn();
    const Wait wait = m_pause.emplace();
    co_await over(wait, time);
}

QCoro::Task<> TerabytezWebSession::over(Wait wait, std::chrono::nanoseconds longest) const
{
    const Timer timer = m_ports.clock.after(longest, [wait] { wait.deliver(true); });
    static_cast<void>(co_await wait);
    expectGoingOn();
}

QCoro::Task<QVariant> TerabytezWebSession::eval(QString script)
{
    QVariant result = co_await page().run(std::move(script));
    expectGoingOn();
    co_return result;
}

std::optional<Link> TerabytezWebSession::currentUrl() const
{
    return page().url();
}

void TerabytezWebSession::syncCookiesToSharedStorage() const
{
    expectGoingOn();
    syncTerabytezCookies(m_ports.browser, m_ports.sharedCookies, m_site);
}

bool TerabytezWebSession::mayAsk(const WebPage::Request& request)
{
    m_wasSentToLogin = m_wasSentToLogin || (request.isMainFrame && isLoginPage(request.url));
    return !(isDownloadURL(request.url, m_site) && captures(request.url));
}

bool TerabytezWebSession::mayShow(const WebPage::Response& response)
{
    return !(response.isMainFrame && !response.canBeShown && captures(response.url));
}

void TerabytezWebSession::windowWanted(const Link& url)
{
    if (isDownloadURL(url, m_site))
        static_cast<void>(captures(url));
}

void TerabytezWebSession::navigationEnded(WebPage::End /*end*/)
{
    navigationEnded();
}

bool TerabytezWebSession::captures(const Link& url)
{
    if (url.isEmpty())
        return false;
    m_capturedDownloadURL = url;
    navigationEnded();
    return true;
}

void TerabytezWebSession::navigationEnded()
{
    if (m_navCont && !m_navCont->isThere())
        m_navCont->deliver(true);
    else
        ++m_pendingNavCount;
}

void TerabytezWebSession::stop()
{
    const std::optional<Wait> navigation = m_navCont;
    const std::optional<Wait> pause = m_pause;
    std::unique_ptr<WebPage> page = std::move(m_page);
    page.reset();
    for (const std::optional<Wait>& wait : {navigation, pause}) {
        if (wait)
            wait->deliver(true);
    }
}

WebPage& TerabytezWebSession::page() const
{
    expectGoingOn();
    return *m_page;
}

void TerabytezWebSession::expectGoingOn() const
{
    if (m_stop.stop_requested())
        throw WalkStopped();
}

} // namespace vormel

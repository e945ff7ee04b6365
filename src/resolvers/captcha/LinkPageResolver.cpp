#include "resolvers/captcha/LinkPageResolver.h"

#include "platform/async/Background.h"
#include "platform/async/Spawn.h"
#include "platform/web/WebBrowser.h"
#include "resolvers/captcha/LinkTargets.h"
#include "resolvers/containers/ContainerLinks.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr std::chrono::seconds longestSearch{15};

/// Scripts open such windows to fill them by themselves.
bool isEmptyWindow(const Link& url)
{
    return url.isEmpty() || url.absoluteString() == u"about:blank";
}

} // namespace

LinkPageResolver::LinkPageResolver(const Ports& ports, std::shared_ptr<const LinkTargets> targets)
    : m_ports(ports)
    , m_targets(std::move(targets))
{}

LinkPageResolver::~LinkPageResolver()
{
    finishOnce(std::nullopt);
}

Eventual<std::optional<Link>> LinkPageResolver::resolve(const Link& page)
{
    m_watchdog = m_ports.clock.after(longestSearch, [this] { finishOnce(std::nullopt); });
    m_page = m_ports.browser.makePage(*this);
    if (m_page)
        m_page->load(page);
    else
        finishOnce(std::nullopt);
    return m_resolved.eventual();
}

bool LinkPageResolver::mayAsk(const WebPage::Request& request)
{
    if (!m_targets->isTarget(request.url))
        return true;
    finishOnce(upgradeToHTTPS(request.url));
    return false;
}

bool LinkPageResolver::mayShow(const WebPage::Response& /*response*/)
{
    return true;
}

void LinkPageResolver::windowWanted(const Link& url)
{
    if (m_targets->isTarget(url))
        finishOnce(upgradeToHTTPS(url));
    else if (m_page && !isEmptyWindow(url))
        m_page->load(url);
}

void LinkPageResolver::navigationEnded(WebPage::End end)
{
    if (end == WebPage::End::failed)
        return finishOnce(std::nullopt);
    if (!m_page)
        return;
    const std::optional<Link> url = m_page->url();
    if (url && m_targets->isTarget(*url))
        return finishOnce(url);
    spawn(scanPage(m_lifetime.watch()));
}

QCoro::Task<> LinkPageResolver::scanPage(Lifetime::Watch lifetime)
{
    const QVariant html = co_await m_page->run(u"document.documentElement.outerHTML"_s);
    if (lifetime.isOver() || m_isDone)
        co_return;
    const auto scan = [text = html.toString(), targets = m_targets] { return targets->scanPageForTarget(text); };
    const std::optional<Link> target = co_await m_ports.background.run(scan);
    // Where the page tells nothing, a later navigation may.
    if (target && !lifetime.isOver())
        finishOnce(target);
}

void LinkPageResolver::finishOnce(const std::optional<Link>& result)
{
    if (m_isDone)
        return;
    m_isDone = true;
    m_watchdog.cancel();
    m_page.reset();
    QMetaObject::invokeMethod(
        &m_later, [this, result] { m_resolved.deliver(result); }, Qt::QueuedConnection);
}

} // namespace vormel

#include "resolvers/captcha/CaptchaExtraction.h"

#include "model/Services.h"
#include "platform/async/Background.h"
#include "platform/async/Spawn.h"
#include "platform/web/WebBrowser.h"
#include "resolvers/captcha/AddressCookies.h"
#include "resolvers/captcha/LinkPageResolver.h"
#include "resolvers/captcha/LinkTargets.h"
#include "resolvers/containers/ContainerFiles.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr QLatin1StringView shortBrowserUA{"Mozilla/5.0 (Macintosh; Intel Mac OS X 10_15_7) AppleWebKit/605.1.15"};
constexpr QLatin1StringView plainUA{"Mozilla/5.0"};

} // namespace

CaptchaExtraction::CaptchaExtraction(const CaptchaPorts& ports, Link containerURL,
                                     std::vector<SupportedHost> accountHosts)
    : m_ports(ports)
    , m_containerURL(std::move(containerURL))
    , m_accountHosts(std::move(accountHosts))
    , m_profiles(ports.services)
    , m_targets(std::make_shared<const LinkTargets>(ports.services))
{}

CaptchaExtraction::~CaptchaExtraction()
{
    end();
}

void CaptchaExtraction::extract(WebPage* page)
{
    if (!page || m_isExtracting)
        return;
    m_stop = std::stop_source();
    m_isExtracting = true;
    m_errorMessage.reset();
    const std::stop_token stop = m_stop.get_token();
    QCoro::Task<QVariant> reading = page->run(captchaPageScript());
    Q_EMIT changed();
    spawn(work(std::move(reading), stop));
}

void CaptchaExtraction::cancel()
{
    end();
    Q_EMIT changed();
}

void CaptchaExtraction::choose(int group)
{
    const std::vector<Link> urls = m_found.groups.at(static_cast<std::size_t>(group)).urls;
    Q_EMIT linksExtracted(urls);
}

void CaptchaExtraction::addAll()
{
    const std::vector<Link> urls = m_found.urls;
    Q_EMIT linksExtracted(urls);
}

QCoro::Task<> CaptchaExtraction::work(QCoro::Task<QVariant> reading, std::stop_token stop)
{
    const QVariant told = co_await reading;
    if (stop.stop_requested())
        co_return;
    const auto read = [text = told.toString(), url = m_containerURL, hosts = m_targets->knownFileHosts()] {
        return readCaptchaPage(text, url, *hosts);
    };
    const std::optional<CaptchaPage> page = co_await m_ports.background.run(read);
    if (stop.stop_requested())
        co_return;
    if (!page)
        co_return fail(u"Could not read page content"_s);
    const std::vector<Link> links = co_await linksOf(*page, stop);
    if (stop.stop_requested())
        co_return;
    if (links.empty())
        co_return fail(u"No links found — make sure the file list is visible, then try again"_s);
    const auto choose = [links, hosts = m_accountHosts, profiles = m_profiles] {
        return chooseLinks(links, hosts, profiles);
    };
    CaptchaChoice found = co_await m_ports.background.run(choose);
    if (!stop.stop_requested())
        finishExtraction(std::move(found));
}

QCoro::Task<std::vector<Link>> CaptchaExtraction::linksOf(CaptchaPage page, std::stop_token stop)
{
    if (!page.calls.empty())
        co_return page.calls;
    if (!page.field.empty())
        co_return page.field;
    if (page.textList) {
        const std::vector<Link> links = co_await readTextList(*page.textList, stop);
        if (!links.empty() || stop.stop_requested())
            co_return links;
    }
    if (!page.linkPages.empty())
        co_return co_await followLinkPages(page.linkPages, stop);
    const ContainerPorts reading{m_ports.http, m_ports.background, m_targets->knownFileHosts()};
    co_return co_await extractContainerLinks(reading, HrefScan::fileCrypt(), page.html, m_containerURL, plainUA, stop);
}

QCoro::Task<std::vector<Link>> CaptchaExtraction::readTextList(Link address, std::stop_token stop)
{
    Background& background = m_ports.background;
    PageSession session(m_ports.http, shortBrowserUA, stop);
    session.setCookies(cookiesForAddress(address, m_ports.browser.cookies()));
    const PageAnswer answer = co_await session.get(address, std::nullopt);
    if (answer.error || stop.stop_requested())
        co_return std::vector<Link>();
    const auto read = [text = answer.html] { return parseLinkList(text); };
    co_return co_await background.run(read);
}

QCoro::Task<std::vector<Link>> CaptchaExtraction::followLinkPages(std::vector<Link> pages, std::stop_token stop)
{
    const LinkPageResolver::Ports ports{m_ports.browser, m_ports.clock, m_ports.background};
    std::vector<Link> files;
    for (std::size_t i = 0; i < pages.size(); ++i) {
        m_extractProgress = Progress{static_cast<int>(i) + 1, static_cast<int>(pages.size())};
        Q_EMIT changed();
        if (stop.stop_requested())
            break;
        m_linkPage = std::make_unique<LinkPageResolver>(ports, m_targets);
        Eventual<std::optional<Link>> resolving = m_linkPage->resolve(pages[i]);
        const std::optional<Link> file = co_await resolving;
        if (stop.stop_requested())
            break;
        if (file)
            files.push_back(*file);
    }
    if (!stop.stop_requested())
        m_extractProgress.reset();
    co_return files;
}

void CaptchaExtraction::fail(const QString& message)
{
    m_errorMessage = message;
    end();
    Q_EMIT changed();
}

void CaptchaExtraction::finishExtraction(CaptchaChoice found)
{
    m_found = std::move(found);
    end();
    Q_EMIT changed();
    if (m_found.groups.empty())
        addAll();
}

/// Whoever waits goes on in here, and sees that it has been stopped.
void CaptchaExtraction::end()
{
    m_stop.request_stop();
    m_linkPage.reset();
    m_isExtracting = false;
    m_extractProgress.reset();
}

} // namespace vormel

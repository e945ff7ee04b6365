#include "resolvers/terabytez/TerabytezFileWalk.h"

#include "platform/async/Background.h"
#include "resolvers/terabytez/TerabytezLinks.h"
#include "resolvers/terabytez/TerabytezNames.h"
#include "resolvers/terabytez/TerabytezScripts.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr int waitSteps = 4;
constexpr int formPasses = 2;

bool isTrue(const QVariant& answer)
{
    return answer.typeId() == QMetaType::Bool && answer.toBool();
}

TerabytezResolveResult needsLogin()
{
    return {.kind = TerabytezResolveResult::Kind::needsLogin};
}

} // namespace

TerabytezFileWalk::TerabytezFileWalk(TerabytezWebSession& session, Background& background, const TerabytezSite& site)
    : m_session(session)
    , m_background(background)
    , m_site(site)
{}

QCoro::Task<TerabytezResolveResult> TerabytezFileWalk::run(Link url)
{
    co_await loadFilePage(url);
    co_await waitForFormOrDownload(waitSteps);
    if (const std::optional<Link> file = m_session.capturedDownloadURL())
        co_return found(*file, std::nullopt);
    if (isAtLogin())
        co_return needsLogin();
    const std::optional<QString> name = co_await readTitleName();
    if (const std::optional<Link> file = downloadShown())
        co_return found(*file, name);
    for (int pass = 0; pass < formPasses; ++pass) {
        static_cast<void>(co_await submitDownloadForm());
        if (const std::optional<Link> file = m_session.capturedDownloadURL())
            co_return found(*file, name);
        if (isAtLogin())
            co_return needsLogin();
        if (const std::optional<Link> file = downloadShown())
            co_return found(*file, name);
        if (const std::optional<Link> file = co_await linkOnPage())
            co_return found(*file, name);
    }
    co_return TerabytezResolveResult{};
}

QCoro::Task<> TerabytezFileWalk::loadFilePage(Link url)
{
    co_await m_session.loadURL(url, TerabytezWebSession::longestLoad);
    if (isPastLogin())
        co_await m_session.loadURL(url, TerabytezWebSession::longestLoad);
}

QCoro::Task<> TerabytezFileWalk::waitForFormOrDownload(int steps)
{
    for (int step = 0; step < steps; ++step) {
        if (m_session.capturedDownloadURL() || isAtLogin() || co_await hasForm())
            co_return;
        co_await m_session.waitForNextNavigation(TerabytezWebSession::longestLoad);
    }
}

QCoro::Task<bool> TerabytezFileWalk::submitDownloadForm()
{
    const bool isThere = co_await hasForm();
    if (!isThere)
        co_return false;
    const QVariant isSubmitted = co_await m_session.eval(terabytezScripts::submitForm());
    if (!isTrue(isSubmitted))
        co_return false;
    co_await m_session.waitForNextNavigation(TerabytezWebSession::longestLoad);
    co_return true;
}

QCoro::Task<bool> TerabytezFileWalk::hasForm()
{
    const QVariant answer = co_await m_session.eval(terabytezScripts::hasElement(u"form"_s));
    co_return isTrue(answer);
}

QCoro::Task<std::optional<QString>> TerabytezFileWalk::readTitleName()
{
    const QVariant heading = co_await m_session.eval(terabytezScripts::heading());
    const auto read = [text = heading.toString()] { return terabytezFileName(text); };
    co_return co_await m_background.run(read);
}

QCoro::Task<std::optional<Link>> TerabytezFileWalk::linkOnPage()
{
    const QVariant html = co_await m_session.eval(terabytezScripts::html());
    const auto read = [text = html.toString(), site = m_site] { return extractDownloadLink(text, site); };
    co_return co_await m_background.run(read);
}

bool TerabytezFileWalk::isAtLogin() const
{
    const std::optional<Link> url = m_session.currentUrl();
    return url && isLoginPage(*url);
}

bool TerabytezFileWalk::isPastLogin() const
{
    const bool hasArrived = m_session.currentUrl().has_value() && !m_session.capturedDownloadURL();
    return hasArrived && m_session.wasSentToLogin() && !isAtLogin();
}

std::optional<Link> TerabytezFileWalk::downloadShown() const
{
    const std::optional<Link> url = m_session.currentUrl();
    return url && isDownloadURL(*url, m_site) ? url : std::nullopt;
}

TerabytezResolveResult TerabytezFileWalk::found(const Link& file, const std::optional<QString>& name) const
{
    m_session.syncCookiesToSharedStorage();
    return {TerabytezResolveResult::Kind::resolved, {file, name}};
}

} // namespace vormel

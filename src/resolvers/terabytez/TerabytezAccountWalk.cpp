#include "resolvers/terabytez/TerabytezAccountWalk.h"

#include "platform/async/Background.h"
#include "resolvers/terabytez/TerabytezAccountPage.h"
#include "resolvers/terabytez/TerabytezScripts.h"

namespace vormel {

namespace {

constexpr std::chrono::seconds betweenPasses{1};
constexpr std::chrono::milliseconds betweenPolls{500};
constexpr int passes = 3;
constexpr int polls = 12;

} // namespace

TerabytezAccountWalk::TerabytezAccountWalk(TerabytezWebSession& session, Background& background,
                                           const TerabytezSite& site)
    : m_session(session)
    , m_background(background)
    , m_site(site)
{}

QCoro::Task<std::optional<QString>> TerabytezAccountWalk::run()
{
    for (int number = 0; number < passes; ++number) {
        std::optional<QString> page = co_await pass();
        if (page)
            co_return std::move(page);
        co_await m_session.pause(betweenPasses);
    }
    co_return std::nullopt;
}

QCoro::Task<std::optional<QString>> TerabytezAccountWalk::pass()
{
    co_await m_session.loadURL(m_site.rootUrl(), TerabytezWebSession::longestLoad);
    const bool mayOpenAccount = co_await isSignedIn();
    if (!mayOpenAccount)
        co_return std::nullopt;
    co_await m_session.eval(terabytezScripts::openAccount(m_site));
    co_await m_session.waitForNextNavigation(TerabytezWebSession::longestLoad);
    co_return co_await accountPage();
}

QCoro::Task<bool> TerabytezAccountWalk::isSignedIn()
{
    struct Signs
    {
        bool ofSignIn = false;
        bool ofLoginForm = false;
    };
    for (int poll = 0; poll < polls; ++poll) {
        const QString page = co_await html();
        const auto read = [page] { return Signs{isSignedInToTerabytez(page), asksForTerabytezPassword(page)}; };
        const Signs signs = co_await m_background.run(read);
        if (signs.ofSignIn || signs.ofLoginForm)
            co_return signs.ofSignIn;
        co_await m_session.pause(betweenPolls);
    }
    co_return false;
}

QCoro::Task<std::optional<QString>> TerabytezAccountWalk::accountPage()
{
    for (int poll = 0; poll < polls; ++poll) {
        QString page = co_await html();
        const auto read = [page] { return isTerabytezAccountPage(page); };
        const bool isAccounts = co_await m_background.run(read);
        m_session.expectGoingOn();
        if (isAccounts)
            co_return std::optional(std::move(page));
        co_await m_session.pause(betweenPolls);
    }
    co_return std::nullopt;
}

QCoro::Task<QString> TerabytezAccountWalk::html()
{
    const QVariant page = co_await m_session.eval(terabytezScripts::html());
    co_return page.toString();
}

} // namespace vormel

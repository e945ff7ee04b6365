#include "resolvers/filestore/FilestoreResolver.h"

#include "platform/async/Background.h"
#include "platform/async/Sleep.h"
#include "platform/http/CookieStore.h"
#include "platform/secrets/SecretStore.h"
#include "resolvers/ResolverError.h"
#include "resolvers/filestore/FilestoreLinks.h"
#include "resolvers/filestore/FilestoreLogin.h"
#include "resolvers/filestore/FilestoreWalk.h"
#include "resolvers/filestore/FilestoreWord.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr int maxAttempts = 3;

/// The domain of a cookie's line, which may be marked as hidden from scripts.
QString cookieDomain(const QByteArray& cookie)
{
    QString domain = QString::fromUtf8(cookie.first(std::max<qsizetype>(cookie.indexOf('\t'), 0))).toLower();
    const QString hidden = u"#httponly_"_s;
    return domain.startsWith(hidden) ? domain.mid(hidden.size()) : domain;
}

void expectAnswer(const PageAnswer& page)
{
    if (page.error)
        throw ResolverError::networkError(*page.error);
}

} // namespace

FilestoreResolver::FilestoreResolver(const Ports& ports, const HostProfiles& profiles)
    : m_ports(ports)
    , m_profiles(profiles)
    , m_domain(profiles.of(SupportedHost::filestore).domain)
    , m_loginURLString(pageUrl(u"/login"))
{}

QString FilestoreResolver::pageUrl(QStringView path) const
{
    return u"https://%1%2"_s.arg(m_domain, path);
}

QCoro::Task<QString> FilestoreResolver::loadPassword(const HostAccount& account) const
{
    return m_ports.secrets.load(keychainAccountKey(account, m_profiles));
}

QCoro::Task<ResolvedDownload> FilestoreResolver::resolveDownload(Link url, HostAccount account,
                                                                 std::stop_token stop) const
{
    const QString password = co_await loadPassword(account);
    const Login login{account.username, password};
    if (login.username.isEmpty() || login.password.isEmpty())
        throw ResolverError::noAccountConfigured(m_profiles.displayName(SupportedHost::filestore));
    if (!hasPathBehindRoot(url))
        throw ResolverError::linkNotFound();
    for (int number = 1;; ++number) {
        const FilestoreLoginCache::Session loggedIn = co_await session(login, stop);
        std::optional<ResolverError> failure;
        try {
            co_return co_await attempt(url, loggedIn, stop);
        } catch (const ResolverError& error) {
            failure = error;
        }
        const bool isLoggedOut = failure->kind() == ResolverError::Kind::authenticationFailed;
        if (isLoggedOut)
            m_ports.logins.invalidateLogin(login.username, loggedIn.login);
        const bool mayTryAgain = isLoggedOut || failure->kind() == ResolverError::Kind::linkNotFound;
        if (!mayTryAgain || number == maxAttempts || stop.stop_requested())
            throw ResolverError(*failure);
        if (!isLoggedOut)
            co_await sleepFor(m_ports.clock, std::chrono::seconds(number));
    }
}

QCoro::Task<FilestoreLoginCache::Session> FilestoreResolver::session(Login login, std::stop_token stop) const
{
    const auto signIn = [this, login](std::stop_token loginStop) -> QCoro::Task<QByteArrayList> {
        PageSession session(m_ports.http, m_browserUA, std::move(loginStop));
        co_await performLogin(session, login);
        co_return session.cookies();
    };
    std::optional<FilestoreLoginCache::Session> session;
    try {
        session = co_await m_ports.logins.cookiesForUser(login.username, signIn, std::move(stop));
    } catch (const std::exception&) {
        // Whatever it was, to the user the login has failed.
    }
    if (!session)
        throw ResolverError::authenticationFailed();
    co_return *session;
}

QCoro::Task<> FilestoreResolver::performLogin(const PageSession& session, Login login) const
{
    const Link loginUrl = Link::parse(m_loginURLString).value();
    const PageAnswer page = co_await session.get(loginUrl, std::nullopt);
    expectAnswer(page);
    const auto fillIn = [page, login] {
        return encodeFormFields(loginFields(page.html, login.username, login.password));
    };
    const QByteArray form = co_await m_ports.background.run(fillIn);
    const PageAnswer answer = co_await session.post(loginUrl, form, m_loginURLString);
    expectAnswer(answer);
    const auto isRefused = [answer] { return tellsRefusedLogin(answer.html); };
    if (co_await m_ports.background.run(isRefused))
        throw ResolverError::authenticationFailed();
}

QCoro::Task<ResolvedDownload> FilestoreResolver::attempt(Link url, FilestoreLoginCache::Session login,
                                                         std::stop_token stop) const
{
    PageSession session(m_ports.http, m_browserUA, std::move(stop), FilestoreWalk::redirectRule(m_domain));
    session.setCookies(login.cookies);
    FilestoreWalk walk({m_ports.background, m_domain}, session, url);
    ResolvedDownload found = co_await walk.run();
    copyFilestoreCookies(session);
    co_return found;
}

void FilestoreResolver::copyFilestoreCookies(const PageSession& session) const
{
    for (const QByteArray& cookie : session.cookies()) {
        const QString domain = cookieDomain(cookie);
        // A service that has moved may not have its word in its domain any more.
        if (domain.contains(filestoreWord) || domain.contains(m_domain))
            m_ports.sharedCookies.add(cookie);
    }
}

QCoro::Task<PremiumAccountInfo> FilestoreResolver::checkAccount(HostAccount account, std::stop_token stop) const
{
    const QString password = co_await loadPassword(account);
    const Login login{account.username, password};
    if (login.username.isEmpty() || login.password.isEmpty())
        throw ResolverError::authenticationFailed();
    const PageSession session(m_ports.http, m_browserUA, std::move(stop));
    co_await performLogin(session, login);
    const Link accountUrl = Link::parse(pageUrl(u"/account")).value();
    const PageAnswer page = co_await session.get(accountUrl, std::nullopt);
    expectAnswer(page);
    if (isLoginAddress(page.url))
        throw ResolverError::authenticationFailed();
    const auto read = [page, now = m_ports.clock.wallNow()] { return parseAccountPage(page.html, now); };
    co_return co_await m_ports.background.run(read);
}

} // namespace vormel

#include "ui/sheets/signin/TerabytezSignIn.h"

#include "platform/async/Spawn.h"
#include "resolvers/terabytez/TerabytezAccountPage.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// Of what is run for its effect.
QCoro::Task<> dropResult(QCoro::Task<QVariant> script)
{
    co_await script;
}

} // namespace

TerabytezSignIn::TerabytezSignIn(TerabytezSite site, Clock& clock, QObject* parent)
    : QObject(parent)
    , m_site(std::move(site))
    , m_clock(clock)
{}

void TerabytezSignIn::usePage(WebPage& page)
{
    m_page = &page;
    Q_EMIT changed();
    Q_EMIT loadRequested(m_site.loginUrl());
}

void TerabytezSignIn::setCredentials(const Credentials& credentials)
{
    m_credentials = credentials;
    fill();
}

void TerabytezSignIn::navigationOver(WebPage::End end)
{
    if (end == WebPage::End::loaded)
        spawn(fillAndRead(m_lifetime.watch()));
}

/// A password is for nobody but its own site.
bool TerabytezSignIn::mayFill() const
{
    const std::optional<Link> url = m_page ? m_page->url() : std::nullopt;
    if (!url || m_credentials.areEmpty())
        return false;
    const QString host = url->host().toString().toLower();
    const bool isOwn = host == m_site.domain || host.endsWith(u'.' + m_site.domain);
    return isOwn && url->scheme() == u"https" && m_page->connection() == WebPage::Connection::verified;
}

void TerabytezSignIn::fill()
{
    if (mayFill())
        spawn(dropResult(m_page->run(fillScript(m_credentials))));
}

QCoro::Task<> TerabytezSignIn::fillAndRead(Lifetime::Watch lifetime)
{
    fill(); // the page runs its scripts one after the other
    const std::optional<QString> text = co_await html();
    if (lifetime.isOver() || !text)
        co_return;
    m_isLoggedIn = m_isLoggedIn || isSignedInToTerabytez(*text);
    if (isTerabytezAccountPage(*text))
        m_accountHTML = text;
    Q_EMIT changed();
}

void TerabytezSignIn::done()
{
    if (!canBeDone())
        return;
    m_isLoading = true;
    Q_EMIT changed();
    if (const std::optional<PremiumAccountInfo> info = parsed(m_accountHTML)) {
        Q_EMIT loggedIn(info);
        return;
    }
    Q_EMIT loadRequested(m_site.accountUrl());
    tryLater();
}

void TerabytezSignIn::tryLater()
{
    constexpr std::chrono::milliseconds pause(500);
    m_nextTry = m_clock.after(pause, [this] { spawn(readAccount(m_lifetime.watch())); });
}

QCoro::Task<> TerabytezSignIn::readAccount(Lifetime::Watch lifetime)
{
    const std::optional<QString> text = co_await html();
    if (lifetime.isOver())
        co_return;
    const std::optional<PremiumAccountInfo> info = parsed(text);
    --m_triesLeft;
    if (info || m_triesLeft == 0)
        Q_EMIT loggedIn(info);
    else
        tryLater();
}

/// Nothing where the page gives no text.
QCoro::Task<std::optional<QString>> TerabytezSignIn::html() const
{
    const QVariant result = co_await m_page->run(u"document.documentElement.innerHTML"_s);
    co_return result.typeId() == QMetaType::QString ? std::optional(result.toString()) : std::nullopt;
}

std::optional<PremiumAccountInfo> TerabytezSignIn::parsed(const std::optional<QString>& html) const
{
    return html ? parseTerabytezAccount(*html, m_clock.wallNow()) : std::nullopt;
}

} // namespace vormel

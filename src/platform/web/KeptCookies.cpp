#include "platform/web/KeptCookies.h"

#include "platform/async/Spawn.h"
#include "platform/http/CookieStore.h"
#include "platform/secrets/SecretStore.h"
#include "platform/web/CookieLine.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

const QString secretKey = u"vormel_web_cookies"_s;

} // namespace

KeptCookies::KeptCookies(const Ports& ports, Rule isKept)
    : m_ports(ports)
    , m_isKept(std::move(isKept))
{
    connect(&m_ports.browser, &WebBrowser::cookiesChanged, this, [this] {
        if (isRestored())
            spawn(save(m_lifetime.watch()));
    });
}

KeptCookies::~KeptCookies()
{
    if (m_restored)
        m_restored->deliver(false);
}

QCoro::Task<> KeptCookies::restore()
{
    if (!m_restored) {
        m_restored.emplace();
        spawn(load(m_lifetime.watch()));
    }
    const SharedEventual<bool> restored = *m_restored;
    static_cast<void>(co_await restored);
}

QCoro::Task<> KeptCookies::load(Lifetime::Watch lifetime)
{
    const QString kept = co_await m_ports.secrets.load(secretKey);
    if (lifetime.isOver())
        co_return;
    m_saved = keptOf(kept.toUtf8().split('\n'));
    for (const QByteArray& line : std::as_const(m_saved)) {
        m_ports.browser.addCookie(line);
        m_ports.transfers.add(line);
    }
    m_restored->deliver(true);
}

QCoro::Task<> KeptCookies::forget()
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    co_await restore();
    if (lifetime.isOver())
        co_return;
    for (const QByteArray& line : keptOf(m_ports.transfers.cookies()))
        m_ports.transfers.remove(line);
    m_ports.browser.removeCookies(keptOf(m_ports.browser.cookies()));

    const Turn turn = co_await m_turns.take();
    if (lifetime.isOver())
        co_return;
    m_saved.clear();
    co_await m_ports.secrets.remove(secretKey);
}

QCoro::Task<> KeptCookies::save(Lifetime::Watch lifetime)
{
    const Turn turn = co_await m_turns.take();
    if (lifetime.isOver())
        co_return;
    const QByteArrayList kept = keptOf(m_ports.browser.cookies());
    if (kept == m_saved)
        co_return;
    m_saved = kept;
    if (kept.isEmpty())
        co_await m_ports.secrets.remove(secretKey);
    else
        co_await m_ports.secrets.save(secretKey, QString::fromUtf8(kept.join('\n')));
}

/// In an order of their own, so that the same cookies are the same list.
QByteArrayList KeptCookies::keptOf(const QByteArrayList& cookies) const
{
    QByteArrayList kept;
    for (const QByteArray& line : cookies) {
        const std::optional<CookieLine> cookie = CookieLine::parse(line);
        if (cookie && m_isKept(cookie->domain))
            kept.append(line);
    }
    std::sort(kept.begin(), kept.end());
    return kept;
}

} // namespace vormel

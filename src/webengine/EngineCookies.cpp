#include "webengine/EngineCookies.h"

#include "platform/clock/Clock.h"
#include "webengine/CookieLines.h"

#include <QWebEngineCookieStore>

#include <algorithm>

namespace vormel {

EngineCookies::EngineCookies(QWebEngineCookieStore& store, Clock& clock, std::function<void()> onChange)
    : m_store(store)
    , m_clock(clock)
    , m_onChange(std::move(onChange))
{
    QObject::connect(&m_store, &QWebEngineCookieStore::cookieAdded, &m_context,
                     [this](const QNetworkCookie& cookie) { note(lineOf(cookie)); });
    QObject::connect(&m_store, &QWebEngineCookieStore::cookieRemoved, &m_context,
                     [this](const QNetworkCookie& cookie) { forget(lineOf(cookie)); });
}

QByteArrayList EngineCookies::lines() const
{
    QByteArrayList lines;
    for (const CookieLine& cookie : m_cookies) {
        // The engine does not tell of a cookie that runs out.
        if (!isOver(cookie))
            lines.append(cookie.text());
    }
    return lines;
}

void EngineCookies::add(const QByteArray& line)
{
    const std::optional<CookieLine> cookie = CookieLine::parse(line);
    if (!cookie || isOver(*cookie))
        return;
    note(*cookie);
    m_store.setCookie(cookieOf(*cookie), originOf(*cookie));
}

void EngineCookies::remove(const QByteArrayList& lines)
{
    for (const QByteArray& line : lines) {
        const std::optional<CookieLine> cookie = CookieLine::parse(line);
        if (!cookie)
            continue;
        forget(*cookie);
        m_store.deleteCookie(cookieOf(*cookie), originOf(*cookie));
    }
}

void EngineCookies::note(const CookieLine& cookie)
{
    const auto known = std::ranges::find_if(m_cookies, [&](const CookieLine& other) { return other.isSameAs(cookie); });
    if (known == m_cookies.end())
        m_cookies.push_back(cookie);
    else if (*known == cookie)
        return;
    else
        *known = cookie;
    tellLater();
}

void EngineCookies::forget(const CookieLine& cookie)
{
    if (std::erase_if(m_cookies, [&](const CookieLine& other) { return other.isSameAs(cookie); }) > 0)
        tellLater();
}

bool EngineCookies::isOver(const CookieLine& cookie) const
{
    using std::chrono::seconds;
    return cookie.expiry != 0 && WallTime(seconds(cookie.expiry)) <= m_clock.wallNow();
}

void EngineCookies::tellLater()
{
    if (std::exchange(m_isToBeTold, true))
        return;
    QMetaObject::invokeMethod(
        &m_context,
        [this] {
            m_isToBeTold = false;
            m_onChange();
        },
        Qt::QueuedConnection);
}

} // namespace vormel

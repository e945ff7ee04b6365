#pragma once

#include "platform/http/HttpClient.h"
#include "text/Link.h"

#include <QByteArrayList>
#include <QCoroTask>
#include <QLatin1StringView>

#include <functional>
#include <optional>
#include <stop_token>

namespace vormel {

/// What the pages of the services are told of who reads them.
inline constexpr QLatin1StringView fullBrowserUA{
    "Mozilla/5.0 (Macintosh; Intel Mac OS X 10_15_7) AppleWebKit/605.1.15 (KHTML, like Gecko) Version/18.0 "
    "Safari/605.1.15"};

/// What came of asking for a page.
struct PageAnswer
{
    std::optional<QString> error; ///< in English; what arrived before it is still here
    Link url;                     ///< where the answer came from; the address that was asked for if none came
    QByteArray contentType;       ///< without parameters, in small letters; empty if there is none
    QString html;                 ///< broken UTF-8 is repaired
    std::optional<Link> refused;  ///< the redirect that was not followed, by http or https

    [[nodiscard]] bool isHtml() const { return contentType.startsWith("text/html"); }
};

/// Reads the pages of one site for one purpose, with cookies of its own. UI thread only. Every answer comes to its
/// end: a site that says nothing for 60 seconds has failed.
class PageSession
{
public:
    /// Of a redirect's target; on the client's thread, so it must own all that it uses.
    using RedirectRule = std::function<bool(const QUrl& target)>;

    /// The client must outlive what is asked. A stop ends the request that is under way and all later ones. Without a
    /// rule every redirect is followed.
    PageSession(HttpClient& http, QLatin1StringView userAgent, std::stop_token stop, RedirectRule mayFollow = {});

    /// A page of at most 8 MiB; a larger one is an error.
    [[nodiscard]] QCoro::Task<PageAnswer> get(const Link& url, const std::optional<QString>& referer) const;
    /// As get(), of the answer's head only.
    [[nodiscard]] QCoro::Task<PageAnswer> probe(const Link& url, const std::optional<QString>& referer) const;
    /// Posts a form. With a size, no more than so much of the page that answers is read, and nothing of what is no
    /// page.
    [[nodiscard]] QCoro::Task<PageAnswer> post(const Link& url, QByteArray form, const std::optional<QString>& referer,
                                               std::optional<qint64> maxSize = {}) const;

    /// One line for each cookie, as CookieStore has them.
    [[nodiscard]] QByteArrayList cookies() const;
    void setCookies(const QByteArrayList& cookies);
    [[nodiscard]] bool isStopped() const { return m_stop.stop_requested(); }

private:
    struct Wanted;

    [[nodiscard]] HttpRequest requestFor(const Link& url, const std::optional<QString>& referer) const;
    [[nodiscard]] QCoro::Task<PageAnswer> ask(HttpRequest request, Wanted wanted) const;

    HttpClient& m_http;
    QLatin1StringView m_userAgent;
    std::stop_token m_stop;
    RedirectRule m_mayFollow;
    std::shared_ptr<CookieStore> m_cookies;
};

} // namespace vormel

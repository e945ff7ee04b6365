#include "resolvers/pages/PageSession.h"

#include "model/NetworkErrorText.h"
#include "platform/http/CookieStore.h"
#include "platform/http/HttpFetch.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr qint64 maxPageSize = qint64{8} * 1024 * 1024;

Link linkOf(const QUrl& url)
{
    return Link::parse(url.toString(QUrl::FullyEncoded)).value_or(Link());
}

std::optional<Link> refusedLink(const FetchResult& result)
{
    if (!result.refused)
        return std::nullopt;
    Link link = linkOf(*result.refused);
    return link.isHttp() ? std::optional(std::move(link)) : std::nullopt;
}

bool isPage(const HttpResponse& response)
{
    return response.mimeType().startsWith("text/html");
}

} // namespace

/// How much of an answer is of use.
struct PageSession::Wanted
{
    qint64 maxSize = maxPageSize;
    bool mayBeCut = false;
    std::function<bool(const HttpResponse&)> wantsBody;
};

PageSession::PageSession(HttpClient& http, QLatin1StringView userAgent, std::stop_token stop, RedirectRule mayFollow)
    : m_http(http)
    , m_userAgent(userAgent)
    , m_stop(std::move(stop))
    , m_mayFollow(std::move(mayFollow))
    , m_cookies(std::make_shared<CookieStore>())
{}

QCoro::Task<PageAnswer> PageSession::get(const Link& url, const std::optional<QString>& referer) const
{
    return ask(requestFor(url, referer), {});
}

QCoro::Task<PageAnswer> PageSession::probe(const Link& url, const std::optional<QString>& referer) const
{
    Wanted wanted;
    wanted.mayBeCut = true;
    wanted.wantsBody = [](const HttpResponse&) { return false; };
    return ask(requestFor(url, referer), std::move(wanted));
}

QCoro::Task<PageAnswer> PageSession::post(const Link& url, QByteArray form, const std::optional<QString>& referer,
                                          std::optional<qint64> maxSize) const
{
    HttpRequest request = requestFor(url, referer);
    request.method = "POST";
    request.headers.push_back({"Content-Type", "application/x-www-form-urlencoded"});
    request.body = std::move(form);
    Wanted wanted;
    if (maxSize) {
        wanted.maxSize = *maxSize;
        wanted.mayBeCut = true;
        wanted.wantsBody = isPage;
    }
    return ask(std::move(request), std::move(wanted));
}

QByteArrayList PageSession::cookies() const
{
    return m_cookies->cookies();
}

void PageSession::setCookies(const QByteArrayList& cookies)
{
    for (const QByteArray& cookie : cookies)
        m_cookies->add(cookie);
}

HttpRequest PageSession::requestFor(const Link& url, const std::optional<QString>& referer) const
{
    HttpRequest request;
    request.url = url.toUrl();
    request.protocol = HttpRequest::Protocol::newest;
    request.cookies = m_cookies;
    request.headers.push_back({"User-Agent", QByteArray(m_userAgent.data(), m_userAgent.size())});
    if (referer)
        request.headers.push_back({"Referer", referer->toUtf8()});
    return request;
}

QCoro::Task<PageAnswer> PageSession::ask(HttpRequest request, Wanted wanted) const
{
    FetchOptions options;
    options.maxBodySize = wanted.maxSize;
    options.wantsBody = std::move(wanted.wantsBody);
    if (m_mayFollow)
        options.followsRedirect = [mayFollow = m_mayFollow](const HttpResponse&, const QUrl& target) {
            return mayFollow(target);
        };
    options.stop = m_stop;
    PageAnswer answer;
    answer.url = linkOf(request.url);
    const FetchResult result = co_await fetch(m_http, std::move(request), std::move(options));
    if (result.error)
        answer.error = networkErrorText(result.error->kind, AppLanguage::english);
    else if (result.isBodyCut && !wanted.mayBeCut)
        answer.error = u"The page is too large to be read."_s;
    if (const Link from = linkOf(result.response.url); !from.isEmpty())
        answer.url = from;
    answer.contentType = result.response.mimeType();
    answer.html = QString::fromUtf8(result.body);
    answer.refused = refusedLink(result);
    co_return answer;
}

} // namespace vormel

#include "platform/http/Redirect.h"

#include <algorithm>
#include <array>

namespace vormel {

namespace {

bool isRedirectStatus(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

bool isSameOrigin(const QUrl& a, const QUrl& b)
{
    const auto port = [](const QUrl& url) { return url.port(url.scheme() == u"https" ? 443 : 80); };
    return a.scheme() == b.scheme() && a.host() == b.host() && port(a) == port(b);
}

bool maySeeAnyHost(const HttpHeader& header)
{
    static constexpr std::array<const char*, 5> names{"Range", "Accept", "Accept-Language", "Accept-Encoding",
                                                      "User-Agent"};
    return std::any_of(names.begin(), names.end(),
                       [&header](const char* name) { return header.name.compare(name, Qt::CaseInsensitive) == 0; });
}

} // namespace

std::optional<QUrl> redirectTarget(const HttpResponse& response)
{
    const std::optional<QByteArray> location = response.header("Location");
    if (!isRedirectStatus(response.statusCode) || !location || location->trimmed().isEmpty())
        return std::nullopt;
    QUrl target = response.url.resolved(QUrl::fromEncoded(location->trimmed(), QUrl::TolerantMode));
    if (!target.hasFragment() && response.url.hasFragment())
        target.setFragment(response.url.fragment());
    return target;
}

HttpRequest requestForHop(HttpRequest request, const HttpResponse& redirect, const QUrl& target)
{
    const bool staysHome = isSameOrigin(redirect.url, target);
    const bool keepsMethod = redirect.statusCode == 307 || redirect.statusCode == 308;
    const bool isPlain = request.method == "GET" || request.method == "HEAD";
    if (!isPlain && (!keepsMethod || !staysHome)) {
        request.method = "GET";
        request.body.clear();
        std::erase_if(request.headers, [](const HttpHeader& header) {
            return header.name.compare("Content-Type", Qt::CaseInsensitive) == 0;
        });
    }
    if (!staysHome)
        std::erase_if(request.headers, [](const HttpHeader& header) { return !maySeeAnyHost(header); });
    request.url = target;
    return request;
}

} // namespace vormel

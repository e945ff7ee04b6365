#include "webengine/CookieLines.h"

#include <QDateTime>

using namespace Qt::StringLiterals;

namespace vormel {

CookieLine lineOf(const QNetworkCookie& cookie)
{
    return {.domain = cookie.domain().toLatin1(),
            .path = cookie.path().toUtf8(),
            .isSecure = cookie.isSecure(),
            .isForHttpAlone = cookie.isHttpOnly(),
            .expiry = cookie.isSessionCookie() ? 0 : cookie.expirationDate().toSecsSinceEpoch(),
            .name = cookie.name(),
            .value = cookie.value()};
}

QNetworkCookie cookieOf(const CookieLine& line)
{
    QNetworkCookie cookie(line.name, line.value);
    if (line.sharesSubdomains())
        cookie.setDomain(QString::fromLatin1(line.domain));
    cookie.setPath(QString::fromUtf8(line.path));
    cookie.setSecure(line.isSecure);
    cookie.setHttpOnly(line.isForHttpAlone);
    if (line.expiry != 0)
        cookie.setExpirationDate(QDateTime::fromSecsSinceEpoch(line.expiry, Qt::UTC));
    return cookie;
}

QUrl originOf(const CookieLine& line)
{
    QUrl origin;
    origin.setScheme(line.isSecure ? u"https"_s : u"http"_s);
    origin.setHost(QString::fromLatin1(line.sharesSubdomains() ? line.domain.mid(1) : line.domain));
    origin.setPath(QString::fromUtf8(line.path));
    return origin;
}

} // namespace vormel

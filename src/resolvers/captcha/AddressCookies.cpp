#include "resolvers/captcha/AddressCookies.h"

namespace vormel {

namespace {

constexpr QByteArrayView httpOnlyMark{"#HttpOnly_"};
constexpr qsizetype fieldCount = 7;
enum Field
{
    domainField,
    subdomainsField,
    pathField,
    secureField,
};

QByteArray domainOf(const QByteArrayList& fields)
{
    QByteArrayView domain = fields[domainField];
    if (domain.startsWith(httpOnlyMark))
        domain = domain.sliced(httpOnlyMark.size());
    if (domain.startsWith('.'))
        domain = domain.sliced(1);
    return domain.toByteArray().toLower();
}

bool belongsToHost(const QByteArrayList& fields, const QByteArray& host)
{
    const QByteArray domain = domainOf(fields);
    if (domain.isEmpty() || host == domain)
        return !domain.isEmpty();
    return fields[subdomainsField] == "TRUE" && host.endsWith('.' + domain);
}

bool belongsToPath(const QByteArray& cookiePath, const QByteArray& path)
{
    return path.startsWith(cookiePath) &&
           (cookiePath.endsWith('/') || path.size() == cookiePath.size() || path[cookiePath.size()] == '/');
}

} // namespace

QByteArrayList cookiesForAddress(const Link& url, const QByteArrayList& cookies)
{
    const QByteArray host = url.toUrl().host(QUrl::FullyEncoded).toLatin1();
    const QByteArray path = url.encodedPath().isEmpty() ? QByteArray("/") : url.encodedPath().toLatin1();
    QByteArrayList kept;
    for (const QByteArray& cookie : cookies) {
        QByteArrayList fields = cookie.split('\t');
        if (fields.size() != fieldCount || !belongsToHost(fields, host) || !belongsToPath(fields[pathField], path))
            continue;
        if (fields[secureField] == "TRUE" && url.scheme() != u"https")
            continue;
        fields[domainField] = host;
        fields[subdomainsField] = "FALSE";
        kept << fields.join('\t');
    }
    return kept;
}

} // namespace vormel

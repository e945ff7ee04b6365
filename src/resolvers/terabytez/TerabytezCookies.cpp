#include "resolvers/terabytez/TerabytezCookies.h"

#include "platform/http/CookieStore.h"
#include "platform/web/WebBrowser.h"

namespace vormel {

void syncTerabytezCookies(const WebBrowser& browser, CookieStore& transfers, const TerabytezSite& site)
{
    for (const QByteArray& cookie : browser.cookies()) {
        const QByteArray domain = cookie.first(std::max<qsizetype>(cookie.indexOf('\t'), 0));
        if (site.owns(QString::fromUtf8(domain)))
            transfers.add(cookie);
    }
}

} // namespace vormel

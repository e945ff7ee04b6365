#include "engine/tries/AskedHost.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

// Asked for every queued item of a pass while a host rests, so it is cut out of the text and not parsed.
QString hostKey(const Link& address)
{
    const QStringView text = address.absoluteString();
    const qsizetype start = text.indexOf(u"://") + 3;
    qsizetype end = start;
    while (end < text.size() && !u"/?#"_s.contains(text[end]))
        ++end;
    const QStringView authority = text.sliced(start, end - start);
    const QStringView place = authority.sliced(authority.lastIndexOf(u'@') + 1);
    return (text.first(start).toString() + place.toString()).toLower();
}

bool isOnThisMachine(const Link& address)
{
    const QStringView host = address.host();
    if (host.compare(u"localhost", Qt::CaseInsensitive) == 0 || host.endsWith(u".localhost", Qt::CaseInsensitive))
        return true;
    const bool isNumeric =
        std::all_of(host.begin(), host.end(), [](QChar c) { return c == u'.' || (c >= u'0' && c <= u'9'); });
    return host == u"::1" || (isNumeric && host.startsWith(u"127."));
}

bool hasFreshAddress(const DownloadItem& item, WallTime now)
{
    if (!item.resolvedURL() || !item.resolvedAt())
        return false;
    // A clock that was set back would let an address of the future live for years.
    const auto age = now - *item.resolvedAt();
    return age >= age.zero() && age < resolvedLinkLife;
}

const Link& lastAddress(const DownloadItem& item)
{
    return item.resolvedURL() ? *item.resolvedURL() : item.originalURL();
}

} // namespace vormel

#include "resolvers/terabytez/TerabytezLinks.h"

#include "text/BoundedRegex.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

bool isFileServer(const QString& host)
{
    static const BoundedRegex numbered(uR"(^(srv|dl|cdn|s)\d+\.)"_s);
    return static_cast<bool>(numbered.search(host));
}

bool hasFileEnding(const QString& address)
{
    static const BoundedRegex fileExtPattern = BoundedRegex::ignoringCase(
        uR"(\.(zip|rar|r\d{2,3}|7z|mkv|mp4|avi|mov|wmv|flv|m4v|pdf|iso|tar|gz|bz2|xz|exe|dmg)([?#].*)?$)"_s);
    return static_cast<bool>(fileExtPattern.search(address));
}

/// For texts of pages, whose blanks are any that Unicode knows.
BoundedRegex anyBlanksIgnoringCase(const QString& pattern)
{
    return BoundedRegex(pattern,
                        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
}

std::optional<Link> firstDownload(const std::vector<QStringView>& addresses, const TerabytezSite& site)
{
    for (const QStringView address : addresses) {
        std::optional<Link> link = Link::parse(address);
        if (link && isDownloadURL(*link, site))
            return link;
    }
    return std::nullopt;
}

} // namespace

bool isDownloadURL(const Link& url, const TerabytezSite& site)
{
    const QString host = url.host().toString().toLower();
    const bool isOwn = site.owns(host);
    if (isOwn && url.path().contains("/d/"_L1))
        return true;
    if (isFileServer(host))
        return true;
    const bool hasPages = host == site.domain || host == u"www."_s + site.domain;
    return isOwn && !hasPages && hasFileEnding(url.absoluteString());
}

bool isLoginPage(const Link& url)
{
    return url.path().startsWith("/login"_L1);
}

std::optional<Link> extractDownloadLink(const QString& html, const TerabytezSite& site)
{
    static const BoundedRegex address = anyBlanksIgnoringCase(uR"(https?://[^"'\s<>\\]+)"_s);
    // A value in quotes may hold what ends an address elsewhere.
    static const BoundedRegex location =
        anyBlanksIgnoringCase(uR"(location(?:\.href)?\s*=\s*["'](https?://[^"']+)["'])"_s);
    if (std::optional<Link> link = firstDownload(address.captures(html, 0), site))
        return link;
    return firstDownload(location.captures(html, 1), site);
}

} // namespace vormel

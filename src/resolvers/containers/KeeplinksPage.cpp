#include "resolvers/containers/KeeplinksPage.h"

#include "resolvers/containers/ContainerLinks.h"
#include "resolvers/containers/KnownHosts.h"
#include "resolvers/containers/MetaRefresh.h"
#include "text/BoundedRegex.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

std::optional<Link> linkOnPage(const QString& address, const Link& url)
{
    if (address.startsWith(u"http"))
        return Link::parse(address);
    const QUrl relative(address, QUrl::TolerantMode);
    if (!relative.isValid())
        return std::nullopt;
    return Link::parse(url.toUrl().resolved(relative).toString(QUrl::FullyEncoded));
}

} // namespace

std::vector<Link> extractKeeplinksHrefs(const QString& html, const QStringList& knownFileHosts)
{
    static const BoundedRegex href = BoundedRegex::ignoringCase(uR"re(href="(https?://[^"]+)")re"_s);
    std::vector<Link> links;
    for (const QStringView address : href.captures(html, 1)) {
        const std::optional<Link> link = Link::parse(address);
        if (link && isHostAmong(*link, knownFileHosts))
            links.push_back(*link);
    }
    return withoutDuplicates(std::move(links));
}

std::optional<Link> followMetaRefresh(const QString& html, const Link& url)
{
    const std::optional<QString> address = metaRefreshAddress(html);
    const std::optional<Link> link = address ? linkOnPage(*address, url) : std::nullopt;
    return link && link->isHttp() ? link : std::nullopt;
}

} // namespace vormel

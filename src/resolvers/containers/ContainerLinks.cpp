#include "resolvers/containers/ContainerLinks.h"

#include "resolvers/containers/ClickNLoad.h"
#include "resolvers/containers/KnownHosts.h"

#include <QSet>

#include <array>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

QString withoutEntities(QString text)
{
    return text.replace(u"&amp;"_s, u"&"_s).replace(u"&lt;"_s, u"<"_s).replace(u"&gt;"_s, u">"_s);
}

QStringView withoutAtEnd(QStringView text, QStringView dropped)
{
    while (!text.isEmpty() && dropped.contains(text.back()))
        text.chop(1);
    return text;
}

std::vector<Link> upgradedToHTTPS(std::vector<Link> links)
{
    for (Link& link : links)
        link = upgradeToHTTPS(link);
    return links;
}

} // namespace

const HrefScan& HrefScan::fileCrypt()
{
    static const HrefScan scan{BoundedRegex::ignoringCase(uR"(href=["'](https?://[^"']+)["'])"_s), 1, u"&"_s};
    return scan;
}

const HrefScan& HrefScan::lfileCrypt()
{
    static const HrefScan scan{BoundedRegex::ignoringCase(uR"(https?://[^\s"'<>\\\])]+)"_s), 0, uR"(.,;)'"&)"_s};
    return scan;
}

PageLinks readPageLinks(const QString& html, const Link& url, const HrefScan& scan, const QStringList& knownFileHosts)
{
    PageLinks links;
    links.cnl = upgradedToHTTPS(decodeCNLLinks(html));
    std::erase_if(links.cnl, [&](const Link& link) { return !acceptKnownHost(link, knownFileHosts); });
    links.go = extractGoLinks(html, url);
    links.hrefs = upgradedToHTTPS(extractHrefLinks(html, scan, knownFileHosts));
    return links;
}

std::vector<Link> extractGoLinks(const QString& html, const Link& url)
{
    // "data-href=" ends as "href=" does, and "window.open(" as "open(".
    static const std::array patterns{
        BoundedRegex::ignoringCase(uR"(href=["'](?:https?://[^"'/]*)?(/go/[A-Za-z0-9]+)["'])"_s),
        BoundedRegex::ignoringCase(uR"(open\(['"](?:https?://[^'"]*)?(/go/[A-Za-z0-9]+)['"])"_s)};
    const QString base = url.scheme() + u"://"_s + url.host().toString();
    std::vector<Link> links;
    for (const BoundedRegex& pattern : patterns) {
        for (const QStringView path : pattern.captures(html, 1)) {
            const std::optional<Link> link = Link::parse(QString(base).append(path));
            if (link && link->isHttp())
                links.push_back(*link);
        }
    }
    return withoutDuplicates(std::move(links));
}

std::vector<Link> extractHrefLinks(const QString& html, const HrefScan& scan, const QStringList& knownFileHosts)
{
    std::vector<Link> links;
    for (const QStringView written : scan.pattern.captures(html, scan.group)) {
        const QString address = withoutEntities(written.toString());
        const std::optional<Link> link = Link::parse(withoutAtEnd(address, scan.droppedAtEnd));
        if (link && acceptKnownHost(*link, knownFileHosts))
            links.push_back(*link);
    }
    return withoutDuplicates(std::move(links));
}

Link upgradeToHTTPS(const Link& url)
{
    constexpr QStringView plain = u"http";
    if (url.scheme() != plain)
        return url;
    return Link::parse(u"https"_s + url.absoluteString().sliced(plain.size())).value_or(url);
}

std::vector<Link> withoutDuplicates(std::vector<Link> links)
{
    QSet<QString> seen;
    std::erase_if(links, [&seen](const Link& link) {
        const qsizetype before = seen.size();
        seen.insert(link.absoluteString());
        return seen.size() == before;
    });
    return links;
}

std::vector<Link> joinedLinks(const PageLinks& page, const std::vector<Link>& followed)
{
    std::vector<Link> links = page.cnl;
    links.insert(links.end(), followed.begin(), followed.end());
    links.insert(links.end(), page.hrefs.begin(), page.hrefs.end());
    return withoutDuplicates(std::move(links));
}

} // namespace vormel

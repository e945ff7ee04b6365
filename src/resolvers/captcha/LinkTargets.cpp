#include "resolvers/captcha/LinkTargets.h"

#include "model/Services.h"
#include "resolvers/containers/ContainerLinks.h"
#include "resolvers/containers/KnownHosts.h"
#include "resolvers/containers/MetaRefresh.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

BoundedRegex hrefOfHosts(const Services& services)
{
    constexpr std::size_t megaPlace = 6;
    const QString pattern = uR"(href=["'](https?://(?:)"_s + QRegularExpression::escape(services.filestoreDomain) +
                            u"|terabytez|rapidgator|turbobit|uploaded|1fichier|katfile|nitroflare|"_s +
                            QRegularExpression::escape(services.otherFileHostDomains.at(megaPlace)) +
                            uR"(|ddownload|mixdrop|filespace)[^"']+)["'])"_s;
    return BoundedRegex::ignoringCase(pattern);
}

QString firstCapture(const BoundedRegex& pattern, const QString& html)
{
    const BoundedRegex::Result found = pattern.search(html);
    return found ? found.match.captured(1) : QString();
}

} // namespace

LinkTargets::LinkTargets(const Services& services)
    : m_knownFileHosts(std::make_shared<const QStringList>(services.knownFileHostDomains()))
    , m_href(hrefOfHosts(services))
{}

bool LinkTargets::isTarget(const Link& url) const
{
    return acceptKnownHost(url, *m_knownFileHosts);
}

std::optional<Link> LinkTargets::scanPageForTarget(const QString& html) const
{
    static const BoundedRegex script =
        BoundedRegex::ignoringCase(uR"((?:location(?:\.href)?)\s*=\s*["'](https?://[^"']+)["'])"_s);
    std::optional<Link> target = targetIn(metaRefreshAddress(html).value_or(QString()));
    if (!target)
        target = targetIn(firstCapture(script, html));
    if (!target)
        target = targetIn(firstCapture(m_href, html));
    return target;
}

std::optional<Link> LinkTargets::targetIn(QStringView address) const
{
    const std::optional<Link> link = Link::parse(address);
    return link && isTarget(*link) ? std::optional(upgradeToHTTPS(*link)) : std::nullopt;
}

} // namespace vormel

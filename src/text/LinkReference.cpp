#include "text/LinkReference.h"

namespace vormel {

namespace {

/// What no address can be as long as is not looked into.
constexpr qsizetype maxReferenceLength = 65536;

std::optional<Link> relativeTarget(const Link& page, QStringView reference)
{
    if (reference.size() > maxReferenceLength)
        return std::nullopt;
    const QUrl relative(reference.trimmed().toString(), QUrl::TolerantMode);
    if (!relative.isValid() || !relative.isRelative())
        return std::nullopt;
    return Link::parse(QString::fromLatin1(page.toUrl().resolved(relative).toEncoded()));
}

} // namespace

std::optional<Link> httpTarget(const Link& page, QStringView reference)
{
    const std::optional<Link> absolute = Link::parse(reference);
    const std::optional<Link> target = absolute ? absolute : relativeTarget(page, reference);
    return target && target->isHttp() && !target->host().isEmpty() ? target : std::nullopt;
}

} // namespace vormel

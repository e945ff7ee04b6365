#include "resolvers/terabytez/TerabytezSite.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

Link pageOf(const TerabytezSite& site, QStringView path)
{
    return Link::parse(u"https://%1%2"_s.arg(site.domain, path)).value();
}

} // namespace

bool TerabytezSite::owns(QStringView host) const
{
    return host.contains("terabytez"_L1) || host.contains(domain);
}

Link TerabytezSite::rootUrl() const
{
    return pageOf(*this, u"/");
}

Link TerabytezSite::loginUrl() const
{
    return pageOf(*this, u"/login");
}

Link TerabytezSite::accountUrl() const
{
    return pageOf(*this, u"/account/");
}

} // namespace vormel

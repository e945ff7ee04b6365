#include "model/Services.h"

#include "config/Services.h"

#include <algorithm>

namespace vormel {

namespace {

template <std::size_t Size>
std::array<QString, Size> texts(const std::array<QLatin1StringView, Size>& values)
{
    std::array<QString, Size> result;
    std::copy(values.begin(), values.end(), result.begin());
    return result;
}

std::array<QString, 10> otherHosts()
{
    constexpr std::size_t premiumDomains = 3;
    std::array<QString, 10> result;
    static_assert(vormel::knownFileHostDomains.size() == premiumDomains + std::tuple_size_v<decltype(result)>);
    std::copy(vormel::knownFileHostDomains.begin() + premiumDomains, vormel::knownFileHostDomains.end(),
              result.begin());
    return result;
}

} // namespace

Services Services::builtIn()
{
    return {.filestoreDomain = vormel::filestoreDomain,
            .filestoreKey = vormel::filestoreDomain,
            .filestoreDisplayName = vormel::filestoreDisplayName,
            .terabytezDomain = vormel::terabytezDomain,
            .terabytezHostKey = vormel::terabytezHostKey,
            .terabytezDisplayName = vormel::terabytezDisplayName,
            .otherFileHostDomains = otherHosts(),
            .fileCryptDomains = texts(vormel::fileCryptDomains),
            .lfileCryptDomains = texts(vormel::lfileCryptDomains),
            .keeplinksDomains = texts(vormel::keeplinksDomains),
            .keeplinksRootUrl = vormel::keeplinksRootUrl};
}

QStringList Services::knownFileHostDomains() const
{
    QStringList domains{filestoreDomain, terabytezDomain, terabytezHostKey};
    for (const QString& domain : otherFileHostDomains)
        domains << domain;
    return domains;
}

} // namespace vormel

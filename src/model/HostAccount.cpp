#include "model/HostAccount.h"

#include "config/Services.h"

namespace vormel {

QString rawValue(SupportedHost host)
{
    return host == SupportedHost::terabytez ? terabytezHostKey : filestoreDomain;
}

QString displayName(SupportedHost host)
{
    return host == SupportedHost::terabytez ? terabytezDisplayName : filestoreDisplayName;
}

std::optional<SupportedHost> supportedHostFromRawValue(QStringView value)
{
    if (value == filestoreDomain)
        return SupportedHost::filestore;
    if (value == terabytezHostKey)
        return SupportedHost::terabytez;
    return std::nullopt;
}

} // namespace vormel

#include "model/HostAccount.h"

#include "config/Services.h"

#include <algorithm>

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

const HostAccount* firstEnabledAccount(const std::vector<HostAccount>& accounts, SupportedHost host)
{
    const auto found = std::find_if(accounts.begin(), accounts.end(), [host](const HostAccount& account) {
        return account.host == host && account.isEnabled;
    });
    return found == accounts.end() ? nullptr : &*found;
}

} // namespace vormel

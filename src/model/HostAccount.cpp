#include "model/HostAccount.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

const HostAccount* firstEnabledAccount(const std::vector<HostAccount>& accounts, SupportedHost host)
{
    const auto found = std::find_if(accounts.begin(), accounts.end(), [host](const HostAccount& account) {
        return account.host == host && account.isEnabled;
    });
    return found == accounts.end() ? nullptr : &*found;
}

QString keychainAccountKey(const HostAccount& account, const HostProfiles& profiles)
{
    return u"vormel_%1_%2"_s.arg(profiles.rawValue(account.host), account.username);
}

} // namespace vormel

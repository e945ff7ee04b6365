#include "model/HostAccount.h"

#include <algorithm>

namespace vormel {

const HostAccount* firstEnabledAccount(const std::vector<HostAccount>& accounts, SupportedHost host)
{
    const auto found = std::find_if(accounts.begin(), accounts.end(), [host](const HostAccount& account) {
        return account.host == host && account.isEnabled;
    });
    return found == accounts.end() ? nullptr : &*found;
}

} // namespace vormel

#pragma once

#include "model/HostProfiles.h"

#include <QString>
#include <QUuid>

#include <vector>

namespace vormel {

/// One login at a premium host. The password is kept elsewhere.
struct HostAccount
{
    QUuid id;
    SupportedHost host = SupportedHost::filestore;
    QString username;
    bool isEnabled = true; ///< a disabled account is never used to resolve

    friend bool operator==(const HostAccount&, const HostAccount&) = default;
};

/// The account that the host's links are resolved with: its first enabled one. Null without one; points into the list.
[[nodiscard]] const HostAccount* firstEnabledAccount(const std::vector<HostAccount>& accounts, SupportedHost host);

/// The key that its password is kept under.
[[nodiscard]] QString keychainAccountKey(const HostAccount& account, const HostProfiles& profiles);

} // namespace vormel

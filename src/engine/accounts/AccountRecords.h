#pragma once

#include "model/HostAccount.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace vormel {

/// The list as it is stored: a JSON array of records with the keys "id", "host", "username" and "isEnabled", in that
/// order. Passwords have no place in it.
[[nodiscard]] QByteArray encodeAccounts(const std::vector<HostAccount>& accounts, const HostProfiles& profiles);

/// Nothing unless every record can be read.
[[nodiscard]] std::optional<std::vector<HostAccount>> decodeAccounts(const QByteArray& json,
                                                                     const HostProfiles& profiles);

} // namespace vormel

#pragma once

#include "model/PremiumAccountInfo.h"

namespace vormel {

// What the pages of Terabytez tell of a sign-in and of the account. Pure; any thread. Pages are as the browser writes
// them.

/// Is this the account's own page?
[[nodiscard]] bool isTerabytezAccountPage(const QString& html);

/// Does the page ask for a password?
[[nodiscard]] bool asksForTerabytezPassword(const QString& html);

/// Does the page offer to sign out, and asks for no password?
[[nodiscard]] bool isSignedInToTerabytez(const QString& html);

/// Nothing where this is not the account's own page.
[[nodiscard]] std::optional<PremiumAccountInfo> parseTerabytezAccount(const QString& html, WallTime now);

/// As above, with the plan "Unknown" for any other page.
[[nodiscard]] PremiumAccountInfo terabytezAccountOrUnknown(const QString& html, WallTime now);

} // namespace vormel

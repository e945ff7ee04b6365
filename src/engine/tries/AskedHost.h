#pragma once

#include "model/DownloadItem.h"

namespace vormel {

/// Scheme, host and port of an address in small letters: what answers or does not answer as one.
[[nodiscard]] QString hostKey(const Link& address);

/// Is the address one of this very machine, which is there without any network?
[[nodiscard]] bool isOnThisMachine(const Link& address);

/// Was the item's address found so short a time ago that it may be used without asking again?
[[nodiscard]] bool hasFreshAddress(const DownloadItem& item, WallTime now);

/// Where the item's file was asked for last: the address found for it, or else its own link.
[[nodiscard]] const Link& lastAddress(const DownloadItem& item);

/// How long an address that was found is good for.
inline constexpr std::chrono::seconds resolvedLinkLife{1200};

} // namespace vormel

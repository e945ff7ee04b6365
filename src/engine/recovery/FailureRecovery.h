#pragma once

#include "model/DownloadItem.h"

namespace vormel {

/// What may still save a set when one of its parts has failed for good.
class FailureRecovery
{
public:
    FailureRecovery() = default;
    FailureRecovery(const FailureRecovery&) = delete;
    FailureRecovery& operator=(const FailureRecovery&) = delete;
    virtual ~FailureRecovery() = default;

    /// Shows a countdown on the failed item, after which recovery volumes are fetched.
    virtual void startRecoveryCountdown(DownloadItem& item, int seconds) = 0;
    /// Looks at the item's set again when its parts have come to rest.
    virtual void scheduleRecoveryCheck(const DownloadItem& item) = 0;
};

inline constexpr int recoveryCountdownSeconds = 10;

} // namespace vormel

#pragma once

#include "model/HostAccount.h"
#include "model/PremiumAccountInfo.h"
#include "text/Link.h"

#include <QCoroTask>

#include <optional>
#include <stop_token>

namespace vormel {

/// What a premium host's file page leads to.
struct ResolvedDownload
{
    Link url;
    std::optional<QString> filename;
};

/// Turns file pages of one premium host into download addresses. Stateless. To be called on the UI thread, where the
/// results come back too; every operation may throw ResolverError. One that is stopped ends its requests at once, and
/// throws whatever it likes.
class HostResolver
{
public:
    HostResolver() = default;
    HostResolver(const HostResolver&) = delete;
    HostResolver& operator=(const HostResolver&) = delete;
    virtual ~HostResolver() = default;

    [[nodiscard]] virtual SupportedHost supportedHost() const = 0;
    [[nodiscard]] virtual QCoro::Task<ResolvedDownload> resolveDownload(Link url, HostAccount account,
                                                                        std::stop_token stop) const = 0;

    /// The file's name: the last path component of the download address if that has a full stop, else the name that
    /// came with it.
    [[nodiscard]] virtual QCoro::Task<std::optional<QString>> fetchFilename(Link url, HostAccount account,
                                                                            std::stop_token stop) const;

    /// Signs in anew with the account, and tells of its plan.
    [[nodiscard]] virtual QCoro::Task<PremiumAccountInfo> checkAccount(HostAccount account,
                                                                       std::stop_token stop) const = 0;

    /// What a transfer needs that is not in its address: to be awaited before one begins for an address that was
    /// resolved earlier. Nothing, unless a host wants something.
    [[nodiscard]] virtual QCoro::Task<> prepareTransfer(std::stop_token stop) const;
};

} // namespace vormel

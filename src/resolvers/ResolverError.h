#pragma once

#include "model/HostProfile.h"
#include "text/DescribedError.h"

namespace vormel {

/// Why a file page gave no download address. Thrown by host resolvers.
class ResolverError : public DescribedError
{
public:
    enum class Kind
    {
        noAccountConfigured,
        loginRequired,
        networkError,
        authenticationFailed,
        linkNotFound,
        unsupportedHost,
    };

    [[nodiscard]] static ResolverError noAccountConfigured(const QString& hostDisplayName);
    [[nodiscard]] static ResolverError loginRequired(const HostProfile& profile);
    [[nodiscard]] static ResolverError networkError(const QString& description);
    [[nodiscard]] static ResolverError authenticationFailed();
    [[nodiscard]] static ResolverError linkNotFound();
    [[nodiscard]] static ResolverError unsupportedHost();

    [[nodiscard]] Kind kind() const { return m_kind; }
    /// The host that wants a login; only for loginRequired.
    [[nodiscard]] SupportedHost host() const { return m_host; }

private:
    ResolverError(Kind kind, const QString& description, SupportedHost host = SupportedHost::filestore);

    Kind m_kind;
    SupportedHost m_host;
};

/// Why a container gave no links. As ResolverError.
class ContainerError : public DescribedError
{
public:
    enum class Kind
    {
        networkError,
        noLinksFound,
        wrongPassword,
        captchaRequired,
    };

    [[nodiscard]] static ContainerError networkError(const QString& description);
    [[nodiscard]] static ContainerError noLinksFound();
    [[nodiscard]] static ContainerError wrongPassword();
    [[nodiscard]] static ContainerError captchaRequired();

    [[nodiscard]] Kind kind() const { return m_kind; }

private:
    ContainerError(Kind kind, const QString& description);

    Kind m_kind;
};

} // namespace vormel

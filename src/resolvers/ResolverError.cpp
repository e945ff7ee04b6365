#include "resolvers/ResolverError.h"

namespace vormel {

ResolverError::ResolverError(Kind kind, const QString& description, SupportedHost host)
    : DescribedError(description)
    , m_kind(kind)
    , m_host(host)
{}

ResolverError ResolverError::noAccountConfigured(const QString& hostDisplayName)
{
    return {Kind::noAccountConfigured, QStringLiteral("No account configured for ") + hostDisplayName};
}

ResolverError ResolverError::loginRequired(SupportedHost host)
{
    return {Kind::loginRequired, QStringLiteral("Sign in to ") + displayName(host) + QStringLiteral(" required"), host};
}

ResolverError ResolverError::networkError(const QString& description)
{
    return {Kind::networkError, QStringLiteral("Network error: ") + description};
}

ResolverError ResolverError::authenticationFailed()
{
    return {Kind::authenticationFailed, QStringLiteral("Authentication failed")};
}

ResolverError ResolverError::linkNotFound()
{
    return {Kind::linkNotFound, QStringLiteral("Direct link not found")};
}

ResolverError ResolverError::unsupportedHost()
{
    return {Kind::unsupportedHost, QStringLiteral("Unsupported host")};
}

ContainerError::ContainerError(Kind kind, const QString& description)
    : DescribedError(description)
    , m_kind(kind)
{}

ContainerError ContainerError::networkError(const QString& description)
{
    return {Kind::networkError, QStringLiteral("Network error: ") + description};
}

ContainerError ContainerError::noLinksFound()
{
    return {Kind::noLinksFound, QStringLiteral("No links found in the container")};
}

ContainerError ContainerError::wrongPassword()
{
    return {Kind::wrongPassword, QStringLiteral("Wrong or missing password")};
}

ContainerError ContainerError::captchaRequired()
{
    return {Kind::captchaRequired, QStringLiteral("CAPTCHA required — solve it in the browser window")};
}

} // namespace vormel

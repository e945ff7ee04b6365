#include "resolvers/ResolverError.h"

using namespace Qt::StringLiterals;

namespace vormel {

ResolverError::ResolverError(Kind kind, const QString& description, SupportedHost host)
    : DescribedError(description)
    , m_kind(kind)
    , m_host(host)
{}

ResolverError ResolverError::noAccountConfigured(const QString& hostDisplayName)
{
    return {Kind::noAccountConfigured, u"No account configured for "_s + hostDisplayName};
}

ResolverError ResolverError::loginRequired(const HostProfile& profile)
{
    return {Kind::loginRequired, u"Sign in to "_s + profile.label + u" required"_s, profile.host};
}

ResolverError ResolverError::networkError(const QString& description)
{
    return {Kind::networkError, u"Network error: "_s + description};
}

ResolverError ResolverError::authenticationFailed()
{
    return {Kind::authenticationFailed, u"Authentication failed"_s};
}

ResolverError ResolverError::linkNotFound()
{
    return {Kind::linkNotFound, u"Direct link not found"_s};
}

ResolverError ResolverError::unsupportedHost()
{
    return {Kind::unsupportedHost, u"Unsupported host"_s};
}

ContainerError::ContainerError(Kind kind, const QString& description)
    : DescribedError(description)
    , m_kind(kind)
{}

ContainerError ContainerError::networkError(const QString& description)
{
    return {Kind::networkError, u"Network error: "_s + description};
}

ContainerError ContainerError::noLinksFound()
{
    return {Kind::noLinksFound, u"No links found in the container"_s};
}

ContainerError ContainerError::wrongPassword()
{
    return {Kind::wrongPassword, u"Wrong or missing password"_s};
}

ContainerError ContainerError::captchaRequired()
{
    return {Kind::captchaRequired, u"CAPTCHA required — solve it in the browser window"_s};
}

} // namespace vormel

#pragma once

#include "platform/clock/Clock.h"
#include "resolvers/ResolverTables.h"

namespace vormel {

class Background;
class CookieStore;
class FilestoreLoginCache;
class HttpClient;
class KeptCookies;
class SecretStore;
class WebBrowser;
struct Services;

/// What the resolvers of the services work with. All must outlive them, and what they are still asked for.
struct ServicePorts
{
    HttpClient& http;
    CookieStore& sharedCookies; ///< those of the transfers
    SecretStore& secrets;
    Clock& clock;
    Background& background; ///< where pages are read
    FilestoreLoginCache& filestoreLogins;
    WebBrowser& web;
    KeptCookies& keptCookies; ///< of that browser
};

/// Whose cookies in the browser are kept.
[[nodiscard]] bool isSignInCookie(const Services& services, const QByteArray& domain);

/// The resolvers of all services that the program knows, in the order in which they are asked.
[[nodiscard]] ResolverTables serviceResolvers(const Services& services, const ServicePorts& ports);

} // namespace vormel

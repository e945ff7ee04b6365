#pragma once

#include "model/HostProfiles.h"
#include "platform/clock/Clock.h"
#include "resolvers/HostResolver.h"
#include "resolvers/filestore/FilestoreLoginCache.h"
#include "resolvers/pages/PageSession.h"

namespace vormel {

class Background;
class SecretStore;

/// Finds the files of Filestore by plain HTTP: signs in, walks from the file's page to the file, and leaves the cookies
/// that the file's server asks for in the shared store.
class FilestoreResolver final : public HostResolver
{
public:
    /// All must outlive this and what it is still asked for.
    struct Ports
    {
        HttpClient& http;
        CookieStore& sharedCookies;
        SecretStore& secrets;
        Clock& clock;
        Background& background;
        FilestoreLoginCache& logins;
    };

    FilestoreResolver(const Ports& ports, const HostProfiles& profiles);

    [[nodiscard]] SupportedHost supportedHost() const override { return SupportedHost::filestore; }
    [[nodiscard]] QCoro::Task<ResolvedDownload> resolveDownload(Link url, HostAccount account,
                                                                std::stop_token stop) const override;
    [[nodiscard]] QCoro::Task<PremiumAccountInfo> checkAccount(HostAccount account,
                                                               std::stop_token stop) const override;

private:
    struct Login
    {
        QString username;
        QString password;
    };

    [[nodiscard]] QString pageUrl(QStringView path) const;
    [[nodiscard]] QCoro::Task<QString> loadPassword(const HostAccount& account) const;
    /// Throws ResolverError.
    [[nodiscard]] QCoro::Task<> performLogin(const PageSession& session, Login login) const;
    [[nodiscard]] QCoro::Task<FilestoreLoginCache::Session> session(Login login, std::stop_token stop) const;
    [[nodiscard]] QCoro::Task<ResolvedDownload> attempt(Link url, FilestoreLoginCache::Session login,
                                                        std::stop_token stop) const;
    void copyFilestoreCookies(const PageSession& session) const;

    Ports m_ports;
    HostProfiles m_profiles;
    QLatin1StringView m_browserUA = fullBrowserUA;
    QString m_domain;
    QString m_loginURLString;
};

} // namespace vormel

#pragma once

#include "model/HostProfiles.h"
#include "platform/clock/Clock.h"
#include "resolvers/HostResolver.h"
#include "resolvers/terabytez/TerabytezGate.h"
#include "resolvers/terabytez/TerabytezSite.h"

namespace vormel {

class Background;
class CookieStore;
class KeptCookies;
class ResolverError;
class WebBrowser;

/// Finds the files of Terabytez with hidden pages of the browser, one at a time. The sign-in is that of the browser;
/// name and password of the account are never asked for.
class TerabytezResolver final : public HostResolver
{
public:
    /// All must outlive this and what it is still asked for.
    struct Ports
    {
        WebBrowser& browser;
        KeptCookies& keptCookies;
        CookieStore& sharedCookies; ///< those of the transfers
        Clock& clock;
        Background& background;
    };

    TerabytezResolver(const Ports& ports, const HostProfiles& profiles);

    [[nodiscard]] SupportedHost supportedHost() const override { return SupportedHost::terabytez; }
    [[nodiscard]] QCoro::Task<ResolvedDownload> resolveDownload(Link url, HostAccount account,
                                                                std::stop_token stop) const override;
    [[nodiscard]] QCoro::Task<PremiumAccountInfo> checkAccount(HostAccount account,
                                                               std::stop_token stop) const override;
    /// A restart forgets the cookies of the transfers; those that were kept come back.
    [[nodiscard]] QCoro::Task<> prepareTransfer(std::stop_token stop) const override;

private:
    [[nodiscard]] ResolverError loginRequired() const;
    /// Throws where there is no browser.
    void expectBrowser() const;
    /// The sign-in of an earlier run is there when this ends. Throws where that was stopped.
    [[nodiscard]] QCoro::Task<> restoreSignIn(std::stop_token stop) const;
    [[nodiscard]] QCoro::Task<TerabytezResolveResult> walkToFile(Link url, std::stop_token stop) const;

    Ports m_ports;
    HostProfile m_profile;
    TerabytezSite m_site;
    std::unique_ptr<TerabytezGate> m_gate = std::make_unique<TerabytezGate>();
};

} // namespace vormel

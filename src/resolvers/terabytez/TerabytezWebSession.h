#pragma once

#include "platform/async/SharedEventual.h"
#include "platform/clock/Clock.h"
#include "platform/web/WebBrowser.h"
#include "resolvers/terabytez/TerabytezSite.h"

#include <QCoroTask>

#include <functional>
#include <optional>
#include <stop_token>

namespace vormel {

class CookieStore;

/// Drives one hidden page of Terabytez through one walk, and catches the address of the file before a byte of it is
/// read. UI thread only; all waits come to their end. A stop ends the page at once: what is awaited then, and all that
/// is asked for later, throws WalkStopped.
class TerabytezWebSession final : private WebPage::Judge
{
public:
    /// How long a walk waits for any page.
    static constexpr std::chrono::seconds longestLoad{20};

    /// All must outlive this.
    struct Ports
    {
        WebBrowser& browser;
        CookieStore& sharedCookies; ///< those of the transfers
        Clock& clock;
    };

    TerabytezWebSession(const Ports& ports, const TerabytezSite& site, std::stop_token stop);

    /// Without one nothing else may be asked for.
    [[nodiscard]] bool hasPage() const { return m_page != nullptr; }

    /// Each goes on when a navigation has ended, however that was, or when the time is up.
    [[nodiscard]] QCoro::Task<> loadURL(Link url, std::chrono::nanoseconds timeout);
    [[nodiscard]] QCoro::Task<> waitForNextNavigation(std::chrono::nanoseconds timeout);
    [[nodiscard]] QCoro::Task<> pause(std::chrono::nanoseconds time);
    /// The script's result; invalid where it gives none.
    [[nodiscard]] QCoro::Task<QVariant> eval(QString script);

    /// The address of the file, once the page has asked for it.
    [[nodiscard]] const std::optional<Link>& capturedDownloadURL() const { return m_capturedDownloadURL; }
    /// Has the page that was loaded last asked for the login on its way?
    [[nodiscard]] bool wasSentToLogin() const { return m_wasSentToLogin; }
    /// Of the page that is shown.
    [[nodiscard]] std::optional<Link> currentUrl() const;
    /// Hands the service's cookies on to the transfers.
    void syncCookiesToSharedStorage() const;
    /// To be asked by whoever has waited for something else.
    void expectGoingOn() const;

private:
    using Wait = SharedEventual<bool>;

    [[nodiscard]] bool mayAsk(const WebPage::Request& request) override;
    [[nodiscard]] bool mayShow(const WebPage::Response& response) override;
    void windowWanted(const Link& url) override;
    void navigationEnded(WebPage::End end) override;

    // Whoever goes on in one of these three may be the end of this object.
    [[nodiscard]] bool captures(const Link& url);
    void navigationEnded();
    void stop();

    [[nodiscard]] WebPage& page() const;
    [[nodiscard]] QCoro::Task<> over(Wait wait, std::chrono::nanoseconds longest) const;

    Ports m_ports;
    TerabytezSite m_site;
    std::stop_token m_stop;
    std::optional<Wait> m_navCont; ///< the latest wait for a navigation, which may be over
    std::optional<Wait> m_pause;   ///< the latest wait for time
    int m_pendingNavCount = 0;     ///< navigations that ended while nobody waited
    std::optional<Link> m_capturedDownloadURL;
    bool m_wasSentToLogin = false;
    std::unique_ptr<WebPage> m_page;
    std::stop_callback<std::function<void()>> m_onStop;
};

} // namespace vormel

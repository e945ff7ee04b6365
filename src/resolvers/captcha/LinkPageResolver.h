#pragma once

#include "platform/async/Eventual.h"
#include "platform/async/Lifetime.h"
#include "platform/clock/Clock.h"
#include "platform/web/WebPage.h"

#include <QObject>

#include <memory>

namespace vormel {

class Background;
class LinkTargets;
class WebBrowser;

/// Finds the file that one page of a container leads to, in a hidden page of the browser: by a request that is stopped
/// before it is made, a window that is wanted, the address where the page ends up, or what stands in it. Once, for one
/// address; ends after 15 seconds at most. Its end ends the search. UI thread only; the ports outlive it.
class LinkPageResolver final : private WebPage::Judge
{
public:
    struct Ports
    {
        WebBrowser& browser;
        Clock& clock;
        Background& background; ///< where pages are read
    };

    LinkPageResolver(const Ports& ports, std::shared_ptr<const LinkTargets> targets);
    LinkPageResolver(const LinkPageResolver&) = delete;
    LinkPageResolver& operator=(const LinkPageResolver&) = delete;
    ~LinkPageResolver() override;

    /// Nothing where the page leads to no file. The hidden page is gone by then, and whoever waits goes on outside of
    /// its callbacks, or within the end of this.
    [[nodiscard]] Eventual<std::optional<Link>> resolve(const Link& page);

private:
    [[nodiscard]] bool mayAsk(const WebPage::Request& request) override;
    [[nodiscard]] bool mayShow(const WebPage::Response& response) override;
    void windowWanted(const Link& url) override;
    void navigationEnded(WebPage::End end) override;

    [[nodiscard]] QCoro::Task<> scanPage(Lifetime::Watch lifetime);
    void finishOnce(const std::optional<Link>& result);

    Ports m_ports;
    std::shared_ptr<const LinkTargets> m_targets;
    EventualSource<std::optional<Link>> m_resolved{std::nullopt};
    bool m_isDone = false;
    Timer m_watchdog;
    std::unique_ptr<WebPage> m_page;
    QObject m_later; ///< context of what is posted
    Lifetime m_lifetime;
};

} // namespace vormel

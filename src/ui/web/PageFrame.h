#pragma once

#include "platform/async/Lifetime.h"
#include "platform/clock/Clock.h"
#include "platform/web/WebPage.h"
#include "ui/web/PageNote.h"

#include <QWidget>

#include <functional>
#include <memory>

class QStackedLayout;

namespace vormel {

class HostLine;
class WebBrowser;
struct ViewPorts;

/// One page of the embedded engine, below a line that says whose it is. Where there is no engine it says so instead,
/// and goes on by itself once there is one. What the page wants a window for is loaded in its place, or not at all;
/// files are refused.
class PageFrame final : public QWidget, private WebPage::Judge
{
    Q_OBJECT

public:
    /// All outlive the frame.
    struct Ports
    {
        WebBrowser& browser;
        /// Awaited before the page is made, which is to have the cookies of earlier sign-ins. Must not throw.
        std::function<QCoro::Task<>()> restoreCookies;
        Clock& clock;
        const AppSettings& settings;
        bool loadsWindows = true; ///< else the page stays where it is when it wants a window
    };

    /// The page is made in a later turn of the event loop.
    PageFrame(Ports ports, QWidget* parent);
    ~PageFrame() override;

    /// Null until `pageReady`.
    [[nodiscard]] WebPage* page() const { return m_page.get(); }
    /// As soon as there is a page; of several addresses until then the last.
    void load(const Link& url);
    void setZoom(double factor);

Q_SIGNALS:
    /// There is a page now, which loads what was asked for so far.
    void pageReady();
    /// As the page tells its judge. The frame may be deleted later, but not in here.
    void navigationOver(vormel::WebPage::End end);

private:
    // WebPage::Judge
    [[nodiscard]] bool mayAsk(const WebPage::Request& request) override { return request.url.isHttp(); }
    [[nodiscard]] bool mayShow(const WebPage::Response& response) override { return response.canBeShown; }
    void windowWanted(const Link& url) override;
    void navigationEnded(WebPage::End end) override;

    void layOut();
    void look();
    [[nodiscard]] QCoro::Task<> open(Lifetime::Watch lifetime);
    void takeIn();
    void showPage();
    void showNote(PageNote::Reason reason);
    void reload();

    Ports m_ports;
    HostLine* m_host;
    PageNote* m_note;
    QWidget* m_view; ///< what shows the page, or an empty one
    QStackedLayout* m_views;
    std::optional<Link> m_address; ///< of the page that is shown or was asked for last
    double m_zoom = 1;
    bool m_isOpening = false;
    std::unique_ptr<WebPage> m_page;
    Timer m_nextLook;
    Lifetime m_lifetime;
};

/// What a page of the browser needs of what the pages of the window work with.
[[nodiscard]] PageFrame::Ports pagePorts(const ViewPorts& ports);

} // namespace vormel

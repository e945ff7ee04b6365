#include "ui/web/PageFrame.h"

#include "engine/DownloadManager.h"
#include "kit/Separator.h"
#include "platform/async/Spawn.h"
#include "platform/web/KeptCookies.h"
#include "platform/web/WebBrowser.h"
#include "ui/ViewPorts.h"
#include "ui/web/HostLine.h"

#include <QStackedLayout>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

PageFrame::PageFrame(Ports ports, QWidget* parent)
    : QWidget(parent)
    , m_ports(std::move(ports))
    , m_host(new HostLine(m_ports.settings, this))
    , m_note(new PageNote(m_ports.settings, this))
    , m_view(new QWidget(this))
    , m_views(new QStackedLayout)
{
    setObjectName(u"pageFrame"_s);
    layOut();
    connect(m_note, &PageNote::reloadRequested, this, &PageFrame::reload);
    // Whoever makes the frame has yet to listen.
    QMetaObject::invokeMethod(this, &PageFrame::look, Qt::QueuedConnection);
}

PageFrame::~PageFrame() = default;

void PageFrame::layOut()
{
    m_views->addWidget(m_view);
    m_views->addWidget(m_note);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_host);
    column->addWidget(new Separator(Qt::Horizontal, this));
    column->addLayout(m_views, 1);
}

/// Each second: for the engine, as packages come and go, and for whose page is shown, which changes long before a slow
/// page ends its load.
void PageFrame::look()
{
    constexpr std::chrono::seconds interval(1);
    m_nextLook = m_ports.clock.after(interval, [this] { look(); });
    if (m_page)
        m_host->showPage(m_page->url(), m_page->connection());
    else if (const std::optional<WebBrowser::Absence> absence = m_ports.browser.absence())
        showNote(*absence == WebBrowser::Absence::notInstalled ? PageNote::Reason::notInstalled
                                                               : PageNote::Reason::doesNotStart);
    else if (!m_isOpening)
        spawn(open(m_lifetime.watch()));
}

QCoro::Task<> PageFrame::open(Lifetime::Watch lifetime)
{
    m_isOpening = true;
    co_await m_ports.restoreCookies();
    if (lifetime.isOver())
        co_return;
    m_isOpening = false;
    m_page = m_ports.browser.makePage(*this);
    if (m_page)
        takeIn();
    else
        showNote(PageNote::Reason::doesNotStart);
}

void PageFrame::takeIn()
{
    m_page->setZoom(m_zoom);
    if (QWidget* const view = m_page->widget()) {
        m_views->addWidget(view);
        setTabOrder(m_host, view);
        setFocusProxy(view);
        m_view = view;
    }
    showPage();
    if (m_address)
        m_page->load(*m_address);
    Q_EMIT pageReady();
}

void PageFrame::load(const Link& url)
{
    m_address = url;
    if (m_page)
        reload();
}

void PageFrame::reload()
{
    showPage();
    m_page->load(*m_address);
}

void PageFrame::setZoom(double factor)
{
    m_zoom = factor;
    if (m_page)
        m_page->setZoom(factor);
}

void PageFrame::windowWanted(const Link& url)
{
    if (m_ports.loadsWindows && url.isHttp())
        load(url);
}

void PageFrame::navigationEnded(WebPage::End end)
{
    const std::optional<Link> url = m_page->url();
    m_host->showPage(url, m_page->connection());
    if (url) {
        m_address = url;
        showPage();
    } else {
        showNote(PageNote::Reason::failed);
    }
    Q_EMIT navigationOver(end);
}

void PageFrame::showPage()
{
    m_views->setCurrentWidget(m_view);
}

void PageFrame::showNote(PageNote::Reason reason)
{
    m_note->say(reason);
    m_views->setCurrentWidget(m_note);
}

PageFrame::Ports pagePorts(const ViewPorts& ports)
{
    const auto restore = [&kept = ports.keptCookies] { return kept.restore(); };
    return {ports.web, restore, ports.clock, ports.manager.settings()};
}

} // namespace vormel

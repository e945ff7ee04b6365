#include "webengine/EnginePage.h"

#include "webengine/BoundedScript.h"

#include <QWebEngineCertificateError>
#include <QWebEngineLoadingInfo>
#include <QWebEngineScript>

#include <utility>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

using namespace std::chrono_literals;

constexpr auto longestScript = 10s;

std::optional<Link> httpLink(const QUrl& url)
{
    const std::optional<Link> link = Link::parse(url.toString(QUrl::FullyEncoded));
    return link && link->isHttp() ? link : std::nullopt;
}

} // namespace

EnginePage::EnginePage(QWebEngineProfile& profile, Clock& clock, Judge& judge, QObject& parent)
    : m_clock(clock)
    , m_judge(judge)
    // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): its parent's
    , m_page(new StrictPage(profile, parent, *this))
    , m_ends(clock, *this)
{
    watch();
}

EnginePage::~EnginePage()
{
    m_page->abandon();
    answerAllWithNothing();
}

void EnginePage::watch()
{
    QObject::connect(m_page, &QWebEnginePage::loadingChanged, &m_context,
                     [this](const QWebEngineLoadingInfo& info) { loadingChanged(info); });
    QObject::connect(m_page, &QWebEnginePage::urlChanged, &m_context, [this] { arrived(); });
    QObject::connect(m_page, &QWebEnginePage::renderProcessTerminated, &m_context, [this] { died(); });
    QObject::connect(m_page, &QWebEnginePage::certificateError, &m_context, [this](const auto& error) {
        m_hasBadCertificate = m_hasBadCertificate || error.url() == m_page->asked();
    });
}

void EnginePage::load(const Link& url)
{
    m_ends.begin();
    if (url.isHttp())
        m_page->load(url.toUrl()); // the judge may be asked, and delete this
    else
        m_ends.finished(End::failed);
}

std::optional<Link> EnginePage::url() const
{
    return m_showsPage ? httpLink(m_page->url()) : std::nullopt;
}

WebPage::Connection EnginePage::connection() const
{
    const std::optional<Link> shown = url();
    if (!shown)
        return Connection::none;
    // No page with a bad certificate is ever shown.
    return shown->scheme() == u"https" ? Connection::verified : Connection::unprotected;
}

QCoro::Task<QVariant> EnginePage::run(QString script)
{
    const SharedEventual<QVariant> answer;
    std::erase_if(m_answers, [](const auto& earlier) { return earlier.isThere(); });
    m_answers.push_back(answer);
    const Timer limit = m_clock.after(longestScript, [answer] { answer.deliver({}); });
    m_page->runJavaScript(boundedScript(script), QWebEngineScript::ApplicationWorld,
                          [answer](const QVariant& value) { answer.deliver(value); });
    QVariant value = co_await answer;
    co_return value;
}

void EnginePage::setZoom(double factor)
{
    m_zoom = factor;
    m_page->setZoomFactor(factor);
}

QWidget* EnginePage::widget()
{
    return &m_page->view();
}

bool EnginePage::mayNavigate(const QUrl& url, bool isMainFrame)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    const std::optional<Link> link = httpLink(url);
    const bool isAllowed = link && m_judge.mayAsk({*link, isMainFrame});
    if (isMainFrame && !lifetime.isOver())
        m_ends.asked(isAllowed);
    return isAllowed;
}

bool EnginePage::mayDownload(const QUrl& url)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    const std::optional<Link> link = httpLink(url);
    const bool isAllowed = link && m_judge.mayAsk({*link, true});
    if (!isAllowed && !lifetime.isOver())
        m_ends.fileCame();
    return isAllowed;
}

void EnginePage::windowWanted(const QUrl& url)
{
    if (const std::optional<Link> link = httpLink(url))
        m_judge.windowWanted(*link);
}

void EnginePage::fileCame(const QUrl& url, bool isMainFrame)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    if (const std::optional<Link> link = httpLink(url))
        static_cast<void>(m_judge.mayShow({*link, isMainFrame, false}));
    if (isMainFrame && !lifetime.isOver())
        m_ends.fileCame();
}

void EnginePage::stopNavigation()
{
    m_page->triggerAction(QWebEnginePage::Stop);
}

void EnginePage::arrived()
{
    m_ends.arrived();
    m_showsPage = !std::exchange(m_hasBadCertificate, false);
}

void EnginePage::loadingChanged(const QWebEngineLoadingInfo& info)
{
    using Info = QWebEngineLoadingInfo;
    switch (info.status()) {
    case Info::LoadStartedStatus:
        return m_ends.started();
    case Info::LoadStoppedStatus:
        return m_ends.stopped();
    case Info::LoadSucceededStatus:
        m_showsPage = true;
        return m_ends.finished(End::loaded);
    case Info::LoadFailedStatus:
        // A page with a status of failure is a page all the same, unless the engine wrote it.
        m_showsPage = info.errorDomain() == Info::HttpStatusCodeDomain && !info.isErrorPage();
        return m_ends.finished(m_showsPage ? End::loaded : End::failed);
    }
}

void EnginePage::died()
{
    m_showsPage = false;
    m_ends.died();
    // What it was to show would otherwise come in a new process.
    stopNavigation();
    answerAllWithNothing();
}

void EnginePage::navigationEnded(End end)
{
    // A page without a size and a place on the screen has slow timers, until it is told that it is seen.
    if (!m_page->hasView())
        m_page->setVisible(true);
    // The engine has a zoom for each site.
    m_page->setZoomFactor(m_zoom);
    const Lifetime::Watch lifetime = m_lifetime.watch();
    const bool isShown = end == End::loaded && isAllowedToShow();
    if (lifetime.isOver())
        return;
    m_showsPage = end == End::loaded ? isShown : m_showsPage;
    m_judge.navigationEnded(end == End::loaded && isShown ? End::loaded : End::failed);
}

bool EnginePage::isAllowedToShow() const
{
    const std::optional<Link> shown = url();
    return shown && m_judge.mayShow({*shown, true, true});
}

void EnginePage::answerAllWithNothing()
{
    for (const SharedEventual<QVariant>& answer : std::exchange(m_answers, {}))
        answer.deliver({});
}

} // namespace vormel

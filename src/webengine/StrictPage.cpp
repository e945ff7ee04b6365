#include "webengine/StrictPage.h"

#include <QAuthenticator>
#include <QWebEngineCertificateError>
#include <QWebEngineClientCertificateSelection>
#include <QWebEngineFullScreenRequest>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineProfile>
#include <QWebEngineQuotaRequest>
#include <QWebEngineRegisterProtocolHandlerRequest>

#include <utility>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// Requests have no fragment.
QUrl asRequested(const QUrl& url)
{
    return url.adjusted(QUrl::RemoveFragment);
}

} // namespace

StrictPage::StrictPage(QWebEngineProfile& profile, QObject& parent, Owner& owner)
    : QWebEnginePage(&profile, &parent)
    , m_owner(&owner)
{
    setUrlRequestInterceptor(&m_requests);
    setAudioMuted(true);
    refuseWhatItAsksFor();
    connect(this, &QWebEnginePage::newWindowRequested, this, [this](const QWebEngineNewWindowRequest& request) {
        if (m_owner)
            m_owner->windowWanted(request.requestedUrl());
    });
    connect(this, &QWebEnginePage::urlChanged, this, [this] { m_inFrames.clear(); });
}

StrictPage::~StrictPage()
{
    setUrlRequestInterceptor(nullptr);
    delete m_view;
}

void StrictPage::refuseWhatItAsksFor()
{
    connect(this, &QWebEnginePage::featurePermissionRequested, this, [this](const QUrl& origin, Feature feature) {
        setFeaturePermission(origin, feature, PermissionDeniedByUser);
    });
    connect(this, &QWebEnginePage::fullScreenRequested, this, [](auto request) { request.reject(); });
    connect(this, &QWebEnginePage::quotaRequested, this, [](auto request) { request.reject(); });
    connect(this, &QWebEnginePage::registerProtocolHandlerRequested, this, [](auto request) { request.reject(); });
    connect(this, &QWebEnginePage::selectClientCertificate, this, [](auto selection) { selection.selectNone(); });
    connect(this, &QWebEnginePage::certificateError, this, [](auto error) { error.rejectCertificate(); });
    // One that is left alone is sent empty, many times.
    const auto refuseLogin = [](QAuthenticator* login) { *login = QAuthenticator(); };
    connect(this, &QWebEnginePage::authenticationRequired, this,
            [refuseLogin](const QUrl& /*url*/, QAuthenticator* login) { refuseLogin(login); });
    connect(this, &QWebEnginePage::proxyAuthenticationRequired, this,
            [refuseLogin](const QUrl& /*url*/, QAuthenticator* login) { refuseLogin(login); });
}

QWebEngineView& StrictPage::view()
{
    if (!m_view) {
        m_view = new QWebEngineView; // NOLINT(cppcoreguidelines-owning-memory): whoever shows it may delete it first
        m_view->setPage(this);
    }
    return *m_view;
}

void StrictPage::takeFile(const QUrl& url)
{
    const bool isMainFrame = !m_inFrames.contains(asRequested(url));
    // The engine tells of what it was not let to ask for as well.
    const bool isRefused = url == std::exchange(m_refused, {});
    if (m_owner && !isRefused)
        m_owner->fileCame(url, isMainFrame);
}

void StrictPage::abandon()
{
    m_owner = nullptr;
    if (m_view) {
        m_view->hide();
        m_view->setParent(nullptr);
    }
    deleteLater();
}

bool StrictPage::acceptNavigationRequest(const QUrl& url, NavigationType /*type*/, bool isMainFrame)
{
    // A frame without an address has what its page wrote into it.
    const bool isEmptyFrame = !isMainFrame && url.scheme() == u"about";
    if (!m_owner || isEmptyFrame)
        return isEmptyFrame;
    if (isMainFrame)
        m_asked = asRequested(url);
    else
        noteFrame(asRequested(url));
    return m_owner->mayNavigate(url, isMainFrame) && m_owner;
}

void StrictPage::noteFrame(const QUrl& url)
{
    constexpr qsizetype mostFrames = 100;
    if (m_inFrames.size() == mostFrames)
        m_inFrames.removeFirst();
    m_inFrames.append(url);
}

QStringList StrictPage::chooseFiles(FileSelectionMode /*mode*/, const QStringList& /*oldFiles*/,
                                    const QStringList& /*acceptedTypes*/)
{
    return {};
}

void StrictPage::javaScriptAlert(const QUrl& /*origin*/, const QString& /*text*/) {}

bool StrictPage::javaScriptConfirm(const QUrl& /*origin*/, const QString& /*text*/)
{
    return false;
}

bool StrictPage::javaScriptPrompt(const QUrl& /*origin*/, const QString& /*text*/, const QString& /*standard*/,
                                  QString* /*answer*/)
{
    return false;
}

void StrictPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel /*level*/, const QString& /*text*/,
                                          int /*line*/, const QString& /*source*/)
{}

StrictPage::Requests::Requests(StrictPage& page)
    : m_page(page)
{}

void StrictPage::Requests::interceptRequest(QWebEngineUrlRequestInfo& request)
{
    const QUrl url = request.requestUrl();
    if (request.resourceType() != QWebEngineUrlRequestInfo::ResourceTypeMainFrame || url == m_page.m_asked)
        return;
    // What was not asked for as a page is what a link is to download.
    if (m_page.m_owner && m_page.m_owner->mayDownload(url))
        return;
    m_page.m_refused = url;
    request.block(true);
}

} // namespace vormel

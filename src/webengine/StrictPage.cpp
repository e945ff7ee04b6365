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

/// Of endless pages only the newest.
void note(QList<QUrl>& addresses, const QUrl& url)
{
    constexpr qsizetype most = 100;
    if (addresses.size() == most)
        addresses.removeFirst();
    addresses.append(url);
}

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
    connect(this, &QWebEnginePage::urlChanged, this, [this] {
        m_asked.clear();
        m_inFrames.clear();
    });
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

bool StrictPage::takeFile(const QUrl& url)
{
    const QUrl request = asRequested(url);
    const bool isMainFrame = request == m_asked || m_links.removeOne(request);
    if (!isMainFrame && !m_inFrames.removeOne(request))
        return false;
    if (isMainFrame)
        m_asked.clear();
    if (m_owner)
        m_owner->fileCame(url, isMainFrame);
    return true;
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
    const bool isAllowed = m_owner->mayNavigate(url, isMainFrame) && m_owner;
    if (isAllowed && isMainFrame)
        m_announced = asRequested(url);
    else if (isAllowed)
        note(m_inFrames, asRequested(url));
    return isAllowed;
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
    if (request.resourceType() != QWebEngineUrlRequestInfo::ResourceTypeMainFrame)
        return;
    const QUrl url = request.requestUrl();
    const bool isAnnounced = url == std::exchange(m_page.m_announced, {});
    // What was not announced as a page is what a link is to download.
    if (isAnnounced)
        m_page.m_asked = url;
    else if (m_page.m_owner && m_page.m_owner->mayDownload(url))
        note(m_page.m_links, url);
    else
        request.block(true);
}

} // namespace vormel

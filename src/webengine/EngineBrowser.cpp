#include "webengine/EngineBrowser.h"

#include "webengine/EnginePage.h"
#include "webengine/Identity.h"
#include "webengine/StrictPage.h"

#include <QDir>
#include <QLocale>
#include <QStandardPaths>
#include <QWebEngineDownloadRequest>
#include <QWebEngineSettings>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

QString usualFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + u"/QtWebEngine"_s;
}

/// A profile writes into its usual folder as soon as it is made; a name that leads out of there prevents that.
QString nameThatLeadsTo(const QString& folder)
{
    return QDir(usualFolder()).relativeFilePath(folder);
}

} // namespace

EngineBrowser::EngineBrowser(const QString& folder, Clock& clock)
    : m_clock(clock)
    , m_profile(nameThatLeadsTo(folder))
    , m_cookies(*m_profile.cookieStore(), clock, [this] { Q_EMIT cookiesChanged(); })
{
    setUp(folder);
    setAttributes();
    connect(&m_profile, &QWebEngineProfile::downloadRequested, this, [this](QWebEngineDownloadRequest* download) {
        download->cancel();
        takeFile(download->url());
    });
}

void EngineBrowser::setUp(const QString& folder)
{
    m_profile.setPersistentStoragePath(folder);
    // Made on the way out of it; it stays if somebody else has something there.
    QDir().rmdir(usualFolder());
    m_profile.setCachePath(QDir(folder).filePath(u"cache"_s));
    m_profile.setHttpCacheType(QWebEngineProfile::MemoryHttpCache);
    m_profile.setDownloadPath(folder);
    m_profile.setPersistentCookiesPolicy(QWebEngineProfile::NoPersistentCookies);
    m_profile.setUrlRequestInterceptor(&m_filter);
    m_profile.setHttpUserAgent(ordinaryUserAgent(m_profile.httpUserAgent()));
    m_profile.setHttpAcceptLanguage(acceptLanguage(QLocale::system().uiLanguages()));
}

void EngineBrowser::setAttributes()
{
    using Settings = QWebEngineSettings;
    Settings& settings = *m_profile.settings();
    // None is opened; what is wanted is told only while they may be.
    settings.setAttribute(Settings::JavascriptCanOpenWindows, true);
    // Its own text takes the place of the page before, which would stay there otherwise, address and all.
    settings.setAttribute(Settings::ErrorPageEnabled, true);
    for (const auto attribute :
         {Settings::AllowRunningInsecureContent, Settings::AllowWindowActivationFromJavaScript,
          Settings::AutoLoadIconsForPage, Settings::DnsPrefetchEnabled, Settings::FocusOnNavigationEnabled,
          Settings::FullScreenSupportEnabled, Settings::HyperlinkAuditingEnabled,
          Settings::JavascriptCanAccessClipboard, Settings::JavascriptCanPaste, Settings::LocalContentCanAccessFileUrls,
          Settings::LocalContentCanAccessRemoteUrls, Settings::NavigateOnDropEnabled, Settings::PdfViewerEnabled,
          Settings::PluginsEnabled, Settings::ScreenCaptureEnabled})
        settings.setAttribute(attribute, false);
    settings.setAttribute(Settings::PlaybackRequiresUserGesture, true);
    settings.setAttribute(Settings::WebRTCPublicInterfacesOnly, true);
    settings.setUnknownUrlSchemePolicy(Settings::DisallowUnknownUrlSchemes);
}

void EngineBrowser::takeFile(const QUrl& url)
{
    // The engine knows whose it is, but asking it is a crash if that page has gone.
    for (QObject* const page : m_pages.children()) {
        if (static_cast<StrictPage*>(page)->takeFile(url)) // there are no other children
            return;
    }
}

std::unique_ptr<WebPage> EngineBrowser::makePage(WebPage::Judge& judge)
{
    return std::make_unique<EnginePage>(m_profile, m_clock, judge, m_pages);
}

} // namespace vormel

#include "app/Program.h"

#include "config/Services.h"

#include <QSysInfo>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

QString ownVersion()
{
    return QString(programVersion);
}

} // namespace

Program::Program(const Folders& folders, const CurlHttpClient::Options& network, const Services& services)
    : m_downloadsFolder(folders.downloads)
    , m_http(m_clock, network)
    , m_defaults(folders.configuration + u"/preferences.json"_s, m_fileWriter)
    , m_launchPing(m_http, m_defaults, {services.telemetry, ownVersion(), QSysInfo::prettyProductName()})
    , m_updater(m_http, m_defaults, m_clock, QUrl(services.updateFeed), Version::parse(ownVersion()).value())
    , m_terminal(folders.runtime, qEnvironmentVariable("TERMINAL"))
    , m_manager(platform(folders), DownloadManager::Ports{m_resolvers, m_extractor})
{
    m_launchPing.start();
}

Platform Program::platform(const Folders& folders)
{
    return {.clock = m_clock,
            .http = m_http,
            .cookies = *m_http.sharedCookies(),
            .secrets = m_secrets,
            .web = m_web,
            .fileWriter = m_fileWriter,
            .fileSync = m_fileSync,
            .defaults = m_defaults,
            .trash = m_trash,
            .folders = folders};
}

ViewPorts Program::viewPorts()
{
    return {m_manager,         m_clock,    m_fileViewer, m_urlOpener,      m_toolWatch,
            m_packageManagers, m_terminal, m_signIn,     m_downloadsFolder};
}

} // namespace vormel

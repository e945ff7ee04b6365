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
    , m_manager(Platform{m_clock, m_http, m_fileWriter, m_fileSync, m_defaults, m_trash, folders},
                DownloadManager::Collaborators{m_resolvers, m_extractor})
{
    m_launchPing.start();
}

ViewPorts Program::viewPorts()
{
    return {m_manager,   m_clock,           m_fileViewer, m_urlOpener,
            m_toolWatch, m_packageManagers, m_terminal,   m_downloadsFolder};
}

} // namespace vormel

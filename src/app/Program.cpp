#include "app/Program.h"

namespace vormel {

Program::Program(const Folders& folders, const CurlHttpClient::Options& network)
    : m_downloadsFolder(folders.downloads)
    , m_http(m_clock, network)
    , m_defaults(folders.configuration + QStringLiteral("/preferences.json"), m_fileWriter)
    , m_terminal(folders.runtime, qEnvironmentVariable("TERMINAL"))
    , m_manager(Platform{m_clock, m_http, m_fileWriter, m_defaults, m_trash, folders},
                DownloadManager::Collaborators{m_resolvers, m_extractor})
{}

ViewPorts Program::viewPorts()
{
    return {m_manager,   m_clock,           m_fileViewer, m_urlOpener,
            m_toolWatch, m_packageManagers, m_terminal,   m_downloadsFolder};
}

} // namespace vormel

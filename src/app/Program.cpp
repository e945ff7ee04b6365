#include "app/Program.h"

namespace vormel {

Program::Program(const Folders& folders, const CurlHttpClient::Options& network)
    : m_http(m_clock, network)
    , m_defaults(folders.configuration + QStringLiteral("/preferences.json"), m_fileWriter)
    , m_manager(Platform{m_clock, m_http, m_fileWriter, m_defaults, m_trash, folders},
                DownloadManager::Collaborators{m_resolvers, m_extractor})
{}

} // namespace vormel

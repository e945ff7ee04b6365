#include "app/Program.h"

#include "config/Services.h"
#include "platform/async/Spawn.h"
#include "resolvers/services/ServiceResolvers.h"

#include <QSysInfo>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

QString ownVersion()
{
    return QString(programVersion);
}

} // namespace

Program::Program(const Folders& folders, const CurlHttpClient::Options& network, const Contacts& contacts,
                 const QString& webPlugin)
    : m_downloadsFolder(folders.downloads)
    , m_services(readServicesFile(folders.configuration + u"/services.json"_s, Services::builtIn()))
    , m_http(m_clock, network)
    , m_web({webPlugin, folders.applicationSupport + u"/web"_s}, m_clock)
    , m_keyring(m_clock, contacts.sessionBus)
    , m_secretsFile(folders.applicationSupport + u"/secrets/passwords.json"_s, m_fileWriter)
    , m_defaults(folders.configuration + u"/preferences.json"_s, m_fileWriter)
    , m_launchPing(m_http, m_defaults, {contacts.telemetry, ownVersion(), QSysInfo::prettyProductName()})
    , m_updater(m_http, m_defaults, m_clock, QUrl(contacts.updateFeed), Version::parse(ownVersion()).value())
    , m_keptCookies(
          {m_web, m_secrets, *m_http.sharedCookies()},
          [services = m_services.services](const QByteArray& domain) { return isSignInCookie(services, domain); })
    , m_resolvers(serviceResolvers(m_services.services, {m_http, *m_http.sharedCookies(), m_secrets, m_clock,
                                                         m_pageReading, m_filestoreLogins, m_web, m_keptCookies}))
    , m_systemBus(contacts.systemBus)
    , m_terminal(folders.runtime, qEnvironmentVariable("TERMINAL"))
    , m_manager(platform(folders), DownloadManager::Ports{m_resolvers, m_extractor})
    , m_signIn({{m_web, [this] { return m_keptCookies.restore(); }, m_clock, m_manager.settings()},
                {m_resolvers.profiles().of(SupportedHost::terabytez).domain}})
{
    QObject::connect(&m_manager.accounts(), &Accounts::credentialsChanged, &m_manager,
                     [this](const HostAccount& account) { forgetLogin(account); });
    m_launchPing.start();
}

void Program::followOutages()
{
    QObject::connect(&m_sleep, &SleepWatch::wokeUp, &m_manager, [this] { m_manager.machineWokeUp(); });
    spawn(openSystemBus());
}

QCoro::Task<> Program::openSystemBus()
{
    const std::optional<QDBusConnection> bus = co_await m_systemBus.open();
    if (!bus) // and no program any more
        co_return;
    m_sleep.follow(*bus);
    m_network.begin(*bus);
}

void Program::forgetLogin(const HostAccount& account)
{
    if (account.host == SupportedHost::filestore)
        m_filestoreLogins.credentialsChanged(account.username);
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
            .network = m_network,
            .folders = folders};
}

ViewPorts Program::viewPorts()
{
    return {m_manager,        m_clock,     m_fileViewer,
            m_urlOpener,      m_toolWatch, m_packageManagers,
            m_terminal,       m_signIn,    m_web,
            m_keptCookies,    m_notices,   {m_http, m_pageReading, m_clock, m_web, m_services.services},
            m_downloadsFolder};
}

} // namespace vormel

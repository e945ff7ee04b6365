#pragma once

#include "app/LaunchPing.h"
#include "app/update/FeedUpdater.h"
#include "archive/tools/ArchiveExtractor.h"
#include "archive/tools/ToolWatch.h"
#include "engine/DownloadManager.h"
#include "model/ServicesFile.h"
#include "platform/Platform.h"
#include "platform/async/Background.h"
#include "platform/clock/SystemClock.h"
#include "platform/desktop/DesktopNetwork.h"
#include "platform/desktop/FileViewer.h"
#include "platform/desktop/PackageManager.h"
#include "platform/desktop/SleepWatch.h"
#include "platform/desktop/SystemBus.h"
#include "platform/desktop/Terminal.h"
#include "platform/desktop/UrlOpener.h"
#include "platform/http/CookieStore.h"
#include "platform/http/CurlHttpClient.h"
#include "platform/secrets/FallbackSecrets.h"
#include "platform/secrets/FileSecrets.h"
#include "platform/secrets/KeyringSecrets.h"
#include "platform/storage/FileSync.h"
#include "platform/storage/FileWriter.h"
#include "platform/storage/Trash.h"
#include "platform/storage/UserDefaults.h"
#include "platform/web/KeptCookies.h"
#include "platform/web/PluginBrowser.h"
#include "resolvers/ResolverTables.h"
#include "resolvers/filestore/FilestoreLoginCache.h"
#include "ui/ViewPorts.h"
#include "ui/notices/Notices.h"
#include "ui/sheets/signin/PageSignInSheet.h"

namespace vormel {

/// The whole program without its window: the real ports of this machine and the engine over them. Where everything is
/// put together, and nothing else.
class Program
{
public:
    /// Whom the program talks to of itself; an empty address means nobody.
    struct Contacts
    {
        QString updateFeed;
        QString telemetry;
        QString sessionBus; ///< with the desktop's keyring
        QString systemBus;  ///< with the login manager and that of the network
    };

    /// Reads services, preferences and queue from the folders; the first start of an installation is counted on the
    /// way. The plugin is the file with the engine of the pages, and need not be there.
    explicit Program(const Folders& folders, const CurlHttpClient::Options& network = {}, const Contacts& contacts = {},
                     const QString& webPlugin = {});

    [[nodiscard]] DownloadManager& manager() { return m_manager; }
    /// What the window works with; lives as long as the program.
    [[nodiscard]] ViewPorts viewPorts();
    /// Why the file of services in the configuration folder is not taken, if it is there and not taken.
    [[nodiscard]] const std::optional<ServicesProblem>& servicesProblem() const { return m_services.problem; }
    [[nodiscard]] UserDefaults& defaults() { return m_defaults; }
    [[nodiscard]] FeedUpdater& updater() { return m_updater; }
    /// From now on the desktop tells of the network, and the login manager of sleep. Comes after the window, as a
    /// backend may cost a moment.
    void followOutages();
    [[nodiscard]] UrlOpener& urlOpener() { return m_urlOpener; }

private:
    QCoro::Task<> openSystemBus();
    void forgetLogin(const HostAccount& account);
    [[nodiscard]] Platform platform(const Folders& folders);

    QString m_downloadsFolder;
    ServicesReading m_services;
    SystemClock m_clock;
    CurlHttpClient m_http;
    PluginBrowser m_web;
    FileWriter m_fileWriter;
    KeyringSecrets m_keyring;
    FileSecrets m_secretsFile;
    FallbackSecrets m_secrets{m_keyring, m_secretsFile};
    FileSyncThread m_fileSync;
    UserDefaults m_defaults;
    LaunchPing m_launchPing;
    FeedUpdater m_updater;
    Background m_pageReading;
    FilestoreLoginCache m_filestoreLogins{m_clock};
    KeptCookies m_keptCookies;
    ResolverTables m_resolvers;
    DesktopTrash m_trash;
    DesktopNetwork m_network{m_clock};
    SleepWatch m_sleep;
    SystemBus m_systemBus;
    DesktopFileViewer m_fileViewer;
    DesktopUrlOpener m_urlOpener;
    DesktopPackageManagers m_packageManagers;
    DesktopTerminal m_terminal;
    ToolRunner m_tools;
    ToolWatch m_toolWatch{m_tools};
    ArchiveExtractor m_extractor{m_tools};
    DownloadManager m_manager;
    PageSignInSheet m_signIn;
    Notices m_notices{m_clock};
};

} // namespace vormel

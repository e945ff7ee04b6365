#pragma once

#include "app/LaunchPing.h"
#include "app/update/FeedUpdater.h"
#include "archive/tools/ArchiveExtractor.h"
#include "archive/tools/ToolWatch.h"
#include "engine/DownloadManager.h"
#include "kit/SignInSheet.h"
#include "platform/Platform.h"
#include "platform/clock/SystemClock.h"
#include "platform/desktop/FileViewer.h"
#include "platform/desktop/PackageManager.h"
#include "platform/desktop/Terminal.h"
#include "platform/desktop/UrlOpener.h"
#include "platform/http/CookieStore.h"
#include "platform/http/CurlHttpClient.h"
#include "platform/secrets/NoSecrets.h"
#include "platform/storage/FileSync.h"
#include "platform/storage/FileWriter.h"
#include "platform/storage/Trash.h"
#include "platform/storage/UserDefaults.h"
#include "platform/web/WebBrowser.h"
#include "resolvers/ResolverTables.h"
#include "ui/ViewPorts.h"

namespace vormel {

/// The whole program without its window: the real ports of this machine and the engine over them. Where everything is
/// put together, and nothing else.
class Program
{
public:
    /// Where the program reports to of itself; an empty address means that it does not.
    struct Services
    {
        QString updateFeed;
        QString telemetry;
    };

    /// Reads preferences and queue from the folders; the first start of an installation is counted on the way.
    explicit Program(const Folders& folders, const CurlHttpClient::Options& network = {},
                     const Services& services = {});

    [[nodiscard]] DownloadManager& manager() { return m_manager; }
    /// What the window works with; lives as long as the program.
    [[nodiscard]] ViewPorts viewPorts();
    [[nodiscard]] UserDefaults& defaults() { return m_defaults; }
    [[nodiscard]] FeedUpdater& updater() { return m_updater; }
    [[nodiscard]] UrlOpener& urlOpener() { return m_urlOpener; }

private:
    [[nodiscard]] Platform platform(const Folders& folders);

    QString m_downloadsFolder;
    SystemClock m_clock;
    CurlHttpClient m_http;
    NoSecrets m_secrets;
    NoWebBrowser m_web;
    FileWriter m_fileWriter;
    FileSyncThread m_fileSync;
    UserDefaults m_defaults;
    LaunchPing m_launchPing;
    FeedUpdater m_updater;
    ResolverTables m_resolvers;
    DesktopTrash m_trash;
    DesktopFileViewer m_fileViewer;
    DesktopUrlOpener m_urlOpener;
    DesktopPackageManagers m_packageManagers;
    DesktopTerminal m_terminal;
    NoSignInSheet m_signIn;
    ToolRunner m_tools;
    ToolWatch m_toolWatch{m_tools};
    ArchiveExtractor m_extractor{m_tools};
    DownloadManager m_manager;
};

} // namespace vormel

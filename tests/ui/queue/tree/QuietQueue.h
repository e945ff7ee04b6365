#pragma once

#include "archive/tools/ArchiveExtractor.h"
#include "engine/DownloadManager.h"
#include "fixtures/FakeNetworkState.h"
#include "fixtures/FakeTrash.h"
#include "fixtures/InstantSync.h"
#include "fixtures/ManualClock.h"
#include "fixtures/Sandbox.h"
#include "platform/http/CookieStore.h"
#include "platform/http/HttpClient.h"
#include "platform/secrets/NoSecrets.h"
#include "platform/storage/FileWriter.h"
#include "platform/storage/UserDefaults.h"
#include "platform/web/WebBrowser.h"
#include "resolvers/ResolverTables.h"

namespace vormel {

/// A queue whose items stand still: nothing is fetched, no tool is there, and the event loop need not turn.
class QuietQueue
{
public:
    [[nodiscard]] DownloadManager& manager() { return m_manager; }

    /// Adds one item, which is paused.
    ItemPtr add(const QString& name)
    {
        const QString url = QStringLiteral("http://h/%1/").arg(++m_lastLink) + name;
        m_manager.addDirectURLs({*Link::parse(url)});
        return m_manager.items().back();
    }

private:
    class NoNetwork final : public HttpClient
    {
    public:
        std::unique_ptr<HttpTask> makeTask(HttpRequest /*request*/, HttpReceiver& /*receiver*/) override
        {
            qFatal("Nothing is to be fetched here");
        }
        void setBlockSize(qsizetype /*bytes*/) override {}
        void connectAnew() override {}
    };

    fixtures::Sandbox m_sandbox;
    fixtures::ManualClock m_clock;
    NoNetwork m_http;
    CookieStore m_cookies;
    NoSecrets m_secrets;
    NoWebBrowser m_web;
    fixtures::FakeNetworkState m_network;
    fixtures::InstantSync m_sync;
    fixtures::FakeTrash m_trash{m_sandbox.path(QStringLiteral("Trash"))};
    FileWriter m_writer;
    UserDefaults m_defaults{m_sandbox.path(QStringLiteral("preferences.json")), m_writer};
    ToolRunner m_tools{ToolRunner::Folders{{}, m_sandbox.path(QStringLiteral("bin/"))}};
    ArchiveExtractor m_extractor{m_tools, [](const QString& /*line*/) {}};
    ResolverTables m_resolvers;
    DownloadManager m_manager{Platform{.clock = m_clock,
                                       .http = m_http,
                                       .cookies = m_cookies,
                                       .secrets = m_secrets,
                                       .web = m_web,
                                       .fileWriter = m_writer,
                                       .fileSync = m_sync,
                                       .defaults = m_defaults,
                                       .trash = m_trash,
                                       .network = m_network,
                                       .folders = m_sandbox.folders()},
                              DownloadManager::Ports{m_resolvers, m_extractor}};
    int m_lastLink = 0;
};

} // namespace vormel

#pragma once

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"

namespace vormel::fixtures {

inline const QString directLink = QStringLiteral("http://h/x.bin");
inline const QString premiumLink = QStringLiteral("https://filestore.example/f/x.bin");
inline const QString containerLink = QStringLiteral("https://container.example/c/1");

/// A queue with one slot. Its first item waits for it, unseen by the scheduler until a test queues it by hand.
struct QueueScene
{
    QueueScene()
    {
        engine.settings().maxConcurrentDownloads.set(1);
        waiting = engine.add(QStringLiteral("http://h/waiting.bin"));
        waiting->setStatus(DownloadStatus::stopped);
    }

    void add(const QString& url = directLink) { item = engine.add(url); }
    void add(const QString& url, const DownloadStatus& status)
    {
        add(url);
        item->setStatus(status);
    }
    /// The item has taken the slot, and half of its file is here.
    void run()
    {
        add();
        commands().startItems({item});
        turnEventLoop();
        server().head(200, {{"Content-Length", "6"}});
        server().data("abc");
        turnEventLoop();
    }
    void loseConnection()
    {
        server().fail(HttpError::Kind::connectionLost);
        turnEventLoop();
    }
    void cutShort()
    {
        server().head(206, {{"Content-Range", "bytes 3-5/6"}});
        server().finish();
        turnEventLoop();
    }
    void spendAllTries()
    {
        for (int i = 0; i < 8; ++i) {
            loseConnection();
            engine.clock.advance(std::chrono::seconds(10));
        }
    }
    void resolve(const QString& url = premiumLink)
    {
        engine.manager().accounts().set({account(SupportedHost::filestore)});
        add(url);
        log->resolves[0].answer->deliver(ResolverError::unsupportedHost());
        turnEventLoop();
        commands().startItems({item});
        turnEventLoop();
    }
    void signInFirst()
    {
        resolve();
        log->resolves[1].answer->deliver(fixtures::loginRequired(SupportedHost::filestore));
        turnEventLoop();
    }
    void openContainer()
    {
        engine.manager().addURLs({link(containerLink)}, std::nullopt);
        turnEventLoop();
    }
    void answerContainer(const std::variant<std::vector<Link>, ContainerError>& answer)
    {
        log->containers[0].answer->deliver(answer);
        turnEventLoop();
    }
    void laySetWithRecoveryVolume()
    {
        engine.add(QStringLiteral("http://h/m.part1.rar"));
        add(QStringLiteral("http://h/m.part1.rev"), DownloadStatus::stopped);
    }
    QString layFile(const QString& name) { return engine.sandbox.write(QStringLiteral("Downloads/") + name, "abcdef"); }
    QueueCommands& commands() { return engine.manager().commands(); }
    ScriptedHttpClient::Exchange& server() { return engine.http.last(); }

    std::shared_ptr<ServiceLog> log = std::make_shared<ServiceLog>();
    EngineOnScript engine{fakeServices(log)};
    ItemPtr waiting;
    ItemPtr item;
};

} // namespace vormel::fixtures

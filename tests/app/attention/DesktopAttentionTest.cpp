#include "app/attention/DesktopAttention.h"

#include "fixtures/DesktopBus.h"
#include "fixtures/DesktopServices.h"
#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "ui/FakeDesktop.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;
using namespace std::chrono_literals;

namespace {

/// All of it over two buses with the services of a desktop.
class DesktopAttentionTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        requireBus(session);
        if (IsSkipped())
            return;
        engine.settings().autoExtract.set(false);
        server = std::make_unique<NotificationServer>(session.services());
        login = std::make_unique<LoginManager>(system.services());
        dock = std::make_unique<Dock>(session.services());
        attention = std::make_unique<DesktopAttention>(
            desktop.ports(), DesktopAttention::Buses{session.program(), system.address()}, [] { return false; });
        QObject::connect(attention.get(), &DesktopAttention::showRequested,
                         [this](const QString& token) { shown << token; });
        QObject::connect(attention.get(), &DesktopAttention::itemWanted, [this](const ItemId& id) {
            EXPECT_TRUE(shown.isEmpty()); // the row is there when the window comes
            wanted = id;
        });
    }
    void complete()
    {
        engine.http.last().head(200, {{"Content-Length", "1"}});
        engine.http.last().data("x");
        engine.http.last().finish();
    }
    /// Two seconds after, and told.
    void letItBeTold()
    {
        const std::size_t before = server->told.size();
        fixtures::turnEventLoop();
        engine.clock.advance(2s);
        ASSERT_TRUE(waitUntil([&] { return server->told.size() > before; }));
        // The answer with its number is on its way to us.
        (void)waitUntil([] { return false; }, 20ms);
    }
    ItemPtr downloadOne()
    {
        const ItemPtr item = engine.start(u"http://h/a.bin"_s);
        complete();
        EXPECT_TRUE(waitUntil([&item] { return item->status() == DownloadStatus::completed; }));
        letItBeTold();
        return item;
    }

    EngineOnScript engine;
    FakeDesktop desktop{engine};
    DesktopBus session;
    DesktopBus system;
    std::unique_ptr<NotificationServer> server;
    std::unique_ptr<LoginManager> login;
    std::unique_ptr<Dock> dock;
    std::unique_ptr<DesktopAttention> attention;
    QStringList shown;
    std::optional<ItemId> wanted;
};

TEST_F(DesktopAttentionTest, AFinishedDownloadCanBeOpened)
{
    const ItemPtr item = downloadOne();
    EXPECT_EQ(server->told.front().title, u"Download finished");
    server->choose(1, u"open"_s);
    ASSERT_TRUE(waitUntil([this] { return !desktop.opener.opened.isEmpty(); }));
    EXPECT_EQ(desktop.opener.opened, QList<QUrl>{QUrl::fromLocalFile(item->localPath().value())});
    EXPECT_EQ(shown, QStringList());
}

TEST_F(DesktopAttentionTest, WhereTheFileHasGoneTheWindowIsShownInstead)
{
    const ItemPtr item = downloadOne();
    ASSERT_TRUE(QFile::remove(item->localPath().value()));
    server->choose(1, u"open"_s, u"token"_s);
    EXPECT_TRUE(waitUntil([this] { return shown == QStringList{u"token"_s}; }));
    EXPECT_EQ(wanted, item->id());
    EXPECT_TRUE(desktop.opener.opened.isEmpty());
}

TEST_F(DesktopAttentionTest, AFinishedDownloadCanBeShownInItsFolder)
{
    const ItemPtr item = downloadOne();
    server->choose(1, u"show"_s);
    ASSERT_TRUE(waitUntil([this] { return !desktop.viewer.shown.isEmpty(); }));
    EXPECT_EQ(desktop.viewer.shown, QStringList{item->localPath().value()});
}

TEST_F(DesktopAttentionTest, AClickBringsTheWindowForwardWithItsToken)
{
    downloadOne();
    server->choose(1, u"default"_s, u"token"_s);
    EXPECT_TRUE(waitUntil([this] { return shown == QStringList{u"token"_s}; }));
}

TEST_F(DesktopAttentionTest, AFailureIsShownInTheWindow)
{
    const ItemPtr item = engine.add(u"http://h/a.bin"_s);
    item->setStatus(DownloadStatus::downloading);
    item->setStatus(DownloadStatus::failure(u"File not found"_s));
    letItBeTold();
    EXPECT_EQ(server->told.front().text, u"a.bin\nFile not found");
    server->choose(1, u"show"_s);
    EXPECT_TRUE(waitUntil([this] { return shown.size() == 1; }));
    EXPECT_EQ(wanted, item->id());
    EXPECT_TRUE(desktop.viewer.shown.isEmpty());
}

TEST_F(DesktopAttentionTest, OfManyTheFirstFailureIsShown)
{
    const std::vector<ItemPtr> items = engine.add({u"http://h/a"_s, u"http://h/b"_s, u"http://h/c"_s});
    for (const ItemPtr& item : items)
        item->setStatus(DownloadStatus::downloading);
    items[0]->setStatus(DownloadStatus::completed);
    items[1]->setStatus(DownloadStatus::failure(u"File not found"_s));
    items[2]->setStatus(DownloadStatus::completed);
    letItBeTold();
    server->choose(1, u"default"_s);
    EXPECT_TRUE(waitUntil([this] { return shown.size() == 1; }));
    EXPECT_EQ(wanted, items[1]->id());
}

TEST_F(DesktopAttentionTest, SleepIsHeldOffAndTheLauncherShowsProgressWhileBytesMove)
{
    const ItemPtr item = engine.start(u"http://h/a.bin"_s);
    ASSERT_TRUE(waitUntil([this] { return login->isInhibited(); }));
    ASSERT_TRUE(waitUntil([this] { return !dock->states.isEmpty(); }));
    EXPECT_EQ(dock->states.back().value(u"count"_s), 1LL);
    complete();
    ASSERT_TRUE(waitUntil([&item] { return item->status() == DownloadStatus::completed; }));
    engine.clock.advance(2min);
    EXPECT_TRUE(waitUntil([this] { return !login->isInhibited(); }));
    EXPECT_TRUE(waitUntil([this] { return dock->states.back().value(u"count-visible"_s) == false; }));
}

TEST_F(DesktopAttentionTest, TheEndOfTheProgramLeavesNothingBehind)
{
    const ItemPtr item = engine.start(u"http://h/a.bin"_s);
    ASSERT_TRUE(waitUntil([this] { return login->isInhibited() && !dock->states.isEmpty(); }));
    attention.reset();
    EXPECT_TRUE(waitUntil([this] { return !login->isInhibited(); }));
    EXPECT_TRUE(waitUntil([this] { return dock->states.back().value(u"count-visible"_s) == false; }));
}

TEST_F(DesktopAttentionTest, WhereNobodyAnswersTheQueueGoesOn)
{
    server.reset();
    login.reset();
    session.end();
    system.end();
    const ItemPtr item = engine.start(u"http://h/a.bin"_s);
    complete();
    EXPECT_TRUE(waitUntil([&item] { return item->status() == DownloadStatus::completed; }));
    engine.clock.advance(1min);
    attention.reset();
    EXPECT_EQ(shown, QStringList());
}

} // namespace

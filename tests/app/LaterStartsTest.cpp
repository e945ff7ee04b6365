#include "app/LaterStarts.h"

#include "app/MainWindow.h"
#include "app/SecondStart.h"
#include "fixtures/EventLoop.h"
#include "fixtures/PrivateBus.h"
#include "fixtures/RealTools.h"
#include "platform/desktop/SingleInstance.h"
#include "ui/FakeDesktop.h"
#include "ui/FakeUpdater.h"
#include "ui/Part.h"
#include "ui/sheets/AddURLView.h"

#include <QPlainTextEdit>
#include <QTest>
#include <QThread>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace vormel {
namespace {

/// The window of the program that runs, and another start beside it.
class LaterStartsTest : public ::testing::Test
{
protected:
    LaterStartsTest()
    {
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
    }
    /// What stands in the sheet for adding; nothing if it is not open.
    QString offered()
    {
        const auto* const sheet = window.findChild<AddURLView*>();
        return sheet ? fixtures::partOf<QPlainTextEdit>(*sheet, "linkEditor").toPlainText() : QString();
    }
    QString awaitedOffer()
    {
        EXPECT_TRUE(fixtures::waitUntil([this] { return !offered().isEmpty(); }));
        return offered();
    }
    QString noticeOfFiles()
    {
        const Notice* const notice = desktop.notices.find(u"linkFiles"_s);
        return notice ? notice->text(AppLanguage::english) + u'|' + notice->text(AppLanguage::italian) : QString();
    }
    /// As another process would, on another thread while this one answers.
    bool ask(const QString& bus, const QStringList& addresses)
    {
        bool isReached = false;
        const std::unique_ptr<QThread> other(QThread::create([&] {
            const QDBusConnection connection = QDBusConnection::connectToBus(bus, u"other"_s);
            isReached = settleSecondStart(later, connection, addresses, {}, {}) == SecondStart::handedOver;
        }));
        other->start();
        EXPECT_TRUE(fixtures::waitUntil([&other] { return other->isFinished(); }));
        other->wait();
        QDBusConnection::disconnectFromBus(u"other"_s);
        return isReached;
    }

    fixtures::EngineOnScript engine;
    fixtures::FakeDesktop desktop{engine};
    fixtures::FakeUpdater updater;
    MainWindow window{desktop.ports(), updater};
    SingleInstance first{engine.sandbox.path(u"instance"_s)};
    SingleInstance later{engine.sandbox.path(u"instance"_s)};
    LaterStarts starts{{window, engine.settings(), desktop.notices}, first};
};

TEST_F(LaterStartsTest, LinksAreShownAndNothingIsAdded)
{
    starts.open({u"https://a.example/1"_s, u"ftp://a.example/2"_s, u"prose"_s, u"http://a.example/3"_s});
    EXPECT_EQ(offered(), u"https://a.example/1\nhttp://a.example/3");
    EXPECT_TRUE(engine.manager().items().empty());
}

TEST_F(LaterStartsTest, NothingToShowShowsNothing)
{
    starts.open({});
    starts.open({u"magnet:?xt=1"_s});
    EXPECT_EQ(window.findChild<AddURLView*>(), nullptr);
    EXPECT_EQ(noticeOfFiles(), u"");
}

TEST_F(LaterStartsTest, AFileElsewhereIsToldOfAndTheRestShown)
{
    starts.open({u"smb://server/share/my%20links.txt"_s, u"https://a.example/1"_s});
    EXPECT_EQ(awaitedOffer(), u"https://a.example/1");
    EXPECT_EQ(noticeOfFiles(), u"my links.txt: The file can't be read|my links.txt: Impossibile leggere il file");
}

TEST_F(LaterStartsTest, OneNoticeTellsOfAllBadFiles)
{
    const QString empty = engine.sandbox.write(u"empty.txt"_s, "prose");
    const QString good = engine.sandbox.write(u"good.txt"_s, "https://a.example/1");
    int notices = 0;
    QObject::connect(&desktop.notices, &Notices::appeared, [&notices] { ++notices; });
    starts.open({u"file://"_s + empty, u"file://"_s + good, u"file:///gone.txt"_s, u"mtp://[usb:001,005]/a.txt"_s});
    ASSERT_TRUE(fixtures::waitUntil([this] { return !noticeOfFiles().isEmpty(); }));
    EXPECT_EQ(noticeOfFiles(), u"3 files have no links or can't be read|3 file senza link o illeggibili");
    EXPECT_EQ(notices, 1);
    EXPECT_EQ(offered(), u"https://a.example/1");
}

TEST_F(LaterStartsTest, FilesBeyondTheMostThatAreReadAreToldOf)
{
    const QString good = engine.sandbox.write(u"good.txt"_s, "https://a.example/1");
    starts.open(QStringList(102, u"file://"_s + good));
    ASSERT_TRUE(fixtures::waitUntil([this] { return !noticeOfFiles().isEmpty(); }));
    EXPECT_EQ(noticeOfFiles(), u"2 files have no links or can't be read|2 file senza link o illeggibili");
}

TEST_F(LaterStartsTest, FilesAreReadAndTheirLinksShown)
{
    const QString file = engine.sandbox.write(u"my links.txt"_s, "https://a.example/1\nhttps://a.example/2\n");
    starts.open({QString::fromLatin1(QUrl::fromLocalFile(file).toEncoded())});
    EXPECT_EQ(awaitedOffer(), u"https://a.example/1\nhttps://a.example/2");
}

TEST_F(LaterStartsTest, ANoticeTellsOfAFileWithoutLinks)
{
    const QString path = engine.sandbox.path(u"gone.txt"_s);
    starts.open({u"file://"_s + path});
    EXPECT_TRUE(fixtures::waitUntil([this] { return !noticeOfFiles().isEmpty(); }));
    EXPECT_EQ(noticeOfFiles(), u"gone.txt: No such file|gone.txt: Il file non esiste");
    EXPECT_EQ(window.findChild<AddURLView*>(), nullptr);
}

TEST_F(LaterStartsTest, ItsEndWhileAFileIsReadIsNoHarm)
{
    SingleInstance another(engine.sandbox.path(u"another"_s));
    auto gone = std::make_unique<LaterStarts>(LaterStarts::Ports{window, engine.settings(), desktop.notices}, another);
    gone->open({u"file://"_s + engine.sandbox.write(u"links.txt"_s, "https://a.example/1")});
    gone.reset();
    fixtures::turnEventLoop();
    EXPECT_EQ(window.findChild<AddURLView*>(), nullptr);
}

TEST_F(LaterStartsTest, WithoutABusTheSocketServes)
{
    window.showMinimized();
    EXPECT_TRUE(ask(u"unix:path=/nowhere"_s, {u"https://a.example/1"_s, u"https://a.example/2"_s}));
    EXPECT_EQ(awaitedOffer(), u"https://a.example/1\nhttps://a.example/2");
    EXPECT_FALSE(window.isMinimized());
}

TEST_F(LaterStartsTest, ByTheBusItComesOnceAndNotAgainByTheSocket)
{
    const fixtures::PrivateBus bus(engine.sandbox);
    if (bus.address().isEmpty() && !fixtures::areToolsRequired())
        GTEST_SKIP() << "dbus-daemon is not there";
    starts.listen(bus.connection());
    EXPECT_TRUE(ask(bus.address(), {u"https://a.example/1"_s}));
    EXPECT_EQ(awaitedOffer(), u"https://a.example/1");
    fixtures::turnEventLoop();
    EXPECT_EQ(offered(), u"https://a.example/1");
}

TEST_F(LaterStartsTest, WhatABusKeepsToItselfIsNotSentTwice)
{
    const fixtures::PrivateBus bus(engine.sandbox);
    if (bus.address().isEmpty() && !fixtures::areToolsRequired())
        GTEST_SKIP() << "dbus-daemon is not there";
    starts.listen(bus.connection());
    // This thread waits for its own answer, as if the window were busy.
    const QDBusConnection other = QDBusConnection::connectToBus(bus.address(), u"busy"_s);
    EXPECT_EQ(settleSecondStart(later, other, {u"https://a.example/1"_s}, {}, 1min), SecondStart::unanswered);
    EXPECT_EQ(awaitedOffer(), u"https://a.example/1");
    fixtures::turnEventLoop();
    EXPECT_EQ(offered(), u"https://a.example/1");
    QDBusConnection::disconnectFromBus(u"busy"_s);
}

TEST_F(LaterStartsTest, OneThatStopsListeningIsNotAskedByTheBusAnyMore)
{
    const fixtures::PrivateBus bus(engine.sandbox);
    if (bus.address().isEmpty() && !fixtures::areToolsRequired())
        GTEST_SKIP() << "dbus-daemon is not there";
    starts.listen(bus.connection());
    starts.stopListening();
    first.stopListening();
    EXPECT_FALSE(ask(bus.address(), {u"https://a.example/1"_s}));
    fixtures::turnEventLoop();
    EXPECT_EQ(window.findChild<AddURLView*>(), nullptr);
}

} // namespace
} // namespace vormel

#include "engine/QueueScene.h"
#include "engine/SavedQueue.h"
#include "fixtures/ProcessorTime.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

using S = DownloadStatus;

constexpr std::chrono::seconds timeToThink{10};

class RemovedItemsTest : public ::testing::Test, protected QueueScene
{
protected:
    RemovedItems& removed() { return engine.manager().removed(); }
    void remove(const ItemPtr& one) { removed().remove({one->id()}); }
    ItemPtr put(const char* name, const DownloadStatus& status = S::stopped)
    {
        const ItemPtr one = engine.add(u"http://h/"_s + QString::fromLatin1(name));
        one->setStatus(status);
        return one;
    }
    /// Without the scene's own first item.
    QString names()
    {
        QString all;
        for (const ItemPtr& one : engine.manager().items()) {
            if (one != waiting)
                all += one->filename();
        }
        return all;
    }
    qsizetype savedRows()
    {
        engine.flush();
        return QJsonDocument::fromJson(engine.sandbox.read(queueFile)).array().size();
    }
    QString partOf(const ItemPtr& one) { return engine.settings().paths().partFile(one->filename()); }
};

} // namespace

TEST_F(RemovedItemsTest, RowsComeBackToTheirPlacesWithTheirStatus)
{
    const ItemPtr a = put("a");
    const ItemPtr b = put("b", S::failure(u"gone"_s));
    put("c");
    const ItemPtr d = put("d", S::completed);
    d->setExtractionStatus(ExtractionStatus::done);
    removed().remove({a->id(), b->id(), d->id()});
    EXPECT_EQ(names(), u"c");
    EXPECT_EQ(removed().count(), 3);
    removed().putBack();
    EXPECT_EQ(names(), u"abcd");
    EXPECT_EQ(b->status(), S::failure(u"gone"_s));
    EXPECT_EQ(d->extractionStatus(), ExtractionStatus::done);
    EXPECT_EQ(engine.manager().item(a->id()), a);
    EXPECT_EQ(removed().count(), 0);
}

TEST_F(RemovedItemsTest, SeveralRemovalsComeBackTogether)
{
    const ItemPtr a = put("a");
    const ItemPtr b = put("b");
    const ItemPtr c = put("c");
    remove(b);
    engine.clock.advance(timeToThink - std::chrono::seconds(1));
    remove(a);
    put("d");
    remove(c);
    engine.clock.advance(timeToThink - std::chrono::seconds(1)); // each has its ten seconds
    EXPECT_EQ(names(), u"d");
    removed().putBack();
    EXPECT_EQ(names(), u"abcd");
}

TEST_F(RemovedItemsTest, PlacesAreThoseAmongTheNeighboursThatAreLeft)
{
    const ItemPtr a = put("a");
    const ItemPtr b = put("b");
    const ItemPtr c = put("c");
    const ItemPtr d = put("d");
    remove(d);
    commands().removeItems({c->id()}); // as the engine itself does: that one is gone for good
    commands().moveGroups({1}, 3, {u"waiting.bin"_s, u"a"_s, u"b"_s});
    EXPECT_EQ(names(), u"ba");
    removed().putBack();
    EXPECT_EQ(names(), u"bda");
    EXPECT_EQ(engine.manager().item(b->id()), b);
    EXPECT_EQ(engine.manager().item(a->id()), a);
}

TEST_F(RemovedItemsTest, TheTimeIsOverAfterTenSeconds)
{
    remove(put("a"));
    engine.clock.advance(timeToThink - std::chrono::milliseconds(1));
    EXPECT_EQ(removed().count(), 1);
    engine.clock.advance(std::chrono::milliseconds(1));
    EXPECT_EQ(removed().count(), 0);
    removed().putBack();
    EXPECT_EQ(names(), QString());
}

TEST_F(RemovedItemsTest, TellsWhenThereIsSomethingToPutBackAndWhenNoMore)
{
    int tellings = 0;
    QObject::connect(&removed(), &RemovedItems::changed, [&tellings] { ++tellings; });
    remove(put("a"));
    EXPECT_EQ(tellings, 1);
    removed().remove({ItemId::make()});
    EXPECT_EQ(tellings, 1);
    engine.clock.advance(timeToThink);
    EXPECT_EQ(tellings, 2);
    remove(put("b"));
    removed().putBack();
    EXPECT_EQ(tellings, 4);
}

TEST_F(RemovedItemsTest, ARunningTransferEndsAtOnceAndItsPartFileGoesWhenTheTimeIsOver)
{
    run();
    const QString part = partOf(item);
    ASSERT_TRUE(QFile::exists(part));
    remove(item);
    EXPECT_TRUE(server().isDropped);
    EXPECT_TRUE(QFile::exists(part));
    engine.clock.advance(timeToThink);
    EXPECT_FALSE(QFile::exists(part));
}

TEST_F(RemovedItemsTest, ThePartFileOfAPausedRowStays)
{
    run();
    commands().pauseItems({item});
    remove(item);
    engine.clock.advance(timeToThink);
    EXPECT_TRUE(QFile::exists(partOf(item)));
}

TEST_F(RemovedItemsTest, WhatWasDownloadingGoesOnFromItsPartFile)
{
    run();
    remove(item);
    removed().putBack();
    EXPECT_EQ(item->status(), S::queued);
    turnEventLoop();
    EXPECT_EQ(item->status(), S::downloading);
    EXPECT_EQ(server().header("Range"), "bytes=3-");
    EXPECT_EQ(engine.http.exchanges().size(), 2U);
}

TEST_F(RemovedItemsTest, ItsSlotGoesToTheNextMeanwhile)
{
    run();
    waiting->setStatus(S::queued);
    remove(item);
    turnEventLoop();
    EXPECT_EQ(waiting->status(), S::downloading);
    removed().putBack();
    turnEventLoop();
    EXPECT_EQ(item->status(), S::queued);
}

TEST_F(RemovedItemsTest, WhatWasResolvingIsQueuedAgainAndStartsOnce)
{
    resolve();
    ASSERT_EQ(item->status(), S::resolving);
    const std::size_t before = log->resolves.size();
    remove(item);
    EXPECT_TRUE(log->resolves.back().stop.stop_requested());
    removed().putBack();
    turnEventLoop();
    EXPECT_EQ(item->status(), S::resolving);
    EXPECT_EQ(log->resolves.size(), before + 1);
}

TEST_F(RemovedItemsTest, AQueuedRowThatIsPutBackInTheSameTurnStartsOnce)
{
    add();
    item->setStatus(S::queued);
    engine.manager().processQueue(); // its start is under way
    remove(item);
    removed().putBack();
    turnEventLoop();
    EXPECT_EQ(engine.http.exchanges().size(), 1U);
}

TEST_F(RemovedItemsTest, ALinkThatWasAddedAnewStaysOnceAndIsTheNewerRow)
{
    add();
    remove(item);
    const ItemPtr newer = engine.add(directLink);
    removed().putBack();
    EXPECT_EQ(engine.manager().items(), (std::vector{waiting, newer}));
}

TEST_F(RemovedItemsTest, OfALinkThatWasRemovedTwiceTheNewerRowComesBack)
{
    add();
    remove(item);
    const ItemPtr newer = engine.add(directLink);
    remove(newer);
    removed().putBack();
    EXPECT_EQ(engine.manager().items(), (std::vector{waiting, newer}));
}

TEST_F(RemovedItemsTest, ThePartFileStaysWhereItsLinkWasAddedAgain)
{
    run();
    remove(item);
    engine.add(directLink);
    engine.clock.advance(timeToThink);
    EXPECT_TRUE(QFile::exists(partOf(item)));
}

TEST_F(RemovedItemsTest, AnotherTransferOfThatPartFileIsLeftAlone)
{
    run();
    const QString part = partOf(item);
    remove(item);
    waiting->setPartPlace(PartPlace{part, true});
    engine.clock.advance(timeToThink);
    EXPECT_TRUE(QFile::exists(part));
}

TEST_F(RemovedItemsTest, TheOrderlyEndOfTheProgramDeletesPartFilesToo)
{
    run();
    const QString part = partOf(item);
    remove(item);
    engine.restart();
    EXPECT_FALSE(QFile::exists(part));
    EXPECT_EQ(engine.manager().items().size(), 1U);
}

TEST_F(RemovedItemsTest, AKillLosesNothingAndBringsNothingBackTwice)
{
    run();
    const QString part = partOf(item);
    remove(item);
    engine.flush();
    engine.restart(true);
    EXPECT_EQ(engine.manager().items().size(), 1U);
    EXPECT_TRUE(QFile::exists(part));
    const ItemPtr again = engine.add(directLink);
    commands().startItems({again});
    turnEventLoop();
    EXPECT_EQ(server().header("Range"), "bytes=3-");
}

TEST_F(RemovedItemsTest, TheQueueIsSavedWithoutTheRowsAndWithThemAgain)
{
    add();
    remove(item);
    EXPECT_EQ(savedRows(), 1);
    removed().putBack();
    EXPECT_EQ(savedRows(), 2);
}

TEST_F(RemovedItemsTest, AContainerThatWasBeingReadIsReadAgainWithItsPassword)
{
    engine.manager().addURLs({link(containerLink)}, u"secret"_s);
    turnEventLoop();
    removed().remove(removed().all());
    EXPECT_TRUE(log->containers[0].stop.stop_requested());
    removed().putBack();
    turnEventLoop();
    ASSERT_EQ(log->containers.size(), 2U);
    EXPECT_EQ(log->containers[1].password, u"secret"_s);
    log->containers[1].answer->deliver(std::vector{link(directLink)});
    turnEventLoop();
    EXPECT_EQ(names(), u"x.bin");
}

TEST_F(RemovedItemsTest, ARecoveryCountdownStopsAndGoesOn)
{
    engine.settings().downloadRevFiles.set(false);
    const ItemPtr part = engine.add(u"https://filestore.example/f/m.part1.rar"_s); // without an account it fails
    const ItemPtr rev = engine.add(u"http://h/m.part1.rev"_s);
    rev->setStatus(S::stopped);
    part->setStatus(S::queued);
    commands().startItems({part});
    turnEventLoop();
    ASSERT_TRUE(part->recoveryCountdown());
    remove(part);
    engine.clock.advance(timeToThink - std::chrono::seconds(1));
    removed().putBack();
    EXPECT_TRUE(part->recoveryCountdown());
    EXPECT_EQ(rev->status(), S::stopped);
}

TEST_F(RemovedItemsTest, ARowThatComesBackSaysNoMoreWhatItWaitedFor)
{
    const ItemPtr a = put("a", S::queued);
    a->setWait({ItemWait::signIn, {}, u"h"_s});
    engine.settings().maxConcurrentDownloads.set(0);
    remove(a);
    removed().putBack();
    EXPECT_EQ(a->wait(), ItemWait());
}

TEST_F(RemovedItemsTest, NamesOfRowsThatComeBackAreLookedUp)
{
    engine.manager().accounts().set({account(SupportedHost::filestore)});
    engine.settings().maxConcurrentDownloads.set(0);
    engine.manager().addDirectURLs({link(premiumLink)});
    remove(engine.manager().items().back());
    turnEventLoop();
    ASSERT_TRUE(log->resolves.empty());
    removed().putBack();
    turnEventLoop();
    EXPECT_EQ(log->resolves.size(), 1U);
}

TEST_F(RemovedItemsTest, AFailedPartThatComesBackIsLookedAtForRecovery)
{
    laySetWithRecoveryVolume();
    const ItemPtr part = put("m.part2.rar", S::failure(u"gone"_s));
    engine.clock.advance(std::chrono::minutes(10));
    ASSERT_EQ(item->status(), S::stopped);
    remove(part);
    removed().putBack();
    engine.clock.advance(std::chrono::minutes(2));
    EXPECT_NE(item->status(), S::stopped);
}

TEST_F(RemovedItemsTest, EachCommandTakesWhatItsNameSays)
{
    using Command = void (*)(RemovedItems&);
    const std::pair<Command, QString> rows[] = {
        {[](RemovedItems& to) { to.remove(to.failed()); }, u"cps"_s},
        {[](RemovedItems& to) { to.remove(to.unfinished()); }, u"c"_s},
        {[](RemovedItems& to) { to.remove(to.all()); }, QString()},
        {[](RemovedItems& to) { to.clearCompleted(); }, u"fps"_s},
        {[](RemovedItems& to) { to.clearExtracted(); }, u"fps"_s},
    };
    waiting->setStatus(S::completed);
    put("c", S::completed)->setExtractionStatus(ExtractionStatus::done);
    put("f", S::failure({}));
    put("p", S::paused);
    put("s");
    for (const auto& [command, left] : rows) {
        command(removed());
        EXPECT_EQ(names(), left);
        removed().putBack();
        EXPECT_EQ(names(), u"cfps");
    }
}

TEST_F(RemovedItemsTest, ClearCompletedStartsNothing)
{
    put("c", S::completed);
    add();
    item->setStatus(S::queued);
    removed().clearCompleted();
    turnEventLoop();
    EXPECT_EQ(item->status(), S::queued);
}

TEST_F(RemovedItemsTest, AGroupGoesWithItsHiddenVolumes)
{
    laySetWithRecoveryVolume();
    removed().removeGroup(u"m"_s);
    EXPECT_EQ(engine.manager().items(), std::vector{waiting});
    removed().putBack();
    EXPECT_EQ(names(), u"m.part1.rarm.part1.rev");
}

TEST_F(RemovedItemsTest, TenThousandRowsGoAndComeBackWithoutAPause)
{
    constexpr int count = 10'000;
    constexpr auto longest =
        std::chrono::seconds(2); // of a machine under sanitizers; elsewhere it takes some tens of ms
    QStringList links;
    for (int i = 0; i < count; ++i)
        links << u"http://h/set%1.part%2.rar"_s.arg(i / 50).arg(i % 50 + 1);
    engine.settings().autoStartDownloads.set(false);
    engine.add(links);
    const std::vector<ItemPtr> before = engine.manager().items();
    const ProcessorTime removal;
    removed().remove(removed().all());
    EXPECT_LT(removal.elapsed(), longest);
    EXPECT_TRUE(engine.manager().items().empty());
    const ProcessorTime undoing;
    removed().putBack();
    EXPECT_LT(undoing.elapsed(), longest);
    EXPECT_EQ(engine.manager().items(), before);
}

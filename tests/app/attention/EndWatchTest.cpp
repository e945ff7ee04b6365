#include "app/attention/EndWatch.h"

#include "fixtures/ArchiveStep.h"
#include "fixtures/EventLoop.h"
#include "fixtures/Statuses.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;
using namespace vormel::fixtures::statuses;
using namespace std::chrono_literals;

namespace {

class EndWatchTest : public ::testing::Test
{
protected:
    EndWatchTest()
    {
        engine.settings().autoExtract.set(false);
        QObject::connect(&watch, &EndWatch::ended, [this](const std::vector<GroupEnd>& ends) { told.push_back(ends); });
    }
    /// Has the item on its way, whatever the network would say.
    void begin(const ItemPtr& item) { item->setStatus(downloading); }
    void finish(const ItemPtr& item)
    {
        begin(item);
        item->setLocalPath(u"/d/"_s + item->filename());
        item->setStatus(completed);
    }
    void fail(const ItemPtr& item)
    {
        begin(item);
        item->setStatus(DownloadStatus::failure(u"gone"_s));
    }
    /// a.zip has come down and is being extracted.
    ItemPtr extractingArchive()
    {
        const ItemPtr item = engine.add(u"http://h/a.zip"_s);
        finish(item);
        item->setExtractionStatus(extracting);
        return item;
    }
    /// A part of the set s that has failed, and a recovery volume that nobody fetches yet.
    std::vector<ItemPtr> lackingSet()
    {
        std::vector<ItemPtr> items = engine.add({u"http://h/s.part1.rar"_s, u"http://h/s.part1.rev"_s});
        items[1]->setStatus(stopped);
        fail(items[0]);
        return items;
    }
    /// What was told in the time, if once.
    [[nodiscard]] std::vector<GroupEnd> toldWithin(std::chrono::seconds time)
    {
        const std::size_t before = told.size();
        engine.clock.advance(time);
        EXPECT_LE(told.size(), before + 1);
        return told.size() > before ? told.back() : std::vector<GroupEnd>();
    }

    EngineOnScript engine;
    bool isLookedAt = false;
    EndWatch watch{engine.manager(), engine.clock, [this] { return isLookedAt; }};
    std::vector<std::vector<GroupEnd>> told;
};

TEST_F(EndWatchTest, AFileThatComesDownIsTold)
{
    const ItemPtr item = engine.start(u"http://h/a.bin"_s);
    engine.http.last().head(200, {{"Content-Length", "1"}});
    engine.http.last().data("x");
    engine.http.last().finish();
    ASSERT_TRUE(waitUntil([&item] { return item->status() == completed; }));
    EXPECT_EQ(toldWithin(2s),
              (std::vector<GroupEnd>{{GroupEnd::downloaded, u"a.bin"_s, item->localPath().value(), {}, item->id()}}));
    EXPECT_TRUE(toldWithin(10min).empty());
}

TEST_F(EndWatchTest, ManyThatEndWithinTwoSecondsAreToldTogether)
{
    const std::vector<ItemPtr> items = engine.add({u"http://h/a"_s, u"http://h/b"_s, u"http://h/c"_s});
    finish(items[0]);
    engine.clock.advance(1s);
    finish(items[1]);
    EXPECT_EQ(toldWithin(1s).size(), 2);
    fail(items[2]);
    EXPECT_EQ(toldWithin(2s),
              (std::vector<GroupEnd>{{GroupEnd::downloadFailed, u"c"_s, {}, u"gone"_s, items[2]->id()}}));
}

TEST_F(EndWatchTest, ASetIsToldOnceWhenItsLastPartHasCome)
{
    const std::vector<ItemPtr> items = engine.add({u"http://h/s.part1.rar"_s, u"http://h/s.part2.rar"_s});
    finish(items[0]);
    EXPECT_TRUE(toldWithin(2s).empty());
    finish(items[1]);
    EXPECT_EQ(toldWithin(2s),
              (std::vector<GroupEnd>{{GroupEnd::downloaded, u"s"_s, u"/d/s.part1.rar"_s, {}, items[0]->id()}}));
}

TEST_F(EndWatchTest, PartsThatEndTogetherAreOneSet)
{
    const std::vector<ItemPtr> items = engine.add({u"http://h/s.part1.rar"_s, u"http://h/s.part2.rar"_s});
    finish(items[0]);
    finish(items[1]);
    EXPECT_EQ(toldWithin(2s).size(), 1);
}

TEST_F(EndWatchTest, AnArchiveIsToldWhenItIsExtracted)
{
    const ItemPtr item = extractingArchive();
    EXPECT_TRUE(toldWithin(1min).empty());
    item->setExtractionStatus(done);
    EXPECT_EQ(toldWithin(2s), (std::vector<GroupEnd>{{GroupEnd::extracted, u"a.zip"_s, u"/d"_s, {}, item->id()}}));
}

TEST_F(EndWatchTest, AnArchiveThatWaitsForItsPasswordIsToldWhenItIsExtracted)
{
    const ItemPtr item = extractingArchive();
    item->setExtractionStatus(idle);
    engine.manager().questions().ask(PendingExtractionPassword{item->id(), u"a.zip"_s});
    EXPECT_TRUE(toldWithin(1min).empty());
    engine.manager().questions().submitExtractionPassword(u"pass"_s);
    item->setExtractionStatus(extracting);
    EXPECT_TRUE(toldWithin(1min).empty());
    item->setExtractionStatus(done);
    EXPECT_EQ(toldWithin(2s), (std::vector<GroupEnd>{{GroupEnd::extracted, u"a.zip"_s, u"/d"_s, {}, item->id()}}));
}

TEST_F(EndWatchTest, ARunThatIsStoppedIsNoEnd)
{
    const ItemPtr item = extractingArchive();
    EXPECT_TRUE(toldWithin(10s).empty());
    item->setExtractionStatus(idle);
    EXPECT_TRUE(toldWithin(1min).empty());
}

TEST_F(EndWatchTest, AnExtractionThatEndsAtOnceIsToldOnce)
{
    const ItemPtr item = extractingArchive();
    item->setExtractionStatus(ExtractionStatus::failure(u"bad"_s));
    EXPECT_EQ(toldWithin(2s),
              (std::vector<GroupEnd>{{GroupEnd::extractionFailed, u"a.zip"_s, {}, u"bad"_s, item->id()}}));
}

TEST_F(EndWatchTest, WhatTheSettingsTakeOutOfTheListWhenItIsExtractedIsTold)
{
    engine.settings().removeGroupAfterExtract.set(true);
    const ItemPtr item = extractingArchive();
    engine.clock.advance(1min);
    item->setExtractionStatus(done);
    engine.manager().commands().clearExtracted();
    EXPECT_EQ(toldWithin(2s), (std::vector<GroupEnd>{{GroupEnd::extracted, u"a.zip"_s, u"/d"_s, {}, item->id()}}));
}

TEST_F(EndWatchTest, WhatTheUserRemovesIsNotTold)
{
    const std::vector<ItemPtr> items = engine.add({u"http://h/a"_s, u"http://h/b.zip"_s});
    finish(items[0]);
    finish(items[1]);
    items[1]->setExtractionStatus(done);
    engine.manager().commands().removeItems({items[0]->id(), items[1]->id()});
    EXPECT_TRUE(toldWithin(1min).empty());
}

TEST_F(EndWatchTest, WhileTheUserLooksNothingIsTold)
{
    const std::vector<ItemPtr> items = engine.add({u"http://h/a"_s, u"http://h/b"_s});
    isLookedAt = true;
    finish(items[0]);
    isLookedAt = false;
    EXPECT_TRUE(toldWithin(1min).empty());
    finish(items[1]);
    isLookedAt = true; // comes to look before it is said
    EXPECT_TRUE(toldWithin(1min).empty());
}

TEST_F(EndWatchTest, TheSettingActsAtOnce)
{
    const std::vector<ItemPtr> items = engine.add({u"http://h/a"_s, u"http://h/b"_s});
    finish(items[0]);
    engine.settings().notifyWhenDone.set(false);
    EXPECT_TRUE(toldWithin(1min).empty());
    finish(items[1]);
    engine.settings().notifyWhenDone.set(true);
    EXPECT_TRUE(toldWithin(1min).empty());
}

TEST_F(EndWatchTest, WhatWasNeverOnItsWayHasNotEnded)
{
    engine.sandbox.write(u"Downloads/there.bin"_s, "x");
    const ItemPtr there = engine.add(u"http://h/there.bin"_s);
    const ItemPtr cancelled = engine.add(u"http://h/b"_s);
    there->setStatus(completed);
    cancelled->setStatus(DownloadStatus::failure(u"the sign-in was cancelled"_s));
    EXPECT_TRUE(toldWithin(1min).empty());
}

TEST_F(EndWatchTest, WhatIsTriedAgainHasNotFailed)
{
    const ItemPtr item = engine.add(u"http://h/a"_s);
    fail(item);
    item->setStatus(queued);
    EXPECT_TRUE(toldWithin(2s).empty());
}

TEST_F(EndWatchTest, AContainerThatCouldNotBeReadIsTold)
{
    const ItemPtr item = engine.add(u"http://h/a"_s);
    item->setStatus(expanding);
    item->setStatus(DownloadStatus::failure(u"gone"_s));
    EXPECT_EQ(toldWithin(2s).size(), 1);
}

TEST_F(EndWatchTest, AFailedPartIsToldWhenItsRecoveryVolumesHadTheirTime)
{
    const std::vector<ItemPtr> set = lackingSet();
    EXPECT_TRUE(toldWithin(60s).empty());
    EXPECT_EQ(toldWithin(10s),
              (std::vector<GroupEnd>{{GroupEnd::downloadFailed, u"s"_s, {}, u"gone"_s, set[0]->id()}}));
    EXPECT_TRUE(toldWithin(10min).empty());
}

TEST_F(EndWatchTest, WhileARecoveryVolumeComesNothingIsTold)
{
    const std::vector<ItemPtr> items = lackingSet();
    EXPECT_TRUE(toldWithin(50s).empty());
    begin(items[1]);
    EXPECT_TRUE(toldWithin(10min).empty());
}

TEST_F(EndWatchTest, WhileARecoveryVolumeAwaitsItsTurnNothingIsTold)
{
    engine.settings().maxConcurrentDownloads.set(0);
    const std::vector<ItemPtr> set = lackingSet();
    EXPECT_TRUE(toldWithin(50s).empty());
    engine.manager().commands().retryWithRevFiles(set);
    ASSERT_EQ(set[1]->status(), queued);
    EXPECT_TRUE(toldWithin(10min).empty());
    fail(set[1]);
    EXPECT_EQ(toldWithin(70s),
              (std::vector<GroupEnd>{{GroupEnd::downloadFailed, u"s"_s, {}, u"gone"_s, set[0]->id()}}));
}

TEST_F(EndWatchTest, AFailedPartThatIsTriedAgainAndComesIsToldOnce)
{
    const std::vector<ItemPtr> items = lackingSet();
    EXPECT_TRUE(toldWithin(40s).empty());
    engine.manager().commands().removeItems({items[1]->id()});
    finish(items[0]);
    EXPECT_EQ(toldWithin(2s),
              (std::vector<GroupEnd>{{GroupEnd::downloaded, u"s"_s, u"/d/s.part1.rar"_s, {}, items[0]->id()}}));
    EXPECT_TRUE(toldWithin(10min).empty());
}

TEST_F(EndWatchTest, ASetWithAFailedPartIsToldOnceThoughAnotherPartComesLater)
{
    const std::vector<ItemPtr> items =
        engine.add({u"http://h/s.part1.rar"_s, u"http://h/s.part2.rar"_s, u"http://h/s.part1.rev"_s});
    items[2]->setStatus(stopped);
    finish(items[1]);
    fail(items[0]);
    EXPECT_TRUE(toldWithin(30s).empty());
    finish(items[1]);
    EXPECT_TRUE(toldWithin(60s).empty());
    EXPECT_EQ(toldWithin(10s).size(), 1);
    EXPECT_TRUE(toldWithin(10min).empty());
}

TEST_F(EndWatchTest, WhatWasSavedWhileTheUserLookedIsNotToldLater)
{
    const std::vector<ItemPtr> items = lackingSet();
    EXPECT_TRUE(toldWithin(30s).empty());
    isLookedAt = true;
    finish(items[1]);
    items[0]->setExtractionStatus(done);
    EXPECT_TRUE(toldWithin(2s).empty());
    isLookedAt = false;
    EXPECT_TRUE(toldWithin(10min).empty());
}

TEST_F(EndWatchTest, ARemovedSetIsNotWaitedFor)
{
    lackingSet();
    EXPECT_TRUE(toldWithin(2s).empty());
    engine.manager().commands().removeGroup(u"s"_s);
    EXPECT_TRUE(toldWithin(10min).empty());
}

/// With a real run of a tool between the file and the word.
class EndWatchOfArchivesTest : public ::testing::Test, protected ArchiveStep
{};

TEST_F(EndWatchOfArchivesTest, ARunThatEndsIsToldAsExtracted)
{
    engine.settings().autoExtract.set(true);
    engine.settings().removeGroupAfterExtract.set(true);
    unpackerMakes("film.mkv");
    const EndWatch watch(engine.manager(), engine.clock, [] { return false; });
    std::vector<GroupEnd> told;
    QObject::connect(&watch, &EndWatch::ended, [&told](const std::vector<GroupEnd>& ends) { told = ends; });
    const ItemPtr item = engine.start(u"http://h/film.rar"_s);
    engine.http.last().head(200, {{"Content-Length", "1"}});
    engine.http.last().data("x");
    engine.http.last().finish();
    ASSERT_TRUE(waitUntil([this] { return engine.manager().items().empty(); }));
    engine.clock.advance(2s);
    ASSERT_EQ(told.size(), 1);
    EXPECT_EQ(told.front().kind, GroupEnd::extracted);
    EXPECT_EQ(told.front().name, u"film.rar");
}

} // namespace

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;
using namespace std::chrono_literals;

namespace {

const DownloadStatus lost = DownloadStatus::failure(u"lost"_s);

/// A set of which one part has failed long ago and the recovery volumes are not wanted yet.
class RecoveryCheckTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        engine.settings().autoExtract.set(false);
        engine.add(u"http://h/m.part1.rar"_s)->setStatus(lost);
        rev = engine.add(u"http://h/m.part1.rev"_s);
        rev->setStatus(DownloadStatus::stopped);
    }
    ItemPtr start(const QString& name)
    {
        const ItemPtr item = engine.add(u"http://h/"_s + name);
        engine.manager().commands().startItems({item});
        turnEventLoop();
        return item;
    }
    void complete(const ItemPtr& item)
    {
        exchangeOf(item).head(200, {{"Content-Length", "1"}});
        exchangeOf(item).data("x");
        exchangeOf(item).finish();
        turnEventLoop();
        ASSERT_EQ(item->status(), DownloadStatus::completed);
    }
    void lose(const ItemPtr& item)
    {
        exchangeOf(item).fail(HttpError::Kind::connectionLost);
        turnEventLoop();
    }
    /// The time of its tries is over when this returns.
    void failForGood(const ItemPtr& item)
    {
        for (int i = 0; i < 8; ++i) {
            lose(item);
            engine.clock.advance(10s);
        }
        lose(item);
        ASSERT_EQ(item->status(), DownloadStatus::failed);
    }
    ScriptedHttpClient::Exchange& exchangeOf(const ItemPtr& item)
    {
        const auto& all = engine.http.exchanges();
        return **std::find_if(all.rbegin(), all.rend(), [&item](const auto& exchange) {
            return exchange->request.url.path().endsWith(item->filename());
        });
    }
    [[nodiscard]] bool areVolumesFetched() const { return rev->status() != DownloadStatus::stopped; }

    EngineOnScript engine;
    ItemPtr rev;
};

} // namespace

TEST_F(RecoveryCheckTest, ComesAMinuteAfterAPartIsComplete)
{
    complete(start(u"m.part2.rar"_s));
    engine.clock.advance(59'999ms);
    EXPECT_FALSE(areVolumesFetched());
    engine.clock.advance(1ms);
    EXPECT_TRUE(areVolumesFetched());
}

TEST_F(RecoveryCheckTest, ComesAMinuteAfterAPartHasFailedForGood)
{
    const ItemPtr part = start(u"m.part2.rar"_s);
    failForGood(part);
    engine.manager().commands().interruptItem(*part, DownloadStatus::stopped); // which ends the countdown
    engine.clock.advance(59'999ms);
    EXPECT_FALSE(areVolumesFetched());
    engine.clock.advance(1ms);
    EXPECT_TRUE(areVolumesFetched());
}

TEST_F(RecoveryCheckTest, ComesAMinuteAfterAPartCouldNotBeStarted)
{
    engine.settings().downloadFolderPath.set(engine.sandbox.write(u"file"_s, "where the folder should be"));
    const ItemPtr part = start(u"m.part2.rar"_s);
    ASSERT_EQ(part->status(), DownloadStatus::failed);
    engine.manager().commands().interruptItem(*part, DownloadStatus::stopped);
    engine.clock.advance(59'999ms);
    EXPECT_FALSE(areVolumesFetched());
    engine.clock.advance(1ms);
    EXPECT_TRUE(areVolumesFetched());
}

TEST_F(RecoveryCheckTest, IsPutOffForAsLongAsPartsKeepFinishing)
{
    complete(start(u"m.part2.rar"_s));
    engine.clock.advance(40s);
    complete(start(u"m.part3.rar"_s));
    engine.clock.advance(59s);
    EXPECT_FALSE(areVolumesFetched());
    engine.clock.advance(1s);
    EXPECT_TRUE(areVolumesFetched());
}

TEST_F(RecoveryCheckTest, ComesForNothingButParts)
{
    for (const char* name : {"m.rar", "m.part1.rar.zip", "m.bin"})
        complete(start(QString::fromLatin1(name)));
    engine.manager().commands().retryWithRevFiles({start(u"m.part7.rev"_s)});
    turnEventLoop();
    rev->setStatus(DownloadStatus::stopped);
    const std::vector<ItemPtr>& items = engine.manager().items();
    complete(items.back());
    const ItemPtr late = engine.add(u"http://h/m.part8.rev"_s);
    late->setStatus(DownloadStatus::stopped);
    engine.clock.advance(120s);
    EXPECT_FALSE(areVolumesFetched());
    EXPECT_EQ(late->status(), DownloadStatus::stopped);
}

TEST_F(RecoveryCheckTest, LeavesOtherSetsAlone)
{
    const ItemPtr other = engine.add(u"http://h/other.part1.rev"_s);
    other->setStatus(DownloadStatus::stopped);
    engine.add(u"http://h/other.part1.rar"_s)->setStatus(lost);
    complete(start(u"m.part2.rar"_s));
    engine.clock.advance(60s);
    EXPECT_TRUE(areVolumesFetched());
    EXPECT_EQ(other->status(), DownloadStatus::stopped);
}

TEST_F(RecoveryCheckTest, FetchesNothingWhereVolumesAreFetchedAnyway)
{
    engine.settings().downloadRevFiles.set(true);
    complete(start(u"m.part2.rar"_s));
    engine.settings().downloadRevFiles.set(false);
    engine.clock.advance(120s);
    EXPECT_FALSE(areVolumesFetched());
}

TEST_F(RecoveryCheckTest, AShortPartHasNoCountdown)
{
    const ItemPtr part = start(u"m.part2.rar"_s);
    exchangeOf(part).head(200, {{"Content-Length", "6"}});
    exchangeOf(part).data("abc");
    lose(part);
    for (int i = 0; i < 8; ++i) {
        engine.clock.advance(10s);
        exchangeOf(part).head(206, {{"Content-Range", "bytes 3-5/6"}});
        exchangeOf(part).finish();
        turnEventLoop();
    }
    EXPECT_EQ(part->status(), DownloadStatus::failure(u"Incomplete download (3 bytes of 6 bytes) — retry"_s));
    EXPECT_EQ(part->recoveryCountdown(), std::nullopt);
    engine.clock.advance(10s);
    EXPECT_FALSE(areVolumesFetched());
}

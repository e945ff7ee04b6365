#include "app/attention/KeepAwake.h"

#include "app/attention/QueueActivity.h"
#include "fixtures/EngineOnScript.h"
#include "fixtures/Statuses.h"
#include "platform/desktop/SleepInhibitor.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;
using namespace vormel::fixtures::statuses;
using namespace std::chrono_literals;

namespace {

class FakeInhibitor final : public SleepInhibitor
{
public:
    void hold(const QString& reason) override
    {
        isHeld = true;
        reasons << reason;
    }
    void release() override { isHeld = false; }

    bool isHeld = false;
    QStringList reasons;
};

class KeepAwakeTest : public ::testing::Test
{
protected:
    KeepAwakeTest() { item->setStatus(paused); }

    EngineOnScript engine;
    ItemPtr item = engine.add(u"http://h/a"_s);
    QueueActivity activity{engine.manager()};
    FakeInhibitor inhibitor;
    std::optional<KeepAwake> keepAwake{std::in_place,
                                       KeepAwake::Ports{activity, engine.settings(), engine.clock, inhibitor}};
};

TEST_F(KeepAwakeTest, SleepIsHeldOffWhileBytesMoveAndUntilTheNextTry)
{
    EXPECT_FALSE(inhibitor.isHeld);
    item->setStatus(downloading);
    EXPECT_TRUE(inhibitor.isHeld);
    item->setStatus(queued);
    engine.clock.advance(89s);
    EXPECT_TRUE(inhibitor.isHeld);
    engine.clock.advance(1s);
    EXPECT_FALSE(inhibitor.isHeld);
}

TEST_F(KeepAwakeTest, SleepIsHeldOffWhileAToolWorks)
{
    item->setStatus(completed);
    item->setExtractionStatus(extracting);
    EXPECT_TRUE(inhibitor.isHeld);
    item->setExtractionStatus(done);
    engine.clock.advance(90s);
    EXPECT_FALSE(inhibitor.isHeld);
}

TEST_F(KeepAwakeTest, TheNextFileKeepsItHeld)
{
    item->setStatus(downloading);
    item->setStatus(paused);
    engine.clock.advance(89s);
    item->setStatus(downloading);
    engine.clock.advance(10min);
    EXPECT_TRUE(inhibitor.isHeld);
    EXPECT_EQ(inhibitor.reasons.size(), 1);
}

TEST_F(KeepAwakeTest, ChangesThatMeanNothingDoNotPutTheEndOff)
{
    item->setStatus(downloading);
    item->setStatus(queued);
    engine.clock.advance(80s);
    item->setTotalBytes(5);
    engine.clock.advance(10s);
    EXPECT_FALSE(inhibitor.isHeld);
}

TEST_F(KeepAwakeTest, TheReasonIsInTheUsersLanguage)
{
    item->setStatus(downloading);
    item->setStatus(paused);
    engine.clock.advance(90s);
    engine.settings().language.set(AppLanguage::italian);
    item->setStatus(downloading);
    EXPECT_EQ(inhibitor.reasons,
              (QStringList{u"Files are being downloaded or extracted"_s, u"Download o estrazione di file in corso"_s}));
}

TEST_F(KeepAwakeTest, TheSettingActsAtOnce)
{
    item->setStatus(downloading);
    engine.settings().keepAwake.set(false);
    EXPECT_FALSE(inhibitor.isHeld);
    engine.settings().keepAwake.set(true);
    EXPECT_TRUE(inhibitor.isHeld);
}

TEST_F(KeepAwakeTest, TheEndOfTheProgramGivesItBackAtOnce)
{
    item->setStatus(downloading);
    keepAwake.reset();
    EXPECT_FALSE(inhibitor.isHeld);
}

} // namespace

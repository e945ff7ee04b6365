#include "ui/queue/rows/BarGlides.h"

#include "fixtures/ManualClock.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using namespace std::chrono_literals;

class BarGlidesTest : public ::testing::Test
{
protected:
    double draw(double target) { return glides.value(bar, target, 400ms); }

    const QString bar = u"a bar"_s;
    fixtures::ManualClock clock;
    BarGlides glides{clock};
};

TEST_F(BarGlidesTest, ABarThatComesIntoSightStandsWhereItIs)
{
    EXPECT_DOUBLE_EQ(draw(0.7), 0.7);
    EXPECT_FALSE(glides.isGliding(bar));
}

TEST_F(BarGlidesTest, GlidesEvenlyAndArrives)
{
    EXPECT_DOUBLE_EQ(draw(0.2), 0.2);
    EXPECT_DOUBLE_EQ(draw(0.6), 0.2);
    EXPECT_TRUE(glides.isGliding(bar));
    clock.advance(100ms);
    EXPECT_DOUBLE_EQ(draw(0.6), 0.3);
    clock.advance(200ms);
    EXPECT_DOUBLE_EQ(draw(0.6), 0.5);
    clock.advance(100ms);
    EXPECT_TRUE(glides.isGliding(bar)); // the last step is still to be drawn
    EXPECT_DOUBLE_EQ(draw(0.6), 0.6);
    EXPECT_FALSE(glides.isGliding(bar));
}

TEST_F(BarGlidesTest, GoesOnFromWhereItIsWhenTheTargetMoves)
{
    static_cast<void>(draw(0));
    static_cast<void>(draw(0.4));
    clock.advance(200ms);
    EXPECT_DOUBLE_EQ(draw(1.0), 0.2);
    clock.advance(200ms);
    EXPECT_DOUBLE_EQ(draw(1.0), 0.6);
}

TEST_F(BarGlidesTest, ABarThatBeginsAnewJumpsBack)
{
    static_cast<void>(draw(0.9));
    EXPECT_DOUBLE_EQ(draw(0.1), 0.1);
}

TEST_F(BarGlidesTest, ABarThatWasOutOfSightJumps)
{
    static_cast<void>(draw(0.1));
    clock.advance(3s);
    EXPECT_DOUBLE_EQ(draw(0.9), 0.9);
}

TEST_F(BarGlidesTest, JumpsWhereNothingMayMove)
{
    static_cast<void>(draw(0.1));
    EXPECT_DOUBLE_EQ(glides.value(bar, 0.9, 0ms), 0.9);
    EXPECT_FALSE(glides.isGliding(bar));
}

TEST_F(BarGlidesTest, ForgetsBarsThatAreGone)
{
    static_cast<void>(draw(0.1));
    static_cast<void>(draw(0.2));
    clock.advance(3s);
    glides.forgetUnseen();
    EXPECT_FALSE(glides.isGliding(bar));
}

} // namespace
} // namespace vormel

#include "platform/async/Lifetime.h"

#include <gtest/gtest.h>

#include <optional>

namespace vormel {
namespace {

TEST(Lifetime, AWatchTellsWhetherTheOwnerIsStillThere)
{
    std::optional<Lifetime> lifetime(std::in_place);
    const Lifetime::Watch watch = lifetime->watch();
    const Lifetime::Watch copy = watch;
    EXPECT_FALSE(watch.isOver());
    lifetime.reset();
    EXPECT_TRUE(watch.isOver());
    EXPECT_TRUE(copy.isOver());
}

TEST(Lifetime, EachOwnerHasItsOwn)
{
    std::optional<Lifetime> first(std::in_place);
    const Lifetime second;
    const Lifetime::Watch watch = second.watch();
    first.reset();
    EXPECT_FALSE(watch.isOver());
}

} // namespace
} // namespace vormel

#include "platform/process/OpenFileLimit.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>

namespace vormel {
namespace {

TEST(OpenFileLimit, IsRaisedAsFarAsTheSystemAllows)
{
    constexpr rlim_t enough = 65536;
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    rlimit few = before;
    few.rlim_cur = std::min<rlim_t>(before.rlim_max, 1024);
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
    raiseOpenFileLimit();
    rlimit after{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &after), 0);
    EXPECT_EQ(after.rlim_cur, std::min(before.rlim_max, enough));
    EXPECT_EQ(after.rlim_max, before.rlim_max);
    ::setrlimit(RLIMIT_NOFILE, &before);
}

} // namespace
} // namespace vormel

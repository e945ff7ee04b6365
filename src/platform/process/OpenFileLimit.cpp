#include "platform/process/OpenFileLimit.h"

#include <sys/resource.h>

#include <algorithm>

namespace vormel {

void raiseOpenFileLimit()
{
    constexpr rlim_t enough = 65536;
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= enough)
        return;
    limit.rlim_cur = std::min(limit.rlim_max, enough);
    ::setrlimit(RLIMIT_NOFILE, &limit); // without it, fewer connections are made at once
}

} // namespace vormel

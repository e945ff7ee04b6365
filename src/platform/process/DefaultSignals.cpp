#include "platform/process/DefaultSignals.h"

#include <array>
#include <csignal>

namespace vormel {

void restoreDefaultSignals()
{
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    for (const int signal : std::array{SIGPIPE, SIGINT, SIGTERM, SIGHUP})
        ::signal(signal, SIG_DFL);
}

} // namespace vormel

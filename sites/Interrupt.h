#pragma once

#include "sites/FileDescriptor.h"

#include <atomic>
#include <chrono>
#include <optional>

namespace vormel::sites {

// Lets other threads wake the one thread that waits on a socket: to stop for good, or to release a stalled answer.
class Interrupt
{
public:
    enum class Wake
    {
        ready,
        timedOut,
        stopped,
        woken, // by a release or a signal
    };

    Interrupt(); // throws std::system_error

    // From any thread.
    void stop();
    void release();
    [[nodiscard]] bool isStopped() const { return m_stopped; }
    [[nodiscard]] int releases() const { return m_releases; }

    // Waits until `events` (as of poll) or an error show at `socket`; without a timeout as long as it takes.
    [[nodiscard]] Wake wait(int socket, short events, std::optional<std::chrono::nanoseconds> timeout = {});

private:
    void wake();

    FileDescriptor m_signal;
    std::atomic<bool> m_stopped{false};
    std::atomic<int> m_releases{0};
};

} // namespace vormel::sites

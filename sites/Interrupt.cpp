#include "sites/Interrupt.h"

#include <sys/eventfd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <poll.h>
#include <system_error>

namespace vormel::sites {

namespace {

timespec asTimespec(std::chrono::nanoseconds time)
{
    const auto whole = std::chrono::floor<std::chrono::seconds>(time);
    return {.tv_sec = whole.count(), .tv_nsec = (time - whole).count()};
}

} // namespace

Interrupt::Interrupt()
    : m_signal(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (!m_signal.isOpen())
        throw std::system_error(errno, std::generic_category(), "eventfd");
}

void Interrupt::stop()
{
    m_stopped = true;
    wake();
}

void Interrupt::release()
{
    ++m_releases;
    wake();
}

void Interrupt::wake()
{
    // A full counter has woken the thread already, so the result does not matter.
    eventfd_write(m_signal.get(), 1);
}

Interrupt::Wake Interrupt::wait(int socket, short events, std::optional<std::chrono::nanoseconds> timeout)
{
    std::array<pollfd, 2> watched{pollfd{.fd = socket, .events = events, .revents = 0},
                                  pollfd{.fd = m_signal.get(), .events = POLLIN, .revents = 0}};
    const auto limit = asTimespec(timeout.value_or(std::chrono::nanoseconds(0)));
    const auto count = ppoll(watched.data(), watched.size(), timeout ? &limit : nullptr, nullptr);
    if (m_stopped)
        return Wake::stopped;
    if (count == 0)
        return Wake::timedOut;
    if (count > 0 && watched[1].revents == 0)
        return Wake::ready;
    eventfd_t ignored = 0;
    eventfd_read(m_signal.get(), &ignored);
    return Wake::woken;
}

} // namespace vormel::sites

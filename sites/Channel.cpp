#include "sites/Channel.h"

#include <openssl/err.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <linux/sockios.h>
#include <poll.h>
#include <utility>

namespace vormel::sites {

namespace {

using std::chrono::steady_clock;
using Wake = Interrupt::Wake;

} // namespace

Channel::Channel(FileDescriptor socket, const TlsContext* tls, Interrupt& interrupt)
    : m_interrupt(interrupt)
    , m_socket(std::move(socket))
    , m_session(tls ? tls->session(m_socket.get()) : nullptr)
{}

std::size_t Channel::read(std::span<char> out)
{
    return untilMoved([&] { return tryRead(out); });
}

bool Channel::write(std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto moved = untilMoved([&] { return tryWrite(bytes); });
        if (moved == 0)
            return false;
        bytes.remove_prefix(moved);
    }
    return m_socket.isOpen();
}

template <typename Attempt>
std::size_t Channel::untilMoved(Attempt attempt)
{
    while (m_socket.isOpen() && !m_interrupt.isStopped()) {
        const Step step = attempt();
        if (step.moved > 0)
            return step.moved;
        if (step.awaited == 0)
            m_socket.close();
        else
            static_cast<void>(m_interrupt.wait(m_socket.get(), step.awaited));
    }
    return 0;
}

Channel::Step Channel::tryRead(std::span<char> out)
{
    if (m_session) {
        ERR_clear_error();
        std::size_t moved = 0;
        const int result = SSL_read_ex(m_session.get(), out.data(), out.size(), &moved);
        return tlsStep(result, moved);
    }
    auto step = plainStep(::recv(m_socket.get(), out.data(), out.size(), 0));
    if (step.awaited != 0)
        step.awaited = POLLIN;
    return step;
}

Channel::Step Channel::tryWrite(std::string_view bytes)
{
    if (m_session) {
        ERR_clear_error();
        std::size_t moved = 0;
        const int result = SSL_write_ex(m_session.get(), bytes.data(), bytes.size(), &moved);
        return tlsStep(result, moved);
    }
    return plainStep(::send(m_socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL));
}

Channel::Step Channel::plainStep(ssize_t result) const
{
    if (result > 0)
        return {.moved = static_cast<std::size_t>(result)};
    const bool later = result < 0 && (errno == EAGAIN || errno == EINTR);
    return {.awaited = static_cast<short>(later ? POLLOUT : 0)};
}

Channel::Step Channel::tlsStep(int result, std::size_t moved) const
{
    if (result == 1)
        return {.moved = moved};
    switch (SSL_get_error(m_session.get(), result)) {
    case SSL_ERROR_WANT_READ:
        return {.awaited = POLLIN};
    case SSL_ERROR_WANT_WRITE:
        return {.awaited = POLLOUT};
    default:
        return {};
    }
}

bool Channel::pause(std::chrono::nanoseconds time)
{
    const auto end = steady_clock::now() + time;
    while (m_socket.isOpen()) {
        const auto left = std::max<std::chrono::nanoseconds>(end - steady_clock::now(), std::chrono::nanoseconds(0));
        const auto wake = m_interrupt.wait(m_socket.get(), POLLRDHUP, left);
        if (wake != Wake::woken)
            return wake == Wake::timedOut;
    }
    return false;
}

bool Channel::awaitRelease(int seen)
{
    while (m_socket.isOpen()) {
        if (releases() != seen)
            return true;
        if (m_interrupt.wait(m_socket.get(), POLLRDHUP) != Wake::woken)
            return false;
    }
    return false;
}

void Channel::finish()
{
    if (!m_socket.isOpen() || m_interrupt.isStopped())
        return m_socket.close();
    if (m_session && SSL_is_init_finished(m_session.get()))
        SSL_shutdown(m_session.get());
    ::shutdown(m_socket.get(), SHUT_WR);
    discardIncoming();
    m_socket.close();
}

// Closing over unread bytes would reset the connection and could cost the client the end of the answer.
void Channel::discardIncoming()
{
    constexpr std::chrono::seconds patience(2);
    const auto end = steady_clock::now() + patience;
    std::array<char, 4096> ignored{};
    for (auto left = end - steady_clock::now(); left.count() > 0; left = end - steady_clock::now()) {
        const auto wake = m_interrupt.wait(m_socket.get(), POLLIN, left);
        if (wake == Wake::stopped || wake == Wake::timedOut)
            return;
        const auto count = ::recv(m_socket.get(), ignored.data(), ignored.size(), 0);
        if (count == 0 || (count < 0 && errno != EAGAIN))
            return;
    }
}

void Channel::reset()
{
    if (!m_socket.isOpen())
        return;
    drainSendQueue();
    const linger atOnce{.l_onoff = 1, .l_linger = 0};
    setsockopt(m_socket.get(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    m_socket.close();
}

// A reset throws away what is still queued, and the client shall see exactly the bytes that were written. The system
// has no event for an empty queue.
void Channel::drainSendQueue()
{
    int unsent = 0;
    while (ioctl(m_socket.get(), SIOCOUTQNSD, &unsent) == 0 && unsent > 0) {
        if (!pause(std::chrono::milliseconds(1)))
            return;
    }
}

} // namespace vormel::sites

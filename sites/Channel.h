#pragma once

#include "sites/FileDescriptor.h"
#include "sites/Interrupt.h"
#include "sites/TlsContext.h"

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <span>
#include <string_view>

namespace vormel::sites {

// One accepted connection as a stream of bytes, with or without TLS. One thread uses it; whatever it waits for ends
// at once when the interrupt is stopped. After a failure or an end the channel is closed and everything fails.
class Channel
{
public:
    // `tls` may be null; it and the interrupt must outlive the channel.
    Channel(FileDescriptor socket, const TlsContext* tls, Interrupt& interrupt);

    // The bytes at hand, at least one; 0 when the client is gone or the server stops.
    [[nodiscard]] std::size_t read(std::span<char> out);
    // Whether all was handed to the system.
    [[nodiscard]] bool write(std::string_view bytes);

    // Waits; false when the client is gone or the server stops meanwhile.
    [[nodiscard]] bool pause(std::chrono::nanoseconds time);
    // Waits for a release after the count of releases was `seen`; false as for pause().
    [[nodiscard]] bool awaitRelease(int seen);
    [[nodiscard]] int releases() const { return m_interrupt.releases(); }

    // Ends the stream in order (with TLS: close_notify too), so that the client gets all that was written.
    void finish();
    // Resets the connection once all that was written is on its way.
    void reset();

private:
    // One try to move bytes: it moved some, or has to wait for these events first, or (neither) the stream is over.
    struct Step
    {
        std::size_t moved = 0;
        short awaited = 0;
    };

    template <typename Attempt>
    [[nodiscard]] std::size_t untilMoved(Attempt attempt);
    [[nodiscard]] Step plainStep(ssize_t result) const;
    [[nodiscard]] Step tlsStep(int result, std::size_t moved) const;
    [[nodiscard]] Step tryRead(std::span<char> out);
    [[nodiscard]] Step tryWrite(std::string_view bytes);
    void discardIncoming();
    void drainSendQueue();

    Interrupt& m_interrupt;
    FileDescriptor m_socket;
    SslSession m_session;
};

} // namespace vormel::sites

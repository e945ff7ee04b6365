#pragma once

#include <QString>

#include <sys/types.h>
#include <sys/un.h>

#include <optional>

namespace vormel {

/// What a start of the program tells the one that runs, in one datagram. Its text comes along as a sealed file in
/// memory: a datagram alone holds little, and a stream might stop half-way. Any thread; nothing here waits.
struct InstanceMessage
{
    static constexpr qint64 maxTextBytes = 4LL * 1024 * 1024; ///< in UTF-8

    uid_t sender = 0;
    QString text; ///< empty also for one that is too long, or not sealed
};

/// False if nobody listens at the address, or the text is too long.
[[nodiscard]] bool sendInstanceMessage(int socket, const sockaddr_un& address, const QString& text);

/// The next one that waits at a socket with SO_PASSCRED; nothing if none does.
[[nodiscard]] std::optional<InstanceMessage> receiveInstanceMessage(int socket);

} // namespace vormel

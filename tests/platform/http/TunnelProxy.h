#pragma once

#include "platform/storage/FileDescriptor.h"

#include <cstdint>
#include <thread>

namespace vormel {

/// A proxy of 127.0.0.1 that makes tunnels to other ports of the machine ("CONNECT host:port"), one after the other, as
/// many as clients ask for.
class TunnelProxy
{
public:
    TunnelProxy();
    TunnelProxy(const TunnelProxy&) = delete;
    TunnelProxy& operator=(const TunnelProxy&) = delete;
    ~TunnelProxy();

    [[nodiscard]] std::uint16_t port() const { return m_port; }

private:
    void serve() const;
    void tunnel(int client) const;

    FileDescriptor m_listening;
    FileDescriptor m_stopping; ///< readable once it is to end
    std::uint16_t m_port = 0;
    std::thread m_thread; ///< last: it uses all the others
};

} // namespace vormel

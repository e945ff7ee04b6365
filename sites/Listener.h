#pragma once

#include "sites/FileDescriptor.h"
#include "sites/Interrupt.h"

#include <cstdint>

namespace vormel::sites {

// A TCP socket that listens on 127.0.0.1.
class Listener
{
public:
    explicit Listener(std::uint16_t port); // 0 takes a free one; throws std::system_error

    [[nodiscard]] std::uint16_t port() const { return m_port; }
    // The next connection; none once the interrupt is stopped. Its socket does not block.
    [[nodiscard]] FileDescriptor accept(Interrupt& interrupt) const;

private:
    FileDescriptor m_socket;
    std::uint16_t m_port = 0;
};

} // namespace vormel::sites

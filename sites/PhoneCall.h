#pragma once

#include "sites/FileDescriptor.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>

namespace vormel::sites {

// One client of a switchboard, put through to its server on a thread of its own until both have hung up. Destroying it
// cuts both lines.
class PhoneCall
{
public:
    // Gives the port of 127.0.0.1 for a place, 0 for none; called on the call's thread, once at most.
    using PortOf = std::function<std::uint16_t(const std::string& place)>;

    PhoneCall(FileDescriptor client, PortOf portOf); // throws std::system_error
    PhoneCall(const PhoneCall&) = delete;
    PhoneCall& operator=(const PhoneCall&) = delete;
    ~PhoneCall();

    [[nodiscard]] bool isOver() const { return m_isOver; }

private:
    void run(const PortOf& portOf);
    // The first bytes, with the place that they ask for; empty if there is none.
    [[nodiscard]] std::string listen(std::string& bytes) const;
    [[nodiscard]] bool dial(std::uint16_t port) const;
    void relay() const;

    // Open until the end, so that another thread may shut them down.
    const FileDescriptor m_client;
    const FileDescriptor m_server;
    std::atomic<bool> m_isOver{false};
    std::thread m_thread; // last: it uses all the others
};

} // namespace vormel::sites

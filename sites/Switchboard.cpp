#include "sites/Switchboard.h"

#include <csignal>
#include <string_view>
#include <system_error>
#include <utility>

namespace vormel::sites {

Switchboard::Switchboard()
    : m_listener(0)
{
    m_thread = std::thread([this] { acceptCalls(); });
}

Switchboard::~Switchboard()
{
    m_interrupt.stop();
    m_thread.join();
}

std::string Switchboard::resolverRules() const
{
    return "MAP * 127.0.0.1:" + std::to_string(port());
}

void Switchboard::lead(const Places& places)
{
    const std::lock_guard guard(m_mutex);
    for (const auto& [name, address] : places)
        m_places.insert_or_assign(name, address);
}

void Switchboard::forget(const Places& places)
{
    const std::lock_guard guard(m_mutex);
    for (const auto& [name, address] : places)
        m_places.erase(name);
}

std::vector<std::string> Switchboard::unknownPlaces() const
{
    const std::lock_guard guard(m_mutex);
    return m_unknown;
}

std::uint16_t Switchboard::portOf(const std::string& place)
{
    const std::lock_guard guard(m_mutex);
    const auto found = m_places.find(place);
    if (found == m_places.end()) {
        m_unknown.push_back(place);
        return 0;
    }
    return static_cast<std::uint16_t>(std::stoi(found->second.substr(found->second.rfind(':') + 1)));
}

void Switchboard::acceptCalls()
{
    // The program's signals are no business of these threads, which inherit the mask.
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, nullptr);
    while (true) {
        FileDescriptor client = m_listener.accept(m_interrupt);
        if (!client.isOpen())
            return;
        m_calls.remove_if([](const PhoneCall& call) { return call.isOver(); });
        try {
            m_calls.emplace_back(std::move(client), [this](const std::string& place) { return portOf(place); });
        } catch (const std::system_error&) {
            // Out of descriptors or threads: the client sees its connection end, and the others go on.
        }
    }
}

} // namespace vormel::sites

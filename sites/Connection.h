#pragma once

#include "sites/Activity.h"
#include "sites/Channel.h"
#include "sites/FileDescriptor.h"
#include "sites/Interrupt.h"
#include "sites/Request.h"
#include "sites/Routes.h"
#include "sites/TlsContext.h"

#include <atomic>
#include <memory>
#include <thread>

namespace vormel::sites {

// One accepted connection, served on a thread of its own until either side ends it. Destroying it ends it.
class Connection
{
public:
    // `tls` may be null; all of them must outlive the connection.
    Connection(FileDescriptor socket, const TlsContext* tls, Routes& routes, Activity& activity);
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection();

    // From any thread.
    void stop() { m_interrupt.stop(); }
    void release() { m_interrupt.release(); }
    [[nodiscard]] bool isOver() const { return m_over; }

private:
    void run();
    [[nodiscard]] bool answer(const Request& request);

    Routes& m_routes;
    Activity& m_activity;
    Interrupt m_interrupt;
    Channel m_channel;
    const std::unique_ptr<char[]> m_block; // to send from; only what is used costs memory
    std::atomic<bool> m_over{false};
    const int m_number;   // counts as open from here on, with all it needs at hand
    std::thread m_thread; // last: it uses all the others
};

} // namespace vormel::sites

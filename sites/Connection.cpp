#include "sites/Connection.h"

#include "sites/Reply.h"
#include "sites/ReplySender.h"
#include "sites/RequestReader.h"

#include <utility>

namespace vormel::sites {

namespace {

constexpr std::size_t blockBytes = 256 * 1024;

} // namespace

Connection::Connection(FileDescriptor socket, const TlsContext* tls, Routes& routes, Activity& activity)
    : m_routes(routes)
    , m_activity(activity)
    , m_channel(std::move(socket), tls, m_interrupt)
    , m_block(std::make_unique_for_overwrite<char[]>(blockBytes))
    , m_number(activity.openConnection())
    , m_thread([this] { run(); })
{}

Connection::~Connection()
{
    stop();
    m_thread.join();
}

void Connection::run()
{
    RequestReader reader(m_channel);
    while (auto request = reader.next()) {
        request->connection = m_number;
        if (!answer(*request))
            break;
    }
    m_channel.finish();
    m_activity.closeConnection();
    m_over = true;
}

bool Connection::answer(const Request& request)
{
    const auto match = m_routes.next(request);
    m_activity.record(request);
    const auto& plan = match.answer.plan();
    const auto reply = composeReply(*match.resource, plan, request);
    return ReplySender(m_channel, m_activity, plan, {m_block.get(), blockBytes}).send(reply, request.method != "HEAD");
}

} // namespace vormel::sites

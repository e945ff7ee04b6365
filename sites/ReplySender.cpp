#include "sites/ReplySender.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <string_view>

namespace vormel::sites {

ReplySender::ReplySender(Channel& channel, Activity& activity, const AnswerPlan& plan, std::span<char> block)
    : m_channel(channel)
    , m_activity(activity)
    , m_plan(plan)
    , m_block(block)
{}

bool ReplySender::send(const Reply& reply, bool withBody)
{
    if (m_plan.delay.count() > 0 && !m_channel.pause(m_plan.delay))
        return false;
    if (m_plan.headFault == HeadFault::closeBefore)
        return false;
    if (m_plan.headFault == HeadFault::stallBefore && !stall())
        return false;
    if (m_plan.raw)
        return m_channel.write(*m_plan.raw) && m_plan.surplus && sendSurplus();
    if (!sendHead(reply))
        return false;
    return (!withBody || sendBody(reply.body)) && reply.keepsConnection && sendSurplus();
}

bool ReplySender::sendHead(const Reply& reply)
{
    if (m_plan.headFault == HeadFault::cutInside)
        return m_channel.write(reply.head) && false;
    if (m_plan.headFault == HeadFault::endless)
        return m_channel.write(reply.head) && sendEndlessFields();
    return m_channel.write(reply.head + "\r\n");
}

bool ReplySender::sendBody(const Body& body)
{
    const auto size = body.size();
    if (m_plan.cut == Cut::nothing)
        return sendBytes(body, 0, size) && sendEnd();
    const auto point = std::clamp<std::int64_t>(m_plan.cutAfter, 0, size);
    return sendBytes(body, 0, point) && passCut() && sendBytes(body, point, size) && sendEnd();
}

bool ReplySender::sendBytes(const Body& body, std::int64_t from, std::int64_t to)
{
    const auto most = m_plan.dripBytes > 0 ? std::min(m_plan.dripBytes, std::ssize(m_block)) : std::ssize(m_block);
    while (from < to) {
        const auto count = std::min<std::int64_t>(most, to - from);
        const auto part = m_block.first(static_cast<std::size_t>(count));
        body.read(from, part);
        // Counted first, so that nobody can have received more than was counted.
        m_activity.addBodyBytes(count);
        if (!sendFramed({part.data(), part.size()})) {
            m_activity.addBodyBytes(-count);
            return false;
        }
        from += count;
        if (m_plan.dripBytes > 0 && from < to && !m_channel.pause(m_plan.dripInterval))
            return false;
    }
    return true;
}

bool ReplySender::sendFramed(std::string_view bytes)
{
    if (!isChunked())
        return m_channel.write(bytes);
    std::array<char, 24> size{};
    auto* end = std::to_chars(size.data(), size.data() + size.size() - 2, bytes.size(), 16).ptr;
    *end++ = '\r';
    *end++ = '\n';
    const std::string_view line(size.data(), static_cast<std::size_t>(end - size.data()));
    return m_channel.write(line) && m_channel.write(bytes) && m_channel.write("\r\n");
}

bool ReplySender::sendEnd()
{
    switch (m_plan.framing) {
    case Framing::length:
        return true;
    case Framing::untilClose:
    case Framing::chunkedWithoutEnd:
        return false;
    case Framing::chunked:
        return m_channel.write("0\r\n\r\n");
    case Framing::chunkedEndlessTrailers:
        return m_channel.write("0\r\n") && sendEndlessFields();
    }
    return false;
}

bool ReplySender::sendSurplus()
{
    if (!m_plan.surplus)
        return true;
    if (!m_channel.write(*m_plan.surplus))
        return false;
    m_activity.addBodyBytes(std::ssize(*m_plan.surplus));
    return true;
}

bool ReplySender::sendEndlessFields()
{
    std::int64_t number = 0;
    while (m_channel.write("X-More-" + std::to_string(++number) + ": " + std::string(1000, 'x') + "\r\n")) {
    }
    return false;
}

bool ReplySender::passCut()
{
    if (m_plan.cut == Cut::stall)
        return stall();
    if (m_plan.cut == Cut::reset)
        m_channel.reset();
    return false;
}

bool ReplySender::stall()
{
    // The count is taken first: a release between the announcement and the wait must not get lost.
    const auto seen = m_channel.releases();
    m_activity.addStalled(1);
    const bool released = m_channel.awaitRelease(seen);
    m_activity.addStalled(-1);
    return released;
}

bool ReplySender::isChunked() const
{
    return m_plan.framing != Framing::length && m_plan.framing != Framing::untilClose;
}

} // namespace vormel::sites

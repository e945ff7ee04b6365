#pragma once

#include "sites/Activity.h"
#include "sites/Answer.h"
#include "sites/Channel.h"
#include "sites/Reply.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vormel::sites {

// Sends one reply the way its plan wants it to go wrong.
class ReplySender
{
public:
    // All must outlive the sender. `block` is the memory to send from; its size is the most sent at once.
    ReplySender(Channel& channel, Activity& activity, const AnswerPlan& plan, std::span<char> block);

    // Whether the connection may carry another request; else it has to be finished, unless it is gone already.
    [[nodiscard]] bool send(const Reply& reply, bool withBody);

private:
    [[nodiscard]] bool sendHead(const Reply& reply);
    [[nodiscard]] bool sendBody(const Body& body);
    [[nodiscard]] bool sendBytes(const Body& body, std::int64_t from, std::int64_t to);
    [[nodiscard]] bool sendFramed(std::string_view bytes);
    [[nodiscard]] bool sendSurplus();
    [[nodiscard]] bool sendEnd();
    [[nodiscard]] bool sendEndlessFields();
    [[nodiscard]] bool passCut();
    [[nodiscard]] bool stall();
    [[nodiscard]] bool isChunked() const;

    Channel& m_channel;
    Activity& m_activity;
    const AnswerPlan& m_plan;
    std::span<char> m_block;
};

} // namespace vormel::sites

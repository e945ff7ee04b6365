#pragma once

#include "sites/Answer.h"
#include "sites/Body.h"
#include "sites/Request.h"
#include "sites/Resource.h"

#include <string>

namespace vormel::sites {

// An answer worked out for one request: the bytes to send, were nothing to go wrong on the way.
struct Reply
{
    std::string head; // without the blank line
    Body body;
    bool keepsConnection = true;
};

[[nodiscard]] Reply composeReply(const Resource& resource, const AnswerPlan& plan, const Request& request);

} // namespace vormel::sites

#pragma once

#include "sites/Answer.h"
#include "sites/Content.h"
#include "sites/Header.h"
#include "sites/Request.h"

#include <functional>
#include <string>
#include <vector>

namespace vormel::sites {

// What a server has at a path.
struct Resource
{
    Content content{};
    std::string contentType = "application/octet-stream";
    std::vector<Header> headers{};
    std::string etag{};         // with its quotes; empty sends none
    std::string lastModified{}; // an HTTP date; empty sends none

    // The n-th request gets the n-th answer, further ones the last; none means Answer::file().
    std::vector<Answer> answers{};
    // Decides instead of `answers` if set. Called on the connections' threads, several at once.
    std::function<Answer(const Request&)> respond{};
};

} // namespace vormel::sites

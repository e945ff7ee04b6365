#pragma once

#include "sites/Answer.h"
#include "sites/Request.h"
#include "sites/Resource.h"

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace vormel::sites {

// What a server has and how it answers next. Used from any thread.
class Routes
{
public:
    struct Match
    {
        std::shared_ptr<const Resource> resource;
        Answer answer;
    };

    void serve(std::string path, Resource resource);
    void setAnswers(const std::string& path, std::vector<Answer> answers); // throws std::out_of_range
    // The due answer, which counts as given; 404 for what is not served.
    [[nodiscard]] Match next(const Request& request);

private:
    struct Route
    {
        std::shared_ptr<const Resource> resource;
        std::vector<Answer> answers;
        std::size_t given = 0;
    };

    [[nodiscard]] Route* find(const Request& request);
    [[nodiscard]] static Answer nextOf(Route& route);

    std::mutex m_mutex;
    std::map<std::string, Route, std::less<>> m_routes;
};

} // namespace vormel::sites

#include "sites/Routes.h"

#include <algorithm>
#include <utility>

namespace vormel::sites {

void Routes::serve(std::string path, Resource resource)
{
    Route route{.resource = std::make_shared<const Resource>(std::move(resource)), .answers = {}};
    route.answers = route.resource->answers;
    const std::scoped_lock lock(m_mutex);
    m_routes.insert_or_assign(std::move(path), std::move(route));
}

void Routes::setAnswers(const std::string& path, std::vector<Answer> answers)
{
    const std::scoped_lock lock(m_mutex);
    auto& route = m_routes.at(path);
    route.answers = std::move(answers);
    route.given = 0;
}

Routes::Match Routes::next(const Request& request)
{
    Match match;
    {
        const std::scoped_lock lock(m_mutex);
        auto* route = find(request);
        if (!route)
            return {.resource = std::make_shared<const Resource>(),
                    .answer = Answer::page(404, "<html><body>Not found</body></html>")};
        match = {.resource = route->resource, .answer = nextOf(*route)};
    }
    // Called without the lock: it is the test's code and may ask the server for something.
    if (match.resource->respond)
        match.answer = match.resource->respond(request);
    return match;
}

Routes::Route* Routes::find(const Request& request)
{
    auto found = m_routes.find(request.pathAndQuery());
    if (found == m_routes.end())
        found = m_routes.find(request.path());
    return found == m_routes.end() ? nullptr : &found->second;
}

Answer Routes::nextOf(Route& route)
{
    if (route.answers.empty())
        return Answer::file();
    return route.answers[std::min(route.given++, route.answers.size() - 1)];
}

} // namespace vormel::sites

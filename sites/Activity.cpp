#include "sites/Activity.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace vormel::sites {

void Activity::record(Request request)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_requests.push_back(std::move(request));
    }
    m_changed.notify_all();
}

std::vector<Request> Activity::requests() const
{
    const std::scoped_lock lock(m_mutex);
    return m_requests;
}

std::vector<Request> Activity::requests(std::string_view path) const
{
    const std::scoped_lock lock(m_mutex);
    std::vector<Request> found;
    std::copy_if(m_requests.begin(), m_requests.end(), std::back_inserter(found),
                 [path](const Request& request) { return isFor(request, path); });
    return found;
}

bool Activity::waitForRequests(std::string_view path, std::size_t count, std::chrono::milliseconds time) const
{
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, time, [&] {
        const auto isMatch = [path](const Request& request) { return isFor(request, path); };
        return static_cast<std::size_t>(std::count_if(m_requests.begin(), m_requests.end(), isMatch)) >= count;
    });
}

void Activity::addStalled(int change)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_stalled += change;
    }
    m_changed.notify_all();
}

bool Activity::waitForStalled(int count, std::chrono::milliseconds time) const
{
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, time, [&] { return m_stalled >= count; });
}

int Activity::openConnection()
{
    // Only the accepting thread gets here, so the most cannot be overtaken meanwhile.
    m_mostOpen = std::max(m_mostOpen.load(), ++m_open);
    return ++m_accepted;
}

bool isFor(const Request& request, std::string_view path)
{
    return request.path() == path || request.pathAndQuery() == path;
}

} // namespace vormel::sites

#pragma once

#include "sites/Request.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string_view>
#include <vector>

namespace vormel::sites {

// What goes on at a server: the requests so far and its counters. Used from any thread.
class Activity
{
public:
    void record(Request request);
    [[nodiscard]] std::vector<Request> requests() const;
    [[nodiscard]] std::vector<Request> requests(std::string_view path) const;
    [[nodiscard]] bool waitForRequests(std::string_view path, std::size_t count, std::chrono::milliseconds time) const;

    void addStalled(int change);
    [[nodiscard]] bool waitForStalled(int count, std::chrono::milliseconds time) const;

    void addBodyBytes(std::int64_t count) { m_bodyBytes += count; }
    [[nodiscard]] std::int64_t bodyBytes() const { return m_bodyBytes; }

    // The number of the new connection, from 1.
    [[nodiscard]] int openConnection();
    void closeConnection() { --m_open; }
    [[nodiscard]] int accepted() const { return m_accepted; }
    [[nodiscard]] int open() const { return m_open; }
    [[nodiscard]] int mostOpen() const { return m_mostOpen; }

private:
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    std::vector<Request> m_requests;
    int m_stalled = 0;

    std::atomic<std::int64_t> m_bodyBytes{0};
    std::atomic<int> m_accepted{0};
    std::atomic<int> m_open{0};
    std::atomic<int> m_mostOpen{0};
};

// Whether a request is for a path: given with its query it has to match that too.
[[nodiscard]] bool isFor(const Request& request, std::string_view path);

} // namespace vormel::sites

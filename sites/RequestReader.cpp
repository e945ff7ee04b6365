#include "sites/RequestReader.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace vormel::sites {

namespace {

constexpr std::size_t sizeLimit = 64 * 1024 * 1024;
constexpr std::string_view lineEnd = "\r\n";

std::optional<std::size_t> parseCount(std::string_view digits, int base)
{
    std::size_t value = 0;
    const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
    if (error != std::errc() || value > sizeLimit)
        return std::nullopt;
    return value;
}

std::string_view trimmed(std::string_view text)
{
    const auto first = std::min(text.find_first_not_of(" \t"), text.size());
    const auto last = text.find_last_not_of(" \t");
    return last == std::string_view::npos ? std::string_view() : text.substr(first, last - first + 1);
}

std::string_view takeLine(std::string_view& text)
{
    const auto end = text.find(lineEnd);
    const auto line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + lineEnd.size());
    return line;
}

bool parseRequestLine(std::string_view line, Request& request)
{
    const auto first = line.find(' ');
    const auto last = line.rfind(' ');
    if (first == std::string_view::npos || first == last)
        return false;
    request.method = line.substr(0, first);
    request.target = line.substr(first + 1, last - first - 1);
    request.version = line.substr(last + 1);
    return request.version.starts_with("HTTP/1.");
}

std::optional<Request> parseHead(std::string_view head)
{
    Request request;
    if (!parseRequestLine(takeLine(head), request))
        return std::nullopt;
    while (!head.empty()) {
        const auto line = takeLine(head);
        const auto colon = line.find(':');
        if (colon == std::string_view::npos)
            return std::nullopt;
        request.headers.push_back({std::string(line.substr(0, colon)), std::string(trimmed(line.substr(colon + 1)))});
    }
    return request;
}

} // namespace

RequestReader::RequestReader(Channel& channel)
    : m_channel(channel)
{}

std::optional<Request> RequestReader::next()
{
    const auto head = takeUntil("\r\n\r\n");
    auto request = head ? parseHead(*head) : std::nullopt;
    if (!request || !readBody(*request))
        return std::nullopt;
    request->time = std::chrono::steady_clock::now();
    return request;
}

bool RequestReader::readBody(Request& request)
{
    const auto coding = request.header("Transfer-Encoding");
    const auto length = request.header("Content-Length");
    if (!coding && !length)
        return true;
    if (request.header("Expect") && !m_channel.write("HTTP/1.1 100 Continue\r\n\r\n"))
        return false;
    if (coding)
        return readChunks(request.body);
    const auto count = parseCount(*length, 10);
    auto body = count ? take(*count) : std::nullopt;
    request.body = body.value_or("");
    return body.has_value();
}

bool RequestReader::readChunks(std::string& body)
{
    while (const auto line = takeUntil(lineEnd)) {
        const auto count = parseCount(*line, 16);
        const auto chunk = count ? take(*count) : std::nullopt;
        const auto end = chunk ? takeUntil(lineEnd) : std::nullopt;
        if (!end || !end->empty() || body.size() + chunk->size() > sizeLimit)
            return false;
        if (chunk->empty())
            return true;
        body += *chunk;
    }
    return false;
}

std::optional<std::string> RequestReader::takeUntil(std::string_view end)
{
    auto found = m_buffer.find(end);
    while (found == std::string::npos) {
        const auto searched = m_buffer.size() - std::min(m_buffer.size(), end.size() - 1);
        if (!fetchMore())
            return std::nullopt;
        found = m_buffer.find(end, searched);
    }
    auto taken = m_buffer.substr(0, found);
    m_buffer.erase(0, found + end.size());
    return taken;
}

std::optional<std::string> RequestReader::take(std::size_t count)
{
    while (m_buffer.size() < count) {
        if (!fetchMore())
            return std::nullopt;
    }
    auto taken = m_buffer.substr(0, count);
    m_buffer.erase(0, count);
    return taken;
}

bool RequestReader::fetchMore()
{
    std::array<char, 16 * 1024> block{};
    const auto count = m_buffer.size() > sizeLimit ? 0 : m_channel.read(block);
    m_buffer.append(block.data(), count);
    return count > 0;
}

} // namespace vormel::sites

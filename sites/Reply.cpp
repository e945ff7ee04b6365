#include "sites/Reply.h"

#include "sites/ByteRange.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace vormel::sites {

namespace {

constexpr std::string_view boundary = "0a1b2c3d4e5f-part";

std::string_view reasonOf(int status)
{
    static constexpr std::array reasons{
        std::pair{200, "OK"},
        std::pair{204, "No Content"},
        std::pair{206, "Partial Content"},
        std::pair{301, "Moved Permanently"},
        std::pair{302, "Found"},
        std::pair{303, "See Other"},
        std::pair{304, "Not Modified"},
        std::pair{307, "Temporary Redirect"},
        std::pair{308, "Permanent Redirect"},
        std::pair{401, "Unauthorized"},
        std::pair{403, "Forbidden"},
        std::pair{404, "Not Found"},
        std::pair{410, "Gone"},
        std::pair{416, "Range Not Satisfiable"},
        std::pair{429, "Too Many Requests"},
        std::pair{500, "Internal Server Error"},
        std::pair{503, "Service Unavailable"},
    };
    const auto* found =
        std::find_if(reasons.begin(), reasons.end(), [status](const auto& entry) { return entry.first == status; });
    return found == reasons.end() ? "Answer" : found->second;
}

bool isBodiless(int status)
{
    return status < 200 || status == 204 || status == 304;
}

class Composer
{
public:
    Composer(const Resource& resource, const AnswerPlan& plan, const Request& request)
        : m_resource(resource)
        , m_plan(plan)
        , m_request(request)
        , m_etag(plan.etag.value_or(resource.etag))
        , m_lastModified(plan.lastModified.value_or(resource.lastModified))
    {}

    Reply compose()
    {
        chooseBody();
        if (m_plan.multipart && m_status == 206)
            wrapAsMultipart();
        describeContent();
        describeRange();
        describeLength();
        applyChosenHeaders();
        return {.head = head(), .body = std::move(m_body), .keepsConnection = m_keepsConnection};
    }

private:
    void chooseBody();
    void chooseFilePart(const ByteRange& range);
    [[nodiscard]] ByteRange askedRange() const;
    [[nodiscard]] bool ifRangeHolds() const;
    void wrapAsMultipart();
    void describeContent();
    void describeRange();
    void describeLength();
    void applyChosenHeaders();
    [[nodiscard]] bool wantsClose() const;
    [[nodiscard]] std::string contentRange() const;
    [[nodiscard]] std::string contentType() const;
    [[nodiscard]] std::string head() const;
    void add(std::string name, std::string value) { m_headers.push_back({std::move(name), std::move(value)}); }
    [[nodiscard]] bool has(std::string_view name) const;
    void drop(std::string_view name);

    const Resource& m_resource;
    const AnswerPlan& m_plan;
    const Request& m_request;
    const std::string m_etag;
    const std::string m_lastModified;

    int m_status = 200;
    std::int64_t m_firstByte = 0; // offset that a Content-Range tells
    std::vector<Header> m_headers;
    Body m_body;
    bool m_keepsConnection = true;
};

void Composer::chooseBody()
{
    const auto range = askedRange();
    if (m_plan.page) {
        m_body = {.content = *m_plan.page, .length = m_plan.page->size()};
        m_firstByte = range.first;
    } else {
        chooseFilePart(m_plan.honoursRange && ifRangeHolds() ? range : ByteRange{});
    }
    m_status = m_plan.status.value_or(m_status);
    if (isBodiless(m_status))
        m_body = {};
}

void Composer::chooseFilePart(const ByteRange& range)
{
    const auto size = m_resource.content.size();
    if (range.kind == ByteRange::Kind::unsatisfiable) {
        m_status = 416;
        return;
    }
    if (range.kind == ByteRange::Kind::none) {
        m_body = {.content = m_resource.content, .length = size};
        return;
    }
    m_status = 206;
    m_firstByte = std::clamp<std::int64_t>(range.first + m_plan.shift, 0, range.last);
    m_body = {.content = m_resource.content, .offset = m_firstByte, .length = range.last - m_firstByte + 1};
}

ByteRange Composer::askedRange() const
{
    return parseByteRange(m_request.header("Range").value_or(""), m_resource.content.size());
}

bool Composer::ifRangeHolds() const
{
    const auto condition = m_request.header("If-Range");
    if (!condition)
        return true;
    return !condition->empty() && (*condition == m_etag || *condition == m_lastModified);
}

void Composer::wrapAsMultipart()
{
    const auto line = std::string("--").append(boundary);
    m_body.prefix = "\r\n" + line + "\r\nContent-Type: " + m_resource.contentType +
                    "\r\nContent-Range: " + contentRange() + "\r\n\r\n";
    m_body.suffix = "\r\n" + line + "--\r\n";
}

void Composer::describeContent()
{
    if (!isBodiless(m_status))
        add("Content-Type", contentType());
    if (!m_plan.page && m_plan.honoursRange)
        add("Accept-Ranges", "bytes");
    if (!m_etag.empty())
        add("ETag", m_etag);
    if (!m_lastModified.empty())
        add("Last-Modified", m_lastModified);
    m_headers.insert(m_headers.end(), m_resource.headers.begin(), m_resource.headers.end());
}

std::string Composer::contentType() const
{
    if (m_plan.multipart && m_status == 206)
        return std::string("multipart/byteranges; boundary=").append(boundary);
    return m_plan.contentType.value_or(m_resource.contentType);
}

void Composer::describeRange()
{
    if (m_plan.contentRange)
        add("Content-Range", *m_plan.contentRange);
    else if (m_status == 416 && (!m_plan.page || m_plan.rangeRefused))
        add("Content-Range", "bytes */" + std::to_string(m_plan.total.value_or(m_resource.content.size())));
    else if (m_status == 206 && !m_plan.multipart)
        add("Content-Range", contentRange());
}

std::string Composer::contentRange() const
{
    const auto total = m_plan.unknownTotal ? "*" : std::to_string(m_plan.total.value_or(m_resource.content.size()));
    const auto last = m_firstByte + m_body.length - 1;
    return "bytes " + std::to_string(m_firstByte) + "-" + std::to_string(last) + "/" + total;
}

void Composer::describeLength()
{
    const bool wrongLength = m_plan.contentLength || m_plan.contentLengthOff != 0;
    m_keepsConnection = !wantsClose() && !wrongLength;
    if (isBodiless(m_status) && !wrongLength)
        return;
    if (m_plan.framing == Framing::length) {
        const auto length = std::to_string(m_body.size() + m_plan.contentLengthOff);
        add("Content-Length", m_plan.contentLength.value_or(length));
    } else if (m_plan.framing != Framing::untilClose) {
        add("Transfer-Encoding", "chunked");
    }
}

bool Composer::wantsClose() const
{
    return m_plan.closing || m_plan.framing == Framing::untilClose || m_request.version == "HTTP/1.0" ||
           sameHeaderName(m_request.header("Connection").value_or(""), "close");
}

void Composer::applyChosenHeaders()
{
    if (wantsClose())
        add("Connection", "close");
    for (const auto& header : m_plan.headers)
        drop(header.name);
    for (const auto& name : m_plan.leftOut)
        drop(name);
    m_headers.insert(m_headers.end(), m_plan.headers.begin(), m_plan.headers.end());
    // A body whose end nothing tells would keep the client waiting.
    m_keepsConnection = m_keepsConnection && (m_body.size() == 0 || has("Content-Length") || has("Transfer-Encoding"));
}

bool Composer::has(std::string_view name) const
{
    return std::any_of(m_headers.begin(), m_headers.end(),
                       [name](const Header& header) { return sameHeaderName(header.name, name); });
}

void Composer::drop(std::string_view name)
{
    std::erase_if(m_headers, [name](const Header& header) { return sameHeaderName(header.name, name); });
}

std::string Composer::head() const
{
    auto text =
        m_plan.statusLine.value_or("HTTP/1.1 " + std::to_string(m_status) + " " + std::string(reasonOf(m_status))) +
        "\r\n";
    for (const auto& header : m_headers)
        text.append(header.name).append(": ").append(header.value).append("\r\n");
    return text;
}

} // namespace

Reply composeReply(const Resource& resource, const AnswerPlan& plan, const Request& request)
{
    return Composer(resource, plan, request).compose();
}

} // namespace vormel::sites

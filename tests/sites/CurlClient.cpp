#include "CurlClient.h"

#include <algorithm>
#include <utility>

namespace vormel::sites {

namespace {

std::size_t takeBody(char* bytes, std::size_t size, std::size_t count, void* target)
{
    static_cast<Fetched*>(target)->body.append(bytes, size * count);
    return size * count;
}

std::size_t takeHeader(char* bytes, std::size_t size, std::size_t count, void* target)
{
    auto& headers = static_cast<Fetched*>(target)->headers;
    const std::string_view line(bytes, size * count);
    const auto colon = line.find(": ");
    if (line.starts_with("HTTP/"))
        headers.clear();
    else if (colon != std::string_view::npos)
        headers.push_back({std::string(line.substr(0, colon)), std::string(line.substr(colon + 2))});
    if (!headers.empty() && headers.back().value.ends_with("\r\n"))
        headers.back().value.resize(headers.back().value.size() - 2);
    return size * count;
}

} // namespace

std::optional<std::string> Fetched::header(std::string_view name) const
{
    const auto found = std::find_if(headers.begin(), headers.end(),
                                    [name](const Header& header) { return sameHeaderName(header.name, name); });
    return found == headers.end() ? std::nullopt : std::optional(found->value);
}

CurlClient::CurlClient()
    : m_handle(curl_easy_init())
{
    curl_easy_setopt(m_handle.get(), CURLOPT_WRITEFUNCTION, takeBody);
    curl_easy_setopt(m_handle.get(), CURLOPT_HEADERFUNCTION, takeHeader);
    curl_easy_setopt(m_handle.get(), CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(m_handle.get(), CURLOPT_TIMEOUT, 5L);
    curl_easy_setopt(m_handle.get(), CURLOPT_NOPROXY, "*");
}

void CurlClient::followRedirects(long most)
{
    curl_easy_setopt(m_handle.get(), CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(m_handle.get(), CURLOPT_MAXREDIRS, most);
    curl_easy_setopt(m_handle.get(), CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
}

void CurlClient::setHeader(const std::string& line)
{
    m_headers.reset(curl_slist_append(m_headers.release(), line.c_str()));
    curl_easy_setopt(m_handle.get(), CURLOPT_HTTPHEADER, m_headers.get());
}

void CurlClient::resolveLocally(const std::string& host, int port)
{
    const auto entry = host + ":" + std::to_string(port) + ":127.0.0.1";
    m_resolved.reset(curl_slist_append(m_resolved.release(), entry.c_str()));
    curl_easy_setopt(m_handle.get(), CURLOPT_RESOLVE, m_resolved.get());
}

void CurlClient::keepCookies()
{
    curl_easy_setopt(m_handle.get(), CURLOPT_COOKIEFILE, "");
}

void CurlClient::connectTo(const std::map<std::string, std::string>& places)
{
    for (const auto& [name, address] : places)
        m_places.reset(curl_slist_append(m_places.release(), (name + ":" + address).c_str()));
    curl_easy_setopt(m_handle.get(), CURLOPT_CONNECT_TO, m_places.get());
}

Fetched CurlClient::fetch(const std::string& url)
{
    Fetched fetched;
    auto* handle = m_handle.get();
    curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &fetched);
    curl_easy_setopt(handle, CURLOPT_HEADERDATA, &fetched);
    curl_easy_setopt(handle, CURLOPT_RANGE, m_range.empty() ? nullptr : m_range.c_str());
    if (!m_authority.empty())
        curl_easy_setopt(handle, CURLOPT_CAINFO, m_authority.c_str());
    const auto post = std::exchange(m_post, std::nullopt);
    curl_easy_setopt(handle, CURLOPT_HTTPGET, 1L);
    if (post) {
        curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE, static_cast<long>(post->size()));
        curl_easy_setopt(handle, CURLOPT_POSTFIELDS, post->c_str());
    }
    fetched.code = curl_easy_perform(handle);
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &fetched.status);
    curl_easy_getinfo(handle, CURLINFO_NUM_CONNECTS, &fetched.connectionsMade);
    curl_easy_getinfo(handle, CURLINFO_REDIRECT_COUNT, &fetched.redirects);
    return fetched;
}

} // namespace vormel::sites

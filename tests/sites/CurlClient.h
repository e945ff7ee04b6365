#pragma once

#include "sites/Header.h"

#include <curl/curl.h>

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vormel::sites {

struct Fetched
{
    CURLcode code = CURLE_OK;
    long status = 0;
    std::vector<Header> headers; // of the last answer
    std::string body;
    long connectionsMade = 0;
    long redirects = 0;

    [[nodiscard]] std::optional<std::string> header(std::string_view name) const;
};

// Fetches with libcurl; one client keeps its connections from fetch to fetch.
class CurlClient
{
public:
    CurlClient();

    void trust(std::filesystem::path authority) { m_authority = std::move(authority); }
    void followRedirects(long most);
    // "first-last" as libcurl likes it; empty for none.
    void setRange(std::string range) { m_range = std::move(range); }
    void setHeader(const std::string& line);
    // The next fetch sends this body.
    void post(std::string body) { m_post = std::move(body); }
    // Keeps cookies from fetch to fetch.
    void keepCookies();
    // Connects to "127.0.0.1:port" for "name:port", as stand-ins tell.
    void connectTo(const std::map<std::string, std::string>& places);
    // Has a host name at this port mean 127.0.0.1.
    void resolveLocally(const std::string& host, int port);
    [[nodiscard]] Fetched fetch(const std::string& url);

private:
    struct Deleter
    {
        void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
        void operator()(curl_slist* list) const { curl_slist_free_all(list); }
    };

    std::unique_ptr<CURL, Deleter> m_handle;
    std::unique_ptr<curl_slist, Deleter> m_headers;
    std::unique_ptr<curl_slist, Deleter> m_resolved;
    std::unique_ptr<curl_slist, Deleter> m_places;
    std::filesystem::path m_authority;
    std::string m_range;
    std::optional<std::string> m_post;
};

} // namespace vormel::sites

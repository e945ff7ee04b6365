#pragma once

#include <QByteArrayList>

#include <curl/curl.h>

#include <array>
#include <memory>
#include <mutex>

namespace vormel {

/// Cookies that the transfers of one session share. Any thread.
class CookieStore
{
public:
    CookieStore();
    CookieStore(const CookieStore&) = delete;
    CookieStore& operator=(const CookieStore&) = delete;
    ~CookieStore();

    /// One line for each cookie: domain, subdomains TRUE or FALSE, path, secure TRUE or FALSE, expiry in seconds since
    /// 1970 (0: end of the session), name, value; separated by tabs.
    [[nodiscard]] QByteArrayList cookies() const;
    /// Takes such a line, or a whole "Set-Cookie: ..." header.
    void add(const QByteArray& cookie);
    /// Takes away the cookie that the line names by domain, path and name.
    void remove(const QByteArray& line);
    void clear();

    /// Makes a handle of the HTTP library use this store; the store must outlive that use.
    void attachTo(CURL* handle) const;

private:
    struct ShareCleanup
    {
        void operator()(CURLSH* share) const { curl_share_cleanup(share); }
    };
    struct HandleCleanup
    {
        void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
    };

    static void lock(CURL* handle, curl_lock_data data, curl_lock_access access, void* store);
    static void unlock(CURL* handle, curl_lock_data data, void* store);
    void command(const QByteArray& text);

    mutable std::array<std::mutex, CURL_LOCK_DATA_LAST> m_locks;
    mutable std::mutex m_handleLock;
    std::unique_ptr<CURLSH, ShareCleanup> m_share;
    std::unique_ptr<CURL, HandleCleanup> m_handle;
};

} // namespace vormel

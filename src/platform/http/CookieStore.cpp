#include "platform/http/CookieStore.h"

#include <QDateTime>

namespace vormel {

namespace {

/// The library itself lists what is over until it has something to send.
bool isOver(const QByteArray& line)
{
    const qint64 expiry = line.split('\t').value(4).toLongLong();
    return expiry != 0 && expiry < QDateTime::currentSecsSinceEpoch();
}

} // namespace

CookieStore::CookieStore()
    : m_share(curl_share_init())
    , m_handle(curl_easy_init())
{
    curl_share_setopt(m_share.get(), CURLSHOPT_USERDATA, this);
    curl_share_setopt(m_share.get(), CURLSHOPT_LOCKFUNC, &CookieStore::lock);
    curl_share_setopt(m_share.get(), CURLSHOPT_UNLOCKFUNC, &CookieStore::unlock);
    curl_share_setopt(m_share.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_COOKIE);
    attachTo(m_handle.get());
}

CookieStore::~CookieStore()
{
    // The share may only go when no handle uses it any more.
    m_handle.reset();
}

void CookieStore::attachTo(CURL* handle) const
{
    curl_easy_setopt(handle, CURLOPT_SHARE, m_share.get());
    // An empty file name turns the cookie engine on and reads nothing.
    curl_easy_setopt(handle, CURLOPT_COOKIEFILE, "");
}

QByteArrayList CookieStore::cookies() const
{
    const std::lock_guard guard(m_handleLock);
    curl_slist* list = nullptr;
    curl_easy_getinfo(m_handle.get(), CURLINFO_COOKIELIST, &list);
    const std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> owner(list, &curl_slist_free_all);
    QByteArrayList lines;
    for (const curl_slist* entry = list; entry; entry = entry->next) {
        const QByteArray line = entry->data;
        if (!isOver(line))
            lines.append(line);
    }
    return lines;
}

void CookieStore::add(const QByteArray& cookie)
{
    command(cookie);
}

void CookieStore::remove(const QByteArray& line)
{
    QByteArrayList fields = line.split('\t');
    if (fields.size() < 7)
        return;
    // One that is long over takes the place of what has its name, and goes at once.
    fields[4] = "1";
    command(fields.join('\t'));
}

void CookieStore::clear()
{
    command("ALL");
}

void CookieStore::command(const QByteArray& text)
{
    const std::lock_guard guard(m_handleLock);
    curl_easy_setopt(m_handle.get(), CURLOPT_COOKIELIST, text.constData());
}

void CookieStore::lock(CURL* /*handle*/, curl_lock_data data, curl_lock_access /*access*/, void* store)
{
    static_cast<CookieStore*>(store)->m_locks[data].lock();
}

void CookieStore::unlock(CURL* /*handle*/, curl_lock_data data, void* store)
{
    static_cast<CookieStore*>(store)->m_locks[data].unlock();
}

} // namespace vormel

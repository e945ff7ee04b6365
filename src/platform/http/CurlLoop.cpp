#include "platform/http/CurlLoop.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

using namespace std::chrono_literals;

/// How long gathered bytes may wait for more while other transfers keep the network busy.
constexpr auto maxGathering = 100ms;
/// How often time-outs are looked at.
constexpr auto overdueCheck = 250ms;
constexpr auto idleWait = 60s;

int inMilliseconds(std::chrono::milliseconds time)
{
    return static_cast<int>(time.count());
}

} // namespace

CurlLoop::CurlLoop(const Clock& clock)
    : m_clock(clock)
    , m_multi(curl_multi_init())
    , m_thread([this] { run(); })
{}

CurlLoop::~CurlLoop()
{
    {
        const std::lock_guard guard(m_notesLock);
        m_isStopping = true;
    }
    curl_multi_wakeup(m_multi.get());
    m_thread.join();
}

void CurlLoop::post(std::function<void()> note)
{
    {
        const std::lock_guard guard(m_notesLock);
        m_notes.push_back(std::move(note));
    }
    curl_multi_wakeup(m_multi.get());
}

void CurlLoop::start(const std::shared_ptr<CurlTransfer>& transfer)
{
    post([this, transfer] {
        if (transfer->isSilenced())
            return;
        m_running.emplace(transfer.get(), transfer);
        begin(*transfer);
    });
}

void CurlLoop::resume(const std::shared_ptr<CurlTransfer>& transfer)
{
    post([this, transfer] {
        if (!m_running.contains(transfer.get()) || transfer->isSuspended())
            return;
        if (transfer->heldEnd())
            hopEnded(*transfer, *transfer->heldEnd());
        else
            transfer->unpause();
    });
}

void CurlLoop::drop(const std::shared_ptr<CurlTransfer>& transfer)
{
    post([this, transfer] {
        if (m_running.contains(transfer.get()))
            end(*transfer);
    });
}

void CurlLoop::connectAnew()
{
    post([this] { m_sockets.forgetAll(); });
}

bool CurlLoop::takeNotes()
{
    std::vector<std::function<void()>> notes;
    bool isStopping = false;
    {
        const std::lock_guard guard(m_notesLock);
        notes.swap(m_notes);
        isStopping = m_isStopping;
    }
    for (const std::function<void()>& note : notes)
        note();
    return !isStopping;
}

void CurlLoop::begin(CurlTransfer& transfer)
{
    if (transfer.prepare(m_sockets))
        curl_multi_add_handle(m_multi.get(), transfer.handle());
    else
        m_running.erase(&transfer);
}

void CurlLoop::end(CurlTransfer& transfer)
{
    curl_multi_remove_handle(m_multi.get(), transfer.handle());
    m_running.erase(&transfer);
}

void CurlLoop::hopEnded(CurlTransfer& transfer, CURLcode code)
{
    const CurlTransfer::HopEnd next = transfer.hopEnded(code);
    if (next == CurlTransfer::HopEnd::over) {
        end(transfer);
        return;
    }
    curl_multi_remove_handle(m_multi.get(), transfer.handle());
    if (next == CurlTransfer::HopEnd::next)
        begin(transfer);
}

void CurlLoop::reapFinished()
{
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(m_multi.get(), &left)) {
        if (message->msg != CURLMSG_DONE)
            continue;
        const CURLcode code = message->data.result;
        CurlTransfer* transfer = nullptr;
        curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
        hopEnded(*transfer, code);
    }
}

void CurlLoop::reapOverdue()
{
    const SteadyTime now = m_clock.steadyNow();
    std::vector<CurlTransfer*> overdue;
    for (const auto& [transfer, owner] : m_running) {
        if (transfer->isOverdue(now))
            overdue.push_back(transfer);
    }
    for (CurlTransfer* transfer : overdue) {
        transfer->flush();
        transfer->finish(HttpError{HttpError::Kind::timedOut, CURLE_OPERATION_TIMEDOUT, u"no answer in time"_s});
        end(*transfer);
    }
}

void CurlLoop::flushOrWait()
{
    std::vector<CurlTransfer*> gathering;
    for (const auto& [transfer, owner] : m_running) {
        if (transfer->hasGathered())
            gathering.push_back(transfer);
    }
    if (gathering.empty()) {
        const auto wait =
            m_running.empty() ? std::chrono::milliseconds(idleWait) : std::chrono::milliseconds(overdueCheck);
        curl_multi_poll(m_multi.get(), nullptr, 0, inMilliseconds(wait), nullptr);
        return;
    }
    int ready = 0;
    curl_multi_poll(m_multi.get(), nullptr, 0, 0, &ready);
    const SteadyTime now = m_clock.steadyNow();
    for (CurlTransfer* transfer : gathering) {
        if (ready > 0 && now - transfer->gatheredSince() < maxGathering)
            continue;
        transfer->flush();
        // A silent server would not give libcurl the occasion to ask again.
        if (transfer->isRefused())
            hopEnded(*transfer, CURLE_WRITE_ERROR);
    }
}

void CurlLoop::run()
{
    while (takeNotes()) {
        int running = 0;
        curl_multi_perform(m_multi.get(), &running);
        reapFinished();
        reapOverdue();
        flushOrWait();
    }
    while (!m_running.empty()) {
        CurlTransfer& transfer = *m_running.begin()->first;
        transfer.finish(HttpError{HttpError::Kind::cancelled, 0, u"the client is closing"_s});
        end(transfer);
    }
}

} // namespace vormel

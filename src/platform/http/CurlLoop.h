#pragma once

#include "platform/http/CurlTransfer.h"

#include <functional>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

namespace vormel {

/// The client's thread: runs the transfers through one multi handle. Its operations may be called on any thread and
/// only leave a note for it.
class CurlLoop
{
public:
    explicit CurlLoop(const Clock& clock); ///< the clock must outlive the loop
    CurlLoop(const CurlLoop&) = delete;
    CurlLoop& operator=(const CurlLoop&) = delete;
    /// Ends what is running as cancelled, then the thread.
    ~CurlLoop();

    void start(const std::shared_ptr<CurlTransfer>& transfer);
    void resume(const std::shared_ptr<CurlTransfer>& transfer);
    void drop(const std::shared_ptr<CurlTransfer>& transfer);
    /// Kept connections are used no more.
    void connectAnew();

private:
    struct MultiCleanup
    {
        void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
    };

    void post(std::function<void()> note);
    void run();
    [[nodiscard]] bool takeNotes();
    void begin(CurlTransfer& transfer);
    void end(CurlTransfer& transfer);
    void hopEnded(CurlTransfer& transfer, CURLcode code);
    void reapFinished();
    void reapOverdue();
    void flushOrWait();

    const Clock& m_clock;
    OpenSockets m_sockets;
    std::unique_ptr<CURLM, MultiCleanup> m_multi;
    std::unordered_map<CurlTransfer*, std::shared_ptr<CurlTransfer>> m_running;

    std::mutex m_notesLock;
    std::vector<std::function<void()>> m_notes;
    bool m_isStopping = false;
    std::thread m_thread;
};

} // namespace vormel

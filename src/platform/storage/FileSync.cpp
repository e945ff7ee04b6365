#include "platform/storage/FileSync.h"

#include <unistd.h>

#include <cerrno>

namespace vormel {

int syncFile(const FileDescriptor& file)
{
    int result = 0;
    do
        result = ::fdatasync(file.get());
    while (result != 0 && errno == EINTR);
    return result == 0 ? 0 : errno;
}

FileSyncThread::FileSyncThread()
    : m_thread([this] { run(); })
{}

FileSyncThread::~FileSyncThread()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
    }
    m_workOrIdle.notify_all();
    m_thread.join();
}

void FileSyncThread::sync(std::shared_ptr<const FileDescriptor> file, Done done)
{
    {
        const std::lock_guard lock(m_mutex);
        m_waiting.push_back({std::move(file), std::move(done)});
    }
    m_workOrIdle.notify_all();
}

void FileSyncThread::flush()
{
    std::unique_lock lock(m_mutex);
    m_workOrIdle.wait(lock, [this] { return m_waiting.empty() && !m_isSyncing; });
}

void FileSyncThread::run()
{
    std::unique_lock lock(m_mutex);
    while (true) {
        m_workOrIdle.wait(lock, [this] { return !m_waiting.empty() || m_isStopping; });
        if (m_waiting.empty())
            return;
        Order next = std::move(m_waiting.front());
        m_waiting.pop_front();
        m_isSyncing = true;
        lock.unlock();
        next.done(syncFile(*next.file));
        next = {};
        lock.lock();
        m_isSyncing = false;
        m_workOrIdle.notify_all();
    }
}

} // namespace vormel

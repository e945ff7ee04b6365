#pragma once

#include "platform/storage/FileDescriptor.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace vormel {

/// Has the bytes of files on the disk for good, where they outlive a loss of power. May take as long as the disk does.
class FileSync
{
public:
    /// The system's error number, 0 if all went well. After a failure nobody knows which bytes are lost, and asking
    /// again would say that all is well.
    using Done = std::function<void(int systemError)>;

    FileSync() = default;
    FileSync(const FileSync&) = delete;
    FileSync& operator=(const FileSync&) = delete;
    virtual ~FileSync() = default;

    /// Keeps the file open until it is done, which is told on any thread. Any thread.
    virtual void sync(std::shared_ptr<const FileDescriptor> file, Done done) = 0;
    /// Returns when everything before this call is done and told.
    virtual void flush() = 0;
};

/// One file after the other on a thread of its own, so that neither the window nor other transfers wait.
class FileSyncThread final : public FileSync
{
public:
    FileSyncThread();
    /// Does what is still waiting, then ends the thread.
    ~FileSyncThread() override;

    void sync(std::shared_ptr<const FileDescriptor> file, Done done) override;
    void flush() override;

private:
    struct Order
    {
        std::shared_ptr<const FileDescriptor> file;
        Done done;
    };

    void run();

    std::mutex m_mutex;
    std::condition_variable m_workOrIdle;
    std::deque<Order> m_waiting;
    bool m_isSyncing = false;
    bool m_isStopping = false;
    std::thread m_thread;
};

/// The system's error number; 0 if the bytes of the file are on the disk.
[[nodiscard]] int syncFile(const FileDescriptor& file);

} // namespace vormel

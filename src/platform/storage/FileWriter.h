#pragma once

#include <QByteArray>
#include <QString>

#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace vormel {

/// Replaces small files whole on a thread of its own, so that no caller waits for the disk. Of several contents posted
/// for one path before the thread comes to it, only the last is written. A write that fails is dropped without a word.
class FileWriter
{
public:
    /// Makes the bytes on the writer's thread; it must own all that it reads.
    using Content = std::function<QByteArray()>;

    FileWriter();
    FileWriter(const FileWriter&) = delete;
    FileWriter& operator=(const FileWriter&) = delete;
    /// Writes what is still waiting, then ends the thread.
    ~FileWriter();

    /// The folder of the path is created with its parents when needed. Any thread.
    void post(const QString& path, Content content);

    /// Returns when everything posted before this call is on disk. Any thread but the writer's own.
    void flush();

private:
    void run();

    std::mutex m_mutex;
    std::condition_variable m_workOrIdle;
    std::map<QString, Content> m_waiting;
    bool m_isWriting = false;
    bool m_isStopping = false;
    std::thread m_thread;
};

} // namespace vormel

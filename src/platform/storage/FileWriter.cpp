#include "platform/storage/FileWriter.h"

#include "platform/storage/WholeFile.h"

#include <QDir>
#include <QFileInfo>

namespace vormel {

FileWriter::FileWriter()
    : m_thread([this] { run(); })
{}

FileWriter::~FileWriter()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
    }
    m_workOrIdle.notify_all();
    m_thread.join();
}

void FileWriter::post(const QString& path, Content content)
{
    {
        const std::lock_guard lock(m_mutex);
        m_waiting[path] = std::move(content);
    }
    m_workOrIdle.notify_all();
}

void FileWriter::flush()
{
    std::unique_lock lock(m_mutex);
    m_workOrIdle.wait(lock, [this] { return m_waiting.empty() && !m_isWriting; });
}

void FileWriter::run()
{
    std::unique_lock lock(m_mutex);
    while (true) {
        m_workOrIdle.wait(lock, [this] { return !m_waiting.empty() || m_isStopping; });
        if (m_waiting.empty())
            return;
        const auto next = m_waiting.extract(m_waiting.begin());
        m_isWriting = true;
        lock.unlock();
        QDir().mkpath(QFileInfo(next.key()).path());
        static_cast<void>(replaceWholeFile(next.key(), next.mapped()()));
        lock.lock();
        m_isWriting = false;
        m_workOrIdle.notify_all();
    }
}

} // namespace vormel

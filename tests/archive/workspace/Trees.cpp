#include "archive/workspace/Trees.h"

#include "archive/workspace/OpenFolder.h"

#include <QFile>
#include <QThread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <memory>

namespace vormel {

FileDescriptor folderAt(const QString& path)
{
    return openFolder(AT_FDCWD, QFile::encodeName(path));
}

FileDescriptor makeDeepFolders(int parent, int depth)
{
    constexpr mode_t mode = 0755;
    FileDescriptor at = openFolder(parent, ".");
    for (int i = 0; i < depth; ++i) {
        EXPECT_EQ(::mkdirat(at.get(), "d", mode), 0);
        at = openFolder(at.get(), "d");
    }
    return at;
}

FileDescriptor deepFolder(int parent, int depth)
{
    FileDescriptor at = openFolder(parent, ".");
    for (int i = 0; i < depth; ++i)
        at = openFolder(at.get(), "d");
    return at;
}

void writeIn(int folder, const QByteArray& name, const QByteArray& bytes)
{
    constexpr mode_t mode = 0644;
    const FileDescriptor file(::openat(folder, name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    ASSERT_EQ(::write(file.get(), bytes.constData(), static_cast<std::size_t>(bytes.size())), bytes.size());
}

QByteArray readIn(int folder, const QByteArray& name)
{
    QFile file;
    const int opened = ::openat(folder, name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    return opened >= 0 && file.open(opened, QFile::ReadOnly, QFile::AutoCloseHandle) ? file.readAll() : QByteArray();
}

void runInNarrowPlace(const std::function<void()>& work)
{
    constexpr unsigned stack = 256 * 1024;
    constexpr rlim_t descriptors = 64;
    rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit few{descriptors, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
    const std::unique_ptr<QThread> thread(QThread::create(work));
    thread->setStackSize(stack);
    thread->start();
    thread->wait();
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
}

QList<QByteArray> namesIn(int folder)
{
    QList<QByteArray> names;
    for (const FolderEntry& entry : entriesOf(folder).value_or(std::vector<FolderEntry>()))
        names << entry.name;
    return names;
}

void runAndBeKilled(const std::function<void()>& work)
{
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        work();
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
}

} // namespace vormel

#include "platform/storage/FileWriter.h"

#include "fixtures/Sandbox.h"

#include <QFileInfo>

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <thread>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::Sandbox;

FileWriter::Content content(const QByteArray& bytes)
{
    return [bytes] { return bytes; };
}

/// Keeps the writer's thread busy from construction until release(). It may go before the thread has woken up.
class BusyWriter
{
public:
    BusyWriter(FileWriter& writer, const QString& path)
    {
        const auto begun = std::make_shared<std::promise<void>>();
        writer.post(path, [begun, released = m_released.get_future().share()] {
            begun->set_value();
            released.wait();
            return QByteArray("busy");
        });
        begun->get_future().wait();
    }
    void release() { m_released.set_value(); }

private:
    std::promise<void> m_released;
};

TEST(FileWriter, WhatIsPostedIsOnDiskAfterAFlush)
{
    const Sandbox sandbox;
    FileWriter writer;
    writer.post(sandbox.path(u"a"_s), content("1"));
    writer.post(sandbox.path(u"b"_s), content("2"));
    writer.flush();
    EXPECT_EQ(sandbox.read(u"a"_s), "1");
    EXPECT_EQ(sandbox.read(u"b"_s), "2");
    EXPECT_EQ(sandbox.files().size(), 2);
}

TEST(FileWriter, AFlushWithoutWorkReturns)
{
    FileWriter writer;
    writer.flush();
    writer.flush();
}

TEST(FileWriter, TheFolderIsMadeWithItsParents)
{
    const Sandbox sandbox;
    FileWriter writer;
    writer.post(sandbox.path(u"x/y/z/f"_s), content("1"));
    writer.flush();
    EXPECT_EQ(sandbox.read(u"x/y/z/f"_s), "1");
}

TEST(FileWriter, OfSeveralPostsForOnePathOnlyTheLastIsMadeAndWritten)
{
    const Sandbox sandbox;
    FileWriter writer;
    BusyWriter busy(writer, sandbox.path(u"busy"_s));
    std::atomic<int> made = 0;
    for (int i = 0; i < 10; ++i) {
        writer.post(sandbox.path(u"f"_s), [i, &made] {
            ++made;
            return QByteArray::number(i);
        });
    }
    busy.release();
    writer.flush();
    EXPECT_EQ(sandbox.read(u"f"_s), "9");
    EXPECT_EQ(made, 1);
}

TEST(FileWriter, APostDuringTheWriteOfItsPathIsWrittenAfterwards)
{
    const Sandbox sandbox;
    FileWriter writer;
    BusyWriter busy(writer, sandbox.path(u"f"_s));
    writer.post(sandbox.path(u"f"_s), content("later"));
    busy.release();
    writer.flush();
    EXPECT_EQ(sandbox.read(u"f"_s), "later");
}

TEST(FileWriter, AFlushWaitsForTheWriteThatIsUnderWay)
{
    const Sandbox sandbox;
    FileWriter writer;
    BusyWriter busy(writer, sandbox.path(u"f"_s));
    std::promise<void> begun;
    auto flushed = std::async(std::launch::async, [&] {
        begun.set_value();
        writer.flush();
        return sandbox.read(u"f"_s);
    });
    begun.get_future().wait();
    EXPECT_EQ(flushed.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    busy.release();
    EXPECT_EQ(flushed.get(), "busy");
}

TEST(FileWriter, TheDestructorWritesWhatIsStillWaiting)
{
    const Sandbox sandbox;
    {
        FileWriter writer;
        BusyWriter busy(writer, sandbox.path(u"busy"_s));
        writer.post(sandbox.path(u"a"_s), content("1"));
        writer.post(sandbox.path(u"b"_s), content("2"));
        busy.release();
    }
    EXPECT_EQ(sandbox.files(), (QStringList{u"a"_s, u"b"_s, u"busy"_s}));
    EXPECT_EQ(sandbox.read(u"b"_s), "2");
}

TEST(FileWriter, AWriteThatFailsHoldsUpNoOther)
{
    const Sandbox sandbox;
    const QString noFolder = sandbox.write(u"file"_s, "x");
    FileWriter writer;
    writer.post(noFolder + u"/f"_s, content("1"));
    writer.post(sandbox.path(u"z"_s), content("2"));
    writer.flush();
    EXPECT_EQ(sandbox.read(u"z"_s), "2");
    EXPECT_EQ(sandbox.read(u"file"_s), "x");
}

TEST(FileWriter, PostsOfManyThreadsAllArrive)
{
    const Sandbox sandbox;
    FileWriter writer;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&, thread] {
            for (int i = 0; i < 20; ++i)
                writer.post(sandbox.path(QString::number(thread)), content(QByteArray::number(i)));
            writer.flush();
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (int thread = 0; thread < 4; ++thread)
        EXPECT_EQ(sandbox.read(QString::number(thread)), "19");
}

} // namespace
} // namespace vormel

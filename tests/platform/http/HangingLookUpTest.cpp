#include "platform/http/LoopbackTest.h"

#include <QElapsedTimer>

#include <condition_variable>
#include <cstring>
#include <dlfcn.h>
#include <mutex>
#include <netdb.h>

using namespace Qt::StringLiterals;

namespace {

/// The name server that answers no question about one host until the test lets it, or has forgotten to.
class SilentNameServer
{
public:
    static constexpr const char* host = "silent.example";

    void wait()
    {
        std::unique_lock lock(m_mutex);
        ++m_waiting;
        m_changed.notify_all();
        m_changed.wait_for(lock, std::chrono::seconds(20), [this] { return m_isReleased; });
        --m_waiting;
        m_changed.notify_all();
    }
    [[nodiscard]] bool waitForQuestion()
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(10), [this] { return m_waiting > 0; });
    }
    [[nodiscard]] bool isAsked()
    {
        const std::lock_guard lock(m_mutex);
        return m_waiting > 0;
    }
    /// Returns when nobody waits any more.
    void release()
    {
        std::unique_lock lock(m_mutex);
        m_isReleased = true;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_waiting == 0; });
        m_isReleased = false;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_waiting = 0;
    bool m_isReleased = false;
};

SilentNameServer& silentNameServer()
{
    static SilentNameServer server;
    return server;
}

} // namespace

/// Takes the place of the system's own in this program, and so in the HTTP library too.
extern "C" int getaddrinfo(const char* node, const char* service, const addrinfo* hints, addrinfo** result)
{
    if (node && std::strcmp(node, SilentNameServer::host) == 0) {
        silentNameServer().wait();
        return EAI_AGAIN;
    }
    using Function = int (*)(const char*, const char*, const addrinfo*, addrinfo**);
    static const auto system = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "getaddrinfo"));
    return system(node, service, hints, result);
}

namespace vormel {
namespace {

/// A look-up that hangs holds up nobody but the transfer that needs it.
class HangingLookUpTest : public LoopbackTest
{
protected:
    static constexpr qint64 soon = 5000; ///< in milliseconds; the look-up itself takes four times as long

    ~HangingLookUpTest() override { silentNameServer().release(); }

    [[nodiscard]] std::unique_ptr<HttpTask> ask(HttpClient& by)
    {
        auto task = by.makeTask(
            requestFor(u"http://%1/x"_s.arg(QLatin1StringView(SilentNameServer::host)).toStdString()), recorder);
        task->resume();
        EXPECT_TRUE(silentNameServer().waitForQuestion());
        return task;
    }

    Recorder recorder;
};

TEST_F(HangingLookUpTest, OthersGoOnWhenItsTransferIsDropped)
{
    server.serve("/f", {.content = "file"});
    std::unique_ptr<HttpTask> task = ask(client);
    EXPECT_EQ(get("/f").body, "file");
    QElapsedTimer timer;
    timer.start();
    task.reset();
    EXPECT_EQ(get("/f").body, "file");
    EXPECT_LT(timer.elapsed(), soon);
    EXPECT_TRUE(silentNameServer().isAsked()) << "the look-up must still hang, or this shows nothing";
}

TEST_F(HangingLookUpTest, TheClientEndsWhileItHangs)
{
    auto ending = std::make_unique<CurlHttpClient>(clock);
    const std::unique_ptr<HttpTask> task = ask(*ending);
    QElapsedTimer timer;
    timer.start();
    ending.reset();
    EXPECT_LT(timer.elapsed(), soon);
    EXPECT_TRUE(silentNameServer().isAsked());
    EXPECT_TRUE(recorder.heard().isOver);
}

} // namespace
} // namespace vormel

#include "platform/http/HttpFetch.h"

#include "fixtures/EventLoop.h"
#include "platform/async/Spawn.h"
#include "platform/http/LoopbackTest.h"

#include <QThread>

namespace vormel {
namespace {

using namespace std::chrono_literals;
using sites::Answer;
using sites::PatternContent;

QCoro::Task<> store(Eventual<FetchResult> eventual, std::optional<FetchResult>& result)
{
    result = co_await eventual;
}

class HttpFetchTest : public LoopbackTest
{
protected:
    FetchResult fetched(HttpRequest request, FetchOptions options = {})
    {
        std::optional<FetchResult> result;
        spawn(store(fetch(client, std::move(request), std::move(options)), result));
        EXPECT_FALSE(result) << "the result came inside the call";
        EXPECT_TRUE(fixtures::waitUntil([&result] { return result.has_value(); }));
        return result.value_or(FetchResult());
    }
};

TEST_F(HttpFetchTest, APageComesWholeWithItsHead)
{
    server.serve("/p", {.answers = {Answer::page(200, std::string(300'000, 'p'))}});
    const FetchResult result = fetched(request("/p"));
    EXPECT_FALSE(result.error);
    EXPECT_EQ(result.response.statusCode, 200);
    EXPECT_EQ(result.response.mimeType(), "text/html");
    EXPECT_EQ(result.body, QByteArray(300'000, 'p'));
    EXPECT_FALSE(result.isBodyCut);
    EXPECT_TRUE(result.redirects.empty());
}

TEST_F(HttpFetchTest, APageThatIsNotWantedIsRefusedAtItsHead)
{
    server.serve("/f", {.content = PatternContent(1, qint64{1} << 30)});
    FetchOptions options;
    options.wantsBody = [](const HttpResponse& response) { return response.mimeType() == "text/html"; };
    const FetchResult result = fetched(request("/f"), options);
    EXPECT_FALSE(result.error);
    EXPECT_EQ(result.response.statusCode, 200);
    EXPECT_TRUE(result.body.isEmpty());
    EXPECT_TRUE(result.isBodyCut);
    EXPECT_LT(server.bodyBytesSent(), qint64{32} << 20);
}

TEST_F(HttpFetchTest, APageThatIsTooLargeIsCutWhereItsRoomEnds)
{
    server.serve("/f", {.content = PatternContent(1, qint64{1} << 30)});
    FetchOptions options;
    options.maxBodySize = 100'000;
    const FetchResult result = fetched(request("/f"), options);
    EXPECT_FALSE(result.error);
    EXPECT_TRUE(result.isBodyCut);
    EXPECT_EQ(result.body.size(), 100'000);
    EXPECT_EQ(PatternContent(1, 100'000).firstMismatch(0, {result.body.constData(), 100'000}), std::nullopt);
    EXPECT_LT(server.bodyBytesSent(), qint64{32} << 20);
}

TEST_F(HttpFetchTest, APageThatJustFitsIsNotCut)
{
    server.serve("/p", {.content = "12345"});
    FetchOptions options;
    options.maxBodySize = 5;
    const FetchResult result = fetched(request("/p"), options);
    EXPECT_EQ(result.body, "12345");
    EXPECT_FALSE(result.isBodyCut);
}

TEST_F(HttpFetchTest, TheWayIsRememberedAndMayBeRefused)
{
    server.serve("/a", {.answers = {Answer::redirect(302, "/b")}});
    server.serve("/b", {.answers = {Answer::redirect(302, "/c")}});
    server.serve("/c", {.content = "end"});
    const FetchResult all = fetched(request("/a"));
    EXPECT_EQ(all.body, "end");
    EXPECT_EQ(all.redirects, (std::vector{urlOf(server.url("/b")), urlOf(server.url("/c"))}));

    FetchOptions options;
    options.followsRedirect = [](const HttpResponse&, const QUrl& target) { return target.path() == u"/b"; };
    const FetchResult part = fetched(request("/a"), options);
    EXPECT_FALSE(part.error);
    EXPECT_EQ(part.response.statusCode, 302);
    EXPECT_EQ(part.response.url, urlOf(server.url("/b")));
    EXPECT_EQ(part.redirects, std::vector{urlOf(server.url("/b"))});
    EXPECT_EQ(part.refused, urlOf(server.url("/c")));
    EXPECT_EQ(all.refused, std::nullopt);
}

TEST_F(HttpFetchTest, AFetchThatIsStoppedEndsAsCancelledAndLeavesItsServer)
{
    server.serve("/f", {.content = PatternContent(1, qint64{1} << 30)});
    std::stop_source stop;
    FetchOptions options;
    options.maxBodySize = qint64{1} << 30;
    options.stop = stop.get_token();
    std::optional<FetchResult> result;
    spawn(store(fetch(client, request("/f"), options), result));
    ASSERT_TRUE(fixtures::waitUntil([this] { return server.bodyBytesSent() > 0; }));
    stop.request_stop();
    EXPECT_FALSE(result) << "the result came inside the call";
    ASSERT_TRUE(fixtures::waitUntil([&result] { return result.has_value(); }));
    ASSERT_TRUE(result->error);
    EXPECT_EQ(result->error->kind, Kind::cancelled);
    EXPECT_TRUE(fixtures::waitUntil([this] { return server.connectionsOpen() == 0; }));
}

TEST_F(HttpFetchTest, AFetchThatWasStoppedBeforeAsksNobody)
{
    server.serve("/p", {.content = "x"});
    std::stop_source stop;
    stop.request_stop();
    FetchOptions options;
    options.stop = stop.get_token();
    const FetchResult result = fetched(request("/p"), options);
    ASSERT_TRUE(result.error);
    EXPECT_EQ(result.error->kind, Kind::cancelled);
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(HttpFetchTest, AStopThatComesAfterTheEndChangesNothing)
{
    server.serve("/p", {.content = "x"});
    std::stop_source stop;
    FetchOptions options;
    options.stop = stop.get_token();
    const FetchResult result = fetched(request("/p"), options);
    stop.request_stop();
    QCoreApplication::processEvents();
    EXPECT_EQ(result.body, "x");
}

TEST_F(HttpFetchTest, AnErrorComesWithWhatArrivedBeforeIt)
{
    server.serve("/p", {.content = "0123456789", .answers = {Answer::file().closeAfter(4)}});
    const FetchResult result = fetched(request("/p"));
    ASSERT_TRUE(result.error);
    EXPECT_EQ(result.error->kind, Kind::connectionLost);
    EXPECT_EQ(result.response.statusCode, 200);
    EXPECT_EQ(result.body, "0123");
    EXPECT_FALSE(result.isBodyCut);
}

TEST_F(HttpFetchTest, GoesOnOnTheThreadThatAsked)
{
    server.serve("/p", {.content = "x"});
    QThread* resumedOn = nullptr;
    const auto note = [](Eventual<FetchResult> eventual, QThread*& thread) -> QCoro::Task<> {
        co_await eventual;
        thread = QThread::currentThread();
    };
    spawn(note(fetch(client, request("/p")), resumedOn));
    ASSERT_TRUE(fixtures::waitUntil([&resumedOn] { return resumedOn != nullptr; }));
    EXPECT_EQ(resumedOn, QThread::currentThread());
}

TEST_F(HttpFetchTest, AResultThatNobodyAwaitsIsDropped)
{
    server.serve("/p", {.content = "x"});
    {
        CurlHttpClient shortLived(clock);
        static_cast<void>(fetch(shortLived, request("/p")));
        EXPECT_TRUE(server.waitForRequests("/p", 1, 5s));
    }
    // With its client the fetch has come to an end, whichever; what it leaves behind is cleared away here.
    fixtures::turnEventLoop();
    EXPECT_EQ(fetched(request("/p")).body, "x");
}

TEST_F(HttpFetchTest, AClientThatGoesAwayEndsItAsCancelled)
{
    server.serve("/p", {.content = "0123456789", .answers = {Answer::file().stallAfter(4)}});
    std::optional<FetchResult> result;
    {
        CurlHttpClient shortLived(clock);
        spawn(store(fetch(shortLived, request("/p")), result));
        ASSERT_TRUE(server.waitForStalled(1, 5s));
    }
    ASSERT_TRUE(fixtures::waitUntil([&result] { return result.has_value(); }));
    ASSERT_TRUE(result->error);
    EXPECT_EQ(result->error->kind, Kind::cancelled);
}

} // namespace
} // namespace vormel

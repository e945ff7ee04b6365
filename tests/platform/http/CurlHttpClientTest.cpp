#include "platform/http/CurlHttpClient.h"

#include "platform/http/LoopbackTest.h"

#include <algorithm>
#include <array>
#include <random>
#include <thread>

namespace vormel {
namespace {

using namespace std::chrono_literals;
using sites::Answer;
using sites::PatternContent;

class CurlHttpClientTest : public LoopbackTest
{};

TEST_F(CurlHttpClientTest, AFileArrivesWholeBehindItsHead)
{
    const PatternContent content(1, 3 * mib + 17);
    server.serve("/f", {.content = content, .headers = {{"X-Own", "a: b"}}, .etag = "\"e\""});
    const Recorder::Heard heard = get("/f");
    expectWhole(heard, content);
    ASSERT_TRUE(heard.head);
    EXPECT_EQ(heard.head->statusCode, 200);
    EXPECT_EQ(heard.head->url, urlOf(server.url("/f")));
    EXPECT_EQ(heard.head->expectedContentLength(), content.size());
    EXPECT_EQ(heard.head->mimeType(), "application/octet-stream");
    EXPECT_EQ(heard.head->header("x-own"), "a: b");
    EXPECT_EQ(heard.head->header("ETag"), "\"e\"");
    EXPECT_EQ(heard.ends, 1);
}

TEST_F(CurlHttpClientTest, AnEmptyFileHasAHeadAndAnEndAndNoBlock)
{
    server.serve("/f", {});
    const Recorder::Heard heard = get("/f");
    EXPECT_FALSE(heard.error);
    EXPECT_EQ(heard.head->expectedContentLength(), 0);
    EXPECT_TRUE(heard.blocks.empty());
}

TEST_F(CurlHttpClientTest, ARangeIsAskedForAndArrives)
{
    const PatternContent content(2, mib);
    server.serve("/f", {.content = content});
    HttpRequest partial = request("/f");
    partial.headers = {{"Range", "bytes=1000-"}, {"If-Range", "\"x\""}};
    static_cast<void>(run(partial));
    EXPECT_EQ(server.requests("/f").at(0).header("If-Range"), "\"x\"");
    partial.headers.pop_back();
    const Recorder::Heard heard = run(partial);
    EXPECT_EQ(server.requests("/f").at(1).header("Range"), "bytes=1000-");
    EXPECT_EQ(heard.head->statusCode, 206);
    expectWhole(heard, content, 1000);
}

TEST_F(CurlHttpClientTest, HeadersMethodAndBodyGoOutAsAsked)
{
    server.serve("/form", {.content = "ok"});
    HttpRequest post = request("/form?q=%22a");
    post.method = "POST";
    post.body = QByteArray("a=1&b=\0c", 8);
    post.headers = {{"Content-Type", "text/x-own"}, {"X-Own", "1"}};
    EXPECT_FALSE(run(post).error);
    const auto seen = server.requests("/form").at(0);
    EXPECT_EQ(seen.method, "POST");
    EXPECT_EQ(seen.pathAndQuery(), "/form?q=%22a");
    EXPECT_EQ(seen.body, std::string("a=1&b=\0c", 8));
    EXPECT_EQ(seen.header("Content-Type"), "text/x-own");
    EXPECT_EQ(seen.header("X-Own"), "1");
    EXPECT_EQ(seen.header("User-Agent"), "Vormel");
}

TEST_F(CurlHttpClientTest, AHeadRequestTakesNoBody)
{
    server.serve("/f", {.content = "four"});
    HttpRequest head = request("/f");
    head.method = "HEAD";
    const Recorder::Heard heard = run(head);
    EXPECT_FALSE(heard.error);
    EXPECT_EQ(server.requests("/f").at(0).method, "HEAD");
    EXPECT_EQ(heard.head->expectedContentLength(), 4);
    EXPECT_TRUE(heard.body.isEmpty());
}

TEST_F(CurlHttpClientTest, TheFragmentStaysHome)
{
    server.serve("/f", {.content = "x"});
    EXPECT_FALSE(run(requestFor(server.url("/f#part"))).error);
    EXPECT_EQ(server.requests().at(0).target, "/f");
}

TEST_F(CurlHttpClientTest, ErrorPagesAreAnswersAndNoErrors)
{
    server.serve("/f", {.answers = {Answer::page(503, "busy")}});
    const Recorder::Heard heard = get("/f");
    EXPECT_FALSE(heard.error);
    EXPECT_EQ(heard.head->statusCode, 503);
    EXPECT_EQ(heard.body, "busy");
    EXPECT_EQ(get("/missing").head->statusCode, 404);
}

TEST_F(CurlHttpClientTest, ABlockHasAtMostAQuarterMebibyte)
{
    const PatternContent content(3, 8 * mib);
    server.serve("/f", {.content = content});
    const Recorder::Heard heard = get("/f");
    expectWhole(heard, content);
    EXPECT_LE(*std::max_element(heard.blocks.begin(), heard.blocks.end()), 256 * kib);
    EXPECT_LT(heard.blocks.size(), 400U) << "bytes are to be gathered before they are handed on";
}

TEST_F(CurlHttpClientTest, ASmallerBlockSizeIsKeptTo)
{
    const PatternContent content(4, mib + 5);
    server.serve("/f", {.content = content});
    client.setBlockSize(1000);
    const Recorder::Heard heard = get("/f");
    expectWhole(heard, content);
    EXPECT_LE(*std::max_element(heard.blocks.begin(), heard.blocks.end()), 1000);
}

TEST_F(CurlHttpClientTest, ABlockSizeOutOfBoundsIsTakenAsTheNearestInside)
{
    server.serve("/f", {.content = PatternContent(4, 4 * mib)});
    server.serve("/small", {.content = "abc"});
    client.setBlockSize(100 * mib);
    const std::vector<qsizetype> blocks = get("/f").blocks;
    EXPECT_LE(*std::max_element(blocks.begin(), blocks.end()), 256 * kib);
    client.setBlockSize(0);
    EXPECT_EQ(get("/small").blocks, (std::vector<qsizetype>{1, 1, 1}));
}

TEST_F(CurlHttpClientTest, BytesOfASlowServerAreHandedOnWithoutWaitingForMore)
{
    server.serve("/f", {.content = PatternContent(5, mib), .answers = {Answer::file().stallAfter(10)}});
    Recorder recorder;
    const auto task = client.makeTask(request("/f"), recorder);
    task->resume();
    EXPECT_TRUE(recorder.waitForBytes(10));
}

TEST_F(CurlHttpClientTest, AReceiverMayCancelAtTheHeadOrAtABlock)
{
    server.serve("/f", {.content = PatternContent(10, 64 * mib)});
    Recorder atHead;
    atHead.onHead = [] { return HttpReceiver::HeadVerdict::cancel; };
    const Recorder::Heard refused = run(request("/f"), atHead);
    expectError(refused, Kind::cancelled);
    EXPECT_TRUE(refused.blocks.empty());

    Recorder atBlock;
    atBlock.onData = [](QByteArrayView) { return HttpReceiver::DataVerdict::cancel; };
    const Recorder::Heard cut = run(request("/f"), atBlock);
    expectError(cut, Kind::cancelled);
    EXPECT_EQ(cut.blocks.size(), 1U);
}

TEST_F(CurlHttpClientTest, ACancelIsObeyedAtOnceAlsoWhenTheServerFallsSilent)
{
    server.serve("/f", {.content = PatternContent(10, mib), .answers = {Answer::file().stallAfter(1000)}});
    Recorder recorder;
    recorder.onData = [](QByteArrayView) { return HttpReceiver::DataVerdict::cancel; };
    const Recorder::Heard cut = run(request("/f"), recorder);
    expectError(cut, Kind::cancelled);
    EXPECT_EQ(cut.ends, 1);
}

TEST_F(CurlHttpClientTest, ATaskThatIsNeverResumedNeverBegins)
{
    server.serve("/f", {.content = "x"});
    Recorder recorder;
    {
        const auto task = client.makeTask(request("/f"), recorder);
        EXPECT_FALSE(get("/f").error);
    }
    EXPECT_EQ(server.requests("/f").size(), 1U);
    EXPECT_FALSE(recorder.heard().isOver);
}

TEST_F(CurlHttpClientTest, DestroyingATaskEndsItAndClosesItsConnection)
{
    server.serve("/f", {.content = PatternContent(11, mib), .answers = {Answer::file().stallAfter(1000)}});
    Recorder recorder;
    auto task = client.makeTask(request("/f"), recorder);
    task->resume();
    ASSERT_TRUE(recorder.waitForBytes(1000));
    task.reset();
    server.release();
    EXPECT_FALSE(get("/missing").error);
    EXPECT_EQ(recorder.heard().body.size(), 1000);
    EXPECT_FALSE(recorder.heard().isOver);
}

TEST_F(CurlHttpClientTest, NoCallFollowsADestroyedTaskWheneverItIsDestroyed)
{
    server.serve("/f", {.content = PatternContent(12, 4 * mib)});
    std::mt19937 random(1);
    std::uniform_int_distribution<int> moments(0, 1500);
    for (int round = 0; round < 200; ++round) {
        // Gone right after its task, so that a late call would touch freed memory, and be seen in any case.
        auto recorder = std::make_unique<Recorder>();
        recorder->keepsBody = false;
        std::atomic<bool> isDestroyed = false;
        std::atomic<bool> wasCalledLate = false;
        recorder->onData = [&](QByteArrayView) {
            if (isDestroyed)
                wasCalledLate = true;
            return HttpReceiver::DataVerdict::proceed;
        };
        auto task = client.makeTask(request("/f"), *recorder);
        task->resume();
        std::this_thread::sleep_for(std::chrono::microseconds(moments(random))); // the moment, not a wait for anything
        task.reset();
        isDestroyed = true;
        const Recorder::Heard atOnce = recorder->heard();
        if (round % 20 == 0) {
            EXPECT_FALSE(get("/missing").error);
        }
        EXPECT_EQ(recorder->heard().blocks.size(), atOnce.blocks.size());
        EXPECT_EQ(recorder->heard().isOver, atOnce.isOver);
        EXPECT_FALSE(wasCalledLate);
    }
}

TEST_F(CurlHttpClientTest, AClientThatGoesAwayEndsItsTransfersAsCancelled)
{
    server.serve("/f", {.content = PatternContent(13, mib), .answers = {Answer::file().stallAfter(1000)}});
    std::array<Recorder, 3> recorders;
    std::vector<std::unique_ptr<HttpTask>> tasks;
    {
        CurlHttpClient shortLived(clock);
        for (Recorder& recorder : recorders) {
            tasks.push_back(shortLived.makeTask(request("/f"), recorder));
            tasks.back()->resume();
        }
        ASSERT_TRUE(recorders[0].waitForBytes(1000));
        tasks[0]->suspend();
    }
    for (const Recorder& recorder : recorders) {
        EXPECT_EQ(recorder.heard().ends, 1);
        expectError(recorder.heard(), Kind::cancelled);
    }
    tasks[0]->resume();
    tasks[0]->suspend();
}

TEST_F(CurlHttpClientTest, ManyTransfersRunAtOnce)
{
    const PatternContent content(14, mib);
    server.serve("/f", {.content = content});
    std::array<Recorder, 20> recorders;
    std::vector<std::unique_ptr<HttpTask>> tasks;
    for (Recorder& recorder : recorders) {
        tasks.push_back(client.makeTask(request("/f"), recorder));
        tasks.back()->resume();
    }
    for (const Recorder& recorder : recorders) {
        ASSERT_TRUE(recorder.waitForEnd());
        expectWhole(recorder.heard(), content);
    }
}

TEST_F(CurlHttpClientTest, SmallRequestsOneAfterTheOtherShareAConnection)
{
    server.serve("/f", {.content = "small"});
    for (int i = 0; i < 50; ++i)
        EXPECT_EQ(get("/f").body, "small");
    EXPECT_EQ(server.connectionsAccepted(), 1);
}

TEST_F(CurlHttpClientTest, ConnectionsGoWhereTheyAreToldTo)
{
    server.serve("/f", {.content = "here"});
    const QByteArray here = "127.0.0.1:" + QByteArray::number(server.port());
    CurlHttpClient::Options one;
    one.userAgent = "Own/1";
    one.connectTo = {{"files.example:80", here}};
    CurlHttpClient mapped(clock, one);
    Recorder recorder;
    EXPECT_EQ(run(mapped, requestFor("http://files.example/f"), recorder).body, "here");
    EXPECT_EQ(server.requests("/f").at(0).header("Host"), "files.example");
    EXPECT_EQ(server.requests("/f").at(0).header("User-Agent"), "Own/1");

    CurlHttpClient::Options all;
    all.connectTo = {{"*", here}};
    CurlHttpClient everywhere(clock, all);
    Recorder other;
    EXPECT_EQ(run(everywhere, requestFor("http://other.example:8080/f"), other).body, "here");
    EXPECT_EQ(server.requests("/f").at(1).header("Host"), "other.example:8080");
}

TEST_F(CurlHttpClientTest, APlaceForOneHostGoesBeforeThatForAll)
{
    constexpr int hosts = 16; // or the order in which they are kept might be right by chance
    const auto hostOf = [](int number) { return "host" + std::to_string(number) + ".example"; };
    sites::FileServer rest;
    server.serve("/f", {.content = "own"});
    rest.serve("/f", {.content = "rest"});
    CurlHttpClient::Options options;
    options.connectTo = {{"*", "127.0.0.1:" + QByteArray::number(rest.port())}};
    for (int number = 0; number < hosts; ++number)
        options.connectTo.insert(QByteArray::fromStdString(hostOf(number) + ":80"),
                                 "127.0.0.1:" + QByteArray::number(server.port()));
    CurlHttpClient mapped(clock, options);
    for (int number = 0; number < hosts; ++number) {
        Recorder recorder;
        EXPECT_EQ(run(mapped, requestFor("http://" + hostOf(number) + "/f"), recorder).body, "own") << number;
    }
    Recorder recorder;
    EXPECT_EQ(run(mapped, requestFor("http://another.example/f"), recorder).body, "rest");
}

TEST_F(CurlHttpClientTest, OnlyWebAddressesAreFetched)
{
    for (const char* url : {"ftp://127.0.0.1/f", "file:///etc/hostname", "http:///f", "gopher://127.0.0.1/", "f", ""}) {
        const Recorder::Heard heard = run(requestFor(url));
        expectError(heard, Kind::unsupportedUrl);
        EXPECT_FALSE(heard.head) << url;
        EXPECT_EQ(heard.ends, 1) << url;
    }
}

TEST_F(CurlHttpClientTest, APortWithoutAServerCannotBeConnectedTo)
{
    std::string url;
    {
        const sites::FileServer gone;
        url = gone.url("/f");
    }
    expectError(run(requestFor(url)), Kind::cannotConnect);
}

} // namespace
} // namespace vormel

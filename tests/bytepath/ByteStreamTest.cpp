#include "fixtures/EngineOnNetwork.h"
#include "fixtures/EventLoop.h"
#include "sites/FileServer.h"
#include "sites/TestCertificates.h"

#include <QFile>

#include <gtest/gtest.h>
#include <unistd.h>

#include <random>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;
using vormel::sites::Answer;
using vormel::sites::FileServer;
using vormel::sites::PatternContent;
using vormel::sites::TestCertificates;

namespace {

QString url(const FileServer& server, const char* path)
{
    return QString::fromStdString(server.url(path));
}

bool isSource(const Sandbox& sandbox, const QString& name, const PatternContent& source)
{
    const QByteArray bytes = sandbox.read(name);
    return bytes.size() == source.size() &&
           !source.firstMismatch(0, std::span(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

qint64 residentBytes()
{
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE);
}

} // namespace

TEST(ByteStream, SurvivesPausesAndResumesAtRandomMoments)
{
    const PatternContent source(7, 8 * 1024 * 1024);
    FileServer server;
    server.serve("/file.bin", {.content = source, .answers = {Answer::file().dripping(256 * 1024, 1ms)}});
    EngineOnNetwork engine;
    const ItemPtr item = engine.add(url(server, "/file.bin"));
    std::mt19937 random(1); // NOLINT(cert-msc51-cpp): the same moments each time
    for (int i = 0; i < 40 && item->status() != DownloadStatus::completed; ++i) {
        engine.manager().commands().startAll();
        static_cast<void>(waitUntil([&item] { return item->status() == DownloadStatus::completed; },
                                    std::chrono::milliseconds(random() % 12)));
        engine.manager().commands().pauseAll();
    }
    engine.manager().commands().startAll();
    ASSERT_TRUE(engine.runToEnd(item));
    EXPECT_TRUE(isSource(engine.sandbox, u"Downloads/file.bin"_s, source));
}

TEST(ByteStream, CarriesManyTransfersAtOnceUnderACap)
{
    FileServer server;
    EngineOnNetwork engine;
    engine.manager().settings().maxConcurrentDownloads.set(10);
    engine.manager().settings().maxDownloadSpeedKBps.set(512);
    std::vector<ItemPtr> items;
    for (int i = 0; i < 10; ++i) {
        const std::string path = "/" + std::to_string(i) + ".bin";
        server.serve(path, {.content = PatternContent(static_cast<std::uint64_t>(i), 400000)});
        items.push_back(engine.add(url(server, path.c_str())));
    }
    engine.manager().commands().startAll();
    for (int i = 0; i < 10; ++i) {
        ASSERT_TRUE(engine.runToEnd(items[static_cast<std::size_t>(i)]));
        EXPECT_TRUE(isSource(engine.sandbox, u"Downloads/%1.bin"_s.arg(i),
                             PatternContent(static_cast<std::uint64_t>(i), 400000)));
    }
}

TEST(ByteStream, KeepsMemoryFlat)
{
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the sanitizers' own memory hides the program's";
#endif
    const PatternContent source(3, qint64{300} * 1024 * 1024);
    FileServer server;
    server.serve("/large.bin", {.content = source});
    EngineOnNetwork engine;
    const ItemPtr item = engine.add(url(server, "/large.bin"));
    engine.manager().commands().startAll();
    ASSERT_TRUE(waitUntil([&item] { return item->totalBytes() > 0; }));
    const qint64 before = residentBytes();
    ASSERT_TRUE(engine.runToEnd(item));
    EXPECT_LT(residentBytes() - before, 16 * 1024 * 1024);
    EXPECT_EQ(item->status(), DownloadStatus::completed);
}

TEST(ByteStream, TakesAnUntrustedCertificateOnlyFromThePremiumServices)
{
    const TestCertificates certificates;
    const PatternContent source(4, 100000);
    FileServer server({.tls = certificates.selfSigned()});
    server.serve("/file.bin", {.content = source});
    CurlHttpClient::Options network;
    for (const char* const host : {"dl.filestore.example:443", "other.example:443"})
        network.connectTo.insert(host, "127.0.0.1:" + QByteArray::number(server.port()));
    // Its own links need an account; one that leads there does not.
    FileServer somewhere;
    somewhere.serve("/file.bin", {.answers = {Answer::redirect(302, "https://dl.filestore.example/file.bin")}});
    EngineOnNetwork engine(network);
    const ItemPtr premium = engine.add(url(somewhere, "/file.bin"));
    engine.manager().commands().startAll();
    ASSERT_TRUE(engine.runToEnd(premium));
    EXPECT_EQ(premium->status(), DownloadStatus::completed) << qPrintable(premium->status().message());
    const ItemPtr other = engine.add(u"https://other.example/other.bin"_s);
    engine.manager().commands().startAll();
    ASSERT_TRUE(engine.runToEnd(other));
    EXPECT_EQ(other->status(), DownloadStatus::failure(u"The server's certificate is not trusted."_s));
}

TEST(ByteStream, TellsAServerThatIsNotThere)
{
    EngineOnNetwork engine;
    const ItemPtr item = engine.add(u"http://127.0.0.1:1/file.bin"_s);
    engine.manager().commands().startAll();
    ASSERT_TRUE(engine.runToEnd(item));
    EXPECT_EQ(item->status(), DownloadStatus::failure(u"Could not connect to the server."_s));
}

TEST(ByteStream, EndsInOrderWhileTransfersRun)
{
    FileServer server;
    server.serve("/file.bin",
                 {.content = PatternContent(5, 50 * 1024 * 1024), .answers = {Answer::file().dripping(4096, 1ms)}});
    for (int i = 0; i < 10; ++i) {
        EngineOnNetwork engine;
        const ItemPtr item = engine.add(url(server, "/file.bin"));
        engine.manager().commands().startAll();
        ASSERT_TRUE(waitUntil([&item] { return item->totalBytes() > 0; }));
        engine.manager().shutDown();
    }
}

#include "PremiumServices.h"
#include "fixtures/EngineOnNetwork.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "fixtures/FakeTools.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;
using sites::FilestoreSite;
using sites::PatternContent;

namespace {

/// A user with an account at Filestore, the service and a container service. The tools give up on everything.
class PremiumTest : public ::testing::Test
{
protected:
    PremiumTest()
    {
        const HostAccount ann = account(SupportedHost::filestore, services.username);
        engine.manager().accounts().set({ann});
        engine.secrets.kept.insert(keychainAccountKey(ann, HostProfiles()), services.password);
        engine.manager().settings().autoExtract.set(false);
        for (const QString& tool : {u"unrar"_s, u"rar"_s, u"7zz"_s, u"7z"_s})
            tools.add(tool, "echo \"$@\"; exit 3");
    }

    void expectWhole(int number) const
    {
        const QByteArray bytes = engine.sandbox.read(u"Downloads/film/film.part%1.rar"_s.arg(number));
        EXPECT_EQ(bytes.size(), PremiumServices::fileSize) << number;
        const PatternContent content = PremiumServices::contentOf(number);
        EXPECT_FALSE(content.firstMismatch(0, std::span(bytes.constData(), static_cast<std::size_t>(bytes.size()))));
    }
    void runAll()
    {
        engine.manager().commands().startAll();
        for (const ItemPtr& item : std::vector(engine.manager().items())) {
            EXPECT_TRUE(waitUntil([&item] { return item->status() == DownloadStatus::completed; }))
                << item->filename().toStdString();
        }
    }

    PremiumServices services;
    FakeTools tools;
    EngineOnNetwork engine{services.network(), tools.folders()};
};

std::string textOf(const std::vector<sites::Request>& requests)
{
    std::string text;
    for (const sites::Request& request : requests) {
        text += request.method + ' ' + request.target + '\n' + request.body + '\n';
        for (const sites::Header& header : request.headers)
            text += header.name + ": " + header.value + '\n';
    }
    return text;
}

} // namespace

TEST_F(PremiumTest, ThirtyFilesComeWholeOverOneLogin)
{
    std::vector<Link> links;
    for (int i = 0; i < 30; ++i)
        links.push_back(services.newFile());
    engine.manager().settings().maxConcurrentDownloads.set(30);
    engine.manager().addURLs(links, std::nullopt);
    runAll();
    for (int number = 1; number <= 30; ++number)
        expectWhole(number);
    EXPECT_EQ(services.site.logins(), 1);
}

TEST_F(PremiumTest, AContainerBecomesTheFilesBehindItAndTellsNobodyAnything)
{
    const QString password = services.password;
    const QString containerPassword = services.containerPassword;
    ::testing::internal::CaptureStderr();
    engine.manager().settings().autoExtract.set(true);
    engine.manager().addURLs({services.newContainer(3)}, containerPassword);
    ASSERT_TRUE(waitUntil([this] { return engine.manager().items().size() == 3; }));
    runAll();
    for (int number = 1; number <= 3; ++number)
        expectWhole(number);
    ASSERT_TRUE(
        waitUntil([this] { return engine.manager().items().front()->extractionStatus() == ExtractionStatus::failed; }));

    const auto holds = [](const std::string& text, const QString& canary) {
        return text.find(canary.toStdString()) != std::string::npos;
    };
    EXPECT_TRUE(holds(textOf(services.site.requests()), password)) << "or this search finds nothing";
    EXPECT_TRUE(holds(textOf(services.containers.requests()), containerPassword));
    EXPECT_FALSE(holds(textOf(services.site.requests()), containerPassword));
    EXPECT_FALSE(holds(textOf(services.containers.requests()), password));
    std::string told = textOf(services.site.fileRequests());
    for (const QString& tool : {u"unrar"_s, u"7zz"_s}) {
        for (const QStringList& call : tools.calls(tool))
            told += call.join(u' ').toStdString() + '\n';
    }
    EXPECT_THAT(told, ::testing::HasSubstr("film.part1.rar"));
    engine.manager().shutDown();
    for (const QString& file : engine.sandbox.files())
        told += engine.sandbox.read(file).toStdString();
    for (const ItemPtr& item : engine.manager().items())
        told += (item->status().message() + item->extractionStatus().message()).toStdString();
    told += ::testing::internal::GetCapturedStderr();
    EXPECT_FALSE(holds(told, password));
    EXPECT_FALSE(holds(told, containerPassword));
}

TEST_F(PremiumTest, CookiesOfTheServiceReachNobodyElse)
{
    const Link url = services.newFile();
    services.stranger.serve("/film.part1.rar", {.content = PremiumServices::contentOf(1)});
    services.site.pages().serve("/f1", {.answers = {sites::Answer::redirect(302, "https://cdn.example/film.part1.rar")
                                                        .withCookie("stray=1; Domain=cdn.example")}});
    engine.add(url.absoluteString());
    runAll();
    expectWhole(1);
    for (const sites::Request& request : services.stranger.requests()) {
        EXPECT_FALSE(request.header("Cookie"));
        EXPECT_FALSE(request.header("Referer"));
    }
}

TEST_F(PremiumTest, AStoppedItemLeavesTheSiteAtOnce)
{
    const Link url = services.newFile();
    services.site.pages().serve("/f1", {.answers = {sites::Answer::page(200, "x").stallBeforeHead()}});
    const ItemPtr item = engine.add(url.absoluteString());
    engine.manager().commands().startAll();
    ASSERT_TRUE(waitUntil([this] { return services.site.pages().waitForStalled(2, {}); })) << "one looks up the name";
    engine.manager().commands().stopItems({item});
    // The clock stands still: no time-out ends it.
    EXPECT_TRUE(waitUntil([this] { return !services.site.pages().waitForStalled(2, {}); }));
    EXPECT_EQ(item->status(), DownloadStatus::stopped);
}

#include "fixtures/EngineOnNetwork.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"
#include "sites/services/ClickNLoadCall.h"
#include "sites/services/ContainerSite.h"
#include "sites/services/FilestoreSite.h"

#include <QDirIterator>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;
using sites::FilestoreSite;
using sites::PatternContent;

namespace {

const QString password = u"canary of the account"_s;
const QString containerPassword = u"canary of the container"_s;

/// A user with an account at Filestore, the service and a container service.
class PremiumTest : public ::testing::Test
{
protected:
    PremiumTest()
    {
        site.addAccount("ann", password.toStdString());
        const HostAccount ann = account(SupportedHost::filestore, u"ann"_s);
        engine.manager().accounts().set({ann});
        engine.secrets.kept.insert(keychainAccountKey(ann, HostProfiles()), password);
        engine.manager().settings().autoExtract.set(false);
    }

    /// A link to a new file of the site.
    QString newFile(FilestoreSite::Shape shape = FilestoreSite::Shape::oneForm)
    {
        const int number = ++m_files;
        return QString::fromStdString(site.addFile("film.part" + std::to_string(number) + ".rar", shape,
                                                   PatternContent(static_cast<std::uint64_t>(number), fileSize)));
    }
    void expectWhole(int number) const
    {
        const QByteArray bytes = engine.sandbox.read(u"Downloads/film/film.part%1.rar"_s.arg(number));
        EXPECT_EQ(bytes.size(), fileSize) << number;
        const PatternContent content(static_cast<std::uint64_t>(number), bytes.size());
        EXPECT_FALSE(content.firstMismatch(0, std::span(bytes.constData(), static_cast<std::size_t>(bytes.size()))));
    }
    void runAll()
    {
        engine.manager().commands().startAll();
        for (const ItemPtr& item : std::vector(engine.manager().items())) {
            EXPECT_TRUE(engine.runToEnd(item));
            EXPECT_EQ(item->status(), DownloadStatus::completed) << item->filename().toStdString();
        }
    }

    static constexpr qint64 fileSize = 300'000;
    sites::TestCertificates certificates;
    FilestoreSite site{certificates};
    sites::ContainerSite containers{certificates, "filecrypt.example"};
    sites::FileServer stranger{{.tls = certificates.valid({"cdn.example"})}};
    Sandbox authority;
    EngineOnNetwork engine{network()};

private:
    CurlHttpClient::Options network()
    {
        CurlHttpClient::Options options;
        options.extraCaFile =
            QString::fromStdString(certificates.writeAuthority(authority.root().toStdString()).string());
        auto connectTo = site.connectTo();
        connectTo.merge(containers.connectTo());
        connectTo["cdn.example:443"] = "127.0.0.1:" + std::to_string(stranger.port());
        for (const auto& [from, to] : connectTo)
            options.connectTo.insert(QByteArray::fromStdString(from), QByteArray::fromStdString(to));
        return options;
    }

    int m_files = 0;
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
        links.push_back(*Link::parse(newFile()));
    engine.manager().settings().maxConcurrentDownloads.set(30);
    engine.manager().addURLs(links, std::nullopt);
    runAll();
    for (int number = 1; number <= 30; ++number)
        expectWhole(number);
    EXPECT_EQ(site.logins(), 1);
}

TEST_F(PremiumTest, AContainerBecomesTheFilesBehindItAndTellsNobodyAnything)
{
    std::string lines;
    for (int i = 0; i < 3; ++i)
        lines += newFile(FilestoreSite::Shape::twoForms).toStdString() + "\r\n";
    const std::string url =
        containers.add({.body = sites::clickNLoadCall(lines), .password = containerPassword.toStdString()});
    engine.manager().addURLs({*Link::parse(QString::fromStdString(url))}, containerPassword);
    ASSERT_TRUE(waitUntil([this] { return engine.manager().items().size() == 3; }));
    runAll();
    for (int number = 1; number <= 3; ++number)
        expectWhole(number);

    const auto holds = [](const std::string& text, const QString& secret) {
        const QByteArray plain = secret.toUtf8();
        const QByteArray coded = QUrl::toPercentEncoding(secret);
        return text.find(plain.toStdString()) != std::string::npos ||
               text.find(coded.toStdString()) != std::string::npos;
    };
    EXPECT_TRUE(holds(textOf(site.requests()), password)) << "or this search finds nothing";
    EXPECT_TRUE(holds(textOf(containers.requests()), containerPassword));
    EXPECT_FALSE(holds(textOf(site.requests()), containerPassword));
    EXPECT_FALSE(holds(textOf(site.fileRequests()), containerPassword));
    EXPECT_FALSE(holds(textOf(site.fileRequests()), password));
    EXPECT_FALSE(holds(textOf(containers.requests()), password));
    engine.manager().shutDown();
    for (QDirIterator file(engine.sandbox.root(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
         file.hasNext();) {
        QFile opened(file.next());
        ASSERT_TRUE(opened.open(QIODevice::ReadOnly));
        const std::string text = opened.readAll().toStdString();
        EXPECT_FALSE(holds(text, password)) << opened.fileName().toStdString();
        EXPECT_FALSE(holds(text, containerPassword)) << opened.fileName().toStdString();
    }
}

TEST_F(PremiumTest, CookiesOfTheServiceReachNobodyElse)
{
    const QString url = newFile();
    stranger.serve("/film.part1.rar", {.content = PatternContent(1, fileSize)});
    site.pages().serve("/f1", {.answers = {sites::Answer::redirect(302, "https://cdn.example/film.part1.rar")
                                               .withCookie("stray=1; Domain=cdn.example")}});
    engine.add(url);
    runAll();
    expectWhole(1);
    for (const sites::Request& request : stranger.requests()) {
        EXPECT_FALSE(request.header("Cookie"));
        EXPECT_FALSE(request.header("Referer"));
    }
}

TEST_F(PremiumTest, AStoppedItemLeavesTheSiteWithinASecond)
{
    const QString url = newFile();
    site.pages().serve("/f1", {.answers = {sites::Answer::page(200, "x").stallBeforeHead()}});
    const ItemPtr item = engine.add(url);
    engine.manager().commands().startAll();
    ASSERT_TRUE(waitUntil([this] { return site.pages().waitForStalled(2, {}); })) << "one looks up the name";
    engine.manager().commands().stopItems({item});
    EXPECT_TRUE(waitUntil([this] { return !site.pages().waitForStalled(2, {}); }, std::chrono::seconds(1)));
    EXPECT_EQ(item->status(), DownloadStatus::stopped);
}

#pragma once

#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/ManualClock.h"
#include "fixtures/Sandbox.h"
#include "platform/async/Background.h"
#include "platform/async/Spawn.h"
#include "platform/http/CurlHttpClient.h"
#include "resolvers/ResolverError.h"
#include "resolvers/Transcript.h"
#include "resolvers/containers/CryptResolver.h"
#include "resolvers/containers/KeeplinksResolver.h"
#include "sites/services/ClickNLoadCall.h"
#include "sites/services/ContainerSite.h"

#include <gtest/gtest.h>

namespace vormel {

/// The readers of containers with the real network client, against stand-ins of the three services.
class ContainerScene : public testing::Test
{
protected:
    using Kind = ContainerError::Kind;

    /// What a reading has come to.
    struct Reading
    {
        std::stop_source stop;
        std::optional<std::vector<Link>> links;
        std::optional<ContainerError> error;

        [[nodiscard]] bool isOver() const { return links || error; }
        [[nodiscard]] QStringList urls() const
        {
            QStringList texts;
            for (const Link& link : links.value_or(std::vector<Link>()))
                texts.append(link.absoluteString());
            return texts;
        }
    };
    using ReadingPtr = std::shared_ptr<Reading>;

    ~ContainerScene() override
    {
        client.reset();
        fixtures::turnEventLoop();
    }

    static ReadingPtr start(const ContainerResolver& resolver, const std::string& url,
                            const std::optional<QString>& password = {})
    {
        auto reading = std::make_shared<Reading>();
        spawn(run(resolver, fixtures::link(QString::fromStdString(url)), password, reading));
        return reading;
    }
    static ReadingPtr read(const ContainerResolver& resolver, const std::string& url,
                           const std::optional<QString>& password = {})
    {
        const ReadingPtr reading = start(resolver, url, password);
        EXPECT_TRUE(fixtures::waitUntil([&reading] { return reading->isOver(); }));
        return reading;
    }
    static void expectError(const ReadingPtr& reading, Kind kind)
    {
        ASSERT_TRUE(reading->error);
        EXPECT_EQ(reading->error->kind(), kind) << reading->error->what();
    }

    sites::TestCertificates certificates;
    sites::ContainerSite cryptSite{certificates, "filecrypt.example"};
    sites::ContainerSite otherCryptSite{certificates, "lfile.example"};
    sites::ContainerSite keeplinksSite{certificates, "keeplinks.example"};
    fixtures::Sandbox sandbox;
    fixtures::ManualClock clock;
    Background background;
    std::unique_ptr<CurlHttpClient> client = std::make_unique<CurlHttpClient>(clock, options());
    ContainerPorts ports{*client, background,
                         std::make_shared<const QStringList>(
                             QStringList{QStringLiteral("filestore.example"), QStringLiteral("rapidgator.net")})};
    FileCryptResolver fileCrypt{ports, {QStringLiteral("filecrypt.example"), QStringLiteral("filecrypt-safe.example")}};
    LFileCryptResolver lfileCrypt{ports, {QStringLiteral("lfile.example")}};
    KeeplinksResolver keeplinks{
        ports, {{QStringLiteral("keeplinks.example")}, QStringLiteral("https://www.keeplinks.example/")}};

private:
    [[nodiscard]] CurlHttpClient::Options options()
    {
        CurlHttpClient::Options options;
        options.extraCaFile =
            QString::fromStdString(certificates.writeAuthority(sandbox.root().toStdString()).string());
        for (const sites::ContainerSite* site : {&cryptSite, &otherCryptSite, &keeplinksSite}) {
            for (const auto& [from, to] : site->connectTo())
                options.connectTo.insert(QByteArray::fromStdString(from), QByteArray::fromStdString(to));
        }
        return options;
    }
    static QCoro::Task<> run(const ContainerResolver& resolver, Link url, std::optional<QString> password,
                             ReadingPtr reading)
    {
        try {
            reading->links = co_await resolver.resolveContainer(url, password, reading->stop.get_token());
        } catch (const ContainerError& error) {
            reading->error = error;
        }
    }
};

} // namespace vormel

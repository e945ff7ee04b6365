#pragma once

#include "fixtures/EventLoop.h"
#include "fixtures/ManualClock.h"
#include "fixtures/ScriptedBrowser.h"
#include "fixtures/ScriptedHttpClient.h"
#include "model/Services.h"
#include "platform/async/Background.h"
#include "platform/http/CookieStore.h"
#include "resolvers/captcha/CaptchaExtraction.h"
#include "resolvers/containers/CnlPages.h"
#include "resolvers/containers/LinkTexts.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace vormel::tests {

/// Lets a page go where it likes, as the one of a sheet does.
class EasyJudge final : public WebPage::Judge
{
public:
    bool mayAsk(const WebPage::Request& /*request*/) override { return true; }
    bool mayShow(const WebPage::Response& /*response*/) override { return true; }
    void windowWanted(const Link& /*url*/) override {}
    void navigationEnded(WebPage::End /*end*/) override {}
};

/// A container's page is open and its CAPTCHA solved.
class CaptchaExtractionTest : public testing::Test
{
protected:
    CaptchaExtractionTest()
    {
        open().onScript = [this](const QString&) { return told(); };
        browser.onPage = [this](fixtures::ScriptedPage& hidden) {
            hidden.onLoad = [this, &hidden](const Link& url) {
                opened << url.absoluteString();
                if (onOpened)
                    onOpened(hidden);
            };
        };
        make({});
    }
    ~CaptchaExtractionTest() override
    {
        extraction.reset();
        page.reset();
        background.reset();
        fixtures::turnEventLoop();
    }
    void make(const std::vector<SupportedHost>& accountHosts)
    {
        extraction = std::make_unique<CaptchaExtraction>(CaptchaPorts{http, *background, clock, browser, services},
                                                         linkOf(QStringLiteral("https://box.example/Container/1.html")),
                                                         accountHosts);
        QObject::connect(extraction.get(), &CaptchaExtraction::linksExtracted,
                         [this](const std::vector<Link>& urls) { results.push_back(textOf(urls)); });
        QObject::connect(extraction.get(), &CaptchaExtraction::changed, [this] { ++changes; });
    }
    fixtures::ScriptedPage& open()
    {
        page = browser.makePage(judge);
        return *browser.pages.back();
    }
    [[nodiscard]] std::optional<QVariant> told() const
    {
        return QVariant(QString::fromUtf8(QJsonDocument(content).toJson()));
    }
    void put(const QString& key, const QString& text) { content[key] = text; }
    void extract() { extraction->extract(page.get()); }
    [[nodiscard]] bool ends() const
    {
        return fixtures::waitUntil([this] { return !extraction->isExtracting(); });
    }
    [[nodiscard]] bool asks(std::size_t requests) const
    {
        return fixtures::waitUntil([this, requests] { return http.exchanges().size() >= requests; });
    }
    void answer(const QByteArray& body)
    {
        http.last().head(200);
        http.last().data(body);
        http.last().finish();
    }
    /// The container has so many pages with one link each.
    void putLinkPages(int count)
    {
        QString html;
        for (int i = 1; i <= count; ++i)
            html += QStringLiteral("<a href=\"/Link/%1.html\">").arg(i);
        put(QStringLiteral("html"), html);
    }
    [[nodiscard]] bool isAt(CaptchaExtraction::Progress progress) const
    {
        return fixtures::waitUntil([this, progress] { return extraction->extractProgress() == progress; });
    }
    static void leadTo(fixtures::ScriptedPage& hidden, const QString& url) { EXPECT_FALSE(hidden.asks(url)); }
    [[nodiscard]] std::string error() const
    {
        return extraction->errorMessage().value_or(QStringLiteral("none")).toStdString();
    }

    static constexpr const char* noLinks = "No links found — make sure the file list is visible, then try again";

    fixtures::ManualClock clock;
    fixtures::ScriptedHttpClient http;
    fixtures::ScriptedBrowser browser;
    Services services = Services::builtIn();
    EasyJudge judge;
    std::unique_ptr<Background> background = std::make_unique<Background>();
    std::unique_ptr<WebPage> page;
    QJsonObject content;
    QStringList opened; ///< by hidden pages
    std::function<void(fixtures::ScriptedPage&)> onOpened;
    std::vector<std::string> results;
    int changes = 0;
    std::unique_ptr<CaptchaExtraction> extraction;
};

} // namespace vormel::tests

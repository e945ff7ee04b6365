#pragma once

#include "EngineWorld.h"
#include "fixtures/EventLoop.h"
#include "sites/FileServer.h"

#include <gmock/gmock.h>

namespace vormel {

/// Notes what it is asked, and answers as the test says.
class NotingJudge final : public WebPage::Judge
{
public:
    std::vector<std::string> asked; ///< paths with their queries, those of frames in brackets
    std::vector<std::string> shown; ///< as above, "file " before what cannot be shown
    std::vector<std::string> windows;
    std::vector<WebPage::End> ends;
    std::function<bool(const WebPage::Request&)> onAsk;
    std::function<bool(const WebPage::Response&)> onShow;
    std::function<void()> onWindow;
    std::function<void()> onEnd;

    [[nodiscard]] bool mayAsk(const WebPage::Request& request) override;
    [[nodiscard]] bool mayShow(const WebPage::Response& response) override;
    void windowWanted(const Link& url) override;
    void navigationEnded(WebPage::End end) override;
};

/// A page of the real engine before a server of this machine.
class EngineTest : public testing::Test
{
protected:
    using End = WebPage::End;
    using Connection = WebPage::Connection;

    EngineTest();
    ~EngineTest() override;

    [[nodiscard]] static EngineWorld& world() { return EngineWorld::instance(); }
    [[nodiscard]] static Link link(const std::string& text) { return *Link::parse(QString::fromStdString(text)); }
    [[nodiscard]] static std::unique_ptr<WebPage> pageOf(WebBrowser& browser, WebPage::Judge& judge);

    void servePage(const std::string& path, const std::string& html)
    {
        serveAnswer(path, sites::Answer::page(200, html));
    }
    void serveAnswer(const std::string& path, const sites::Answer& answer)
    {
        server.serve(path, {.answers = {answer}});
    }
    void serveFile(const std::string& path);
    /// How often the server was asked for the path.
    [[nodiscard]] std::size_t requests(const std::string& path) const { return server.requests(path).size(); }

    /// Waits for that.
    [[nodiscard]] bool isAsked(const std::string& path) const;
    /// Waits until the server holds an answer back.
    [[nodiscard]] bool stalls() const;

    /// Waits for one more end than there were; nothing if none came.
    std::optional<End> nextEnd();
    /// Loads, and waits for the end.
    std::optional<End> load(const std::string& url);
    std::optional<End> open(const std::string& path) { return load(server.url(path)); }
    /// The script's answer; nothing if none came.
    [[nodiscard]] std::optional<QVariant> answer(const QString& script);
    /// Runs a script without waiting.
    void tell(const QString& script);
    [[nodiscard]] QString text()
    {
        return answer(QStringLiteral("document.body.textContent")).value_or(QVariant()).toString();
    }
    [[nodiscard]] std::string shownUrl() const;
    /// Lets the engine go on for a while, where nothing must happen.
    static void linger(std::chrono::milliseconds time = std::chrono::milliseconds(400));

    sites::FileServer server;
    NotingJudge judge;
    std::unique_ptr<WebPage> page;

private:
    std::size_t m_endsSeen = 0;
};

} // namespace vormel

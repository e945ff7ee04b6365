#include "EngineTest.h"

#include "platform/async/Spawn.h"

#include <QElapsedTimer>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

std::string noted(const Link& url, bool isMainFrame)
{
    const std::string text = url.toUrl().toString(QUrl::RemoveScheme | QUrl::RemoveAuthority).toStdString();
    return isMainFrame ? text : '[' + text + ']';
}

QCoro::Task<> keepAnswer(WebPage& page, QString script, std::shared_ptr<std::optional<QVariant>> answer)
{
    QCoro::Task<QVariant> run = page.run(script);
    QVariant value = co_await run;
    *answer = value;
}

} // namespace

bool NotingJudge::mayAsk(const WebPage::Request& request)
{
    asked.push_back(noted(request.url, request.isMainFrame));
    return !onAsk || onAsk(request);
}

bool NotingJudge::mayShow(const WebPage::Response& response)
{
    shown.push_back((response.canBeShown ? "" : "file ") + noted(response.url, response.isMainFrame));
    return !onShow || onShow(response);
}

void NotingJudge::windowWanted(const Link& url)
{
    windows.push_back(noted(url, true));
    if (onWindow)
        onWindow();
}

void NotingJudge::navigationEnded(WebPage::End end)
{
    ends.push_back(end);
    if (const auto act = onEnd)
        act();
}

EngineTest::EngineTest()
    : page(pageOf(world().browser(), judge))
{}

EngineTest::~EngineTest()
{
    page.reset();
    fixtures::turnEventLoop(); // what is left of the page goes
}

std::unique_ptr<WebPage> EngineTest::pageOf(WebBrowser& browser, WebPage::Judge& judge)
{
    return browser.makePage(judge);
}

void EngineTest::serveFile(const std::string& path)
{
    server.serve(path, {.content = sites::PatternContent(7, 3'000'000),
                        .contentType = "application/zip",
                        .answers = {sites::Answer::file().withDisposition("attachment; filename=\"../../file.zip\"")}});
}

bool EngineTest::isAsked(const std::string& path) const
{
    return fixtures::waitUntil([&] { return requests(path) > 0; });
}

bool EngineTest::stalls() const
{
    return fixtures::waitUntil([&] { return server.waitForStalled(1, std::chrono::milliseconds(0)); });
}

std::optional<WebPage::End> EngineTest::nextEnd()
{
    if (!fixtures::waitUntil([this] { return judge.ends.size() > m_endsSeen; }, std::chrono::seconds(10)))
        return std::nullopt;
    return judge.ends[m_endsSeen++];
}

std::optional<WebPage::End> EngineTest::load(const std::string& url)
{
    page->load(link(url));
    return nextEnd();
}

std::optional<QVariant> EngineTest::answer(const QString& script)
{
    const auto answer = std::make_shared<std::optional<QVariant>>();
    spawn(keepAnswer(*page, script, answer));
    static_cast<void>(fixtures::waitUntil([answer] { return answer->has_value(); }));
    return *answer;
}

void EngineTest::tell(const QString& script)
{
    spawn(keepAnswer(*page, script, std::make_shared<std::optional<QVariant>>()));
}

std::string EngineTest::shownUrl() const
{
    const std::optional<Link> url = page->url();
    return url ? noted(*url, true) : "nothing";
}

void EngineTest::linger(std::chrono::milliseconds time)
{
    QElapsedTimer timer;
    timer.start();
    static_cast<void>(fixtures::waitUntil([&] { return timer.elapsed() >= time.count(); }));
}

} // namespace vormel

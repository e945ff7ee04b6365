#include "EngineTest.h"

#include <QApplication>
#include <QWidget>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace vormel {
namespace {

using sites::Answer;

/// Pages that want something of the user.
class RefusalTest : public EngineTest
{
protected:
    RefusalTest()
    {
        servePage("/page", "<p>page");
        EXPECT_EQ(open("/page"), End::loaded);
    }
    ~RefusalTest() override { EXPECT_THAT(QApplication::topLevelWidgets(), IsEmpty()); }

    /// What a promise of the page comes to: "granted", or the name of its error.
    [[nodiscard]] QString fateOf(const QString& promise)
    {
        tell(u"window.fate = ''; (async () => { try { const x = await (%1);"
             " fate = typeof x === 'string' ? x : 'granted'; } catch (e) { fate = e.name || 'code ' + e.code; } })()"_s
                 .arg(promise));
        QString fate;
        static_cast<void>(fixtures::waitUntil(
            [&] {
                fate = answer(u"window.fate"_s)->toString();
                return !fate.isEmpty();
            },
            std::chrono::seconds(3)));
        return fate;
    }
};

TEST_F(RefusalTest, QuestionsAreAnsweredAtOnceAndUnseen)
{
    EXPECT_EQ(answer(u"alert('x'); confirm('x')"_s), QVariant(false));
    EXPECT_EQ(answer(u"prompt('x', 'y') === null"_s), QVariant(true));
    EXPECT_TRUE(answer(u"print(); 1"_s));
}

TEST_F(RefusalTest, AlertsWithoutEndHoldNobodyUp)
{
    servePage("/alerts", "<script>for (;;) alert('x')</script>");
    page->load(link(server.url("/alerts")));
    linger();
    page = pageOf(world().browser(), judge);
    EXPECT_EQ(open("/page"), End::loaded);
    EXPECT_EQ(text(), u"page"_s);
}

TEST_F(RefusalTest, DevicesAndNoticesAreRefused)
{
    EXPECT_EQ(fateOf(u"Notification.requestPermission()"_s), u"denied"_s);
    EXPECT_EQ(fateOf(u"new Promise((yes, no) => navigator.geolocation.getCurrentPosition(yes, no))"_s), u"code 1"_s);
    EXPECT_NE(fateOf(u"navigator.mediaDevices.getUserMedia({audio: true, video: true})"_s), u"granted"_s);
    EXPECT_NE(fateOf(u"navigator.mediaDevices.getDisplayMedia({video: true})"_s), u"granted"_s);
    EXPECT_NE(fateOf(u"navigator.clipboard.readText()"_s), u"granted"_s);
    EXPECT_NE(fateOf(u"navigator.clipboard.writeText('x')"_s), u"granted"_s);
    EXPECT_NE(fateOf(u"document.documentElement.requestFullscreen()"_s), u"granted"_s);
}

TEST_F(RefusalTest, ALoginIsAskedForOnce)
{
    serveAnswer("/closed", Answer::page(401, "closed").withHeader("WWW-Authenticate", "Basic realm=\"x\""));
    EXPECT_EQ(open("/closed"), End::loaded);
    EXPECT_EQ(text(), u"closed"_s);
    EXPECT_EQ(requests("/closed"), 1U);
}

TEST_F(RefusalTest, NoFilesAreChosen)
{
    EXPECT_EQ(answer(u"const f = document.createElement('input'); f.type = 'file'; f.click(); f.files.length"_s),
              QVariant(0));
    linger(std::chrono::milliseconds(100));
}

TEST_F(RefusalTest, NoServiceWorkerComesToBe)
{
    server.serve("/worker.js", {.content = "setInterval(() => fetch('/ping'), 20)", .contentType = "text/javascript"});
    EXPECT_NE(fateOf(u"navigator.serviceWorker.register('/worker.js')"_s), u"granted"_s);
    page.reset();
    linger(std::chrono::milliseconds(200));
    EXPECT_EQ(requests("/ping"), 0U);
}

TEST_F(RefusalTest, APageFetchesOnlyOverHttp)
{
    serveAnswer("/data", Answer::page(200, "data"));
    EXPECT_EQ(fateOf(u"fetch('/data').then(r => r.text())"_s), u"data"_s);
    EXPECT_EQ(fateOf(u"fetch('data:,own').then(r => r.text())"_s), u"own"_s);
    EXPECT_NE(fateOf(u"fetch('file:///etc/passwd')"_s), u"granted"_s);
    tell(u"new WebSocket('%1'.replace('http', 'ws'))"_s.arg(QString::fromStdString(server.url("/socket"))));
    linger(std::chrono::milliseconds(200));
    EXPECT_EQ(requests("/socket"), 0U);
}

TEST_F(RefusalTest, WindowsWithoutEndHoldNobodyUp)
{
    servePage("/windows", "<script>setInterval(() => window.open('/window'), 0)</script>");
    servePage("/next", "next");
    EXPECT_EQ(open("/windows"), End::loaded);
    EXPECT_TRUE(fixtures::waitUntil([this] { return judge.windows.size() > 3; }));
    EXPECT_EQ(open("/next"), End::loaded);
    EXPECT_EQ(requests("/window"), 0U);
}

} // namespace
} // namespace vormel

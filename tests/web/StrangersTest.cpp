#include "WebWorld.h"
#include "fixtures/EventLoop.h"
#include "fixtures/ManualClock.h"
#include "fixtures/Sandbox.h"
#include "model/Services.h"
#include "platform/async/Background.h"
#include "platform/async/Spawn.h"
#include "platform/clock/SystemClock.h"
#include "platform/web/PluginBrowser.h"
#include "resolvers/captcha/LinkPageResolver.h"
#include "resolvers/captcha/LinkTargets.h"
#include "sites/services/StrangePages.h"

#include <QApplication>
#include <QElapsedTimer>

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

using Kind = sites::StrangePages::Kind;

QCoro::Task<> noteEnd(LinkPageResolver& search, Link page, std::shared_ptr<std::optional<std::optional<Link>>> end)
{
    *end = co_await search.resolve(page);
}

/// Looks beside a test how long the machine itself stands still: what it longest took to come back from a short sleep.
class Standstill
{
public:
    [[nodiscard]] qint64 longestMilliseconds() const { return m_longest; }

private:
    void watch(const std::stop_token& stop)
    {
        QElapsedTimer turn;
        turn.start();
        while (!stop.stop_requested()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            m_longest = std::max<qint64>(m_longest, turn.restart());
        }
    }

    std::atomic<qint64> m_longest = 0;
    std::jthread m_thread{[this](const std::stop_token& stop) { watch(stop); }};
};

/// A hidden walk over a page that misbehaves; the engine is on the real clock, the walk on one that the test moves.
class HiddenWalkAmongStrangers : public ::testing::TestWithParam<Kind>
{
protected:
    HiddenWalkAmongStrangers() { webWorld().switchboard.lead(strangers.connectTo()); }
    ~HiddenWalkAmongStrangers() override { webWorld().switchboard.forget(strangers.connectTo()); }

    [[nodiscard]] std::size_t visibleWindows() const
    {
        const QWidgetList windows = QApplication::topLevelWidgets();
        return static_cast<std::size_t>(
            std::count_if(windows.begin(), windows.end(), [](const QWidget* window) { return window->isVisible(); }));
    }

    sites::StrangePages strangers{webWorld().certificates};
    Sandbox sandbox;
    SystemClock engineClock;
    ManualClock clock;
    PluginBrowser browser{{QStringLiteral(VORMEL_WEB_PLUGIN), sandbox.path(u"web"_s)}, engineClock};
    Background background;
    std::shared_ptr<const LinkTargets> targets = std::make_shared<const LinkTargets>(Services::builtIn());
};

} // namespace

TEST_P(HiddenWalkAmongStrangers, EndsWithNothingAndShowsNothing)
{
    using std::chrono::milliseconds;
    LinkPageResolver search({browser, clock, background}, targets);
    const auto end = std::make_shared<std::optional<std::optional<Link>>>();
    spawn(noteEnd(search, Link::parse(QString::fromStdString(strangers.url(GetParam()))).value(), end));

    const Standstill machine;
    QElapsedTimer turn;
    qint64 slowest = 0;
    turn.start();
    const auto isOver = [&] {
        slowest = std::max(slowest, turn.restart());
        return end->has_value();
    };
    static_cast<void>(waitUntil(isOver, milliseconds(700))); // what it does without end it does by then
    EXPECT_LT(slowest, machine.longestMilliseconds() + 500) << "the window stood still";
    EXPECT_EQ(visibleWindows(), 0U);
    clock.advance(std::chrono::seconds(15));
    ASSERT_TRUE(waitUntil([&] { return end->has_value(); }, milliseconds(1000)));
    EXPECT_EQ(end->value(), std::nullopt);
    EXPECT_EQ(strangers.pings(), 0U);
    EXPECT_EQ(visibleWindows(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Each, HiddenWalkAmongStrangers,
                         ::testing::Values(Kind::endlessScript, Kind::allocation, Kind::alerts, Kind::prints,
                                           Kind::windows, Kind::permissions, Kind::sound, Kind::leavingQuestion,
                                           Kind::toFile, Kind::toChrome, Kind::toScheme, Kind::redirectToFile,
                                           Kind::redirectsForEver, Kind::serviceWorker, Kind::loginQuestion,
                                           Kind::downloads, Kind::silence, Kind::expiredCertificate,
                                           Kind::wrongCertificate, Kind::unknownCertificate));

#include "resolvers/terabytez/TerabytezScene.h"

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

/// Where a walk is stopped.
enum class Moment
{
    load,
    formWait,
    script,
    reading,
    post,
};

class TerabytezFileWalkStop : public TerabytezScene, public testing::WithParamInterface<Moment>
{};

TEST_P(TerabytezFileWalkStop, EndsThePageAtOnceAndTellsNothing)
{
    browser.jar = {".terabytez.example\tTRUE\t/\tTRUE\t0\txfss\tabc"};
    shown.html = u"https://dl7.any.example/x/film.rar"_s;
    if (GetParam() == Moment::post || GetParam() == Moment::reading)
        loadsWithForm();
    else if (GetParam() != Moment::load)
        loadsAtOnce();
    if (GetParam() == Moment::script)
        browser.onPage = [this](Page& page) { page.onLoad = [this, &page](const Link&) { page.arrivesAt(filePage); }; };
    if (GetParam() == Moment::reading)
        shown.onSubmit = [](Page& page) { page.ends(); };
    std::optional<HeldReading> held;
    if (GetParam() == Moment::reading)
        held.emplace(background);
    const WalkPtr walk = start();
    ASSERT_TRUE(GetParam() != Moment::post || comes([this] { return timesRun(terabytezScripts::submitForm()) == 1; }));
    ASSERT_FALSE(walk->isOver);
    walk->stop.request_stop();
    EXPECT_TRUE(browser.pages.empty());
    held.reset();
    ASSERT_TRUE(ends(walk));
    EXPECT_FALSE(walk->found || walk->error);
    EXPECT_EQ(clock.pendingTimers(), 0);
    EXPECT_TRUE(transfers.cookies().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Moments, TerabytezFileWalkStop,
                         testing::Values(Moment::load, Moment::formWait, Moment::script, Moment::reading,
                                         Moment::post));

class TerabytezStoppedWalk : public TerabytezScene
{};

TEST_F(TerabytezStoppedWalk, AFileThatIsReadOffThePageWhenTheWalkIsStoppedIsNotTold)
{
    std::optional<HeldReading> held;
    browser.jar = {".terabytez.example\tTRUE\t/\tTRUE\t0\txfss\tabc"};
    loadsWithForm();
    shown.html = u"https://dl7.any.example/x/film.rar"_s;
    shown.onSubmit = [](Page& page) { page.ends(); };
    shown.onRead = [this, &held](Page&) { held.emplace(background); };
    const WalkPtr walk = start();
    ASSERT_TRUE(comes([&held] { return held.has_value(); }));
    walk->stop.request_stop();
    held.reset();
    ASSERT_TRUE(ends(walk));
    EXPECT_FALSE(walk->found || walk->error);
    EXPECT_TRUE(transfers.cookies().isEmpty());
}

} // namespace
} // namespace vormel

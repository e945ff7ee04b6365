#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// How far the reading of a container has come.
enum class Reading
{
    underWay,
    waitsForCaptcha,
};

/// The row of a container that came with a password and was not read to its end.
class ContainerRowCommands : public ::testing::TestWithParam<Reading>
{
protected:
    void SetUp() override
    {
        engine.manager().addURLs({link(u"https://container.example/c/XYZ"_s)}, u"secret"_s);
        turnEventLoop();
        row = engine.manager().items().front();
        if (GetParam() == Reading::waitsForCaptcha)
            answer(ContainerError::captchaRequired());
        filename = row->filename();
    }
    void answer(const std::variant<std::vector<Link>, ContainerError>& result)
    {
        log->containers.front().answer->deliver(result);
        turnEventLoop();
    }
    void expectAsBefore()
    {
        turnEventLoop();
        EXPECT_EQ(engine.manager().items(), std::vector{row});
        EXPECT_EQ(row->status(), DownloadStatus::expanding);
        EXPECT_EQ(row->filename(), filename);
        EXPECT_EQ(log->containers.size(), 1U);
        EXPECT_FALSE(log->containers.front().stop.stop_requested());
        EXPECT_TRUE(engine.http.exchanges().empty());
        EXPECT_EQ(engine.manager().questions().pendingCaptcha().has_value(), GetParam() == Reading::waitsForCaptcha);
    }
    [[nodiscard]] QueueCommands& commands() { return engine.manager().commands(); }

    std::shared_ptr<ServiceLog> log = std::make_shared<ServiceLog>();
    EngineOnScript engine{fakeServices(log)};
    ItemPtr row;
    QString filename;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Readings, ContainerRowCommands,
                         ::testing::Values(Reading::underWay, Reading::waitsForCaptcha));

TEST_P(ContainerRowCommands, LeaveTheReadingAloneUnlessTheRowIsRemoved)
{
    const std::vector<std::function<void()>> all{
        [this] { commands().startAll(); },           [this] { commands().startItems({row}); },
        [this] { commands().pauseAll(); },           [this] { commands().pauseItems({row}); },
        [this] { commands().resumeItem(*row); },     [this] { commands().stopItems({row}); },
        [this] { commands().resyncItems({row}); },   [this] { commands().retryItem(*row); },
        [this] { commands().redownloadItem(*row); }, [this] { commands().clearCompleted(); },
    };
    for (const auto& command : all) {
        command();
        expectAsBefore();
    }
}

TEST_P(ContainerRowCommands, EndEverythingThatIsAskedForARemovedRow)
{
    commands().removeItems({row->id()});
    turnEventLoop();
    EXPECT_TRUE(engine.manager().items().empty());
    EXPECT_EQ(engine.manager().questions().pendingCaptcha(), std::nullopt);
    EXPECT_EQ(log->containers.front().stop.stop_requested(), GetParam() == Reading::underWay);
    engine.manager().questions().addCaptchaLinks({link(u"http://h/1.rar"_s)});
    if (GetParam() == Reading::underWay)
        answer(std::vector{link(u"http://h/1.rar"_s)});
    EXPECT_TRUE(engine.manager().items().empty());
}

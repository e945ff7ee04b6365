#include "platform/async/SharedEventual.h"

#include "platform/async/Spawn.h"

#include <QCoroTask>
#include <QStringList>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

QCoro::Task<> note(SharedEventual<QString> result, QString who, QStringList& log)
{
    const QString value = co_await result;
    log << who + u' ' + value;
}

class SharedEventualTest : public ::testing::Test
{
protected:
    void await(const char* who) { spawn(note(result, QString::fromUtf8(who), log)); }

    SharedEventual<QString> result;
    QStringList log;
};

TEST_F(SharedEventualTest, AllWhoWaitGetTheResultInTheirOrder)
{
    await("a");
    await("b");
    EXPECT_TRUE(log.isEmpty());
    EXPECT_FALSE(result.isThere());
    result.deliver(u"x"_s);
    await("c");
    EXPECT_EQ(log.join(u','), u"a x,b x,c x");
}

TEST_F(SharedEventualTest, OnlyTheFirstResultCounts)
{
    result.deliver(u"x"_s);
    result.deliver(u"y"_s);
    await("a");
    EXPECT_EQ(log.join(u','), u"a x");
}

TEST_F(SharedEventualTest, AWaiterMayLetGoOfTheLastCopy)
{
    auto own = std::make_unique<SharedEventual<QString>>();
    const auto letGo = [](std::unique_ptr<SharedEventual<QString>>& last, QStringList& seen) -> QCoro::Task<> {
        const SharedEventual<QString> copy = *last;
        const QString value = co_await copy;
        seen << value;
        last.reset();
    };
    spawn(letGo(own, log));
    spawn(note(*own, u"b"_s, log));
    own->deliver(u"x"_s);
    EXPECT_EQ(own, nullptr);
    EXPECT_EQ(log.join(u','), u"x,b x");
}

} // namespace
} // namespace vormel

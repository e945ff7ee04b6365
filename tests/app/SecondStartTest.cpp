#include "app/SecondStart.h"

#include "fixtures/EventLoop.h"
#include "fixtures/Sandbox.h"
#include "platform/desktop/InstanceMessage.h"
#include "platform/desktop/SingleInstance.h"

#include <QDBusConnection>

#include <gtest/gtest.h>

#include <optional>
#include <thread>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using namespace std::chrono_literals;

/// Two starts, without a bus.
class SecondStartTest : public ::testing::Test
{
protected:
    SecondStartTest()
    {
        QObject::connect(&*first, &SingleInstance::showRequested, [this](const QString& text) { asked << text; });
    }
    SecondStart settle(const QStringList& addresses, std::chrono::milliseconds patience)
    {
        return settleSecondStart(second, QDBusConnection(u"a bus that nobody made"_s), addresses, {}, patience);
    }

    fixtures::Sandbox sandbox;
    std::optional<SingleInstance> first{std::in_place, sandbox.root()};
    SingleInstance second{sandbox.root()};
    QStringList asked;
};

TEST_F(SecondStartTest, WhoListensHasIt)
{
    EXPECT_EQ(settle({u"https://a.example/1"_s, u"https://a.example/2"_s}, 1min), SecondStart::handedOver);
    EXPECT_TRUE(fixtures::waitUntil([this] { return !asked.isEmpty(); }));
    EXPECT_EQ(asked, QStringList{u"https://a.example/1\nhttps://a.example/2"_s});
    EXPECT_FALSE(second.isFirst());
}

TEST_F(SecondStartTest, OneThatIsAboutToEndAndTakesLongIsTold)
{
    first->stopListening();
    EXPECT_EQ(settle({u"https://a.example/1"_s}, 300ms), SecondStart::unanswered);
    fixtures::turnEventLoop();
    EXPECT_EQ(asked, QStringList());
}

TEST_F(SecondStartTest, WhereTheLockIsFreeByNowItIsTheFirst)
{
    first.reset();
    EXPECT_EQ(settle({u"https://a.example/1"_s}, 1min), SecondStart::becameFirst);
    EXPECT_TRUE(second.isFirst());
    const SingleInstance third(sandbox.root());
    EXPECT_FALSE(third.isFirst());
    EXPECT_TRUE(third.askFirstToShow());
}

TEST_F(SecondStartTest, TheEndOfTheOtherIsWaitedFor)
{
    first->stopListening();
    SecondStart end = SecondStart::unanswered;
    {
        // The second one only looks at the lock until then; what it sets up belongs to this thread.
        std::jthread ending([this] {
            std::this_thread::sleep_for(400ms);
            first.reset();
        });
        end = settle({u"https://a.example/1"_s}, 1min);
    }
    EXPECT_EQ(end, SecondStart::becameFirst);
    EXPECT_EQ(asked, QStringList());
}

TEST_F(SecondStartTest, MoreThanCanBeHandedOverIsNotTried)
{
    const QString longest(InstanceMessage::maxTextBytes, u'x');
    EXPECT_EQ(settle({longest}, 0ms), SecondStart::handedOver);
    EXPECT_EQ(settle({longest + u'x'}, 1min), SecondStart::tooMuch);
    EXPECT_EQ(settle({QString(InstanceMessage::maxTextBytes / 2 + 1, u'ü')}, 1min), SecondStart::tooMuch);
}

} // namespace
} // namespace vormel

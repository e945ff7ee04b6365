#include "ui/notices/Notices.h"

#include "fixtures/ManualClock.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace vormel {

namespace {

struct NoticesTest : testing::Test
{
    fixtures::ManualClock clock;
    Notices notices{clock};
    std::vector<QString> told;

    Notice notice(const QString& key)
    {
        Notice made;
        made.key = key;
        made.text = [key](AppLanguage) { return key; };
        made.actions = {{{u"Do", u"Fai"}, [this, key] { told.push_back(key + u" done"_s); }}};
        made.onGone = [this, key] { told.push_back(key + u" gone"_s); };
        return made;
    }
};

TEST_F(NoticesTest, OneStaysUntilItIsTakenBack)
{
    notices.show(notice(u"a"_s));
    clock.advance(std::chrono::hours(1));
    ASSERT_TRUE(notices.find(u"a"_s));
    notices.takeBack(u"a"_s);
    EXPECT_FALSE(notices.find(u"a"_s));
    EXPECT_THAT(told, ElementsAre(u"a gone"_s));
}

TEST_F(NoticesTest, OneGoesWhenItsTimeIsOver)
{
    Notice passing = notice(u"a"_s);
    passing.life = std::chrono::seconds(10);
    notices.show(passing);
    clock.advance(std::chrono::milliseconds(9999));
    EXPECT_THAT(told, IsEmpty());
    clock.advance(std::chrono::milliseconds(1));
    EXPECT_FALSE(notices.find(u"a"_s));
    EXPECT_THAT(told, ElementsAre(u"a gone"_s));
}

TEST_F(NoticesTest, AnActionIsNoEndOfAnotherKind)
{
    notices.show(notice(u"a"_s));
    notices.run(u"a"_s, 0);
    EXPECT_FALSE(notices.find(u"a"_s));
    EXPECT_THAT(told, ElementsAre(u"a done"_s));
}

TEST_F(NoticesTest, AnActionThatIsNotThereDoesNothing)
{
    notices.show(notice(u"a"_s));
    notices.run(u"a"_s, 1);
    notices.run(u"b"_s, 0);
    EXPECT_TRUE(notices.find(u"a"_s));
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(NoticesTest, ANewerOneAboutTheSameTakesThePlaceWithATimeOfItsOwn)
{
    Notice passing = notice(u"a"_s);
    passing.life = std::chrono::seconds(10);
    notices.show(passing);
    clock.advance(std::chrono::seconds(6));
    notices.show(passing);
    EXPECT_THAT(told, ElementsAre(u"a gone"_s));
    clock.advance(std::chrono::seconds(6));
    EXPECT_TRUE(notices.find(u"a"_s));
}

TEST_F(NoticesTest, ANewerOneAboutTheSameIsNoNewOne)
{
    QObject::connect(&notices, &Notices::appeared, [this](const QString& key) { told.push_back(key + u" came"_s); });
    QObject::connect(&notices, &Notices::renewed, [this](const QString& key) { told.push_back(key + u" anew"_s); });
    QObject::connect(&notices, &Notices::went, [this](const QString& key) { told.push_back(key + u" went"_s); });
    notices.show(notice(u"a"_s));
    notices.show(notice(u"a"_s));
    EXPECT_THAT(told, ElementsAre(u"a came"_s, u"a anew"_s, u"a gone"_s));
}

TEST_F(NoticesTest, WhatANoticeLeadsToMayShowTheNext)
{
    Notice first = notice(u"a"_s);
    first.onGone = [this] { notices.show(notice(u"b"_s)); };
    notices.show(first);
    notices.takeBack(u"a"_s);
    EXPECT_TRUE(notices.find(u"b"_s));
}

} // namespace

} // namespace vormel

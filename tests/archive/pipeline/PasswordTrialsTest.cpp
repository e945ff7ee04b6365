#include "archive/pipeline/PasswordTrials.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

const QString archive = u"/x/a.7z"_s;

TEST(PasswordTrials, OnlyTheSameAnswerToTheSameArchiveFailsAgain)
{
    PasswordTrials trials;
    EXPECT_FALSE(trials.hasFailedAgain(archive, u"one"_s));
    EXPECT_FALSE(trials.hasFailedAgain(archive, u"two"_s));
    EXPECT_FALSE(trials.hasFailedAgain(u"/x/b.7z"_s, u"one"_s));
    EXPECT_FALSE(trials.hasFailedAgain(archive, QString()));
    EXPECT_TRUE(trials.hasFailedAgain(archive, u"one"_s));
    EXPECT_TRUE(trials.hasFailedAgain(archive, u"two"_s));
    EXPECT_TRUE(trials.hasFailedAgain(archive, u""_s));
}

TEST(PasswordTrials, NothingIsKnownOfAnArchiveThatWasForgotten)
{
    PasswordTrials trials;
    EXPECT_FALSE(trials.hasFailedAgain(archive, u"one"_s));
    EXPECT_FALSE(trials.hasFailedAgain(u"/x/b.7z"_s, u"one"_s));
    trials.forget(archive);
    EXPECT_FALSE(trials.hasFailedAgain(archive, u"one"_s));
    EXPECT_TRUE(trials.hasFailedAgain(u"/x/b.7z"_s, u"one"_s));
}

} // namespace
} // namespace vormel

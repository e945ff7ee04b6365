#include "archive/pipeline/PasswordTrials.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

const QString archive = QStringLiteral("/x/a.7z");

TEST(PasswordTrials, OnlyTheSameAnswerToTheSameArchiveFailsAgain)
{
    PasswordTrials trials;
    EXPECT_FALSE(trials.hasFailedAgain(archive, QStringLiteral("one")));
    EXPECT_FALSE(trials.hasFailedAgain(archive, QStringLiteral("two")));
    EXPECT_FALSE(trials.hasFailedAgain(QStringLiteral("/x/b.7z"), QStringLiteral("one")));
    EXPECT_FALSE(trials.hasFailedAgain(archive, QString()));
    EXPECT_TRUE(trials.hasFailedAgain(archive, QStringLiteral("one")));
    EXPECT_TRUE(trials.hasFailedAgain(archive, QStringLiteral("two")));
    EXPECT_TRUE(trials.hasFailedAgain(archive, QStringLiteral("")));
}

TEST(PasswordTrials, NothingIsKnownOfAnArchiveThatWasForgotten)
{
    PasswordTrials trials;
    EXPECT_FALSE(trials.hasFailedAgain(archive, QStringLiteral("one")));
    EXPECT_FALSE(trials.hasFailedAgain(QStringLiteral("/x/b.7z"), QStringLiteral("one")));
    trials.forget(archive);
    EXPECT_FALSE(trials.hasFailedAgain(archive, QStringLiteral("one")));
    EXPECT_TRUE(trials.hasFailedAgain(QStringLiteral("/x/b.7z"), QStringLiteral("one")));
}

} // namespace
} // namespace vormel

#include "kit/PathLabel.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

TEST(PathLabel, ShowsTheHomeFolderAsATildeAndOnlyThat)
{
    const QString home = QStringLiteral("/home/ada");
    EXPECT_EQ(withTilde(QStringLiteral("/home/ada"), home), u"~");
    EXPECT_EQ(withTilde(QStringLiteral("/home/ada/Downloads"), home), u"~/Downloads");
    EXPECT_EQ(withTilde(QStringLiteral("/home/adamo/Downloads"), home), u"/home/adamo/Downloads");
    EXPECT_EQ(withTilde(QStringLiteral("/srv/home/ada"), home), u"/srv/home/ada");
    EXPECT_EQ(withTilde({}, home), u"");
}

} // namespace
} // namespace vormel

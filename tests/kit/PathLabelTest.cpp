#include "kit/PathLabel.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

TEST(PathLabel, ShowsTheHomeFolderAsATildeAndOnlyThat)
{
    const QString home = u"/home/ada"_s;
    EXPECT_EQ(withTilde(u"/home/ada"_s, home), u"~");
    EXPECT_EQ(withTilde(u"/home/ada/Downloads"_s, home), u"~/Downloads");
    EXPECT_EQ(withTilde(u"/home/adamo/Downloads"_s, home), u"/home/adamo/Downloads");
    EXPECT_EQ(withTilde(u"/srv/home/ada"_s, home), u"/srv/home/ada");
    EXPECT_EQ(withTilde({}, home), u"");
}

} // namespace
} // namespace vormel

#include "archive/tools/ToolArguments.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

const QString archive = QStringLiteral("/a/x.rar");
const QString out = QStringLiteral("/o");

QStringList list(std::initializer_list<const char*> arguments)
{
    QStringList all;
    for (const char* argument : arguments)
        all << QString::fromUtf8(argument);
    return all;
}

TEST(ToolArguments, AreWhatEachToolIsToldInOrder)
{
    const Password secret = QStringLiteral("a b");
    EXPECT_EQ(dittoArguments(archive, out), list({"-x", "-k", "/a/x.rar", "/o"}));
    EXPECT_EQ(unzipArguments(archive, out, {}), list({"-o", "/a/x.rar", "-d", "/o"}));
    EXPECT_EQ(unzipArguments(archive, out, secret), list({"-P", "a b", "-o", "/a/x.rar", "-d", "/o"}));
    EXPECT_EQ(rarArguments(archive, out, {}), list({"x", "-o+", "-y", "-p-", "/a/x.rar", "/o/"}));
    EXPECT_EQ(rarArguments(archive, out, secret), list({"x", "-o+", "-y", "-pa b", "/a/x.rar", "/o/"}));
    EXPECT_EQ(sevenZipArguments(archive, out, {}), list({"x", "/a/x.rar", "-o/o", "-y"}));
    EXPECT_EQ(sevenZipArguments(archive, out, secret), list({"x", "/a/x.rar", "-o/o", "-y", "-pa b"}));
    EXPECT_EQ(tarArguments(QStringLiteral("-xzf"), archive, out), list({"-xzf", "/a/x.rar", "-C", "/o"}));
}

TEST(ToolArguments, APasswordThatBeginsWithAHyphenIsNoSwitch)
{
    for (const char* password : {"-", "-x", "--", "-o"}) {
        const QString given = QString::fromUtf8(password);
        EXPECT_EQ(unzipArguments(archive, out, given).front(), QStringLiteral("-P") + given);
        EXPECT_EQ(rarArguments(archive, out, given)[3], QStringLiteral("-p") + given);
        EXPECT_EQ(sevenZipArguments(archive, out, given).back(), QStringLiteral("-p") + given);
    }
}

TEST(ToolArguments, TarIsGivenBackslashesAsItReadsThem)
{
    EXPECT_EQ(tarArguments(QStringLiteral("-xf"), QStringLiteral("/a\\n/x.tar"), QStringLiteral("/o\\n\\")).mid(1),
              list({"/a\\n/x.tar", "-C", "/o\\\\n\\\\"}));
}

} // namespace
} // namespace vormel

#include "archive/tools/ToolArguments.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

const QString archive = u"/a/x.rar"_s;
const QString out = u"/o"_s;

QStringList list(std::initializer_list<const char*> arguments)
{
    QStringList all;
    for (const char* argument : arguments)
        all << QString::fromUtf8(argument);
    return all;
}

TEST(ToolArguments, AreWhatEachToolIsToldInOrder)
{
    const Password secret = u"a b"_s;
    EXPECT_EQ(dittoArguments(archive, out), list({"-x", "-k", "/a/x.rar", "/o"}));
    EXPECT_EQ(unzipArguments(archive, out, {}), list({"-o", "/a/x.rar", "-d", "/o"}));
    EXPECT_EQ(unzipArguments(archive, out, secret), list({"-P", "a b", "-o", "/a/x.rar", "-d", "/o"}));
    EXPECT_EQ(rarArguments(archive, out, {}), list({"x", "-o+", "-y", "-p-", "/a/x.rar", "/o/"}));
    EXPECT_EQ(rarArguments(archive, out, secret), list({"x", "-o+", "-y", "-pa b", "/a/x.rar", "/o/"}));
    EXPECT_EQ(sevenZipArguments(archive, out, {}), list({"x", "/a/x.rar", "-o/o", "-y"}));
    EXPECT_EQ(sevenZipArguments(archive, out, secret), list({"x", "/a/x.rar", "-o/o", "-y", "-pa b"}));
    EXPECT_EQ(tarArguments(u"-xzf"_s, archive, out), list({"-xzf", "/a/x.rar", "-C", "/o"}));
}

TEST(ToolArguments, APasswordThatBeginsWithAHyphenIsNoSwitch)
{
    for (const char* password : {"-", "-x", "--", "-o"}) {
        const QString given = QString::fromUtf8(password);
        EXPECT_EQ(unzipArguments(archive, out, given).front(), u"-P"_s + given);
        EXPECT_EQ(rarArguments(archive, out, given)[3], u"-p"_s + given);
        EXPECT_EQ(sevenZipArguments(archive, out, given).back(), u"-p"_s + given);
    }
}

TEST(ToolArguments, TarIsGivenBackslashesAsItReadsThem)
{
    EXPECT_EQ(tarArguments(u"-xf"_s, u"/a\\n/x.tar"_s, u"/o\\n\\"_s).mid(1),
              list({"/a\\n/x.tar", "-C", "/o\\\\n\\\\"}));
}

TEST(ToolArguments, AnEmptyPasswordIsNone)
{
    for (const Password& none : {Password(QString()), Password(QString::fromUtf8(""))}) {
        EXPECT_EQ(unzipArguments(archive, out, none), unzipArguments(archive, out, {}));
        EXPECT_EQ(rarArguments(archive, out, none), rarArguments(archive, out, {}));
        EXPECT_EQ(sevenZipArguments(archive, out, none), sevenZipArguments(archive, out, {}));
    }
}

TEST(ToolArguments, APasswordIsPassedOnAsItIs)
{
    for (const char* password : {" ", "a\"b", "a'b", "$HOME", "*", "\\", "\n", "\xc3\xa9\xe6\xbc\xa2"}) {
        const QString given = QString::fromUtf8(password);
        EXPECT_EQ(unzipArguments(archive, out, given)[1], given);
        EXPECT_EQ(rarArguments(archive, out, given)[3].mid(2), given);
        EXPECT_EQ(sevenZipArguments(archive, out, given).back().mid(2), given);
    }
}

} // namespace
} // namespace vormel

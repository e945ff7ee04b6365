#include "resolvers/containers/KnownHosts.h"

#include "LinkTexts.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel::tests {
namespace {

const QStringList& knownHosts()
{
    static const QStringList hosts{u"filestore.example"_s, u"terabytez.example"_s};
    return hosts;
}

bool isAccepted(const char* text)
{
    return acceptKnownHost(linkOf(QString::fromUtf8(text)), knownHosts());
}

TEST(KnownHosts, AHostIsKnownByAnyPieceOfItsName)
{
    for (const char* text :
         {"https://filestore.example/", "https://www.filestore.example", "HTTP://FileStore.Example/a",
          "https://myfilestore.example.net/", "https://a.terabytez.example:8443/a", "ftp://filestore.example/a",
          "https://user@filestore.example/"})
        EXPECT_TRUE(isHostAmong(linkOf(QString::fromUtf8(text)), knownHosts())) << text;
    for (const char* text :
         {"https://filestore.com/", "https://other.example/filestore.example/a", "mailto:a@filestore.example",
          "file:///filestore.example/a", "https://filestore.example@other.example/a",
          "https://other.example/?filestore.example", "https://filestore.example.:1@x/"})
        EXPECT_FALSE(isHostAmong(linkOf(QString::fromUtf8(text)), knownHosts())) << text;
    EXPECT_FALSE(isHostAmong(linkOf(u"https://filestore.example/a"_s), {}));
}

TEST(KnownHosts, AFileIsMoreThanTheRootOfItsSite)
{
    for (const char* text :
         {"https://filestore.example/a", "http://www.filestore.example/a/b", "https://filestore.example/a/",
          "https://filestore.example//a", "https://filestore.example/a?b#c"})
        EXPECT_TRUE(isAccepted(text)) << text;
    for (const char* text :
         {"https://filestore.example", "https://filestore.example/", "https://filestore.example//",
          "https://filestore.example?a/b", "https://filestore.example/#a/b", "https://filestore.example/?a/b"})
        EXPECT_FALSE(isAccepted(text)) << text;
}

TEST(KnownHosts, OnlyWebAddressesOfKnownHostsAreFiles)
{
    for (const char* text : {"ftp://filestore.example/a", "javascript://filestore.example/a", "https://other.example/a",
                             "file:///a/b", "https:///a/b"})
        EXPECT_FALSE(isAccepted(text)) << text;
}

} // namespace
} // namespace vormel::tests

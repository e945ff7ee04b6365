#include "app/LinkFile.h"

#include "fixtures/Sandbox.h"

#include <QFile>

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

QStringList texts(const LinkFile& file)
{
    QStringList all;
    for (const Link& link : file.links)
        all << link.absoluteString();
    return all;
}

class LinkFileTest : public ::testing::Test
{
protected:
    LinkFile read(const QByteArray& bytes) const { return readLinkFile(sandbox.write(u"links.txt"_s, bytes)); }

    fixtures::Sandbox sandbox;
};

TEST_F(LinkFileTest, HasTheLinksOfATextInTheirOrder)
{
    const LinkFile file =
        read("\xEF\xBB\xBFhttps://b.example/\xC3\xBC\r\nsome words\n\n  http://a.example/1\nftp://x/1");
    EXPECT_EQ(texts(file), (QStringList{u"https://b.example/%C3%BC"_s, u"http://a.example/1"_s}));
    EXPECT_EQ(file.problem, std::nullopt);
}

TEST_F(LinkFileTest, TellsWhyThereAreNone)
{
    EXPECT_EQ(readLinkFile(sandbox.path(u"none"_s)).problem, LinkFile::Problem::missing);
    EXPECT_EQ(readLinkFile(sandbox.root()).problem, LinkFile::Problem::unreadable);
    EXPECT_EQ(read("ftp://a.example/1\n").problem, LinkFile::Problem::empty);
    EXPECT_EQ(read("").problem, LinkFile::Problem::empty);
    EXPECT_EQ(read(QByteArray("\x00\xFF\xFE\n\x80", 5)).problem, LinkFile::Problem::empty);
}

TEST_F(LinkFileTest, OneThatCannotBeReadIsUnreadable)
{
    EXPECT_EQ(readLinkFile(u"/proc/self/mem"_s).problem, LinkFile::Problem::unreadable); // opens, and gives nothing
}

TEST_F(LinkFileTest, NothingIsWaitedForAtAPipe)
{
    const QString path = sandbox.path(u"pipe"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    EXPECT_EQ(readLinkFile(path).problem, LinkFile::Problem::unreadable);
}

TEST_F(LinkFileTest, OneThatIsTooLargeIsNotTaken)
{
    const QByteArray link = "https://a.example/1\n";
    EXPECT_EQ(texts(read(link + QByteArray(LinkFile::maxBytes - link.size(), ' '))).size(), 1);
    EXPECT_EQ(read(link + QByteArray(LinkFile::maxBytes - link.size() + 1, ' ')).problem, LinkFile::Problem::tooLarge);
}

TEST_F(LinkFileTest, AddressesOfFilesLeadToPathsOfThisMachineAlone)
{
    const auto path = [](QStringView address) { return pathOfFile(Link::parse(address).value()); };
    EXPECT_EQ(path(u"file:///tmp/a%20b%23c.txt"), u"/tmp/a b#c.txt"_s);
    EXPECT_EQ(path(u"file://localhost/tmp/a"), u"/tmp/a"_s);
    EXPECT_EQ(path(u"file://elsewhere/tmp/a"), std::nullopt);
    EXPECT_EQ(path(u"https://a.example/tmp/a"), std::nullopt);
}

} // namespace
} // namespace vormel

#include "ui/sheets/LinkPaste.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/FakeResolvers.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::link;
using ::testing::ElementsAre;

const ResolverTables& tables()
{
    static const ResolverTables all = fixtures::fakeServices(std::make_shared<fixtures::ServiceLog>());
    return all;
}

LinkPaste paste(QStringView text)
{
    return {text, tables()};
}

TEST(LinkPaste, KeepsHttpLinksInOrderAndDropsTheRest)
{
    const LinkPaste links =
        paste(u"  https://b.example/1 \r\n\nhello world\nftp://x.example/2\nHTTP://a.example/3\n/path\n");
    EXPECT_THAT(links.validURLs(), ElementsAre(link(u"https://b.example/1"_s), link(u"HTTP://a.example/3"_s)));
}

TEST(LinkPaste, KeepsDuplicates)
{
    EXPECT_EQ(paste(u"https://a.example/1\nhttps://a.example/1").validURLs().size(), 2U);
}

TEST(LinkPaste, TellsContainersFromDirectLinks)
{
    const LinkPaste links = paste(u"https://a.example/1\nhttps://container.example/2\nhttps://c.example/3");
    EXPECT_THAT(links.containerURLs(), ElementsAre(link(u"https://container.example/2"_s)));
    EXPECT_THAT(links.directURLs(), ElementsAre(link(u"https://a.example/1"_s), link(u"https://c.example/3"_s)));
}

TEST(LinkPaste, GroupsDirectLinksByPlainHostKnownHostsFirst)
{
    const auto groups = paste(u"https://www.Zeta.example/1\nhttps://alpha.example/2\nhttps://zeta.example/3\n"
                              u"https://filestore.example/4\nhttps://terabytez.example/5\nhttps://container.example/6")
                            .hostGroups(tables().profiles());
    QStringList names;
    for (const auto& group : groups)
        names << group.displayName;
    EXPECT_EQ(names.join(u' '), u"terabytez.example filestore.example alpha.example zeta.example");
    EXPECT_THAT(groups.back().urls,
                ElementsAre(link(u"https://www.Zeta.example/1"_s), link(u"https://zeta.example/3"_s)));
}

TEST(LinkPaste, NothingIsNothing)
{
    EXPECT_TRUE(paste(u"").validURLs().empty());
    EXPECT_TRUE(paste(u"").hostGroups(tables().profiles()).empty());
}

} // namespace
} // namespace vormel

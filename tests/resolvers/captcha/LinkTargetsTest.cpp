#include "resolvers/captcha/LinkTargets.h"

#include "model/Services.h"
#include "resolvers/ParseTimes.h"
#include "resolvers/captcha/CaptchaPage.h"
#include "resolvers/containers/HostilePages.h"
#include "resolvers/containers/LinkTexts.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel::tests {
namespace {

LinkTargets targets()
{
    Services services = Services::builtIn();
    services.filestoreDomain = u"file.store.example"_s;
    return LinkTargets(services);
}

std::string targetOf(const QString& html)
{
    const std::optional<Link> found = targets().scanPageForTarget(html);
    return found ? found->absoluteString().toStdString() : "none";
}

TEST(LinkTargets, AreFilesOfKnownHosts)
{
    EXPECT_TRUE(targets().isTarget(linkOf(u"http://www.Rapidgator.net/f"_s)));
    EXPECT_TRUE(targets().isTarget(linkOf(u"https://file.store.example/f"_s)));
    EXPECT_FALSE(targets().isTarget(linkOf(u"https://rapidgator.net/"_s)));
    EXPECT_FALSE(targets().isTarget(linkOf(u"https://box.example/rapidgator.net/f"_s)));
    EXPECT_FALSE(targets().isTarget(linkOf(u"ftp://rapidgator.net/f"_s)));
}

TEST(LinkTargets, ARefreshLeadsThere)
{
    EXPECT_EQ(targetOf(u"<META name=x HTTP-EQUIV='Refresh' id=y content=\"0; URL=http://rapidgator.net/f/1'>"_s),
              "https://rapidgator.net/f/1");
}

TEST(LinkTargets, AScriptLeadsThere)
{
    for (const char* script :
         {"location='http://rapidgator.net/f/1'", "window.Location.HREF \n= \"https://rapidgator.net/f/1\"",
          "mylocation=\"https://rapidgator.net/f/1'"})
        EXPECT_EQ(targetOf(QString::fromLatin1(script)), "https://rapidgator.net/f/1") << script;
    for (const char* script : {"location.replace('https://rapidgator.net/f/1')", "location=rapidgator.net/f/1",
                               "location='ftp://rapidgator.net/f/1'", "location='https://rapidgator.net/f/1"})
        EXPECT_EQ(targetOf(QString::fromLatin1(script)), "none") << script;
}

TEST(LinkTargets, ALinkLeadsThere)
{
    for (const char* host :
         {"file.store.example", "terabytez.example", "rapidgator.net", "turbobit.net", "uploaded.net", "1fichier.com",
          "katfile.com", "nitroflare.com", "mega.nz", "ddownload.com", "mixdrop.co", "filespace.com"}) {
        const std::string address = std::string("https://") + host + "/f/1";
        EXPECT_EQ(targetOf(QString::fromStdString("<a HREF='" + address + "\">")), address);
        EXPECT_EQ(targetOf(QString::fromStdString("<a href='http" + address.substr(5) + "'>")), address);
    }
}

TEST(LinkTargets, ALinkNamesItsHostFromTheStart)
{
    EXPECT_EQ(targetOf(u"<a href='https://www.rapidgator.net/f/1'>"_s), "none");
    EXPECT_EQ(targetOf(u"<a href='https://fileXstore.example/f'><a href='https://rapidgator.net/f/1'>"_s),
              "https://rapidgator.net/f/1"); // dots of domains are no patterns
    EXPECT_EQ(targetOf(u"<a href='https://megaXnz.rapidgator.net/f/1'>"_s), "none");
    EXPECT_EQ(targetOf(u"<a href='https://rapidgator.net'>"_s), "none");
}

TEST(LinkTargets, OfEachKindOnlyTheFirstCounts)
{
    const QString there = u"https://rapidgator.net/f/1"_s;
    EXPECT_EQ(targetOf(u"location='https://other.example/f' location='%1'"_s.arg(there)), "none");
    EXPECT_EQ(targetOf(u"<a href='https://rapidgator.other/f'><a href='%1'>"_s.arg(there)), "none");
    EXPECT_EQ(targetOf(u"location='https://other.example/f' <a href='%1'>"_s.arg(there)), there.toStdString());
}

TEST(LinkTargets, ARefreshGoesBeforeAScriptAndThatBeforeALink)
{
    const QString refresh = u"<meta http-equiv='refresh' content='1;url=https://rapidgator.net/refresh'>"_s;
    const QString script = u"location='https://rapidgator.net/script'"_s;
    const QString href = u"<a href='https://rapidgator.net/href'>"_s;
    EXPECT_EQ(targetOf(href + script + refresh), "https://rapidgator.net/refresh");
    EXPECT_EQ(targetOf(href + script), "https://rapidgator.net/script");
    EXPECT_EQ(targetOf(href), "https://rapidgator.net/href");
}

TEST(LinkTargets, HostilePagesTakeNoMoreTimeThanTheirLength)
{
    const auto read = [known = targets()](const QString& page) {
        static_cast<void>(known.scanPageForTarget(page));
        static_cast<void>(extractLinkPages(page, linkOf(u"https://box.example/"_s)));
        static_cast<void>(parseLinkList(page));
    };
    constexpr qsizetype share = isOptimised ? 1 : 10;
    std::vector<HostilePage> pages = hostilePages();
    pages.push_back({"scripts that lead on without an end", u""_s, u"location='https://x location = "_s, u""_s});
    pages.push_back({"links that never end", u""_s, u"href=\"https://rapidgator"_s, u""_s});
    pages.push_back({"link pages by the thousand", u""_s, u"<a href=\"/Link/%1.html\">"_s, u""_s});
    pages.push_back({"links by the thousand", u""_s, u"https://a.example/%1 "_s, u""_s});
    pages.push_back({"one long pause", u"location"_s, u" "_s, u"x"_s});
    for (const HostilePage& hostile : pages) {
        const ParseTimes times(read, hostile.ofSize(ParseTimes::usualSize / share),
                               hostile.ofSize(ParseTimes::tenfoldSize / share));
        EXPECT_TRUE(times.areFine()) << hostile.name << ": " << times.shown();
    }
}

} // namespace
} // namespace vormel::tests

#include "resolvers/terabytez/TerabytezLinks.h"

#include "fixtures/EngineOnScript.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

const TerabytezSite usualSite{u"terabytez.example"_s};

bool isFile(const QString& url, const TerabytezSite& site = usualSite)
{
    return isDownloadURL(fixtures::link(url), site);
}

std::string fileOn(const QString& html, const TerabytezSite& site = usualSite)
{
    const std::optional<Link> link = extractDownloadLink(html, site);
    return link ? link->absoluteString().toStdString() : std::string();
}

TEST(TerabytezLinks, WhatIsBelowDIsAFileAtAnyHostOfTheService)
{
    for (const QString& url : {u"https://terabytez.example/d/abc"_s, u"https://www.terabytez.example/x/d/abc"_s,
                               u"http://fs.my-terabytez.test/d/"_s, u"https://TeraBytez.Example/d/abc"_s,
                               u"https://terabytez.cc/d/a.html"_s, u"https://terabytez.example/%64/abc"_s})
        EXPECT_TRUE(isFile(url)) << url.toStdString();
    for (const QString& url : {u"https://other.example/d/abc"_s, u"https://terabytez.example/D/abc"_s,
                               u"https://terabytez.example/d"_s, u"https://terabytez.example/ad/x"_s,
                               u"https://terabytez.example/?p=/d/"_s, u"https://terabytez.example/#/d/"_s})
        EXPECT_FALSE(isFile(url)) << url.toStdString();
}

TEST(TerabytezLinks, ANumberedFileServerOfAnybodyHasFiles)
{
    for (const QString& url : {u"https://srv1.any.example/"_s, u"https://dl22.any.example/page.html"_s,
                               u"http://cdn3.example"_s, u"https://s007.any.example/x"_s, u"https://S1.any.example/"_s})
        EXPECT_TRUE(isFile(url)) << url.toStdString();
    for (const QString& url :
         {u"https://srv.any.example/"_s, u"https://fs1.any.example/"_s, u"https://srv1a.any.example/"_s,
          u"https://a.srv1.example/"_s, u"https://srv1/"_s, u"https://files.example/srv1."_s})
        EXPECT_FALSE(isFile(url)) << url.toStdString();
}

TEST(TerabytezLinks, AFilesEndingTellsAFileWhereTheServiceHasNoPages)
{
    for (const QString& ending :
         {u"zip"_s, u"rar"_s, u"r00"_s, u"r123"_s, u"7z"_s, u"mkv"_s, u"mp4"_s, u"avi"_s, u"mov"_s, u"wmv"_s, u"flv"_s,
          u"m4v"_s, u"pdf"_s, u"iso"_s, u"tar"_s,  u"gz"_s, u"bz2"_s, u"xz"_s,  u"exe"_s, u"dmg"_s, u"RAR"_s}) {
        const QString file = u"https://%1/x."_s + ending;
        EXPECT_TRUE(isFile(file.arg(u"files.terabytez.example"_s))) << ending.toStdString();
        EXPECT_TRUE(isFile(file.arg(u"terabytez.cc"_s) + u"?token=1"_s)) << ending.toStdString();
        EXPECT_TRUE(isFile(file.arg(u"terabytez.cc"_s) + u"#top"_s)) << ending.toStdString();
        EXPECT_FALSE(isFile(file.arg(u"terabytez.example"_s))) << ending.toStdString();
        EXPECT_FALSE(isFile(file.arg(u"www.terabytez.example"_s))) << ending.toStdString();
        EXPECT_FALSE(isFile(file.arg(u"other.example"_s))) << ending.toStdString();
    }
}

TEST(TerabytezLinks, AnyOtherEndingTellsNothing)
{
    for (const QString& path : {u"x.html"_s, u"x.r1"_s, u"x.r1234"_s, u"x.rar.html"_s, u"x.zipx"_s, u"rar"_s,
                                u"x.rar/"_s, u"x?f.rar&a"_s, u"x.7zip"_s})
        EXPECT_FALSE(isFile(u"https://files.terabytez.example/"_s + path)) << path.toStdString();
}

TEST(TerabytezLinks, AServiceThatHasMovedIsKnownByItsNewDomain)
{
    const TerabytezSite moved{u"bytez.test"_s};
    EXPECT_TRUE(isFile(u"https://bytez.test/d/abc"_s, moved));
    EXPECT_TRUE(isFile(u"https://files.bytez.test/x.rar"_s, moved));
    EXPECT_FALSE(isFile(u"https://www.bytez.test/x.rar"_s, moved));
    EXPECT_TRUE(isFile(u"https://terabytez.example/x.rar"_s, moved)) << "no pages are there any more";
    EXPECT_FALSE(isFile(u"https://bytez.test/d/abc"_s));
}

TEST(TerabytezLinks, NothingIsNoFile)
{
    EXPECT_FALSE(isDownloadURL(Link(), usualSite));
}

TEST(TerabytezLinks, TheFirstFileOnThePageCountsWhereverItStands)
{
    EXPECT_EQ(fileOn(u"<a href='https://terabytez.example/x.rar'>no</a> HTTPS://dl1.a.example/1<b> "
                     "\"https://dl2.a.example/2\""_s),
              "HTTPS://dl1.a.example/1");
    EXPECT_EQ(fileOn(u"{\"url\":\"https://dl1.a.example/1\\u0026\"}"_s), "https://dl1.a.example/1");
    EXPECT_EQ(fileOn(u"see https://dl1.a.example/1\u00a0for it"_s), "https://dl1.a.example/1");
    EXPECT_EQ(fileOn(u"<p>https://other.example/x.rar</p>"_s), "");
    EXPECT_EQ(fileOn(u"ftp://dl1.a.example/1 //dl1.a.example/1"_s), "");
    EXPECT_EQ(fileOn({}), "");
}

TEST(TerabytezLinks, WhereNoneStandsPlainTheFirstThatAScriptGoesToCounts)
{
    // Only what stands in quotes goes on behind the blank.
    const QString address = u"https://files.terabytez.example/a b.rar"_s;
    const std::string encoded = "https://files.terabytez.example/a%20b.rar";
    EXPECT_EQ(fileOn(u"location='"_s + address + u"'"_s), encoded);
    EXPECT_EQ(fileOn(u"window.LOCATION.href = \""_s + address + u"\";"_s), encoded);
    EXPECT_EQ(fileOn(u"location.href\n=\t'"_s + address + u"'"_s), encoded);
    EXPECT_EQ(fileOn(u"href='"_s + address + u"'"_s), "");
    EXPECT_EQ(fileOn(u"location='"_s + address), "");
    EXPECT_EQ(fileOn(u"location='"_s + address + u"'; x='https://dl1.a.example/1'"_s), "https://dl1.a.example/1");
}

TEST(TerabytezLinks, WhatIsNoAddressIsPassedOver)
{
    EXPECT_EQ(fileOn(u"https://[dl1.a.example/ https://dl2.a.example/2"_s), "https://dl2.a.example/2");
}

} // namespace
} // namespace vormel

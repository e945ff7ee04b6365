#include "resolvers/filestore/FilestoreLinks.h"

#include "model/HostProfile.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

const QString domain = u"filestore.example"_s;

Link filePage()
{
    return *Link::parse(u"https://filestore.example/abc/file.html");
}

/// The address that a page shows; "" for none.
std::string linkIn(const QString& html, const Link& page = filePage())
{
    const std::optional<Link> link = extractDirectLink(html, page, domain);
    return link ? link->absoluteString().toStdString() : std::string();
}

struct LinkRow
{
    QString html;
    const char* link; ///< "" for none
};

void expectLinks(const std::vector<LinkRow>& rows)
{
    for (const auto& [html, link] : rows)
        EXPECT_EQ(linkIn(html), link) << html.toStdString();
}

TEST(FilestoreLinks, TheBuiltInDomainIsThatOfTheProfile)
{
    const QString builtIn = profileOf(SupportedHost::filestore).linkFragment;
    const QString address = u"https://s1."_s + builtIn + u"/dl/x"_s;
    const std::optional<Link> link = extractDirectLink(u"href=\""_s + address + u'"', filePage(), builtIn);
    ASSERT_TRUE(link);
    EXPECT_EQ(link->absoluteString(), address);
}

TEST(FilestoreLinks, APathBehindTheRootIsOneThatNamesSomething)
{
    for (const QStringView url : {u"https://h/a", u"https://h/a/", u"https://h/a/b?c", u"https://h//a"})
        EXPECT_TRUE(hasPathBehindRoot(*Link::parse(url))) << url.toString().toStdString();
    for (const QStringView url : {u"https://h", u"https://h/", u"https://h//", u"https://h/?a/b", u"https://h#a/b"})
        EXPECT_FALSE(hasPathBehindRoot(*Link::parse(url))) << url.toString().toStdString();
}

TEST(FilestoreLinks, ALinkIntoTheSitesDlFolderIsTheFile)
{
    expectLinks({
        {u"<a href=\"https://filestore.example/dl/x\">"_s, "https://filestore.example/dl/x"},
        {u"<a href=\"http://s7.filestore.example/dl/x?a=1&b=2\">"_s, "http://s7.filestore.example/dl/x?a=1&b=2"},
        {u"<A DATA-HREF=\"HTTPS://S7.FILESTORE.EXAMPLE/DL/x\">"_s, "HTTPS://S7.FILESTORE.EXAMPLE/DL/x"},
        {u"<a href=\"https://o.example/to/filestore.example/dl/x\">"_s, "https://o.example/to/filestore.example/dl/x"},
        {u"<a href=\"https://filestore.example/dl/filestore.example/dl/\">"_s,
         "https://filestore.example/dl/filestore.example/dl/"},
    });
}

TEST(FilestoreLinks, WhatOnlyLooksLikeALinkIntoTheDlFolderIsNone)
{
    expectLinks({
        {u"<a href=\"https://filestore.example/dl/\">"_s, ""},
        {u"<a href=\"https://filestore.example/dlx/x\">"_s, ""},
        {u"<a href=\"https://filestoreXexample/dl/x\">"_s, ""},
        {u"<a href=\"https://filestore.example.net/dl/x\">"_s, ""},
        {u"<a href='https://filestore.example/dl/x'>"_s, ""},
        {u"<a href=https://filestore.example/dl/x>"_s, ""},
        {u"<a href =\"https://filestore.example/dl/x\">"_s, ""},
        {u"<a href=\" https://filestore.example/dl/x\">"_s, ""},
        {u"<a href=\"//filestore.example/dl/x\">"_s, ""},
        {u"<a href=\"/dl/x\">"_s, ""},
        {u"<a href=\"ftp://filestore.example/dl/x\">"_s, ""},
        {u"<a href=\"https://filestore.example/dl/x>"_s, ""},
        {u"https://filestore.example/dl/x"_s, ""},
        {u""_s, ""},
    });
}

TEST(FilestoreLinks, ALinkIntoTheSitesDFolderIsTheNextBest)
{
    expectLinks({
        {u"<a href=\"https://filestore.example/d/x\">"_s, "https://filestore.example/d/x"},
        {u"<a href=\"https://filestore.example/d/\">"_s, ""},
        {u"<a href=\"https://filestore.example/dd/x\">"_s, ""},
    });
}

TEST(FilestoreLinks, ALinkToAnyHostIsTheFileIfItHasOneOfElevenEndings)
{
    for (const QString& ending : {u"zip"_s, u"rar"_s, u"7z"_s, u"mkv"_s, u"mp4"_s, u"avi"_s, u"mov"_s, u"pdf"_s,
                                  u"iso"_s, u"tar"_s, u"gz"_s, u"ZIP"_s, u"target"_s, u"zip?k=1"_s, u"rar.html"_s}) {
        const QString address = u"https://cdn.example/a."_s + ending;
        EXPECT_EQ(linkIn(u"<a href=\""_s + address + u"\">"_s), address.toStdString());
    }
    expectLinks({
        {u"<a href=\"https://cdn.example/azip\">"_s, ""},
        {u"<a href=\"https://cdn.example/a.exe\">"_s, ""},
        {u"<a href=\"https://cdn.example/a.ra\">"_s, ""},
        {u"<a href=\"https://.zip\">"_s, ""},
        {u"<a href=\"/a.zip\">"_s, ""},
        {u"<a href='https://cdn.example/a.zip'>"_s, ""},
        {u"<a href=\"https://a.zip\">"_s, "https://a.zip"},
        {u"<a href=\"https://a..exe?x=.b.mkv\">"_s, "https://a..exe?x=.b.mkv"},
    });
}

TEST(FilestoreLinks, ADataUrlIsTheFile)
{
    expectLinks({
        {u"<a data-url=\"https://cdn.example/x\">"_s, "https://cdn.example/x"},
        {u"<a DATA-URL=\"https://cdn.example/x\">"_s, "https://cdn.example/x"},
        {u"<a data-url=\"\" data-url=\"https://cdn.example/x\">"_s, "https://cdn.example/x"},
        {u"<a data-url='https://cdn.example/x'>"_s, ""},
        {u"<a data-url=\"https://cdn.example/x>"_s, ""},
    });
}

TEST(FilestoreLinks, ALocationThatNamesTheServiceIsTheFile)
{
    expectLinks({
        {u"location.href='https://s1.filestore.net/x'"_s, "https://s1.filestore.net/x"},
        {u"window.LOCATION.HREF=\"https://s1.FileStore.net/x\""_s, "https://s1.FileStore.net/x"},
        {u"location.href='https://filestore.net/x\";"_s, "https://filestore.net/x"},
        {u"location.href='https://cdn.example/x'"_s, ""},
        {u"location.href='https://cdn.example/filestore'"_s, ""},
        {u"location.href='filestore/x'"_s, ""},
        {u"location.href = 'https://filestore.net/x'"_s, ""},
        {u"locationxhref='https://filestore.net/x'"_s, ""},
    });
}

TEST(FilestoreLinks, ARelativeDataUrlOrLocationIsRelativeToThePage)
{
    expectLinks({
        {u"data-url=\"/get/x\""_s, "https://filestore.example/get/x"},
        {u"data-url=\"x\""_s, "https://filestore.example/abc/x"},
        {u"data-url=\"//cdn.example/x\""_s, "https://cdn.example/x"},
        {u"data-url=\"?op=get\""_s, "https://filestore.example/abc/file.html?op=get"},
        {u"location.href='/filestore/x'"_s, "https://filestore.example/filestore/x"},
        {u"location.href='//filestore.net/x'"_s, "https://filestore.net/x"},
    });
}

TEST(FilestoreLinks, KindsAreTriedInTheirOrderWhateverTheOrderOnThePage)
{
    const QStringList kinds{u"href=\"https://filestore.example/dl/1\""_s, u"href=\"https://filestore.example/d/2\""_s,
                            u"href=\"https://cdn.example/3.zip\""_s, u"data-url=\"https://cdn.example/4\""_s,
                            u"location.href='https://filestore.net/5'"_s};
    QString html;
    for (qsizetype i = kinds.size() - 1; i >= 0; --i) {
        html += kinds[i] + u"\n"_s;
        EXPECT_EQ(u'"' + QString::fromStdString(linkIn(html)) + u'"',
                  QString(kinds[i]).replace(u'\'', u'"').section(u'=', -1));
    }
}

TEST(FilestoreLinks, TheAddressOfThePageItselfIsNone)
{
    const Link page = *Link::parse(u"https://filestore.example/d/x.zip");
    const QString itself = u"href=\"https://filestore.example/d/x.zip\""_s;
    EXPECT_EQ(linkIn(itself, page), "");
    EXPECT_EQ(linkIn(itself + u" data-url=\"/other\""_s, page), "https://filestore.example/other");
    EXPECT_EQ(linkIn(u"href=\"https://filestore.example/d/x.zip?a\""_s, page), "https://filestore.example/d/x.zip?a");
}

TEST(FilestoreLinks, AFragmentMakesNoOtherAddress)
{
    expectLinks({{u"data-url=\"#\" location.href='https://filestore.net/x'"_s, "https://filestore.net/x"},
                 {u"data-url=\"#top\""_s, ""}});
    EXPECT_EQ(linkIn(u"data-url=\"file.html\""_s, *Link::parse(u"https://filestore.example/file.html#part")), "");
}

TEST(FilestoreLinks, OfEachKindOnlyTheFirstOnThePageCounts)
{
    const Link page = *Link::parse(u"https://filestore.example/dl/x");
    const QString itself = u"href=\"https://filestore.example/dl/x\" "_s;
    EXPECT_EQ(linkIn(itself + u"href=\"https://filestore.example/dl/y\""_s, page), "");
    EXPECT_EQ(
        linkIn(itself + u"href=\"https://filestore.example/dl/y\" href=\"https://filestore.example/d/z\""_s, page),
        "https://filestore.example/d/z");
    expectLinks({{u"href=\"https://filestore.example/dl/1\" href=\"https://filestore.example/dl/2\""_s,
                  "https://filestore.example/dl/1"}});
}

TEST(FilestoreLinks, WhatIsNoAddressGivesWayToTheNextKind)
{
    expectLinks({
        {u"href=\"https://[filestore.example/dl/x\" href=\"https://filestore.example/d/y\""_s,
         "https://filestore.example/d/y"},
        {u"href=\"http\u017F://filestore.example/dl/x\" href=\"https://filestore.example/d/y\""_s,
         "https://filestore.example/d/y"},
        {u"href=\"https:///filestore.example/dl/x\""_s, ""},
    });
}

TEST(FilestoreLinks, OnlyHttpAndHttpsAreEverReturned)
{
    expectLinks({
        {u"data-url=\"javascript:get()\""_s, ""},
        {u"data-url=\"file:///etc/passwd\""_s, ""},
        {u"data-url=\"ftp://filestore.example/x\" location.href='http://filestore.net/x'"_s, "http://filestore.net/x"},
        {u"location.href='data:text/html,filestore/x'"_s, ""},
        {u"location.href='magnet:?xt=filestore.x'"_s, ""},
    });
}

TEST(FilestoreLinks, AFailedStartOfALinkDoesNotHideTheOneInsideIt)
{
    expectLinks({
        {u"href=\"href=\"https://filestore.example/dl/x\""_s, "https://filestore.example/dl/x"},
        {u"location.href='location.href='https://filestore.net/x'"_s, "https://filestore.net/x"},
    });
}

TEST(FilestoreLinks, NulAndBrokenUtf8StandAsTheyAreAndNeverEndThePage)
{
    const QByteArray page = "\0\xff\xc3<a href=\"https://filestore.example/dl/\xe9\0x\">"_ba;
    EXPECT_EQ(linkIn(QString::fromUtf8(page)), "https://filestore.example/dl/%EF%BF%BD%00x");
}

} // namespace
} // namespace vormel

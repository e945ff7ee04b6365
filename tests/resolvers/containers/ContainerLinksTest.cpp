#include "resolvers/containers/ContainerLinks.h"

#include "CnlPages.h"
#include "LinkTexts.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel::tests {
namespace {

const QStringList& fileHosts()
{
    static const QStringList hosts{u"filestore.example"_s, u"terabytez.example"_s};
    return hosts;
}

std::string goLinksOf(const char* html, const char* url = "https://box.example/Container/1.html?x#y")
{
    return textOf(extractGoLinks(QString::fromUtf8(html), linkOf(QString::fromLatin1(url))));
}

std::string fileCryptHrefsOf(const QString& html)
{
    return textOf(extractHrefLinks(html, HrefScan::fileCrypt(), fileHosts()));
}

std::string lfileCryptHrefsOf(const QString& html)
{
    return textOf(extractHrefLinks(html, HrefScan::lfileCrypt(), fileHosts()));
}

TEST(ContainerLinks, PlainHttpBecomesHttpsAndNothingElseChanges)
{
    struct Row
    {
        const char* before;
        const char* after;
    };
    for (const Row& row :
         {Row{"http://h.example/a?b#c", "https://h.example/a?b#c"}, Row{"HTTP://H.Example/A", "https://H.Example/A"},
          Row{"http://u:p@h.example:80/", "https://u:p@h.example:80/"},
          Row{"https://h.example/http://x", "https://h.example/http://x"},
          Row{"ftp://h.example/a", "ftp://h.example/a"}, Row{"httpx://h.example/a", "httpx://h.example/a"}})
        EXPECT_EQ(upgradeToHTTPS(linkOf(QString::fromLatin1(row.before))).absoluteString().toStdString(), row.after);
}

TEST(ContainerLinks, GoLinksAreFoundInHrefsAndInCallsThatOpen)
{
    for (const char* html : {"<a href=\"/go/aB9\">", "<a href='/go/aB9'>", "<a HREF='/go/aB9\">",
                             "<a href=\"https://box.example/go/aB9\">", "<a href=\"http://other.example/go/aB9\">",
                             "<a href=\"https:///go/aB9\">", "<a data-href=\"/go/aB9\">",
                             "<a data-href='https://x/go/aB9'>", "open('/go/aB9')", "window.open(\"/go/aB9\")",
                             "WINDOW.OPEN('https://x/y/z/go/aB9')", "xopen('http:///go/x/go/aB9'"})
        EXPECT_EQ(goLinksOf(html), "https://box.example/go/aB9") << html;
}

TEST(ContainerLinks, OtherAddressesAreNoGoLinks)
{
    for (const char* html :
         {"", "<a href=\"/go/\">", "<a href=\"/go/a-b\">", "<a href=\"/go/a/b\">", "<a href=\"/go/a?b\">",
          "<a href=\"/go/a.html\">", "<a href=/go/a>", "<a href=\"go/a\">", "<a href=\"//x/go/a\">",
          "<a href=\"https://x/y/go/a\">", "<a href=\"ftp://x/go/a\">", "<a href = \"/go/a\">", "<a href=\"/go/a",
          "open(/go/a)", "open ('/go/a')", "open( '/go/a')", "open('/x/go/a')", "'/go/a'"})
        EXPECT_EQ(goLinksOf(html), "") << html;
}

TEST(ContainerLinks, GoLinksLeadToTheContainersOwnSite)
{
    EXPECT_EQ(goLinksOf("href='/go/a'", "http://Sub.Box.Example/"), "http://Sub.Box.Example/go/a");
    EXPECT_EQ(goLinksOf("href='https://elsewhere.example/go/a'"), "https://box.example/go/a");
    EXPECT_EQ(goLinksOf("href='/go/a'", "https://user@box.example:8443/x"), "https://box.example/go/a");
    EXPECT_EQ(goLinksOf("href='/go/a'", "ftp://box.example/x"), "");
}

TEST(ContainerLinks, ThoseInHrefsComeBeforeThoseThatAScriptOpens)
{
    EXPECT_EQ(goLinksOf("open('/go/1') data-href='/go/2' window.open('/go/3') href='/go/4'"),
              "https://box.example/go/2\nhttps://box.example/go/4\nhttps://box.example/go/1\nhttps://box.example/go/3");
}

TEST(ContainerLinks, AGoLinkComesOnce)
{
    EXPECT_EQ(goLinksOf("href='/go/a' href='https://x/go/a' data-href='/go/a' open('/go/a') href='/go/A' href='/GO/a'"),
              "https://box.example/go/a\nhttps://box.example/go/A\nhttps://box.example/GO/a");
}

TEST(ContainerLinks, FileCryptsFilesStandInHrefs)
{
    for (const char* html :
         {"<a href=\"https://filestore.example/f/1\">", "<a href='https://filestore.example/f/1'>",
          "<a HREF=\"https://filestore.example/f/1'>", "<a data-href=\"https://filestore.example/f/1\">",
          "<a href=\"https://filestore.example/f/1&\">", "<a href=\"https://filestore.example/f/1&&amp;&\">"})
        EXPECT_EQ(fileCryptHrefsOf(QString::fromLatin1(html)), "https://filestore.example/f/1") << html;
    EXPECT_EQ(fileCryptHrefsOf(u"<a href='HTTP://WWW.Filestore.example/f/1'>"_s), "HTTP://WWW.Filestore.example/f/1");
    for (const char* html :
         {"https://filestore.example/f/1", "<a href=https://filestore.example/f/1>",
          "<a href=\"//filestore.example/f/1\">", "<a href=\"ftp://filestore.example/f/1\">",
          "<a href=\"https://filestore.example/f/1", "<a href=\"/f/1\">", "<a href=\" https://filestore.example/f/1\">",
          "<a src=\"https://filestore.example/f/1\">"})
        EXPECT_EQ(fileCryptHrefsOf(QString::fromLatin1(html)), "") << html;
}

TEST(ContainerLinks, FileCryptDropsNothingButAmpersandsAtTheEnd)
{
    EXPECT_EQ(fileCryptHrefsOf(u"href='https://filestore.example/f/1.);,'"_s), "https://filestore.example/f/1.);,");
}

TEST(ContainerLinks, LFileCryptsFilesStandAnywhere)
{
    for (const char* text : {"var a = [https://filestore.example/f/1];", "(https://filestore.example/f/1);",
                             "see https://filestore.example/f/1.", "https://filestore.example/f/1, and",
                             "\"https://filestore.example/f/1\"", "'https://filestore.example/f/1';",
                             "<a href=https://filestore.example/f/1>", "<b>https://filestore.example/f/1</b>",
                             "https://filestore.example/f/1\\n", "https://filestore.example/f/1\nx",
                             "https://filestore.example/f/1&amp;", "https://filestore.example/f/1.,;&.",
                             "https://filestore.example/f/1.&amp;.;", "xhttps://filestore.example/f/1"})
        EXPECT_EQ(lfileCryptHrefsOf(QString::fromLatin1(text)), "https://filestore.example/f/1") << text;
    EXPECT_EQ(lfileCryptHrefsOf(u"HTTPS://Filestore.example/f/1"_s), "HTTPS://Filestore.example/f/1");
    EXPECT_EQ(lfileCryptHrefsOf(u"ftp://filestore.example/f/1 //filestore.example/f/1"_s), "");
}

TEST(ContainerLinks, PunctuationInsideAnAddressStays)
{
    EXPECT_EQ(lfileCryptHrefsOf(u"https://filestore.example/f/a,b;c.(rar)!"_s),
              "https://filestore.example/f/a,b;c.(rar");
    EXPECT_EQ(lfileCryptHrefsOf(u"https://filestore.example/f/a,b;c.rar!"_s), "https://filestore.example/f/a,b;c.rar!");
}

TEST(ContainerLinks, EntitiesAreReadBeforeTheAddress)
{
    for (const auto scan : {&fileCryptHrefsOf, &lfileCryptHrefsOf}) {
        EXPECT_EQ(scan(u"href='https://filestore.example/f?a=1&amp;b=2&amp;c'"_s),
                  "https://filestore.example/f?a=1&b=2&c");
        EXPECT_EQ(scan(u"href='https://filestore.example/f/a&amp;&amp;'"_s), "https://filestore.example/f/a");
        EXPECT_EQ(scan(u"href='https://filestore.example/f/&lt;a&gt;x'"_s), "https://filestore.example/f/%3Ca%3Ex");
        // In this order, so that an ampersand that was written as such makes another entity.
        EXPECT_EQ(scan(u"href='https://filestore.example/f/&amp;lt;x'"_s), "https://filestore.example/f/%3Cx");
        EXPECT_EQ(scan(u"href='https://filestore.example/f/&amp;amp;x'"_s), "https://filestore.example/f/&amp;x");
        EXPECT_EQ(scan(u"href='https://filestore.example/f/&AMP;x&quot;x'"_s),
                  "https://filestore.example/f/&AMP;x&quot;x");
    }
}

TEST(ContainerLinks, OnlyFilesOfKnownHostsCountAndEachOnce)
{
    for (const auto scan : {&fileCryptHrefsOf, &lfileCryptHrefsOf})
        EXPECT_EQ(scan(u"<a href='https://filestore.example/'> <a href='https://filestore.example'>"
                       "<a href='https://other.example/f/1'> <a href='https://cdn.terabytez.example/f/2'>"
                       "<a href='http://filestore.example/f/1'> <a href='https://cdn.terabytez.example/f/2'>"
                       "<a href='https://filestore.example/f/1'> <a href='https://filestore.example:99999/f/1'>"
                       "<a href='https://filestore.example/f/1&'>"_s),
                  "https://cdn.terabytez.example/f/2\nhttp://filestore.example/f/1\nhttps://filestore.example/f/1");
}

TEST(ContainerLinks, APageIsReadForAllThreeSources)
{
    const QString html =
        cnlCallWith("http://filestore.example/f/1\nhttps://other.example/f/1\nhttps://filestore.example/\n"
                    "http://filestore.example/f/1&") +
        u"<a href='/go/1'><a href='http://filestore.example/f/2'><a href='https://filestore.example/f/2'>"
        "https://filestore.example/f/3 "_s;
    const Link url = linkOf(u"http://box.example/Container/1"_s);
    const PageLinks page = readPageLinks(html, url, HrefScan::fileCrypt(), fileHosts());
    EXPECT_EQ(textOf(page.cnl), "https://filestore.example/f/1\nhttps://filestore.example/f/1");
    EXPECT_EQ(textOf(page.go), "http://box.example/go/1");
    EXPECT_EQ(textOf(page.hrefs), "https://filestore.example/f/2\nhttps://filestore.example/f/2");
    EXPECT_EQ(textOf(readPageLinks(html, url, HrefScan::lfileCrypt(), fileHosts()).hrefs),
              "https://filestore.example/f/2\nhttps://filestore.example/f/2\nhttps://filestore.example/f/3");
}

TEST(ContainerLinks, TheSourcesAreJoinedInTheirOrderAndTheFirstOfEqualLinksStays)
{
    const auto links = [](const std::vector<QString>& texts) {
        std::vector<Link> all;
        for (const QString& text : texts)
            all.push_back(linkOf(u"https://h.example/"_s + text));
        return all;
    };
    const PageLinks page{links({u"c1"_s, u"both"_s, u"c1"_s}), links({u"go/1"_s}),
                         links({u"h1"_s, u"g1"_s, u"both"_s, u"H1"_s})};
    EXPECT_EQ(joinedLinks(page, links({u"g2"_s, u"g1"_s, u"both"_s, u"g2"_s})),
              links({u"c1"_s, u"both"_s, u"g2"_s, u"g1"_s, u"h1"_s, u"H1"_s}));
    EXPECT_TRUE(joinedLinks({}, {}).empty());
}

TEST(ContainerLinks, NulAndRepairedTextHideNothing)
{
    const QString before = QChar(0) + QString::fromUtf8("\xff\xfe\xed\xa0\x80\xc3");
    EXPECT_EQ(fileCryptHrefsOf(before + u"href='https://filestore.example/f/1'"_s), "https://filestore.example/f/1");
    EXPECT_EQ(lfileCryptHrefsOf(before + u"https://filestore.example/f/1"_s), "https://filestore.example/f/1");
    EXPECT_EQ(fileCryptHrefsOf(u"href='https://filestore.example/f/"_s + QChar(0) + QChar(0xFFFD) + u"'"_s),
              "https://filestore.example/f/%00%EF%BF%BD");
    EXPECT_EQ(goLinksOf("\xff href='/go/1'"), "https://box.example/go/1");
}

} // namespace
} // namespace vormel::tests

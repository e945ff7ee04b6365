#include "resolvers/captcha/CaptchaPage.h"

#include "resolvers/containers/CnlPages.h"
#include "resolvers/containers/LinkTexts.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel::tests {
namespace {

Link captchaContainer()
{
    return linkOf(u"https://Box.example:8443/Container/1.html?x"_s);
}

std::optional<CaptchaPage> pageTold(const QJsonObject& told)
{
    const QString text = QString::fromUtf8(QJsonDocument(told).toJson());
    return readCaptchaPage(text, captchaContainer(), {u"filestore.example"_s, u"rapidgator.net"_s});
}

TEST(CaptchaPage, IsReadByThisScriptToTheLetter)
{
    EXPECT_EQ(captchaPageScript(),
              u"(function() {\n    var cnlInput = document.querySelector('input[name=\"urls\"]');\n    var txtAnchor = "
              "document.querySelector('a[href$=\".txt\"]');\n    return JSON.stringify({\n        cnlUrls: cnlInput ? "
              "cnlInput.value : null,\n        txtHref: txtAnchor ? txtAnchor.href : null,\n        html: "
              "document.documentElement.outerHTML\n    });\n})()");
}

TEST(CaptchaPage, WhatIsNoObjectTellsNothing)
{
    for (const QString& told : {u""_s, u"null"_s, u"[]"_s, u"\"text\""_s, u"{\"html\":\"cut"_s, u"7"_s})
        EXPECT_FALSE(readCaptchaPage(told, captchaContainer(), {})) << told.toStdString();
}

TEST(CaptchaPage, AnObjectWithoutAnythingIsAnEmptyPage)
{
    const std::optional<CaptchaPage> page = pageTold({{u"html"_s, 7}, {u"cnlUrls"_s, QJsonValue::Null}});
    ASSERT_TRUE(page);
    EXPECT_EQ(page->html, u"");
    EXPECT_TRUE(page->calls.empty() && page->field.empty() && page->linkPages.empty());
    EXPECT_FALSE(page->textList);
}

TEST(CaptchaPage, OfItsCallsOnlyFilesOfKnownHostsCountByHttps)
{
    const QString call = cnlCallWith("http://filestore.example/a/1\nhttps://elsewhere.example/a\n"
                                     "https://www.RapidGator.net/file/2\nhttps://rapidgator.net/\n"
                                     "https://filestore.example/a/1");
    const std::optional<CaptchaPage> page = pageTold({{u"html"_s, call}});
    ASSERT_TRUE(page);
    EXPECT_EQ(textOf(page->calls), "https://filestore.example/a/1\nhttps://www.RapidGator.net/file/2");
}

TEST(CaptchaPage, LinksOfTheFieldMayLeadAnywhere)
{
    const std::optional<CaptchaPage> page =
        pageTold({{u"cnlUrls"_s, u"http://a.example/1\r\nftp://a.example/2 https://b.example"_s}});
    ASSERT_TRUE(page);
    EXPECT_EQ(textOf(page->field), "http://a.example/1\nhttps://b.example");
}

TEST(CaptchaPage, ATextListIsAskedForOverTheWebOnly)
{
    EXPECT_EQ(pageTold({{u"txtHref"_s, u"https://box.example/l.txt"_s}})->textList,
              linkOf(u"https://box.example/l.txt"_s));
    for (const QString& address : {u"file:///etc/l.txt"_s, u"l.txt"_s, u""_s, u"http:///l.txt"_s})
        EXPECT_FALSE(pageTold({{u"txtHref"_s, address}})->textList) << address.toStdString();
}

TEST(LinkList, StandsBetweenSpacesTabsAndEndsOfLines)
{
    const QString text = u" https://a.example/1\thttp://a.example/2 https://a.example/3\r\n\nhttps://a.example/4"
                         "\u2028https://a.example/5\u0085https://a.example/6\v\fhttps://a.example/7 "_s;
    EXPECT_EQ(textOf(parseLinkList(text)), "https://a.example/1\nhttp://a.example/2\nhttps://a.example/3\n"
                                           "https://a.example/4\nhttps://a.example/5\nhttps://a.example/6\n"
                                           "https://a.example/7");
}

TEST(LinkList, PassesOverWhatIsNoWebLinkWithAHost)
{
    EXPECT_EQ(
        textOf(parseLinkList(u"words ftp://a.example/1 http:///2 mailto:a@b.c //a.example/3 https://a.example/4"_s)),
        "https://a.example/4");
    EXPECT_TRUE(parseLinkList({}).empty());
}

TEST(LinkList, OfTheSameLinksTheFirstKeepsItsPlace)
{
    EXPECT_EQ(textOf(parseLinkList(u"https://a.example/1\nhttps://a.example/2\nhttps://a.example/1"_s)),
              "https://a.example/1\nhttps://a.example/2");
}

TEST(LinkPages, AreThoseOfTheContainersSiteEachOnce)
{
    const QString html = u"<a href=\"/Link/aB9.html\"><a href='/Link/2.html\"><a data-href=\"/Link/aB9.html\">"_s;
    EXPECT_EQ(textOf(extractLinkPages(html, captchaContainer())),
              "https://Box.example/Link/aB9.html\nhttps://Box.example/Link/2.html");
}

TEST(LinkPages, WhatIsWrittenOtherwiseIsNone)
{
    for (const char* html :
         {"<a href=/Link/1.html>", "<a href=\"/link/1.html\">", "<a HREF=\"/Link/1.html\">", "<a href=\"/Link/.html\">",
          "<a href=\"/Link/1-2.html\">", "<a href=\"/Link/1.htm\">", "<a href=\"/Link/1xhtml\">",
          "<a href=\"https://box.example/Link/1.html\">", "<a href = \"/Link/1.html\">", "<a href=\"/Link/1.html?x\">"})
        EXPECT_TRUE(extractLinkPages(QString::fromLatin1(html), captchaContainer()).empty()) << html;
}

} // namespace
} // namespace vormel::tests

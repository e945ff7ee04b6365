#include "resolvers/containers/KeeplinksPage.h"

#include "LinkTexts.h"
#include "resolvers/containers/MetaRefresh.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel::tests {
namespace {

std::string keeplinksHrefsOf(const char* html)
{
    return textOf(extractKeeplinksHrefs(QString::fromUtf8(html), {u"filestore.example"_s, u"terabytez.example"_s}));
}

std::string refreshOf(const QString& html)
{
    return metaRefreshAddress(html).value_or(u"none"_s).toStdString();
}

std::string followed(const QString& address)
{
    const QString html = u"<meta http-equiv=\"refresh\" content=\"0; url=%1\">"_s.arg(address);
    const std::optional<Link> link = followMetaRefresh(html, linkOf(u"https://keep.example/p/a.html?q#f"_s));
    return link ? link->absoluteString().toStdString() : "none";
}

TEST(KeeplinksPage, FilesStandInHrefsInDoubleQuotes)
{
    EXPECT_EQ(keeplinksHrefsOf("<a href=\"https://filestore.example/f/1\"><a HREF=\"HTTPS://filestore.example/f/2\">"
                               "<a href=\"https://filestore.example/it's\">"),
              "https://filestore.example/f/1\nHTTPS://filestore.example/f/2\nhttps://filestore.example/it's");
    for (const char* html :
         {"", "<a href='https://filestore.example/f/1'>", "<a href='https://filestore.example/f/1\">",
          "<a href=https://filestore.example/f/1>", "https://filestore.example/f/1",
          "<a href=\"ftp://filestore.example/f/1\">", "<a href=\"https://filestore.example/f/1",
          "<a href=\"https://other.example/f/1\">", "<a href=\"https://\">",
          "<a href=\"https://filestore.example:99999/f/1\">", "<a href=\"https://other.example/filestore.example\">"})
        EXPECT_EQ(keeplinksHrefsOf(html), "") << html;
}

TEST(KeeplinksPage, PlainHttpStaysAndSoDoesTheRootOfASite)
{
    EXPECT_EQ(keeplinksHrefsOf("<a href=\"http://filestore.example/f/1\"> <a href=\"https://www.filestore.example/\">"
                               "<a href=\"https://filestore.example\">"),
              "http://filestore.example/f/1\nhttps://www.filestore.example/\nhttps://filestore.example");
}

TEST(KeeplinksPage, ALinkIsTakenAsItIsWrittenAndOnce)
{
    EXPECT_EQ(
        keeplinksHrefsOf("<a href=\"https://filestore.example/f?a&amp;b&\"><a href=\"https://terabytez.example/f/1\">"
                         "<a href=\"https://filestore.example/f?a&amp;b&\"><a href=\"http://terabytez.example/f/1\">"),
        "https://filestore.example/f?a&amp;b&\nhttps://terabytez.example/f/1\nhttp://terabytez.example/f/1");
}

TEST(KeeplinksPage, LinksAreFoundBehindNulAndRepairedText)
{
    EXPECT_EQ(keeplinksHrefsOf("\xff\xed\xa0\x80 href=\"https://filestore.example/f/1\""),
              "https://filestore.example/f/1");
}

TEST(MetaRefresh, ItsAddressStandsBehindTheFirstSemicolonOfTheContent)
{
    for (const char* html : {"<meta http-equiv=\"refresh\" content=\"0; url=/next\">",
                             "<META HTTP-EQUIV='Refresh' CONTENT='5;URL=/next'/>",
                             "<meta name=x http-equiv=\"refresh\" id=y content=\"0;\n\t url=/next\">",
                             "<meta\nhttp-equiv='refresh\"\ncontent=\"x;url=/next x",
                             "<meta http-equiv=\"refresh\" content=\"a>b'c;url=/next'",
                             "<meta http-equiv=\"refresh\" content=\"0; url=/next\"><meta http-equiv=\"refresh\" "
                             "content=\"0; url=/second\">"})
        EXPECT_EQ(refreshOf(QString::fromLatin1(html)), "/next") << html;
}

TEST(MetaRefresh, WhatIsWrittenOtherwiseIsNone)
{
    for (const char* html :
         {"", "<metahttp-equiv=\"refresh\" content=\" ;url=/next>",
          "<meta content=\"0; url=/next\" http-equiv=\"refresh\">",
          "<meta http-equiv=refresh content=\"0; url=/next\">", "<meta http-equiv=\"refresh\" content=0;url=/next>",
          "<meta http-equiv=\"refresh\" content=\"0, url=/next\">",
          "<meta http-equiv=\"refresh\" content=\";url=/next\">",
          "<meta http-equiv=\"refresh\" content=\"0;;url=/next\">",
          "<meta http-equiv=\"refresh\" content=\"0; url='/next'\">",
          "<meta http-equiv=\"refresh\" content=\"0; url=\">",
          "<meta http-equiv=\"refresh\" content=\"0; url = /next\">",
          "<meta http-equiv=\"refresh\" content=\"0; /next\">",
          "<meta http-equiv=\"refresh\"> content=\"0; url=/next\"",
          "<meta > http-equiv=\"refresh\" content=\"0; url=/next\"",
          "<meta http-equiv=\"refresh\"content=\"0; url=/next\">",
          "<meta http-equiv=\"refreshed\" content=\"0; url=/next\">",
          "<link http-equiv=\"refresh\" content=\"0; url=/next\">",
          "<meta http-equiv=\"refresh\" content=\"0; x; url=/next\">"})
        EXPECT_EQ(metaRefreshAddress(QString::fromLatin1(html)), std::nullopt) << html;
}

TEST(MetaRefresh, OfSeveralContentsTheLastThatLeadsSomewhereCounts)
{
    EXPECT_EQ(refreshOf(u"<meta http-equiv=\"refresh\" content=\"0;url=/1\" content=\"0;url=/2\" content=\"0\">"_s),
              "/2");
    EXPECT_EQ(refreshOf(u"<meta http-equiv=\"refresh\" content=\"0\" content=\"0\"><p>;url=/far"_s), "/far");
}

TEST(KeeplinksPage, ARefreshIsRelativeToThePage)
{
    EXPECT_EQ(followed(u"https://Other.Example/x?y"_s), "https://Other.Example/x?y");
    EXPECT_EQ(followed(u"http://other.example/x"_s), "http://other.example/x");
    EXPECT_EQ(followed(u"/next"_s), "https://keep.example/next");
    EXPECT_EQ(followed(u"next/b"_s), "https://keep.example/p/next/b");
    EXPECT_EQ(followed(u"../b"_s), "https://keep.example/b");
    EXPECT_EQ(followed(u"?b"_s), "https://keep.example/p/a.html?b");
    EXPECT_EQ(followed(u"//other.example/b"_s), "https://other.example/b");
    EXPECT_EQ(followed(u"HTTPS://other.example/b"_s), "https://other.example/b");
    EXPECT_EQ(followed(u"/caf\u00e9"_s), "https://keep.example/caf%C3%A9");
}

TEST(KeeplinksPage, ARefreshLeadsNowhereElse)
{
    for (const char* address :
         {"javascript:alert(1)", "ftp://other.example/x", "file:///etc/passwd", "data:text/html,x",
          "httpx://other.example/", "http", "https", "httpnext", "https://h:99999/", "//[x/", "httpd/next"})
        EXPECT_EQ(followed(QString::fromLatin1(address)), "none") << address;
    EXPECT_EQ(followMetaRefresh(u"<html>"_s, linkOf(u"https://keep.example/"_s)), std::nullopt);
    EXPECT_EQ(followMetaRefresh(u"<meta http-equiv=\"refresh\" content=\"5\">"_s, linkOf(u"https://keep.example/"_s)),
              std::nullopt);
}

} // namespace
} // namespace vormel::tests

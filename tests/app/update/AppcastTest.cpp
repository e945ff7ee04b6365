#include "app/update/Appcast.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;

namespace {

QByteArray feed(const QByteArray& items)
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<rss version=\"2.0\"><channel><title>Vormel 9</title>"
           "<link>https://vormel.example/</link>" +
           items + "</channel></rss>";
}

QByteArray item(const QByteArray& inside)
{
    return "<item><link>https://vormel.example/get</link>" + inside + "</item>";
}

/// The version that a feed of these items offers; empty if none.
QString offered(const QByteArray& items)
{
    const std::optional<Appcast> appcast = readAppcast(feed(items));
    EXPECT_TRUE(appcast) << items.toStdString();
    return appcast && appcast->newest ? appcast->newest->version.text() : QString();
}

TEST(AppcastTest, TheVersionMayStandInTheEnclosure)
{
    EXPECT_EQ(offered(item("<enclosure url='x' sparkle:version='2045' sparkle:shortVersionString='1.4'/>")), u"1.4"_s);
    EXPECT_EQ(offered(item("<enclosure url='x' sparkle:version='1.3'/>")), u"1.3"_s);
}

TEST(AppcastTest, TheVersionMayStandInElements)
{
    EXPECT_EQ(offered(item("<sparkle:version>2045</sparkle:version>"
                           "<sparkle:shortVersionString> 1.4 </sparkle:shortVersionString>")),
              u"1.4"_s);
}

TEST(AppcastTest, WithoutThoseTheTitleTells)
{
    EXPECT_EQ(offered(item("<title>Vormel 1.5-rc1</title>")), u"1.5-rc1"_s);
    EXPECT_EQ(offered(item("<title>1.5</title><sparkle:version>1.6</sparkle:version>")), u"1.6"_s);
}

TEST(AppcastTest, TheNewestItemWinsWhereverItStands)
{
    EXPECT_EQ(offered(item("<title>1.9</title>") + item("<title>1.10</title>") + item("<title>1.10-rc1</title>")),
              u"1.10"_s);
}

TEST(AppcastTest, ThePageIsTheItemsLink)
{
    const std::optional<Appcast> appcast = readAppcast(feed(item("<title>1.5</title>")));
    ASSERT_TRUE(appcast && appcast->newest);
    EXPECT_EQ(appcast->newest->page, QUrl(u"https://vormel.example/get"_s));
}

TEST(AppcastTest, ItemsWithoutASecureLinkArePassedOver)
{
    for (const QByteArray link : {"", "http://vormel.example/", "file:///etc/passwd", "https://", "javascript:1"})
        EXPECT_EQ(offered("<item><title>2.0</title><link>" + link + "</link></item>" + item("<title>1.0</title>")),
                  u"1.0"_s)
            << link.toStdString();
}

TEST(AppcastTest, ItemsWithoutAVersionArePassedOver)
{
    EXPECT_EQ(offered(item("<title>Coming soon</title>") + item("<title>1.0</title>")), u"1.0"_s);
}

TEST(AppcastTest, MarkupInADescriptionIsNoItem)
{
    EXPECT_EQ(offered(item("<description><b>x<title>7</title></b></description><title>1.0</title>")), u"1.0"_s);
}

TEST(AppcastTest, AFeedWithoutItemsOffersNothing)
{
    EXPECT_EQ(offered({}), QString());
}

TEST(AppcastTest, WhatIsNoFeedIsNotUnderstood)
{
    for (const QByteArray document : {"", "hello", "<html><body>Log in</body></html>", "{\"version\": 2}"})
        EXPECT_FALSE(readAppcast(document)) << document.toStdString();
}

TEST(AppcastTest, AFeedThatIsCutOffIsNotUnderstood)
{
    const QByteArray whole = feed(item("<title>1.0</title>"));
    EXPECT_FALSE(readAppcast(whole.chopped(20)));
    EXPECT_FALSE(readAppcast(whole.left(whole.indexOf("1.0") + 1)));
}

TEST(AppcastTest, EntitiesThatMultiplyAreRefused)
{
    QByteArray type = "<!DOCTYPE rss [<!ENTITY a0 'aaaaaaaaaa'>";
    for (int level = 1; level < 10; ++level) {
        const QByteArray before = "&a" + QByteArray::number(level - 1) + ';';
        type += "<!ENTITY a" + QByteArray::number(level) + " '" + before.repeated(10) + "'>";
    }
    const QByteArray items = item("<title>1.0</title><description>&a9;</description>");
    EXPECT_FALSE(readAppcast(type + "]><rss><channel>" + items + "</channel></rss>"));
}

TEST(AppcastTest, ADocumentTypeIsRefusedEvenUnused)
{
    EXPECT_FALSE(readAppcast("<!DOCTYPE rss [<!ENTITY a 'b'>]><rss><channel/></rss>"));
}

TEST(AppcastTest, DeepNestingDoesNoHarm)
{
    const QByteArray deep = QByteArray("<a>").repeated(100'000) + QByteArray("</a>").repeated(100'000);
    EXPECT_EQ(offered(item("<title>1.0</title>" + deep)), u"1.0"_s);
}

} // namespace

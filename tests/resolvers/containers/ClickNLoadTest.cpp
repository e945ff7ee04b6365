#include "resolvers/containers/ClickNLoad.h"

#include "CnlPages.h"
#include "LinkTexts.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel::tests {
namespace {

constexpr const char* twoLinks = "https://filestore.example/a/one.rar\nhttps://filestore.example/a/two.rar";

TEST(ClickNLoad, CallsAreFoundInTheOrderOfThePage)
{
    const std::vector<CNLPair> expected{{u"0aF9"_s, u"AA+/=="_s}, {u"1"_s, u"Zz09"_s}};
    EXPECT_EQ(findCNLPairs(u"x CNLPOP('first','0aF9','AA+/=='); y CNLPOP('','1','Zz09')"_s), expected);
    EXPECT_TRUE(findCNLPairs(QString()).empty());
}

TEST(ClickNLoad, SpaceMayStandBetweenThePiecesOfACall)
{
    const std::vector<CNLPair> expected{{u"ab"_s, u"AAAA"_s}};
    EXPECT_EQ(findCNLPairs(u"CNLPOP \n(\t'a\nb' , \r\n'ab'\v,\f'AAAA')"_s), expected);
}

TEST(ClickNLoad, WhatIsWrittenOtherwiseIsNoCall)
{
    for (const char* page : {"cnlpop('a','ab','AAAA')", "CNLPOP(\"a\",\"ab\",\"AAAA\")", "CNLPOP('a','xy','AAAA')",
                             "CNLPOP('a','ab','A-_A')", "CNLPOP('a','','AAAA')", "CNLPOP('a','ab','')",
                             "CNLPOP('a','ab')", "CNLPOP('ab','AAAA')", "CNLPOP('a','ab','AAAA",
                             "CNLPOP'a','ab','AAAA'", "CNL POP('a','ab','AAAA')", "CNLPOP('a' 'ab' 'AAAA')"})
        EXPECT_TRUE(findCNLPairs(QString::fromLatin1(page)).empty()) << page;
}

TEST(ClickNLoad, ABrokenCallDoesNotHideTheOneInsideIt)
{
    const std::vector<CNLPair> expected{{u"ab"_s, u"AAAA"_s}};
    EXPECT_EQ(findCNLPairs(u"CNLPOP('CNLPOP('a','ab','AAAA')"_s), expected);
}

TEST(ClickNLoad, KeysOf16And32BytesOpenTheirLinks)
{
    for (const qsizetype length : {16, 32})
        EXPECT_EQ(textOf(decodeCNLLinks(cnlCallWith(twoLinks, cnlKey(length)))), twoLinks) << length;
}

TEST(ClickNLoad, AKeyOf24BytesIsPassedOver)
{
    EXPECT_EQ(textOf(decodeCNLLinks(cnlCallWith(twoLinks, cnlKey(24)))), "");
}

TEST(ClickNLoad, KeysOfOtherLengthsArePassedOver)
{
    const QByteArray cipher = encryptedCNL(twoLinks, cnlKey(16), cnlKey(16));
    for (const char* key : {"00", "3031323334353637383961626364656", "303132333435363738396162636465",
                            "3031323334353637383961626364656600"}) {
        const QString page =
            u"CNLPOP('a','%1','%2')"_s.arg(QString::fromLatin1(key), QString::fromLatin1(cipher.toBase64()));
        ASSERT_EQ(findCNLPairs(page).size(), 1U);
        EXPECT_EQ(textOf(decodeCNLLinks(page)), "") << key;
    }
}

TEST(ClickNLoad, TheFirst16BytesOfALongKeyAreTheVector)
{
    const QByteArray key = cnlKey(32);
    EXPECT_EQ(textOf(decodeCNLLinks(cnlCall(key, encryptedCNL(twoLinks, key, key.first(16))))), twoLinks);
    EXPECT_NE(textOf(decodeCNLLinks(cnlCall(key, encryptedCNL(twoLinks, key, key.last(16))))), twoLinks);
}

TEST(ClickNLoad, TheLetterCaseOfAKeyDoesNotMatter)
{
    const QByteArray key("\xab\xcd\xef\x01\x23\x45\x67\x89\xab\xcd\xef\x01\x23\x45\x67\x89", 16);
    const QByteArray cipher = encryptedCNL(twoLinks, key, key).toBase64();
    const QString page =
        u"CNLPOP('a','%1','%2')"_s.arg(QString::fromLatin1(key.toHex().toUpper()), QString::fromLatin1(cipher));
    EXPECT_EQ(textOf(decodeCNLLinks(page)), twoLinks);
}

TEST(ClickNLoad, TheLinksOfAllCallsComeInTheOrderOfThePage)
{
    const QString page = cnlCallWith("https://filestore.example/a/2\nhttps://filestore.example/a/1", cnlKey(32)) +
                         u"<p>and</p>"_s + cnlCallWith("https://filestore.example/a/0");
    EXPECT_EQ(textOf(decodeCNLLinks(page)), "https://filestore.example/a/2\n"
                                            "https://filestore.example/a/1\n"
                                            "https://filestore.example/a/0");
}

TEST(ClickNLoad, WhatComesTwiceStaysTwice)
{
    EXPECT_EQ(decodeCNLLinks(cnlCallWith("https://h.example/a\nhttps://h.example/a")).size(), 2U);
}

TEST(ClickNLoad, ADamagedCallDoesNotHideTheNext)
{
    const QByteArray key = cnlKey(16);
    const QByteArray cipher = encryptedCNL(twoLinks, key, key);
    const QByteArray otherKey = "another key 0016";
    const auto written = [&key](const QByteArray& base64) {
        return u"CNLPOP('a','%1','%2')"_s.arg(QString::fromLatin1(key.toHex()), QString::fromLatin1(base64));
    };
    const std::vector<std::pair<const char*, QString>> damages{
        {"a key that has half a byte", u"CNLPOP('a','%1','%2')"_s.arg(QString::fromLatin1(key.toHex().chopped(1)),
                                                                      QString::fromLatin1(cipher.toBase64()))},
        {"another key", cnlCall(otherKey, cipher)},
        {"no whole blocks", cnlCall(key, cipher.chopped(1))},
        {"the last block is missing", cnlCall(key, cipher.chopped(16))},
        {"no base64", written("AAA=AAAA")},
        {"base64 without its end", written(cipher.toBase64(QByteArray::OmitTrailingEquals))},
        {"nothing in it", written("====")},
        {"no UTF-8", cnlCallWith("https://filestore.example/a/b\n\xff")},
    };
    ASSERT_NE(cipher.toBase64(QByteArray::OmitTrailingEquals), cipher.toBase64()) << "the cipher text is too even";
    for (const auto& [damage, call] : damages) {
        ASSERT_EQ(findCNLPairs(call).size(), 1U) << damage;
        EXPECT_EQ(textOf(decodeCNLLinks(call)), "") << damage;
        EXPECT_EQ(textOf(decodeCNLLinks(call + cnlCallWith(twoLinks))), twoLinks) << damage;
    }
}

TEST(ClickNLoad, APageWithoutLinksHasNone)
{
    EXPECT_TRUE(decodeCNLLinks(u"<html></html>"_s).empty());
    EXPECT_TRUE(decodeCNLLinks(cnlCallWith("")).empty());
    EXPECT_TRUE(decodeCNLLinks(cnlCallWith("nothing\n\nftp://filestore.example/a/b\n")).empty());
}

TEST(ClickNLoad, EveryKindOfNewlineEndsALine)
{
    EXPECT_EQ(textOf(decodeCNLLinks(cnlCallWith("http://h/1\r\nhttp://h/2\rhttp://h/3\vhttp://h/4\fhttp://h/5\xc2\x85"
                                                "http://h/6\xe2\x80\xa8http://h/7\xe2\x80\xa9http://h/8\n"))),
              "http://h/1\nhttp://h/2\nhttp://h/3\nhttp://h/4\nhttp://h/5\nhttp://h/6\nhttp://h/7\nhttp://h/8");
}

TEST(ClickNLoad, ALineIsCleanedBeforeItIsRead)
{
    using namespace std::string_literals;
    struct Row
    {
        std::string line;
        const char* link;
    };
    for (const Row& row : {Row{"https://h.example/a", "https://h.example/a"},
                           Row{"http://h.example/a", "http://h.example/a"},
                           Row{"HTTPS://h.example/a", "HTTPS://h.example/a"},
                           Row{" \t\r\nhttps://h.example/a\n \xc2\xa0\xe3\x80\x80", "https://h.example/a"},
                           Row{"\0\0https://h.example/a\0\0"s, "https://h.example/a"},
                           Row{"https://h.example/a \0 "s, "https://h.example/a"},
                           Row{"https://h.example/a&", "https://h.example/a"},
                           Row{"https://h.example/a?", "https://h.example/a"},
                           Row{"https://h.example/a&?", "https://h.example/a"},
                           Row{"https://h.example/a?&&??", "https://h.example/a"},
                           Row{"https://h.example/a?b=c&d&", "https://h.example/a?b=c&d"},
                           Row{"&https://h.example/a", "none"},
                           Row{"&?&", "none"},
                           Row{"", "none"},
                           Row{" \0\n"s, "none"},
                           Row{"ftp://h.example/a", "none"},
                           Row{"javascript:alert(1)", "none"},
                           Row{"https:///a", "none"},
                           Row{"https:h.example/a", "none"},
                           Row{"h.example/a", "none"},
                           Row{"https://h.example:99999/a", "none"}}) {
        const std::optional<Link> link = normalizeCNLLine(QString::fromStdString(row.line));
        EXPECT_EQ(link ? link->absoluteString().toStdString() : "none", row.link) << row.line;
    }
}

} // namespace
} // namespace vormel::tests

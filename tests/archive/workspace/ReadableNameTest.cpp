#include "archive/workspace/ReadableName.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

TEST(ReadableName, Utf8StaysAsItIs)
{
    for (const char* name : {"plain.txt", "Prüfung 中文 é.txt", "a\\b", "bell\a", "…"})
        EXPECT_EQ(readableName(name).toUtf8(), QByteArray(name));
}

TEST(ReadableName, NamesOfDosAreReadByItsCodePage)
{
    EXPECT_EQ(readableName("Pr\x81"
                           "fung \x82\x85.txt"),
              u"Prüfung éà.txt");
    EXPECT_EQ(readableName("\x8e\x99\x9a \x84\x94\x81 \xe1 \xa4\xa5 \x92\x91"), u"ÄÖÜ äöü ß ñÑ Ææ");
}

TEST(ReadableName, NamesOfWindowsAreReadByItsCodePageWhereThatOfDosWouldGiveSigns)
{
    EXPECT_EQ(readableName("Pr\xfc"
                           "fung \xe9\xe0.txt"),
              u"Prüfung éà.txt");
    EXPECT_EQ(readableName("\xc4\xd6\xdc \xe4\xf6\xfc \xdf \xf1\xd1"), u"ÄÖÜ äöü ß ñÑ");
    EXPECT_EQ(readableName("\x9cuvre d\xe9j\xe0 \x8a\x9e"), u"œuvre déjà Šž");
}

TEST(ReadableName, WhatIsLettersInNeitherIsTakenForDos)
{
    EXPECT_EQ(readableName("\xb0\xdb\x80.txt"), u"░█Ç.txt");
    EXPECT_EQ(readableName("\xd6\xd0\xb2"), u"╓╨▓");
}

/// As Python's codec reads them.
TEST(ReadableName, TheWholeCodePageOfDosIsKnown)
{
    QString text;
    // In pieces that are no longer than names, and each with a sign.
    for (int start = 0x80; start <= 0xff; start += 32) {
        QByteArray bytes;
        for (int code = start; code < start + 32; ++code)
            bytes += static_cast<char>(code);
        text += readableName(bytes);
    }
    ASSERT_EQ(text.size(), 128);
    EXPECT_EQ(text.left(32), u"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜ¢£¥₧ƒ");
    EXPECT_EQ(text.mid(32, 16), u"áíóúñÑªº¿⌐¬½¼¡«»");
    EXPECT_EQ(text[0xc4 - 0x80], u'─');
    EXPECT_EQ(text[0xda - 0x80], u'┌');
    EXPECT_EQ(text.mid(0xe0 - 0x80), u"αßΓπΣσµτΦΘΩδ∞φε∩≡±≥≤⌠⌡÷≈°∙·√ⁿ²■\u00a0");
}

TEST(ReadableName, EveryOneFitsAFileSystem)
{
    for (int code = 0x80; code <= 0xff; ++code) {
        const QByteArray name = readableName(QByteArray(255, static_cast<char>(code))).toUtf8();
        EXPECT_LE(name.size(), 255);
        EXPECT_FALSE(name.isEmpty());
    }
    EXPECT_FALSE(readableName("a\x01\xff").contains(QChar(1)));
}

} // namespace
} // namespace vormel

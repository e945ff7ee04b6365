#include "app/attention/EndNotification.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

const GroupEnd loaded{GroupEnd::downloaded, u"a.bin"_s, u"/d/a.bin"_s, {}};
const GroupEnd unpacked{GroupEnd::extracted, u"show"_s, u"/d/show"_s, {}};
const GroupEnd broken{GroupEnd::downloadFailed, u"b.bin"_s, {}, u"File not found"_s};
const GroupEnd damaged{GroupEnd::extractionFailed, u"set"_s, {}, u"bad volume"_s};

QStringList keys(const Notification& notification)
{
    QStringList all;
    for (const Notification::Action& action : notification.actions)
        all << action.key;
    return all;
}

QString title(const std::vector<GroupEnd>& ends, AppLanguage language = AppLanguage::english)
{
    return endNotification(ends, language).title;
}

TEST(EndNotificationTest, OneThatHasEndedIsToldByName)
{
    EXPECT_EQ(title({loaded}), u"Download finished");
    EXPECT_EQ(title({unpacked}), u"Archive extracted");
    EXPECT_EQ(title({broken}), u"Download failed");
    EXPECT_EQ(title({damaged}), u"Extraction failed");
    EXPECT_EQ(endNotification({loaded}, AppLanguage::english).text, u"a.bin");
    EXPECT_EQ(endNotification({broken}, AppLanguage::english).text, u"b.bin\nFile not found");
}

TEST(EndNotificationTest, OneThatHasEndedIsToldInItalian)
{
    EXPECT_EQ(title({loaded}, AppLanguage::italian), u"Download completato");
    EXPECT_EQ(title({unpacked}, AppLanguage::italian), u"Archivio estratto");
    EXPECT_EQ(title({broken}, AppLanguage::italian), u"Download fallito");
    EXPECT_EQ(title({damaged}, AppLanguage::italian), u"Estrazione fallita");
    const Notification notification = endNotification({loaded}, AppLanguage::italian);
    EXPECT_EQ(notification.actions.at(1).label, u"Apri");
    EXPECT_EQ(notification.actions.at(2).label, u"Mostra");
}

TEST(EndNotificationTest, WhatIsThereCanBeOpenedAndShown)
{
    EXPECT_EQ(keys(endNotification({loaded}, AppLanguage::english)), (QStringList{u"default"_s, u"open"_s, u"show"_s}));
    EXPECT_EQ(keys(endNotification({unpacked}, AppLanguage::english)),
              (QStringList{u"default"_s, u"open"_s, u"show"_s}));
    EXPECT_EQ(keys(endNotification({broken}, AppLanguage::english)), (QStringList{u"default"_s, u"show"_s}));
}

TEST(EndNotificationTest, ManyAreCounted)
{
    EXPECT_EQ(title({loaded, unpacked}), u"2 downloads finished");
    EXPECT_EQ(title({loaded, broken}), u"1 download finished, 1 failed");
    EXPECT_EQ(title({loaded, loaded, broken, damaged}), u"2 downloads finished, 2 failed");
    EXPECT_EQ(title({broken, broken, broken}), u"3 downloads failed");
    const Notification many = endNotification({loaded, broken}, AppLanguage::english);
    EXPECT_EQ(many.text, QString());
    EXPECT_EQ(keys(many), QStringList{u"default"_s});
}

TEST(EndNotificationTest, ManyAreCountedInItalian)
{
    EXPECT_EQ(title({loaded, unpacked}, AppLanguage::italian), u"2 download completati");
    EXPECT_EQ(title({loaded, broken}, AppLanguage::italian), u"1 download completato, 1 fallito");
    EXPECT_EQ(title({loaded, loaded, broken, broken}, AppLanguage::italian), u"2 download completati, 2 falliti");
    EXPECT_EQ(title({broken, broken}, AppLanguage::italian), u"2 download falliti");
}

TEST(EndNotificationTest, WhatComesFromOutsideKeepsToItsLineAndToALength)
{
    GroupEnd odd = broken;
    odd.name = u"a\n\tb"_s;
    odd.message = QString(5000, u'x');
    const QString text = endNotification({odd}, AppLanguage::english).text;
    EXPECT_TRUE(text.startsWith(u"a b\n"));
    EXPECT_EQ(text.size(), 304);
}

} // namespace
} // namespace vormel

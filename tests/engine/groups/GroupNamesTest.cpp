#include "engine/groups/GroupNames.h"

#include "fixtures/Sandbox.h"
#include "platform/storage/FileWriter.h"
#include "platform/storage/UserDefaults.h"

#include <QJsonArray>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace vormel;

namespace {

class GroupNamesTest : public ::testing::Test
{
protected:
    void store(const QJsonValue& value) { defaults.setObject(key, value); }

    const QString key = QStringLiteral("vormel_group_names");
    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
    fixtures::Sandbox sandbox;
    FileWriter writer;
    UserDefaults defaults{sandbox.path(QStringLiteral("preferences.json")), writer};
};

} // namespace

TEST_F(GroupNamesTest, ReadsTheStoredNames)
{
    store(QJsonObject{{a, QStringLiteral("Film")}, {b, QStringLiteral("Song")}});
    EXPECT_EQ(GroupNames(defaults).displayName(a), u"Film");
    EXPECT_EQ(GroupNames(defaults).displayName(b), u"Song");
    EXPECT_EQ(GroupNames(defaults).displayName(QStringLiteral("c")), u"c");
}

TEST_F(GroupNamesTest, StartsEmptyWhereAnyValueIsNoText)
{
    const QJsonValue strangers[] = {1, true, QJsonValue::Null, QJsonArray{QStringLiteral("x")}, QJsonObject{}};
    for (const QJsonValue& stranger : strangers) {
        store(QJsonObject{{a, QStringLiteral("Film")}, {b, stranger}});
        EXPECT_EQ(GroupNames(defaults).customName(a), u"") << stranger.type();
    }
}

TEST_F(GroupNamesTest, StartsEmptyWhereTheMapIsNone)
{
    for (const QJsonValue& stranger : {QJsonValue(1), QJsonValue(QStringLiteral("a")), QJsonValue(QJsonArray{a})}) {
        store(stranger);
        EXPECT_EQ(GroupNames(defaults).customName(a), u"");
    }
}

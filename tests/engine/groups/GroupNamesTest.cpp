#include "engine/groups/GroupNames.h"

#include "fixtures/Sandbox.h"
#include "platform/storage/FileWriter.h"
#include "platform/storage/UserDefaults.h"

#include <QJsonArray>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;

namespace {

class GroupNamesTest : public ::testing::Test
{
protected:
    void store(const QJsonValue& value) { defaults.setObject(key, value); }

    const QString key = u"vormel_group_names"_s;
    const QString a = u"a"_s;
    const QString b = u"b"_s;
    fixtures::Sandbox sandbox;
    FileWriter writer;
    UserDefaults defaults{sandbox.path(u"preferences.json"_s), writer};
};

} // namespace

TEST_F(GroupNamesTest, ReadsTheStoredNames)
{
    store(QJsonObject{{a, u"Film"_s}, {b, u"Song"_s}});
    EXPECT_EQ(GroupNames(defaults).displayName(a), u"Film");
    EXPECT_EQ(GroupNames(defaults).displayName(b), u"Song");
    EXPECT_EQ(GroupNames(defaults).displayName(u"c"_s), u"c");
}

TEST_F(GroupNamesTest, StartsEmptyWhereAnyValueIsNoText)
{
    const QJsonValue strangers[] = {1, true, QJsonValue::Null, QJsonArray{u"x"_s}, QJsonObject{}};
    for (const QJsonValue& stranger : strangers) {
        store(QJsonObject{{a, u"Film"_s}, {b, stranger}});
        EXPECT_EQ(GroupNames(defaults).customName(a), u"") << stranger.type();
    }
}

TEST_F(GroupNamesTest, StartsEmptyWhereTheMapIsNone)
{
    for (const QJsonValue& stranger : {QJsonValue(1), QJsonValue(u"a"_s), QJsonValue(QJsonArray{a})}) {
        store(stranger);
        EXPECT_EQ(GroupNames(defaults).customName(a), u"");
    }
}

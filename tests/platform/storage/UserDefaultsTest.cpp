#include "platform/storage/UserDefaults.h"

#include "fixtures/Sandbox.h"
#include "platform/storage/FileWriter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

#include <limits>
#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

const QString fileName = u"configuration/preferences.json"_s;
const QString keptName = u"configuration/preferences.json.unreadable"_s;
const QString key = u"key"_s;

class UserDefaultsTest : public testing::Test
{
protected:
    [[nodiscard]] UserDefaults open() { return {sandbox.path(fileName), writer}; }
    [[nodiscard]] UserDefaults openWith(const QByteArray& json)
    {
        sandbox.write(fileName, json);
        return open();
    }
    [[nodiscard]] QJsonObject onDisk()
    {
        writer.flush();
        return QJsonDocument::fromJson(sandbox.read(fileName)).object();
    }

    fixtures::Sandbox sandbox;
    FileWriter writer;
};

TEST_F(UserDefaultsTest, WithoutAFileEveryKeyIsMissingAndNothingIsWritten)
{
    const UserDefaults defaults = open();
    EXPECT_EQ(defaults.objectForKey(key), std::nullopt);
    EXPECT_EQ(defaults.stringForKey(key), std::nullopt);
    EXPECT_FALSE(defaults.boolForKey(key));
    writer.flush();
    EXPECT_TRUE(sandbox.files().isEmpty());
}

TEST_F(UserDefaultsTest, AMissingKeyIsNotTheSameAsFalseOrZeroOrEmpty)
{
    const UserDefaults defaults = openWith(R"({"f": false, "z": 0, "e": "", "n": null})");
    EXPECT_EQ(defaults.objectForKey(u"f"_s), QJsonValue(false));
    EXPECT_EQ(defaults.objectForKey(u"z"_s), QJsonValue(0));
    EXPECT_EQ(defaults.stringForKey(u"e"_s), QString());
    EXPECT_EQ(defaults.objectForKey(u"n"_s), std::nullopt);
    EXPECT_EQ(defaults.objectForKey(u"F"_s), std::nullopt);
}

TEST_F(UserDefaultsTest, WhatCountsAsTrue)
{
    const std::vector<std::pair<QByteArray, bool>> rows = {
        {"true", true},     {"false", false},  {"1", true},       {"0", false},      {"-2.5", true},
        {"\"true\"", true}, {"\"Yes\"", true}, {"\"1\"", true},   {"\"no\"", false}, {"\"2\"", false},
        {"\"\"", false},    {"null", false},   {"[true]", false}, {"{}", false}};
    for (const auto& [value, expected] : rows)
        EXPECT_EQ(openWith("{\"key\": " + value + "}").boolForKey(key), expected) << value.toStdString();
}

TEST_F(UserDefaultsTest, OnlyATextIsReadAsAText)
{
    EXPECT_EQ(openWith(R"({"key": "caffè"})").stringForKey(key), u"caffè");
    for (const QByteArray value : {"1", "true", "[\"a\"]", "{}", "null"})
        EXPECT_EQ(openWith("{\"key\": " + value + "}").stringForKey(key), std::nullopt) << value.toStdString();
}

TEST_F(UserDefaultsTest, ValuesAreOnDiskRightAfterAFlushInTheirTypes)
{
    UserDefaults defaults = open();
    defaults.setBool(u"b"_s, true);
    defaults.setInteger(u"i"_s, 1);
    defaults.setObject(u"s"_s, u"1"_s);
    defaults.setObject(u"a"_s, QJsonArray{1, u"x"_s});
    const QJsonObject stored = onDisk();
    EXPECT_TRUE(stored.value(u"b"_s).isBool());
    EXPECT_TRUE(stored.value(u"i"_s).isDouble());
    EXPECT_TRUE(stored.value(u"s"_s).isString());
    EXPECT_EQ(stored.value(u"a"_s).toArray().size(), 2);
}

TEST_F(UserDefaultsTest, ASetTakesEffectAtOnceAndOutlivesTheProcess)
{
    {
        UserDefaults defaults = open();
        defaults.setInteger(key, std::numeric_limits<qint64>::max());
        EXPECT_EQ(defaults.objectForKey(key)->toInteger(), std::numeric_limits<qint64>::max());
        defaults.setBool(key, false);
        EXPECT_EQ(defaults.objectForKey(key), QJsonValue(false));
        defaults.setInteger(key, std::numeric_limits<qint64>::max() - 1);
    }
    writer.flush();
    EXPECT_EQ(open().objectForKey(key)->toInteger(), std::numeric_limits<qint64>::max() - 1);
}

TEST_F(UserDefaultsTest, SettingTheSameValueAgainWritesAgain)
{
    UserDefaults defaults = open();
    defaults.setBool(key, true);
    EXPECT_FALSE(onDisk().isEmpty());
    ASSERT_TRUE(QFile::remove(sandbox.path(fileName)));
    defaults.setBool(key, true);
    EXPECT_TRUE(onDisk().value(key).toBool());
}

TEST_F(UserDefaultsTest, KeysItDoesNotKnowAreKept)
{
    UserDefaults defaults = openWith(R"({"other": {"deep": [1]}})");
    defaults.setBool(key, true);
    EXPECT_EQ(onDisk().value(u"other"_s).toObject().value(u"deep"_s).toArray(), QJsonArray{1});
}

TEST_F(UserDefaultsTest, AFileThatCannotBeUnderstoodCountsAsEmptyAndIsKeptBeside)
{
    for (const QByteArray broken :
         {"", "not json", R"({"key": true)", R"(["key"])", "\"key\"", "{\"key\": \"\xff\xfe\"}x", "\x00\x01\x02"}) {
        UserDefaults defaults = openWith(broken);
        EXPECT_EQ(defaults.objectForKey(key), std::nullopt) << broken.toStdString();
        EXPECT_EQ(sandbox.read(keptName), broken);
        EXPECT_FALSE(sandbox.exists(fileName));
        defaults.setBool(key, true);
        EXPECT_TRUE(onDisk().value(key).toBool());
        EXPECT_EQ(sandbox.read(keptName), broken) << "a later set must not touch the kept file";
        ASSERT_TRUE(QFile::remove(sandbox.path(keptName)));
    }
}

TEST_F(UserDefaultsTest, AHugeFileCountsAsEmptyAndIsKeptBeside)
{
    sandbox.write(fileName, R"({"key": true})");
    QFile file(sandbox.path(fileName));
    constexpr qint64 huge = qint64{1} << 40; // sparse
    ASSERT_TRUE(file.resize(huge));
    EXPECT_EQ(open().objectForKey(key), std::nullopt);
    EXPECT_EQ(QFileInfo(sandbox.path(keptName)).size(), huge);
}

TEST_F(UserDefaultsTest, AFileThatCanNeitherBeReadNorMovedAsideIsNotWrittenOver)
{
    const QString longName(246, u'n'); // no room for what is put behind it
    UserDefaults defaults(sandbox.write(longName, "not json"), writer);
    defaults.setBool(key, true);
    EXPECT_TRUE(defaults.boolForKey(key));
    writer.flush();
    EXPECT_EQ(sandbox.read(longName), "not json");
}

TEST_F(UserDefaultsTest, AFolderInItsPlaceIsMovedAside)
{
    ASSERT_TRUE(QDir().mkpath(sandbox.path(fileName)));
    UserDefaults defaults = open();
    defaults.setBool(key, true);
    EXPECT_TRUE(onDisk().value(key).toBool());
    EXPECT_TRUE(QFileInfo(sandbox.path(keptName)).isDir());
}

} // namespace
} // namespace vormel

#include "engine/QuietTable.h"
#include "engine/SavedQueue.h"
#include "engine/queue/QueueFile.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <gmock/gmock.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

class UnreadableQueue : public SavedQueue, protected QuietTable
{};

} // namespace

namespace {

struct BadFile
{
    const char* name;
    QByteArray bytes;
};

QByteArray withChange(const char* key, const QJsonValue& value)
{
    QJsonObject changed = record(u"http://h/x.bin"_s, u"paused"_s);
    changed[QLatin1StringView(key)] = value;
    return QJsonDocument(
               QJsonArray{record(u"http://h/y.bin"_s, u"paused"_s, u"6F9619FF-8B86-D011-B42D-00CF4FC964FE"_s), changed})
        .toJson();
}

class BadQueueFile : public SavedQueue, public ::testing::WithParamInterface<BadFile>
{};

TEST_P(BadQueueFile, GivesAnEmptyQueueAndIsKeptBesideTheNewOne)
{
    restoreFrom(GetParam().bytes);
    EXPECT_TRUE(engine.manager().items().empty());
    EXPECT_EQ(engine.sandbox.read(queueFile + u".unreadable"_s), GetParam().bytes);
    engine.add(u"http://h/new.bin"_s);
    engine.restart();
    EXPECT_EQ(engine.manager().items().size(), 1U);
    EXPECT_EQ(engine.sandbox.read(queueFile + u".unreadable"_s), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, BadQueueFile,
    ::testing::Values(BadFile{"Cut", withChange("progress", 0.5).chopped(40)}, BadFile{"Empty", ""},
                      BadFile{"NoJson", "hello"}, BadFile{"Object", "{}"}, BadFile{"Number", "7"},
                      BadFile{"ArrayOfNumbers", "[1,2]"}, BadFile{"DeeplyNested", QByteArray(1000000, '[')},
                      BadFile{"DeeplyNestedClosed", QByteArray(1000000, '[') + QByteArray(1000000, ']')},
                      BadFile{"InvalidUtf8", withChange("filename", u"MARK"_s).replace("MARK", "\xff\xfe")},
                      BadFile{"MissingKey", withChange("hostName", QJsonValue::Undefined)},
                      BadFile{"TextForNumber", withChange("totalBytes", u"100"_s)},
                      BadFile{"FractionForInteger", withChange("bytesReceived", 1.5)},
                      BadFile{"HugeNumber", withChange("bytesReceived", 1e300)},
                      BadFile{"NumberForText", withChange("filename", 5)}, BadFile{"BadId", withChange("id", u"x"_s)},
                      BadFile{"NullId", withChange("id", u"00000000-0000-0000-0000-000000000000"_s)},
                      BadFile{"TwiceTheSameId", withChange("id", u"6F9619FF-8B86-D011-B42D-00CF4FC964FE"_s)},
                      BadFile{"NoLink", withChange("originalURL", u"not a link"_s)},
                      BadFile{"Infinity", withChange("progress", 0.5).replace("0.5", "1e999")}),
    [](const ::testing::TestParamInfo<BadFile>& row) { return std::string(row.param.name); });

} // namespace

TEST_F(UnreadableQueue, KeepsTwoUnreadableFiles)
{
    restoreFrom("first");
    restoreFrom("second");
    EXPECT_EQ(engine.sandbox.read(queueFile + u".unreadable"_s), "first");
    EXPECT_EQ(engine.sandbox.read(queueFile + u".unreadable.2"_s), "second");
}

TEST_F(UnreadableQueue, DoesNotWriteOverAFileThatItCanNeitherReadNorMoveAside)
{
    const QString longName(246, u'n'); // no room for what is put behind it
    const QString path = engine.sandbox.write(longName, "broken");
    FileWriter writer;
    QueueFile file(path, writer);
    const DownloadPaths paths(engine.sandbox.path(u"Downloads"_s));
    EXPECT_TRUE(file.restore(paths).empty());
    file.save(table, paths);
    writer.flush();
    EXPECT_EQ(engine.sandbox.read(longName), "broken");
}

TEST_F(UnreadableQueue, TakesAPipeInThePlaceOfItsNewFileAway)
{
    engine.flush();
    const QByteArray fresh = QFile::encodeName(engine.sandbox.path(queueFile + u".new"_s));
    QDir().mkpath(engine.sandbox.path(u"data/Vormel"_s));
    ASSERT_EQ(::mkfifo(fresh.constData(), 0600), 0);
    engine.add(u"http://h/x.bin"_s);
    engine.restart();
    EXPECT_EQ(engine.manager().items().size(), 1U);
}

TEST_F(UnreadableQueue, ReadsADateBeyondAllTimeAsNone)
{
    for (const double date : {1e300, -1e300, 1e10, -1e10}) {
        QJsonObject stored = record(u"http://h/x.bin"_s, u"paused"_s);
        stored[u"resolvedAt"_s] = date;
        restoreFrom(QJsonArray{stored});
        EXPECT_EQ(only().resolvedAt(), std::nullopt) << date;
    }
}

TEST_F(UnreadableQueue, CutsTextsThatWouldHoldUpTheWindow)
{
    const QString huge(10'000'000, u'W');
    QJsonObject stored = record(u"http://h/x.bin"_s, u"failed"_s);
    for (const char* const key : {"filename", "statusMessage", "hostName", "extractionError"})
        stored[QLatin1StringView(key)] = huge;
    stored[u"filename"_s] = huge + u".part1.rar"_s;
    stored[u"extractionStatusType"_s] = u"failed"_s;
    stored[u"localPath"_s] = u"file:///"_s + huge;
    restoreFrom(QJsonArray{stored});
    constexpr qsizetype most = 1000;
    EXPECT_LE(only().filename().size(), most);
    EXPECT_TRUE(only().filename().endsWith(u"W.part1.rar"_s));
    EXPECT_LE(only().status().message().size(), most);
    EXPECT_LE(only().hostName().size(), most);
    EXPECT_LE(only().extractionStatus().message().size(), most);
    EXPECT_FALSE(only().localPath());
}

TEST_F(UnreadableQueue, RefusesAFileThatIsTooLarge)
{
    restoreFrom("[" + QByteArray(65 * 1024 * 1024, ' ') + "]");
    EXPECT_TRUE(engine.manager().items().empty());
    EXPECT_TRUE(engine.sandbox.exists(queueFile + u".unreadable"_s));
}

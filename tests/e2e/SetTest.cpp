#include "fixtures/EngineOnNetwork.h"
#include "fixtures/EventLoop.h"
#include "fixtures/RealTools.h"
#include "fixtures/Sighting.h"
#include "sites/FileServer.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;
using vormel::sites::Answer;
using vormel::sites::FileServer;

namespace {

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Sets made by the real packer, fetched from a loopback server and unpacked by the real tools.
class SetTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        VORMEL_NEEDS_TOOL("unrar");
        VORMEL_NEEDS_TOOL("rar");
        engine.manager().settings().maxConcurrentDownloads.set(4);
    }

    /// Packs the set, serves every volume, and gives their names.
    QStringList serve(const RarSet& set)
    {
        QStringList names;
        for (const QString& path : makeRarSet(engine.sandbox.path(u"made"_s), set)) {
            names << QFileInfo(path).fileName();
            serveFile(names.back(), contents(path));
        }
        return names;
    }
    void serveFile(const QString& name, const QByteArray& bytes, const std::vector<Answer>& answers = {})
    {
        server.serve("/" + name.toStdString(), {.content = bytes.toStdString(), .answers = answers});
    }
    std::vector<ItemPtr> addAll(const QStringList& names)
    {
        std::vector<Link> links;
        for (const QString& name : names)
            links.push_back(*Link::parse(QString::fromStdString(server.url("/" + name.toStdString()))));
        engine.manager().addURLs(links, std::nullopt);
        return engine.manager().items();
    }

    [[nodiscard]] bool isAtWork()
    {
        const std::vector<ItemPtr>& items = engine.manager().items();
        return std::any_of(items.begin(), items.end(), [](const ItemPtr& item) {
            return item->status() == DownloadStatus::downloading || item->status() == DownloadStatus::resolving ||
                   item->extractionStatus() == ExtractionStatus::extracting ||
                   item->extractionStatus() == ExtractionStatus::repairing;
        });
    }
    /// Lets the engine work until the condition holds, a second of its clock at a time whenever it only waits.
    [[nodiscard]] bool runUntil(const std::function<bool()>& condition, int seconds = 600)
    {
        while (!condition() && seconds > 0) {
            if (waitUntil([&] { return condition() || !isAtWork(); }) && !condition()) {
                engine.clock.advance(1s);
                --seconds;
            }
        }
        return condition();
    }
    [[nodiscard]] bool isInQueue(const QString& name)
    {
        const std::vector<ItemPtr>& items = engine.manager().items();
        return std::any_of(items.begin(), items.end(), [&](const ItemPtr& item) { return item->filename() == name; });
    }
    [[nodiscard]] DownloadItem& find(const QString& name)
    {
        const std::vector<ItemPtr>& items = engine.manager().items();
        return **std::find_if(items.begin(), items.end(),
                              [&](const ItemPtr& item) { return item->filename() == name; });
    }
    [[nodiscard]] QByteArray unpacked(const QString& name) const
    {
        return engine.sandbox.read(u"Downloads/set/"_s + name);
    }

    FileServer server;
    EngineOnNetwork engine;
    const QByteArray movie = noise(400'000);
    const QString movieName = u"movie.mkv"_s;
};

} // namespace

TEST_F(SetTest, RebuildsAVolumeThatNeverComesFromItsRecoveryVolumes)
{
    RarSet set;
    set.files = {{movieName, movie}};
    set.volumeBytes = 100'000;
    set.recoveryVolumes = 2;
    const QStringList names = serve(set);
    const QString lost = names[2];
    serveFile(lost, {}, {Answer::empty(404)});
    addAll(names);
    engine.manager().commands().startAll();
    ASSERT_TRUE(runUntil([&] { return find(lost).status() == DownloadStatus::failed; }));
    EXPECT_EQ(find(lost).recoveryCountdown(), 10);
    EXPECT_EQ(find(names.back()).status(), DownloadStatus::queued);
    const DownloadItem& first = find(names[0]);
    EXPECT_TRUE(runUntil([&] { return first.extractionStatus() == ExtractionStatus::done; }))
        << first.extractionStatus().message().toStdString();
    EXPECT_EQ(unpacked(movieName), movie);
    EXPECT_FALSE(isInQueue(names.back())); // the recovery volumes are of no more use
}

TEST_F(SetTest, RepairsADamagedVolumeFromRecoveryVolumesThatItFetchesForThat)
{
    RarSet set;
    set.files = {{movieName, movie}};
    set.volumeBytes = 100'000;
    set.recoveryVolumes = 2;
    const QStringList names = serve(set);
    serveFile(names[2], "<html>Not found</html>");
    addAll(names);
    engine.manager().commands().startAll();
    const DownloadItem& first = find(names[0]);
    const Sighting repair(engine.manager(), [&] {
        return first.extractionStatus() == ExtractionStatus::repairing && isInQueue(names.back()) &&
               find(names.back()).status() == DownloadStatus::completed;
    });
    EXPECT_TRUE(runUntil([&] { return first.extractionStatus() == ExtractionStatus::done; }))
        << first.extractionStatus().message().toStdString();
    EXPECT_TRUE(repair.hasCome());
    EXPECT_EQ(unpacked(movieName), movie);
}

TEST_F(SetTest, FetchesAVolumeAgainThatVerificationFindsDamaged)
{
    engine.manager().settings().autoExtract.set(false);
    RarSet set;
    set.files = {{movieName, movie}};
    set.volumeBytes = 100'000;
    const QStringList names = serve(set);
    const QByteArray good = contents(engine.sandbox.path(u"made/"_s + names[1]));
    QByteArray bad = good;
    bad.replace(50'000, 16, QByteArray(16, 'x'));
    serveFile(names[1], bad);
    const std::vector<ItemPtr> items = addAll(names);
    engine.manager().commands().startAll();
    ASSERT_TRUE(runUntil([&] {
        return std::all_of(items.begin(), items.end(),
                           [](const ItemPtr& item) { return item->status() == DownloadStatus::completed; });
    }));
    serveFile(names[1], good);
    engine.manager().settings().autoExtract.set(true);
    const Sighting newFetch(engine.manager(), [&] { return items[1]->status() == DownloadStatus::downloading; });
    const Sighting needlessFetch(engine.manager(), [&] { return items[0]->status() != DownloadStatus::completed; });
    engine.manager().commands().verifyGroup(items);
    ASSERT_TRUE(waitUntil([&] { return newFetch.hasCome(); }));
    EXPECT_FALSE(needlessFetch.hasCome());
    EXPECT_TRUE(runUntil([&] { return items[0]->extractionStatus() == ExtractionStatus::done; }));
    EXPECT_EQ(unpacked(movieName), movie);
}

TEST_F(SetTest, AsksForThePasswordAndUnpacksOnceItIsRight)
{
    for (const bool areHeadersEncrypted : {false, true}) {
        RarSet set;
        set.name = areHeadersEncrypted ? u"hidden"_s : u"set"_s;
        set.files = {{movieName, movie}};
        set.volumeBytes = 200'000;
        set.password = u"open sesame"_s;
        set.areHeadersEncrypted = areHeadersEncrypted;
        const QStringList names = serve(set);
        addAll(names);
        engine.manager().commands().startAll();
        const auto question = [this] { return engine.manager().questions().pendingExtractionPassword(); };
        ASSERT_TRUE(runUntil([&] { return question().has_value(); }));
        EXPECT_EQ(question()->archiveName, set.name);
        EXPECT_FALSE(question()->wasWrongPassword);
        engine.manager().questions().submitExtractionPassword(u"open barley"_s);
        ASSERT_TRUE(runUntil([&] { return question().has_value(); }));
        EXPECT_TRUE(question()->wasWrongPassword);
        engine.manager().questions().submitExtractionPassword(set.password);
        ASSERT_TRUE(runUntil([&] { return find(names[0]).extractionStatus() == ExtractionStatus::done; }));
        EXPECT_EQ(engine.sandbox.read(u"Downloads/%1/%2"_s.arg(set.name, movieName)), movie);
    }
}

TEST_F(SetTest, UnpacksVolumesThatCameInAnyOrder)
{
    RarSet set;
    set.files = {{u"Città.Ωmega.1080p.GROUP.mkv"_s, movie}, {u"note.txt"_s, "hello"}};
    set.volumeBytes = 14'000;
    set.isSolid = true;
    QStringList names = serve(set);
    ASSERT_GE(names.size(), 25);
    const QString first = names[0];
    std::mt19937 random(3); // NOLINT(cert-msc51-cpp): the same order each time
    std::shuffle(names.begin(), names.end(), random);
    engine.manager().settings().cleanExtractedNames.set(true);
    engine.manager().settings().deleteArchiveAfterExtract.set(true);
    addAll(names);
    engine.manager().commands().startAll();
    ASSERT_TRUE(runUntil([&] { return find(first).extractionStatus() == ExtractionStatus::done; }));
    EXPECT_EQ(unpacked(u"Città.Ωmega.mkv"_s), movie);
    EXPECT_TRUE(waitUntil([&] { return engine.sandbox.files(u"Downloads"_s).size() == 2; }));
    EXPECT_EQ(engine.sandbox.files(u"Trash"_s).size(), names.size());
}

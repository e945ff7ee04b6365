#include "engine/queue/QueueRecords.h"
#include "fixtures/Sandbox.h"
#include "platform/storage/WholeFile.h"
#include "sites/NginxServer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QThread>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;
using vormel::sites::NginxServer;

namespace {

constexpr int killsToSurvive = 200;
constexpr auto megabyte = qsizetype{1024} * 1024;

QByteArray randomBytes(std::mt19937_64& random, qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

/// Files of all sizes on a real server, and the engine as a process that is killed again and again while it fetches
/// them.
class KillTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (!NginxServer::isAvailable()) {
            if (std::getenv("VORMEL_REQUIRE_TOOLS"))
                FAIL() << "nginx is missing";
            GTEST_SKIP() << "nginx is not installed";
        }
        const std::vector<qsizetype> sizes{3 * megabyte, 700000, 65536, 1, 262144, 2 * megabyte, 262145, 1500000};
        for (std::size_t i = 0; i < sizes.size(); ++i) {
            const QString name = u"set.part%1.rar"_s.arg(i + 1);
            originals.insert(name, randomBytes(random, sizes[i]));
            sandbox.write(u"www/"_s + name, originals[name]);
        }
        server.emplace(NginxServer::Options{.folder = sandbox.path(u"nginx"_s).toStdString(),
                                            .documentRoot = sandbox.path(u"www"_s).toStdString()});
    }

    void startEngine(QProcess& engine, const QString& profile, const QString& cap = u"30720"_s,
                     const QStringList& command = {})
    {
        QStringList arguments{profile, cap};
        arguments += command;
        for (const QString& name : originals.keys())
            arguments.append(QString::fromStdString(server->url("/" + name.toStdString())));
        engine.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        engine.start(QStringLiteral(VORMEL_ENGINE_PROCESS), arguments);
        ASSERT_TRUE(engine.waitForStarted());
    }

    /// What a new start of the program would find after a kill.
    static void checkQueue(const QString& profile)
    {
        const Folders folders = Folders::below(profile);
        const QString path = folders.applicationSupport + u"/download_queue.json"_s;
        if (!QFileInfo::exists(path))
            return;
        const DownloadPaths paths(folders.downloads);
        const std::optional<QByteArray> bytes = readWholeFile(path, megabyte);
        ASSERT_TRUE(bytes);
        const auto items = decodeQueue(*bytes, paths);
        ASSERT_TRUE(items) << "a cut queue file: " << bytes->constData();
        for (const ItemPtr& item : *items) {
            const QFileInfo part(paths.partFile(item->filename()));
            if (item->status() == DownloadStatus::paused && part.exists() && part.size() > 0)
                EXPECT_EQ(item->bytesReceived(), part.size());
            else
                EXPECT_TRUE(item->status() == DownloadStatus::paused || item->status() == DownloadStatus::completed);
        }
    }

    void checkFiles(const QString& profile) const
    {
        const QDir folder(Folders::below(profile).downloads + u"/set"_s);
        EXPECT_EQ(folder.entryList(QDir::Files | QDir::Hidden), QStringList(originals.keys()));
        for (auto original = originals.begin(); original != originals.end(); ++original) {
            QFile file(folder.filePath(original.key()));
            ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(original.key());
            EXPECT_TRUE(file.readAll() == original.value()) << qPrintable(original.key());
        }
    }

    std::mt19937_64 random{20261121};
    Sandbox sandbox;
    QMap<QString, QByteArray> originals;
    std::optional<NginxServer> server;
};

} // namespace

TEST_F(KillTest, EveryFileIsWholeAfterManyKills)
{
    int kills = 0;
    for (int round = 0; kills < killsToSurvive; ++round) {
        const QString profile = sandbox.path(u"profile%1"_s.arg(round));
        bool isDone = false;
        while (!isDone) {
            QProcess engine;
            startEngine(engine, profile);
            // Some starts are given enough time to finish, so that every moment of a download is hit, the last ones
            // too.
            const int delay = static_cast<int>(random() % 260);
            if (engine.waitForFinished(delay)) {
                isDone = true;
                EXPECT_EQ(engine.exitStatus(), QProcess::NormalExit);
                EXPECT_EQ(engine.exitCode(), 0);
            } else {
                engine.kill();
                ASSERT_TRUE(engine.waitForFinished());
                ++kills;
            }
            checkQueue(profile);
            ASSERT_FALSE(HasFatalFailure());
        }
        checkFiles(profile);
    }
    RecordProperty("kills", kills);
}

TEST_F(KillTest, AKillBeforeARemovalIsFinishedLosesNothingAndBringsNothingBackTwice)
{
    constexpr int rounds = 12;
    constexpr int longestMilliseconds = 10'000;
    const auto slowly = u"2048"_s; // KB/s: something is under way when everything goes
    for (int round = 0; round < rounds; ++round) {
        const QString profile = sandbox.path(u"removal%1"_s.arg(round));
        QProcess engine;
        startEngine(engine, profile, slowly, {u"remove"_s});
        ASSERT_TRUE(engine.waitForReadyRead(longestMilliseconds));
        EXPECT_EQ(engine.readAllStandardOutput(), "removed\n");
        QThread::msleep(random() % 40); // before, while and after the queue is saved
        engine.kill();
        ASSERT_TRUE(engine.waitForFinished());
        checkQueue(profile);
        const QDir folder(Folders::below(profile).downloads + u"/set"_s);
        const QFileInfoList parts = folder.entryInfoList({u"*.download"_s}, QDir::Files);
        EXPECT_TRUE(std::ranges::any_of(parts, [](const QFileInfo& part) { return part.size() > 0; }));

        QProcess next;
        startEngine(next, profile);
        ASSERT_TRUE(next.waitForFinished());
        EXPECT_EQ(next.exitCode(), 0);
        checkFiles(profile);
        const auto bytes =
            readWholeFile(Folders::below(profile).applicationSupport + u"/download_queue.json"_s, megabyte);
        const auto items = decodeQueue(*bytes, DownloadPaths(Folders::below(profile).downloads));
        ASSERT_TRUE(items);
        EXPECT_EQ(std::ssize(*items), originals.size());
    }
}

#include "e2e/sidebyside/Catalogue.h"

#include "e2e/sidebyside/DiskPicture.h"
#include "fixtures/RealTools.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QUrl>

namespace vormel::e2e {

namespace {

using fixtures::RarSet;

constexpr qsizetype kilobyte = 1024;
constexpr int volumeBytes = 60'000;

QString addressOf(const QString& name)
{
    return u'/' + QString::fromLatin1(QUrl::toPercentEncoding(name));
}

void writeFiles(const QDir& folder, const QMap<QString, QByteArray>& files)
{
    for (auto each = files.begin(); each != files.end(); ++each) {
        const QString path = folder.filePath(each.key());
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (!file.open(QFile::WriteOnly) || file.write(each.value()) != each.value().size())
            qFatal("The test could not write %s", qPrintable(path));
    }
}

} // namespace

Catalogue::Catalogue(const QString& folder)
    : m_folder(folder)
{
    addPlainFiles();
    addTwins();
    addZips();
    addOtherArchives();
    addSets();
    addHurtSet();
}

QByteArray Catalogue::next(qsizetype size)
{
    return fixtures::noise(size, ++m_seed);
}

QMap<QString, QByteArray> Catalogue::members(const QStringList& names)
{
    constexpr qsizetype size = 20 * kilobyte;
    QMap<QString, QByteArray> files;
    for (const QString& name : names)
        files.insert(name, next(size));
    return files;
}

Offer& Catalogue::addFile(const QString& name, qsizetype size, Habit habit)
{
    m_offers.push_back({.address = addressOf(name), .content = next(size), .habit = habit});
    return m_offers.back();
}

void Catalogue::addPlainFiles()
{
    addFile(QStringLiteral("Film.2021.1080p.mkv"), 500 * kilobyte);
    addFile(QStringLiteral("plain.bin"), 300 * kilobyte);
    addFile(QStringLiteral("plain.bin.sha"), 1);
    addFile(QStringLiteral("big.iso"), 3000 * kilobyte);
    addFile(QStringLiteral("Stuff"), 40 * kilobyte);
    addFile(QStringLiteral("fine.srt"), 60 * kilobyte);
    addFile(QStringLiteral("hurt.2020.720p.mkv"), 100 * kilobyte);
    addFile(QStringLiteral("a b (c) {d}.bin"), 90 * kilobyte);
    addFile(QStringLiteral("Übung Ωmega.1080p.bin"), 90 * kilobyte);
    addFile(QStringLiteral("-dash.1080p.bin"), 50 * kilobyte);
    addFile(QStringLiteral("empty.bin"), 0);
    addFile(QStringLiteral("chunked.bin"), 200 * kilobyte, Habit::withoutLength);
    addFile(QStringLiteral("whole.bin"), 200 * kilobyte, Habit::withoutRanges);
    addFile(QStringLiteral("page.bin"), 120 * kilobyte, Habit::pageFirst);
    addFile(QStringLiteral("dead.bin"), 0, Habit::dead);
    Offer& one = addFile(QStringLiteral("one"), 150 * kilobyte);
    one.address = QStringLiteral("/get.php?id=1");
    one.toldName = QStringLiteral("told one [v2].bin");
    Offer& two = addFile(QStringLiteral("two"), 150 * kilobyte);
    two.address = QStringLiteral("/get.php?id=2");
    two.toldName = QStringLiteral("Told.Two.2021.1080p.mkv");
}

/// Two links of one name: either file is right for either item, but it must be one of them.
void Catalogue::addTwins()
{
    Offer first{.address = QStringLiteral("/a/twin.bin"), .content = next(200 * kilobyte)};
    Offer second{.address = QStringLiteral("/b/twin.bin"), .content = next(260 * kilobyte)};
    first.alsoRight = second.content;
    second.alsoRight = first.content;
    m_offers.push_back(first);
    m_offers.push_back(second);
}

void Catalogue::addZips()
{
    const QStringList zip{QStringLiteral("a"), QStringLiteral("-tzip"), QStringLiteral("-bd"), QStringLiteral("-mx1")};
    // Names of downloads, of parts, of bystanders of every kind, and its own.
    const QStringList names{
        QStringLiteral("bundle.zip"),
        QStringLiteral("plain.bin"),
        QStringLiteral("Film.2021.1080p.mkv"),
        QStringLiteral("big.iso.download"),
        QStringLiteral("fine.srt"),
        QStringLiteral("readme.txt"),
        QStringLiteral("clash"),
        QStringLiteral("Album/cover.jpg"),
        QStringLiteral("Album/01.1080p.flac"),
        QStringLiteral("Pics/1.jpg"),
        QStringLiteral("hurt.1080p"),
        QStringLiteral("Show.S01E01.720p.WEB.mkv"),
    };
    addArchive({QStringLiteral("bundle.zip"), members(names)}, QStringLiteral("7zz"), zip);
    addArchive({QStringLiteral("pics[1].zip"), members({QStringLiteral("brackets/1.jpg")})}, QStringLiteral("7zz"),
               zip);
    addArchive({QStringLiteral("pics1.zip"), members({QStringLiteral("brackets/2.jpg")})}, QStringLiteral("7zz"), zip);
}

void Catalogue::addOtherArchives()
{
    const QStringList sevenZip{QStringLiteral("a"), QStringLiteral("-bd"), QStringLiteral("-mx1")};
    addArchive({QStringLiteral("stuff.7z"),
                members({QStringLiteral("Tunes/01.flac"), QStringLiteral("Album/deep/er/02.1080p.flac"),
                         QStringLiteral("readme.txt"), QStringLiteral("Film.2021.mkv")})},
               QStringLiteral("7zz"), sevenZip);
    const QString password = QStringLiteral("öpen sesame");
    addArchive({QStringLiteral("locked.7z"), members({QStringLiteral("locked.1080p.mkv")}), password},
               QStringLiteral("7zz"), sevenZip + QStringList{QStringLiteral("-p") + password});
    addArchive({QStringLiteral("back.tar.gz"),
                members({QStringLiteral("Album/03.flac"), QStringLiteral("whole.bin"), QStringLiteral("back.tar.gz")})},
               QStringLiteral("tar"), {QStringLiteral("-czf")});
    addLoneRar({QStringLiteral("single.rar"), members({QStringLiteral("fine.part1.rar"), QStringLiteral("single.rar"),
                                                       QStringLiteral("Album/04.flac")})});
    addLoneRar({QStringLiteral("Who?.rar"), members({QStringLiteral("who.2020.1080p.mkv")}), QStringLiteral("-dash")});
    addLoneRar({QStringLiteral("Whom.rar"), members({QStringLiteral("whom.txt")})});
}

void Catalogue::addSets()
{
    addSet({QStringLiteral("fine"),
            members({QStringLiteral("fine.mkv"), QStringLiteral("fine.nfo"), QStringLiteral("Subs/fine.srt"),
                     QStringLiteral("fine.part1.rar"), QStringLiteral("x.1080p.mkv"), QStringLiteral("y.1080p.mkv"),
                     QStringLiteral("z.1080p.mkv")})},
           volumeBytes);
    // The beginning of its name is a whole other set's.
    addSet({QStringLiteral("fine2"), {{QStringLiteral("Fine.Two.2021.1080p.mkv"), next(100 * kilobyte)}}}, volumeBytes);
    const QString password = QStringLiteral("open sesame");
    addSet({QStringLiteral("secret"), {{QStringLiteral("Secret.1080p.mkv"), next(100 * kilobyte)}}, password},
           volumeBytes);
}

/// One volume comes damaged; the recovery volumes are sound.
void Catalogue::addHurtSet()
{
    const QString name = QStringLiteral("hurt");
    addSet({name, {{QStringLiteral("Hurt.2021.1080p.mkv"), next(200 * kilobyte)}}}, volumeBytes, 2);
    for (Offer& offer : m_offers) {
        if (offer.address != u"/hurt.part2.rar")
            continue;
        offer.alsoRight = offer.content;
        offer.content.replace(volumeBytes / 2, 16, QByteArray(16, 'x'));
    }
}

void Catalogue::addArchive(const PackedArchive& archive, const QString& tool, const QStringList& args)
{
    const QTemporaryDir contents;
    writeFiles(QDir(contents.path()), archive.members);
    const QString made = m_folder + u'/' + archive.name;
    const fixtures::ToolResult result = fixtures::runRealTool(
        QStringLiteral("/usr/bin/") + tool, args + QStringList{made, QStringLiteral(".")}, contents.path());
    if (result.status != 0)
        m_faults << archive.name + QStringLiteral(": ") + QString::fromUtf8(result.output);
    offerArchive(archive, contentsOf(made));
}

void Catalogue::addLoneRar(const PackedArchive& archive)
{
    RarSet set;
    set.name = QStringLiteral("lone%1").arg(m_offers.size());
    set.files = archive.members;
    set.password = archive.password;
    const QStringList made = fixtures::makeRarSet(m_folder, set);
    if (made.size() != 1)
        m_faults << archive.name;
    offerArchive(archive, contentsOf(made.value(0)));
}

void Catalogue::offerArchive(const PackedArchive& archive, const QByteArray& content)
{
    m_offers.push_back({.address = addressOf(archive.name), .content = content, .archive = archive.name});
    m_archives.insert(archive.name, archive);
}

void Catalogue::addSet(const PackedArchive& archive, int volumeSize, int recoveryVolumes)
{
    RarSet set;
    set.name = archive.name;
    set.files = archive.members;
    set.volumeBytes = volumeSize;
    set.recoveryVolumes = recoveryVolumes;
    set.password = archive.password;
    set.areHeadersEncrypted = !archive.password.isEmpty();
    const QStringList volumes = fixtures::makeRarSet(m_folder, set);
    if (volumes.size() < 2)
        m_faults << archive.name;
    for (const QString& path : volumes)
        m_offers.push_back(
            {.address = addressOf(QFileInfo(path).fileName()), .content = contentsOf(path), .archive = archive.name});
    m_archives.insert(archive.name, archive);
}

} // namespace vormel::e2e

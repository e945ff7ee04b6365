#include "e2e/sidebyside/Catalogue.h"

#include "e2e/sidebyside/DiskPicture.h"
#include "fixtures/RealTools.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QUrl>

using namespace Qt::StringLiterals;

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
    addFile(u"Film.2021.1080p.mkv"_s, 500 * kilobyte);
    addFile(u"plain.bin"_s, 300 * kilobyte);
    addFile(u"plain.bin.sha"_s, 1);
    addFile(u"big.iso"_s, 3000 * kilobyte);
    addFile(u"Stuff"_s, 40 * kilobyte);
    addFile(u"fine.srt"_s, 60 * kilobyte);
    addFile(u"hurt.2020.720p.mkv"_s, 100 * kilobyte);
    addFile(u"a b (c) {d}.bin"_s, 90 * kilobyte);
    addFile(u"Übung Ωmega.1080p.bin"_s, 90 * kilobyte);
    addFile(u"-dash.1080p.bin"_s, 50 * kilobyte);
    addFile(u"empty.bin"_s, 0);
    addFile(u"chunked.bin"_s, 200 * kilobyte, Habit::withoutLength);
    addFile(u"whole.bin"_s, 200 * kilobyte, Habit::withoutRanges);
    addFile(u"page.bin"_s, 120 * kilobyte, Habit::pageFirst);
    addFile(u"dead.bin"_s, 0, Habit::dead);
    Offer& one = addFile(u"one"_s, 150 * kilobyte);
    one.address = u"/get.php?id=1"_s;
    one.toldName = u"told one [v2].bin"_s;
    Offer& two = addFile(u"two"_s, 150 * kilobyte);
    two.address = u"/get.php?id=2"_s;
    two.toldName = u"Told.Two.2021.1080p.mkv"_s;
}

/// Two links of one name: either file is right for either item, but it must be one of them.
void Catalogue::addTwins()
{
    Offer first{.address = u"/a/twin.bin"_s, .content = next(200 * kilobyte)};
    Offer second{.address = u"/b/twin.bin"_s, .content = next(260 * kilobyte)};
    first.alsoRight = second.content;
    second.alsoRight = first.content;
    m_offers.push_back(first);
    m_offers.push_back(second);
}

void Catalogue::addZips()
{
    const QStringList zip{u"a"_s, u"-tzip"_s, u"-bd"_s, u"-mx1"_s};
    // Names of downloads, of parts, of bystanders of every kind, and its own.
    const QStringList names{
        u"bundle.zip"_s,
        u"plain.bin"_s,
        u"Film.2021.1080p.mkv"_s,
        u"big.iso.download"_s,
        u"fine.srt"_s,
        u"readme.txt"_s,
        u"clash"_s,
        u"Album/cover.jpg"_s,
        u"Album/01.1080p.flac"_s,
        u"Pics/1.jpg"_s,
        u"hurt.1080p"_s,
        u"Show.S01E01.720p.WEB.mkv"_s,
    };
    addArchive({u"bundle.zip"_s, members(names)}, u"7zz"_s, zip);
    addArchive({u"pics[1].zip"_s, members({u"brackets/1.jpg"_s})}, u"7zz"_s, zip);
    addArchive({u"pics1.zip"_s, members({u"brackets/2.jpg"_s})}, u"7zz"_s, zip);
}

void Catalogue::addOtherArchives()
{
    const QStringList sevenZip{u"a"_s, u"-bd"_s, u"-mx1"_s};
    addArchive({u"stuff.7z"_s,
                members({u"Tunes/01.flac"_s, u"Album/deep/er/02.1080p.flac"_s, u"readme.txt"_s, u"Film.2021.mkv"_s})},
               u"7zz"_s, sevenZip);
    const QString password = u"öpen sesame"_s;
    addArchive({u"locked.7z"_s, members({u"locked.1080p.mkv"_s}), password}, u"7zz"_s,
               sevenZip + QStringList{u"-p"_s + password});
    addArchive({u"back.tar.gz"_s, members({u"Album/03.flac"_s, u"whole.bin"_s, u"back.tar.gz"_s})}, u"tar"_s,
               {u"-czf"_s});
    addLoneRar({u"single.rar"_s, members({u"fine.part1.rar"_s, u"single.rar"_s, u"Album/04.flac"_s})});
    addLoneRar({u"Who?.rar"_s, members({u"who.2020.1080p.mkv"_s}), u"-dash"_s});
    addLoneRar({u"Whom.rar"_s, members({u"whom.txt"_s})});
}

void Catalogue::addSets()
{
    addSet({u"fine"_s, members({u"fine.mkv"_s, u"fine.nfo"_s, u"Subs/fine.srt"_s, u"fine.part1.rar"_s, u"x.1080p.mkv"_s,
                                u"y.1080p.mkv"_s, u"z.1080p.mkv"_s})},
           volumeBytes);
    // The beginning of its name is a whole other set's.
    addSet({u"fine2"_s, {{u"Fine.Two.2021.1080p.mkv"_s, next(100 * kilobyte)}}}, volumeBytes);
    const QString password = u"open sesame"_s;
    addSet({u"secret"_s, {{u"Secret.1080p.mkv"_s, next(100 * kilobyte)}}, password}, volumeBytes);
}

/// One volume comes damaged; the recovery volumes are sound.
void Catalogue::addHurtSet()
{
    const QString name = u"hurt"_s;
    addSet({name, {{u"Hurt.2021.1080p.mkv"_s, next(200 * kilobyte)}}}, volumeBytes, 2);
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
    const fixtures::ToolResult result =
        fixtures::runRealTool(u"/usr/bin/"_s + tool, args + QStringList{made, u"."_s}, contents.path());
    if (result.status != 0)
        m_faults << archive.name + u": "_s + QString::fromUtf8(result.output);
    offerArchive(archive, contentsOf(made));
}

void Catalogue::addLoneRar(const PackedArchive& archive)
{
    RarSet set;
    set.name = u"lone%1"_s.arg(m_offers.size());
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

#include "model/DownloadPaths.h"

#include "fixtures/Sandbox.h"
#include "model/SetName.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QUuid>

#include <gtest/gtest.h>

#include <vector>

namespace vormel {
namespace {

const DownloadPaths paths(QStringLiteral("/d"));

TEST(DownloadPaths, AFileOfNoSetLiesDirectlyInTheFolder)
{
    EXPECT_EQ(paths.groupFolder(QStringLiteral("movie.rar")), u"/d");
    EXPECT_EQ(paths.finalFile(QStringLiteral("movie.rar")), u"/d/movie.rar");
}

TEST(DownloadPaths, TheMembersOfASetShareAFolder)
{
    EXPECT_EQ(paths.finalFile(QStringLiteral("The.Movie.part1.rar")), u"/d/The.Movie/The.Movie.part1.rar");
    EXPECT_EQ(paths.groupFolder(QStringLiteral("The.Movie.PART10.rev")), u"/d/The.Movie");
}

TEST(DownloadPaths, ThePartFileStandsBesideTheFinalOneWithDownloadBehindItsName)
{
    EXPECT_EQ(paths.partFile(QStringLiteral("movie.rar")), u"/d/movie.rar.download");
    EXPECT_EQ(paths.partFile(QStringLiteral("a.part1.rar")), u"/d/a/a.part1.rar.download");
}

TEST(DownloadPaths, ASetNamedLikeAParentFolderGetsAFolderOfItsOwn)
{
    EXPECT_EQ(paths.groupFolder(QStringLiteral("...part1.rar")), u"/d/_");
    EXPECT_EQ(paths.groupFolder(QStringLiteral("..part1.rar")), u"/d/_");
}

TEST(DownloadPaths, ASetWithoutANameLiesDirectlyInTheFolder)
{
    EXPECT_EQ(paths.groupFolder(QStringLiteral(".part1.rar")), u"/d");
    EXPECT_EQ(paths.finalFile(QStringLiteral(".part1.rar")), u"/d/.part1.rar");
}

std::vector<QString> hostileNames()
{
    std::vector<QString> names = {
        QString(),
        QStringLiteral("."),
        QStringLiteral(".."),
        QStringLiteral("/"),
        QStringLiteral("//"),
        QStringLiteral("/etc/passwd"),
        QStringLiteral("../x"),
        QStringLiteral("../../../x"),
        QStringLiteral("a/../../x"),
        QStringLiteral("a/b/c"),
        QStringLiteral("x/.."),
        QStringLiteral("x/"),
        QStringLiteral("~/x"),
        QStringLiteral("a\nb"),
        QStringLiteral("..\n"),
        QString(QChar(0)),
        QStringLiteral("..") + QChar(0),
        QStringLiteral("..") + QChar(0) + QStringLiteral("/x"),
        QString(QChar(0xD800)),
        QStringLiteral("../") + QChar(0xDC00),
        QString(300, u'.'),
        QString(300, u'x'),
        QString(300, u'日'),
        QStringLiteral("../").repeated(100),
        QStringLiteral("\u2215..\u2215x"),
    };
    const std::vector<QString> bases = names;
    for (const QString& base : bases) {
        names.push_back(base + QStringLiteral(".part1.rar"));
        names.push_back(base + QStringLiteral(".part1.rar\n"));
        names.push_back(base + QStringLiteral("/.part1.rev"));
    }
    return names;
}

TEST(DownloadPaths, NoNameLeadsOutOfTheFolder)
{
    const fixtures::Sandbox sandbox;
    for (const QString& name : hostileNames()) {
        // One folder for each, since one name's file may be another's folder.
        const QString root = QFileInfo(sandbox.root()).canonicalFilePath() + u'/' + QUuid::createUuid().toString();
        const DownloadPaths real(root);
        for (const QString& path : {real.finalFile(name), real.partFile(name)}) {
            const QString folder = QFileInfo(path).path();
            ASSERT_TRUE(QDir().mkpath(folder)) << name.toStdString();
            const QString canonical = QFileInfo(folder).canonicalFilePath();
            EXPECT_TRUE(canonical == root || QFileInfo(canonical).path() == root) << path.toStdString();
            // That the file can be made proves that its name is one name, is not too long and is no folder's.
            QFile file(path);
            EXPECT_TRUE(file.open(QIODevice::ReadWrite)) << path.toStdString();
            EXPECT_EQ(QFileInfo(QFileInfo(path).canonicalFilePath()).path(), canonical) << path.toStdString();
        }
    }
}

TEST(DownloadPaths, TheMembersOfASetWithAVeryLongNameKeepFilesOfTheirOwn)
{
    const QString base(300, u'n');
    const QString first = paths.finalFile(base + QStringLiteral(".part1.rar"));
    const QString second = paths.finalFile(base + QStringLiteral(".part2.rar"));
    EXPECT_NE(first, second);
    EXPECT_TRUE(first.endsWith(QStringLiteral(".part1.rar")));
    EXPECT_EQ(paths.groupFolder(base + QStringLiteral(".part1.rar")),
              paths.groupFolder(base + QStringLiteral(".part2.rar")));
}

TEST(DownloadPaths, TheMembersOfASetKeepOneBaseHoweverMuchOfItMustGo)
{
    for (const QString& character :
         {QStringLiteral("n"), QStringLiteral("è"), QStringLiteral("電"), QStringLiteral("🍺")}) {
        for (int count = 40; count < 300; ++count) {
            const QString base = QStringLiteral("S01E07 ") + character.repeated(count);
            QSet<QString> bases;
            for (const char* const suffix :
                 {".part1.rar", ".part9.rar", ".part10.rar", ".part0001.rev", ".PART12345.RAR"}) {
                const QString name = base + QLatin1StringView(suffix);
                const QString onDisk = QFileInfo(paths.finalFile(name)).fileName();
                EXPECT_TRUE(onDisk.endsWith(QLatin1StringView(suffix)));
                EXPECT_LE(onDisk.toUtf8().size(), 245);
                bases.insert(setBaseName(onDisk));
                constexpr qsizetype alwaysWhole = 235;
                if (name.toUtf8().size() <= alwaysWhole) {
                    EXPECT_EQ(onDisk, name);
                }
            }
            EXPECT_EQ(bases.size(), 1) << count;
        }
    }
}

TEST(DownloadPaths, APartNumberBeyondAllMeasureIsCutLikeAnyOtherName)
{
    const QString name = QStringLiteral("a.part") + QString(300, u'0') + QStringLiteral("1.rar");
    EXPECT_LE(QFileInfo(paths.finalFile(name)).fileName().toUtf8().size(), 235);
}

} // namespace
} // namespace vormel

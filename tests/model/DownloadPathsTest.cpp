#include "model/DownloadPaths.h"

#include "fixtures/Sandbox.h"
#include "model/SetName.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QUuid>

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

const DownloadPaths paths(u"/d"_s);

TEST(DownloadPaths, AFileOfNoSetLiesDirectlyInTheFolder)
{
    EXPECT_EQ(paths.groupFolder(u"movie.rar"_s), u"/d");
    EXPECT_EQ(paths.finalFile(u"movie.rar"_s), u"/d/movie.rar");
}

TEST(DownloadPaths, TheMembersOfASetShareAFolder)
{
    EXPECT_EQ(paths.finalFile(u"The.Movie.part1.rar"_s), u"/d/The.Movie/The.Movie.part1.rar");
    EXPECT_EQ(paths.groupFolder(u"The.Movie.PART10.rev"_s), u"/d/The.Movie");
}

TEST(DownloadPaths, ThePartFileStandsBesideTheFinalOneWithDownloadBehindItsName)
{
    EXPECT_EQ(paths.partFile(u"movie.rar"_s), u"/d/movie.rar.download");
    EXPECT_EQ(paths.partFile(u"a.part1.rar"_s), u"/d/a/a.part1.rar.download");
}

TEST(DownloadPaths, ASetNamedLikeAParentFolderGetsAFolderOfItsOwn)
{
    EXPECT_EQ(paths.groupFolder(u"...part1.rar"_s), u"/d/_");
    EXPECT_EQ(paths.groupFolder(u"..part1.rar"_s), u"/d/_");
}

TEST(DownloadPaths, ASetWithoutANameLiesDirectlyInTheFolder)
{
    EXPECT_EQ(paths.groupFolder(u".part1.rar"_s), u"/d");
    EXPECT_EQ(paths.finalFile(u".part1.rar"_s), u"/d/.part1.rar");
}

std::vector<QString> hostileNames()
{
    std::vector<QString> names = {
        QString(),
        u"."_s,
        u".."_s,
        u"/"_s,
        u"//"_s,
        u"/etc/passwd"_s,
        u"../x"_s,
        u"../../../x"_s,
        u"a/../../x"_s,
        u"a/b/c"_s,
        u"x/.."_s,
        u"x/"_s,
        u"~/x"_s,
        u"a\nb"_s,
        u"..\n"_s,
        QString(QChar(0)),
        u".."_s + QChar(0),
        u".."_s + QChar(0) + u"/x"_s,
        QString(QChar(0xD800)),
        u"../"_s + QChar(0xDC00),
        QString(300, u'.'),
        QString(300, u'x'),
        QString(300, u'日'),
        u"../"_s.repeated(100),
        u"\u2215..\u2215x"_s,
    };
    const std::vector<QString> bases = names;
    for (const QString& base : bases) {
        names.push_back(base + u".part1.rar"_s);
        names.push_back(base + u".part1.rar\n"_s);
        names.push_back(base + u"/.part1.rev"_s);
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
    const QString first = paths.finalFile(base + u".part1.rar"_s);
    const QString second = paths.finalFile(base + u".part2.rar"_s);
    EXPECT_NE(first, second);
    EXPECT_TRUE(first.endsWith(u".part1.rar"_s));
    EXPECT_EQ(paths.groupFolder(base + u".part1.rar"_s), paths.groupFolder(base + u".part2.rar"_s));
}

TEST(DownloadPaths, TheMembersOfASetKeepOneBaseHoweverMuchOfItMustGo)
{
    for (const QString& character : {u"n"_s, u"è"_s, u"電"_s, u"🍺"_s}) {
        for (int count = 40; count < 300; ++count) {
            const QString base = u"S01E07 "_s + character.repeated(count);
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
    const QString name = u"a.part"_s + QString(300, u'0') + u"1.rar"_s;
    EXPECT_LE(QFileInfo(paths.finalFile(name)).fileName().toUtf8().size(), 235);
}

} // namespace
} // namespace vormel

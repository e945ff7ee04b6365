#include "archive/tools/PlainPaths.h"

#include "archive/TaskEnd.h"
#include "archive/tools/ToolArguments.h"
#include "archive/tools/ToolRunner.h"
#include "fixtures/RealTools.h"
#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

TEST(PlainPaths, OrdinaryPathsStayAsTheyAre)
{
    for (const QString& archive : {u"/x y/[Group] Film.part1.rar"_s, u"/x/a'b\"$c.7z"_s, u"/x/日本 ü.zip"_s,
                                   u"/x[1]/@list.tar"_s, u"/x/-rf \\n.rar"_s}) {
        const PlainPaths paths(archive, u"/out?[1]"_s);
        EXPECT_EQ(paths.archive(), archive);
        EXPECT_EQ(paths.destination(), u"/out?[1]"_s);
        EXPECT_EQ(paths.realName(u"archive.part2.rar"_s), u"archive.part2.rar"_s);
    }
}

TEST(PlainPaths, AnArchiveThatLooksLikeAPatternIsLinkedUnderAPlainName)
{
    const fixtures::Sandbox sandbox;
    for (const QString& name : {u"Who?.rar"_s, u"a*b.7z"_s, u"pics[1].zip"_s, u"a\nb.rar"_s}) {
        sandbox.write(name, name.toUtf8());
        const PlainPaths paths(sandbox.path(name));
        EXPECT_EQ(QFileInfo(paths.archive()).completeBaseName(), u"archive"_s);
        EXPECT_EQ(QFileInfo(paths.archive()).suffix(), QFileInfo(name).suffix());
        QFile linked(paths.archive());
        ASSERT_TRUE(linked.open(QFile::ReadOnly));
        EXPECT_EQ(linked.readAll(), name.toUtf8());
    }
}

TEST(PlainPaths, AllVolumesOfTheArchiveAreLinkedAndNothingElse)
{
    const fixtures::Sandbox sandbox;
    for (const char* name : {"Who?.part1.rar", "Who?.part2.rar", "Who?.part03.RAR", "Who?.part1.rev", "Whom.part2.rar",
                             "Who?.txt", "Who?.r00", "Who?.s01", "Who?.rar", "Whom.r00"})
        sandbox.write(QString::fromUtf8(name), "x");
    const auto linked = [&sandbox](const char* name, Recovery recovery = Recovery::leftBeside) {
        const PlainPaths paths(sandbox.path(QString::fromUtf8(name)), {}, recovery);
        return QFileInfo(paths.archive()).dir().entryList(QDir::Files, QDir::Name);
    };
    const QStringList parts{u"archive.part03.RAR"_s, u"archive.part1.rar"_s, u"archive.part2.rar"_s};
    EXPECT_EQ(linked("Who?.part1.rar", Recovery::keptAway), parts);
    QStringList all = parts;
    all.insert(2, u"archive.part1.rev"_s);
    EXPECT_EQ(linked("Who?.part1.rar"), all);
    EXPECT_EQ(linked("Who?.rar"), (QStringList{u"archive.r00"_s, u"archive.rar"_s, u"archive.s01"_s}));
}

TEST(PlainPaths, RecoveryVolumesAreKeptAwayByLinksToTheOthers)
{
    const fixtures::Sandbox sandbox;
    const QString archive = sandbox.write(u"a.part1.rar"_s, "x");
    sandbox.write(u"b.part1.rev"_s, "x");
    EXPECT_EQ(PlainPaths(archive, {}, Recovery::keptAway).archive(), archive);
    sandbox.write(u"a.part1.REV"_s, "x");
    EXPECT_EQ(PlainPaths(archive, {}, Recovery::leftBeside).archive(), archive);
    const PlainPaths paths(archive, {}, Recovery::keptAway);
    // By their own names, which a message of the tool may tell.
    EXPECT_EQ(QFileInfo(paths.archive()).dir().entryList(QDir::Files), QStringList{u"a.part1.rar"_s});
    EXPECT_EQ(paths.realName(u"a.part2.rar"_s), u"a.part2.rar"_s);
}

TEST(PlainPaths, AVolumeIsCalledByItsRealNameAlsoWhenItIsMissing)
{
    const fixtures::Sandbox sandbox;
    const PlainPaths paths(sandbox.write(u"Who?.part1.rar"_s, "x"));
    EXPECT_EQ(paths.realName(u"archive.part7.rar"_s), u"Who?.part7.rar"_s);
}

TEST(PlainPaths, TheLinksArePrivateAndGoWithTheObject)
{
    const fixtures::Sandbox sandbox;
    const QString archive = sandbox.write(u"a?.rar"_s, "x");
    QString folder;
    {
        const PlainPaths paths(archive);
        folder = QFileInfo(paths.archive()).path();
        EXPECT_EQ(QFileInfo(folder).permissions() & (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup |
                                                     QFile::WriteOther | QFile::ExeGroup | QFile::ExeOther),
                  QFile::Permissions());
    }
    EXPECT_FALSE(QFileInfo::exists(folder));
    EXPECT_TRUE(QFileInfo::exists(archive));
}

/// A tool, how it is called, and which kind of archive it opens.
struct Unpacker
{
    const char* tool;
    const char* extension;
    QStringList (*arguments)(const PlainPaths& paths, const QString& destination);
};

void PrintTo(const Unpacker& unpacker, std::ostream* out)
{
    *out << unpacker.tool;
}

class HostileName : public ::testing::TestWithParam<Unpacker>
{
protected:
    void SetUp() override
    {
        VORMEL_NEEDS_TOOL("unrar");
        VORMEL_NEEDS_TOOL("rar");
        VORMEL_NEEDS_TOOL("7zz");
        VORMEL_NEEDS_TOOL("unzip");
        VORMEL_NEEDS_TOOL("zip");
        VORMEL_NEEDS_TOOL("tar");
    }
    /// Makes an archive at the relative path that holds one file with these bytes.
    QString make(const QString& path, const QByteArray& bytes)
    {
        sandbox.write(u"in/f.txt"_s, bytes);
        const QString kind = QString::fromUtf8(GetParam().extension);
        const QString made = sandbox.path(u"made."_s + kind);
        const QString f = u"f.txt"_s;
        const QHash<QString, QStringList> packers{{u"rar"_s, {u"rar"_s, u"a"_s, u"-idq"_s, made, f}},
                                                  {u"zip"_s, {u"zip"_s, u"-q"_s, made, f}},
                                                  {u"7z"_s, {u"7zz"_s, u"a"_s, made, f}},
                                                  {u"tar"_s, {u"tar"_s, u"-cf"_s, made, f}}};
        const QStringList call = packers[kind];
        const fixtures::ToolResult packed =
            fixtures::runRealTool(u"/usr/bin/"_s + call.front(), call.mid(1), sandbox.path(u"in"_s));
        EXPECT_EQ(packed.status, 0) << packed.output.constData();
        const QString whole = sandbox.path(path + u'.' + kind);
        QDir().mkpath(QFileInfo(whole).path());
        EXPECT_TRUE(QFile::rename(made, whole));
        return whole;
    }
    /// What comes out of the archive in the destination, which is made.
    QByteArray unpacked(const QString& archive, const QString& destination)
    {
        QDir().mkpath(sandbox.path(destination));
        const PlainPaths paths(archive, sandbox.path(destination));
        const TaskEnd end = runToEnd(runner.run(u"/usr/bin/"_s + QString::fromUtf8(GetParam().tool),
                                                GetParam().arguments(paths, sandbox.path(destination)), {}));
        EXPECT_TRUE(end.isSuccess()) << end.output.toStdString();
        return sandbox.read(destination + u"/f.txt"_s);
    }

    fixtures::Sandbox sandbox;
    ToolRunner runner;
};

TEST_P(HostileName, IsNotTakenForAPattern)
{
    const QList<std::pair<QString, QStringList>> names{
        {u"Who?"_s, {u"Whoa"_s, u"Whom"_s}},
        {u"a*b"_s, {u"ab"_s, u"aXb"_s}},
        {u"pics[1]"_s, {u"pics1"_s}},
        {u"[!a]x"_s, {u"bx"_s, u"!x"_s}},
        {u"[^a]x"_s, {u"bx"_s}},
        {u"a\\b"_s, {u"ab"_s}},
        {u"@list"_s, {u"list"_s}},
        {u"-rf"_s, {u"rf"_s}},
        {u"a\nb"_s, {u"a"_s, u"b"_s}},
        {u" a "_s, {u"a"_s}},
    };
    int number = 0;
    for (const auto& [name, decoys] : names) {
        const QString folder = QString::number(++number) + u'/';
        for (const QString& decoy : decoys)
            make(folder + decoy, "decoy");
        const QString archive = make(folder + name, "right");
        EXPECT_EQ(unpacked(archive, folder + u"out"_s), "right") << name.toStdString();
    }
}

TEST_P(HostileName, OfAFolderIsNotTakenForAPattern)
{
    int number = 0;
    for (const QString& name : {u"Who?"_s, u"a*b"_s, u"pics[1]"_s, u"a\\nb"_s, u"@list"_s, u"50%d"_s}) {
        const QString folder = QString::number(++number) + u'/';
        for (const char* decoy : {"Whom/a", "aXb/a", "pics1/a", "list/a"})
            make(folder + QString::fromUtf8(decoy), "decoy");
        const QString archive = make(folder + name + u"/a"_s, "right");
        EXPECT_EQ(unpacked(archive, folder + name + u"/out"_s + name), "right") << name.toStdString();
        EXPECT_EQ(sandbox.files(folder + name).size(), 2) << name.toStdString(); // the archive and the file
    }
}

INSTANTIATE_TEST_SUITE_P(
    PlainPaths, HostileName,
    ::testing::Values(
        Unpacker{"unrar", "rar",
                 [](const PlainPaths& p, const QString& out) { return rarArguments(p.archive(), out, {}); }},
        Unpacker{"rar", "rar",
                 [](const PlainPaths& p, const QString& out) { return rarArguments(p.archive(), out, {}); }},
        Unpacker{"unzip", "zip",
                 [](const PlainPaths& p, const QString& out) { return unzipArguments(p.archive(), out, {}); }},
        Unpacker{
            "7zz", "zip",
            [](const PlainPaths& p, const QString&) { return sevenZipArguments(p.archive(), p.destination(), {}); }},
        Unpacker{
            "7zz", "7z",
            [](const PlainPaths& p, const QString&) { return sevenZipArguments(p.archive(), p.destination(), {}); }},
        Unpacker{"tar", "tar",
                 [](const PlainPaths& p, const QString& out) { return tarArguments(u"-xf"_s, p.archive(), out); }}));

} // namespace
} // namespace vormel

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

namespace vormel {
namespace {

TEST(PlainPaths, OrdinaryPathsStayAsTheyAre)
{
    for (const QString& archive :
         {QStringLiteral("/x y/[Group] Film.part1.rar"), QStringLiteral("/x/a'b\"$c.7z"),
          QStringLiteral("/x/日本 ü.zip"), QStringLiteral("/x[1]/@list.tar"), QStringLiteral("/x/-rf \\n.rar")}) {
        const PlainPaths paths(archive, QStringLiteral("/out?[1]"));
        EXPECT_EQ(paths.archive(), archive);
        EXPECT_EQ(paths.destination(), QStringLiteral("/out?[1]"));
        EXPECT_EQ(paths.realName(QStringLiteral("archive.part2.rar")), QStringLiteral("archive.part2.rar"));
    }
}

TEST(PlainPaths, AnArchiveThatLooksLikeAPatternIsLinkedUnderAPlainName)
{
    const fixtures::Sandbox sandbox;
    for (const QString& name : {QStringLiteral("Who?.rar"), QStringLiteral("a*b.7z"), QStringLiteral("pics[1].zip"),
                                QStringLiteral("a\nb.rar")}) {
        sandbox.write(name, name.toUtf8());
        const PlainPaths paths(sandbox.path(name));
        EXPECT_EQ(QFileInfo(paths.archive()).completeBaseName(), QStringLiteral("archive"));
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
    const QStringList parts{QStringLiteral("archive.part03.RAR"), QStringLiteral("archive.part1.rar"),
                            QStringLiteral("archive.part2.rar")};
    EXPECT_EQ(linked("Who?.part1.rar", Recovery::keptAway), parts);
    QStringList all = parts;
    all.insert(2, QStringLiteral("archive.part1.rev"));
    EXPECT_EQ(linked("Who?.part1.rar"), all);
    EXPECT_EQ(linked("Who?.rar"), (QStringList{QStringLiteral("archive.r00"), QStringLiteral("archive.rar"),
                                               QStringLiteral("archive.s01")}));
}

TEST(PlainPaths, RecoveryVolumesAreKeptAwayByLinksToTheOthers)
{
    const fixtures::Sandbox sandbox;
    const QString archive = sandbox.write(QStringLiteral("a.part1.rar"), "x");
    sandbox.write(QStringLiteral("b.part1.rev"), "x");
    EXPECT_EQ(PlainPaths(archive, {}, Recovery::keptAway).archive(), archive);
    sandbox.write(QStringLiteral("a.part1.REV"), "x");
    EXPECT_EQ(PlainPaths(archive, {}, Recovery::leftBeside).archive(), archive);
    const PlainPaths paths(archive, {}, Recovery::keptAway);
    // By their own names, which a message of the tool may tell.
    EXPECT_EQ(QFileInfo(paths.archive()).dir().entryList(QDir::Files), QStringList{QStringLiteral("a.part1.rar")});
    EXPECT_EQ(paths.realName(QStringLiteral("a.part2.rar")), QStringLiteral("a.part2.rar"));
}

TEST(PlainPaths, AVolumeIsCalledByItsRealNameAlsoWhenItIsMissing)
{
    const fixtures::Sandbox sandbox;
    const PlainPaths paths(sandbox.write(QStringLiteral("Who?.part1.rar"), "x"));
    EXPECT_EQ(paths.realName(QStringLiteral("archive.part7.rar")), QStringLiteral("Who?.part7.rar"));
}

TEST(PlainPaths, TheLinksArePrivateAndGoWithTheObject)
{
    const fixtures::Sandbox sandbox;
    const QString archive = sandbox.write(QStringLiteral("a?.rar"), "x");
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
        sandbox.write(QStringLiteral("in/f.txt"), bytes);
        const QString kind = QString::fromUtf8(GetParam().extension);
        const QString made = sandbox.path(QStringLiteral("made.") + kind);
        const QString f = QStringLiteral("f.txt");
        const QHash<QString, QStringList> packers{
            {QStringLiteral("rar"), {QStringLiteral("rar"), QStringLiteral("a"), QStringLiteral("-idq"), made, f}},
            {QStringLiteral("zip"), {QStringLiteral("zip"), QStringLiteral("-q"), made, f}},
            {QStringLiteral("7z"), {QStringLiteral("7zz"), QStringLiteral("a"), made, f}},
            {QStringLiteral("tar"), {QStringLiteral("tar"), QStringLiteral("-cf"), made, f}}};
        const QStringList call = packers[kind];
        const fixtures::ToolResult packed = fixtures::runRealTool(QStringLiteral("/usr/bin/") + call.front(),
                                                                  call.mid(1), sandbox.path(QStringLiteral("in")));
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
        const TaskEnd end = runToEnd(runner.run(QStringLiteral("/usr/bin/") + QString::fromUtf8(GetParam().tool),
                                                GetParam().arguments(paths, sandbox.path(destination)), {}));
        EXPECT_TRUE(end.isSuccess()) << end.output.toStdString();
        return sandbox.read(destination + QStringLiteral("/f.txt"));
    }

    fixtures::Sandbox sandbox;
    ToolRunner runner;
};

TEST_P(HostileName, IsNotTakenForAPattern)
{
    const QList<std::pair<QString, QStringList>> names{
        {QStringLiteral("Who?"), {QStringLiteral("Whoa"), QStringLiteral("Whom")}},
        {QStringLiteral("a*b"), {QStringLiteral("ab"), QStringLiteral("aXb")}},
        {QStringLiteral("pics[1]"), {QStringLiteral("pics1")}},
        {QStringLiteral("[!a]x"), {QStringLiteral("bx"), QStringLiteral("!x")}},
        {QStringLiteral("[^a]x"), {QStringLiteral("bx")}},
        {QStringLiteral("a\\b"), {QStringLiteral("ab")}},
        {QStringLiteral("@list"), {QStringLiteral("list")}},
        {QStringLiteral("-rf"), {QStringLiteral("rf")}},
        {QStringLiteral("a\nb"), {QStringLiteral("a"), QStringLiteral("b")}},
        {QStringLiteral(" a "), {QStringLiteral("a")}},
    };
    int number = 0;
    for (const auto& [name, decoys] : names) {
        const QString folder = QString::number(++number) + u'/';
        for (const QString& decoy : decoys)
            make(folder + decoy, "decoy");
        const QString archive = make(folder + name, "right");
        EXPECT_EQ(unpacked(archive, folder + QStringLiteral("out")), "right") << name.toStdString();
    }
}

TEST_P(HostileName, OfAFolderIsNotTakenForAPattern)
{
    int number = 0;
    for (const QString& name : {QStringLiteral("Who?"), QStringLiteral("a*b"), QStringLiteral("pics[1]"),
                                QStringLiteral("a\\nb"), QStringLiteral("@list"), QStringLiteral("50%d")}) {
        const QString folder = QString::number(++number) + u'/';
        for (const char* decoy : {"Whom/a", "aXb/a", "pics1/a", "list/a"})
            make(folder + QString::fromUtf8(decoy), "decoy");
        const QString archive = make(folder + name + QStringLiteral("/a"), "right");
        EXPECT_EQ(unpacked(archive, folder + name + QStringLiteral("/out") + name), "right") << name.toStdString();
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
        Unpacker{"tar", "tar", [](const PlainPaths& p, const QString& out) {
                     return tarArguments(QStringLiteral("-xf"), p.archive(), out);
                 }}));

} // namespace
} // namespace vormel

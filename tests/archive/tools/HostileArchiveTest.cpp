#include "archive/TaskEnd.h"
#include "archive/Unpacking.h"
#include "archive/tools/ArchiveExtractor.h"
#include "fixtures/FakeTools.h"
#include "fixtures/RealTools.h"
#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::runRealTool;

/// Makes archives that no packer would: argv[1] is the archive, the rest are members as kind, name and contents, where
/// a link's contents are its target.
const QString script = uR"(
import io, stat, sys, tarfile, zipfile
path, rest = sys.argv[1], sys.argv[2:]
members = list(zip(rest[::3], rest[1::3], rest[2::3]))
if path.endswith('.tar'):
    with tarfile.open(path, 'w') as archive:
        for kind, name, contents in members:
            info = tarfile.TarInfo(name)
            if kind != 'file':
                info.type = tarfile.SYMTYPE if kind == 'link' else tarfile.LNKTYPE
                info.linkname = contents
                archive.addfile(info)
            else:
                info.size = len(contents)
                archive.addfile(info, io.BytesIO(contents.encode()))
else:
    with zipfile.ZipFile(path, 'w') as archive:
        for kind, name, contents in members:
            info = zipfile.ZipInfo(name)
            info.create_system = 3
            mode = stat.S_IFLNK | 0o777 if kind == 'link' else stat.S_IFREG | 0o644
            info.external_attr = mode << 16
            archive.writestr(info, contents)
)"_s;

struct Member
{
    QString kind;
    QString name;
    QString contents;
};

/// A folder to unpack into beside one that must stay as it is.
class HostileArchiveTest : public ::testing::Test
{
protected:
    HostileArchiveTest()
    {
        sandbox.write(u"outside/secret"_s, "secret");
        QDir().mkpath(sandbox.path(u"dest"_s));
    }

    [[nodiscard]] QString outside() const { return sandbox.path(u"outside"_s); }

    static Member file(const QString& name) { return {u"file"_s, name, u"bad"_s}; }
    static Member link(const QString& name, const QString& target) { return {u"link"_s, name, target}; }
    static Member hardLink(const QString& name, const QString& target) { return {u"hard"_s, name, target}; }

    [[nodiscard]] QString make(const QString& name, const QList<Member>& members) const
    {
        QStringList args{u"-W"_s, u"ignore"_s, u"-c"_s, script, sandbox.path(name)};
        for (const Member& member : members)
            args << member.kind << member.name << member.contents;
        const fixtures::ToolResult made = runRealTool(u"/usr/bin/python3"_s, args, sandbox.root());
        EXPECT_EQ(made.status, 0) << made.output.constData();
        return sandbox.path(name);
    }

    /// Runs a packer in a folder of its own, in which the shell script may prepare things.
    [[nodiscard]] QString shell(const QString& name, const QString& commands) const
    {
        const QString work = sandbox.path(u"work-"_s + name);
        QDir().mkpath(work);
        const QString text = u"set -e; A='%1'; O='%2'; %3"_s.arg(sandbox.path(name), outside(), commands);
        const fixtures::ToolResult made = runRealTool(u"/bin/sh"_s, {u"-c"_s, text}, work);
        EXPECT_EQ(made.status, 0) << made.output.constData();
        return sandbox.path(name);
    }

    /// Unpacks the archives one after the other into the same folder, with that one tool or with whatever is there.
    void unpack(const QStringList& archives, const QString& onlyTool = {})
    {
        const fixtures::FakeTools tools;
        tools.addReal(onlyTool, u"/usr/bin/"_s + onlyTool);
        ToolRunner runner = onlyTool.isEmpty() ? ToolRunner() : ToolRunner(tools.folders());
        ArchiveExtractor extractor(runner, [](const QString&) {});
        for (const QString& archive : archives)
            static_cast<void>(runToEnd(unpackInto(extractor, archive, sandbox.path(u"dest"_s))));
        EXPECT_EQ(sandbox.files(u"outside"_s), QStringList{u"secret"_s});
        EXPECT_EQ(sandbox.read(u"outside/secret"_s), "secret");
        EXPECT_FALSE(sandbox.exists(u"escaped"_s));
        QDir(sandbox.path(u"dest"_s)).removeRecursively();
    }

    /// Archives whose members would come to lie outside of the folder they are unpacked into.
    [[nodiscard]] QList<QList<Member>> attacks() const
    {
        const QString up = u"../outside"_s;
        return {
            {file(u"../escaped"_s)},
            {file(u"a/b/../../../escaped"_s)},
            {file(outside() + u"/escaped"_s)},
            {link(u"l"_s, up), file(u"l/escaped"_s)},
            {link(u"l"_s, outside()), file(u"l/escaped"_s)},
            {link(u"l"_s, up + u"/escaped"_s), file(u"l"_s)},
            {link(u"s"_s, u"."_s), link(u"l"_s, u"s/../outside"_s), file(u"l/escaped"_s)},
        };
    }

    fixtures::Sandbox sandbox;
};

TEST_F(HostileArchiveTest, NoTarWritesOutside)
{
    VORMEL_NEEDS_TOOL("tar");
    VORMEL_NEEDS_TOOL("python3");
    const QList<QList<Member>> hardLinkAttacks{
        {hardLink(u"h"_s, u"../outside/secret"_s), file(u"h"_s)},
        {hardLink(u"h"_s, outside() + u"/secret"_s), file(u"h"_s)},
        {link(u"l"_s, u"../outside"_s), hardLink(u"h"_s, u"l/secret"_s), file(u"h"_s)},
    };
    for (const QList<Member>& attack : attacks() + hardLinkAttacks)
        unpack({make(u"a.tar"_s, attack)});
}

TEST_F(HostileArchiveTest, NoZipWritesOutsideWithAnyTool)
{
    VORMEL_NEEDS_TOOL("unzip");
    VORMEL_NEEDS_TOOL("7z");
    VORMEL_NEEDS_TOOL("7za");
    VORMEL_NEEDS_TOOL("7zz");
    VORMEL_NEEDS_TOOL("python3");
    for (const QList<Member>& attack : attacks())
        for (const char* tool : {"unzip", "7z", "7za", "7zz"})
            unpack({make(u"a.zip"_s, attack)}, QString::fromUtf8(tool));
}

TEST_F(HostileArchiveTest, NoRarWritesOutsideWithEitherTool)
{
    VORMEL_NEEDS_TOOL("rar");
    VORMEL_NEEDS_TOOL("unrar");
    const QString linkThenFile =
        u"ln -s %1 l; rar a -idq %2 \"$A\" l; rm l; mkdir l; echo bad >l/escaped; rar a -idq \"$A\" l/escaped"_s;
    const QStringList archives{
        shell(u"up.rar"_s, u"echo bad >escaped; rar a -idq -ap../ \"$A\" escaped"_s),
        shell(u"abs.rar"_s, u"echo bad >escaped; rar a -idq -ap\"$O/\" \"$A\" escaped"_s),
        shell(u"l1.rar"_s, linkThenFile.arg(u"../outside"_s, u"-ol"_s)),
        shell(u"l2.rar"_s, linkThenFile.arg(u"\"$O\""_s, u"-ol"_s)),
        shell(u"l3.rar"_s, linkThenFile.arg(u"\"$O\""_s, u"-ola"_s)),
    };
    for (const QString& archive : archives)
        for (const char* tool : {"unrar", "rar"})
            unpack({archive}, QString::fromUtf8(tool));
}

TEST_F(HostileArchiveTest, NoSevenZipWritesOutsideWithAnyTool)
{
    VORMEL_NEEDS_TOOL("7z");
    VORMEL_NEEDS_TOOL("7za");
    VORMEL_NEEDS_TOOL("7zz");
    const QString linkThenFile =
        u"ln -s %1 l; 7zz a -snl \"$A\" l; rm l; mkdir l; echo bad >l/escaped; 7zz a \"$A\" l/escaped"_s;
    const QString renamed = u"echo bad >escaped; 7zz a \"$A\" escaped; 7zz rn \"$A\" escaped %1"_s;
    const QStringList archives{
        shell(u"up.7z"_s, renamed.arg(u"../escaped"_s)),
        shell(u"abs.7z"_s, renamed.arg(u"\"$O/escaped\""_s)),
        shell(u"l1.7z"_s, linkThenFile.arg(u"../outside"_s)),
        shell(u"l2.7z"_s, linkThenFile.arg(u"\"$O\""_s)),
    };
    for (const QString& archive : archives)
        for (const char* tool : {"7z", "7za", "7zz"})
            unpack({archive}, QString::fromUtf8(tool));
}

/// The tools follow links that are there before they start, so what one archive plants another could use.
TEST_F(HostileArchiveTest, NoArchiveWritesThroughALinkThatAnEarlierOnePlanted)
{
    VORMEL_NEEDS_TOOL("tar");
    VORMEL_NEEDS_TOOL("unzip");
    VORMEL_NEEDS_TOOL("unrar");
    VORMEL_NEEDS_TOOL("rar");
    VORMEL_NEEDS_TOOL("7zz");
    VORMEL_NEEDS_TOOL("python3");
    const QList<Member> use{file(u"l/escaped"_s)};
    const QString packed = u"mkdir l; echo bad >l/escaped; %1 \"$A\" l/escaped"_s;
    const QStringList users{
        make(u"use.tar"_s, use),
        make(u"use.zip"_s, use),
        shell(u"use.rar"_s, packed.arg(u"rar a -idq"_s)),
        shell(u"use.7z"_s, packed.arg(u"7zz a"_s)),
    };
    const QString planting = u"ln -s ../outside l; %1 \"$A\" l"_s;
    const QStringList planters{
        make(u"up.tar"_s, {link(u"l"_s, u"../outside"_s)}),
        make(u"abs.tar"_s, {link(u"l"_s, outside())}),
        make(u"up.zip"_s, {link(u"l"_s, u"../outside"_s)}),
        make(u"abs.zip"_s, {link(u"l"_s, outside())}),
        shell(u"plant.rar"_s, planting.arg(u"rar a -idq -ol"_s)),
        shell(u"plant.7z"_s, planting.arg(u"7zz a -snl"_s)),
        // A failed extraction plants as well.
        make(u"fails.tar"_s, {link(u"l"_s, u"../outside"_s), file(u"../x"_s)}),
    };
    for (const QString& planter : planters)
        for (const QString& user : users)
            unpack({planter, user});
}

TEST_F(HostileArchiveTest, TheUsersOwnLinksStay)
{
    VORMEL_NEEDS_TOOL("tar");
    VORMEL_NEEDS_TOOL("python3");
    const QString own = sandbox.path(u"dest/mine"_s);
    ASSERT_EQ(::symlink("../outside", own.toUtf8().constData()), 0);
    // The archive is made in between, so that the stamps of the file system have moved on.
    const QString archive = make(u"a.tar"_s, {file(u"x"_s), link(u"theirs"_s, u".."_s)});
    ToolRunner runner;
    ArchiveExtractor extractor(runner, [](const QString&) {});
    EXPECT_TRUE(runToEnd(unpackInto(extractor, archive, sandbox.path(u"dest"_s))).isSuccess());
    EXPECT_TRUE(QFileInfo(own).isSymLink());
    EXPECT_FALSE(QFileInfo(sandbox.path(u"dest/theirs"_s)).isSymLink());
}

} // namespace
} // namespace vormel

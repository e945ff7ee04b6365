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

namespace vormel {
namespace {

using fixtures::runRealTool;

/// Makes archives that no packer would: argv[1] is the archive, the rest are members as kind, name and contents, where
/// a link's contents are its target.
const QString script = QStringLiteral(R"(
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
)");

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
        sandbox.write(QStringLiteral("outside/secret"), "secret");
        QDir().mkpath(sandbox.path(QStringLiteral("dest")));
    }

    [[nodiscard]] QString outside() const { return sandbox.path(QStringLiteral("outside")); }

    static Member file(const QString& name) { return {QStringLiteral("file"), name, QStringLiteral("bad")}; }
    static Member link(const QString& name, const QString& target) { return {QStringLiteral("link"), name, target}; }
    static Member hardLink(const QString& name, const QString& target)
    {
        return {QStringLiteral("hard"), name, target};
    }

    [[nodiscard]] QString make(const QString& name, const QList<Member>& members) const
    {
        QStringList args{QStringLiteral("-W"), QStringLiteral("ignore"), QStringLiteral("-c"), script,
                         sandbox.path(name)};
        for (const Member& member : members)
            args << member.kind << member.name << member.contents;
        const fixtures::ToolResult made = runRealTool(QStringLiteral("/usr/bin/python3"), args, sandbox.root());
        EXPECT_EQ(made.status, 0) << made.output.constData();
        return sandbox.path(name);
    }

    /// Runs a packer in a folder of its own, in which the shell script may prepare things.
    [[nodiscard]] QString shell(const QString& name, const QString& commands) const
    {
        const QString work = sandbox.path(QStringLiteral("work-") + name);
        QDir().mkpath(work);
        const QString text = QStringLiteral("set -e; A='%1'; O='%2'; %3").arg(sandbox.path(name), outside(), commands);
        const fixtures::ToolResult made = runRealTool(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), text}, work);
        EXPECT_EQ(made.status, 0) << made.output.constData();
        return sandbox.path(name);
    }

    /// Unpacks the archives one after the other into the same folder, with that one tool or with whatever is there.
    void unpack(const QStringList& archives, const QString& onlyTool = {})
    {
        const fixtures::FakeTools tools;
        tools.addReal(onlyTool, QStringLiteral("/usr/bin/") + onlyTool);
        ToolRunner runner = onlyTool.isEmpty() ? ToolRunner() : ToolRunner(tools.folders());
        ArchiveExtractor extractor(runner, [](const QString&) {});
        for (const QString& archive : archives)
            static_cast<void>(runToEnd(unpackInto(extractor, archive, sandbox.path(QStringLiteral("dest")))));
        EXPECT_EQ(sandbox.files(QStringLiteral("outside")), QStringList{QStringLiteral("secret")});
        EXPECT_EQ(sandbox.read(QStringLiteral("outside/secret")), "secret");
        EXPECT_FALSE(sandbox.exists(QStringLiteral("escaped")));
        QDir(sandbox.path(QStringLiteral("dest"))).removeRecursively();
    }

    fixtures::Sandbox sandbox;
};

TEST_F(HostileArchiveTest, NoTarWritesOutside)
{
    VORMEL_NEEDS_TOOL("tar");
    VORMEL_NEEDS_TOOL("python3");
    const QString up = QStringLiteral("../outside");
    const QList<QList<Member>> attacks{
        {file(QStringLiteral("../escaped"))},
        {file(QStringLiteral("a/b/../../../escaped"))},
        {file(outside() + QStringLiteral("/escaped"))},
        {link(QStringLiteral("l"), up), file(QStringLiteral("l/escaped"))},
        {link(QStringLiteral("l"), outside()), file(QStringLiteral("l/escaped"))},
        {link(QStringLiteral("l"), up + QStringLiteral("/escaped")), file(QStringLiteral("l"))},
        {link(QStringLiteral("s"), QStringLiteral(".")), link(QStringLiteral("l"), QStringLiteral("s/../outside")),
         file(QStringLiteral("l/escaped"))},
        {hardLink(QStringLiteral("h"), up + QStringLiteral("/secret")), file(QStringLiteral("h"))},
        {hardLink(QStringLiteral("h"), outside() + QStringLiteral("/secret")), file(QStringLiteral("h"))},
        {link(QStringLiteral("l"), up), hardLink(QStringLiteral("h"), QStringLiteral("l/secret")),
         file(QStringLiteral("h"))},
    };
    for (const QList<Member>& attack : attacks)
        unpack({make(QStringLiteral("a.tar"), attack)});
}

TEST_F(HostileArchiveTest, NoZipWritesOutsideWithAnyTool)
{
    VORMEL_NEEDS_TOOL("unzip");
    VORMEL_NEEDS_TOOL("7z");
    VORMEL_NEEDS_TOOL("7za");
    VORMEL_NEEDS_TOOL("7zz");
    VORMEL_NEEDS_TOOL("python3");
    const QString up = QStringLiteral("../outside");
    const QList<QList<Member>> attacks{
        {file(QStringLiteral("../escaped"))},
        {file(QStringLiteral("a/b/../../../escaped"))},
        {file(outside() + QStringLiteral("/escaped"))},
        {link(QStringLiteral("l"), up), file(QStringLiteral("l/escaped"))},
        {link(QStringLiteral("l"), outside()), file(QStringLiteral("l/escaped"))},
        {link(QStringLiteral("l"), up + QStringLiteral("/escaped")), file(QStringLiteral("l"))},
        {link(QStringLiteral("s"), QStringLiteral(".")), link(QStringLiteral("l"), QStringLiteral("s/../outside")),
         file(QStringLiteral("l/escaped"))},
    };
    for (const QList<Member>& attack : attacks)
        for (const char* tool : {"unzip", "7z", "7za", "7zz"})
            unpack({make(QStringLiteral("a.zip"), attack)}, QString::fromUtf8(tool));
}

TEST_F(HostileArchiveTest, NoRarWritesOutsideWithEitherTool)
{
    VORMEL_NEEDS_TOOL("rar");
    VORMEL_NEEDS_TOOL("unrar");
    const QString linkThenFile = QStringLiteral(
        "ln -s %1 l; rar a -idq %2 \"$A\" l; rm l; mkdir l; echo bad >l/escaped; rar a -idq \"$A\" l/escaped");
    const QStringList archives{
        shell(QStringLiteral("up.rar"), QStringLiteral("echo bad >escaped; rar a -idq -ap../ \"$A\" escaped")),
        shell(QStringLiteral("abs.rar"), QStringLiteral("echo bad >escaped; rar a -idq -ap\"$O/\" \"$A\" escaped")),
        shell(QStringLiteral("l1.rar"), linkThenFile.arg(QStringLiteral("../outside"), QStringLiteral("-ol"))),
        shell(QStringLiteral("l2.rar"), linkThenFile.arg(QStringLiteral("\"$O\""), QStringLiteral("-ol"))),
        shell(QStringLiteral("l3.rar"), linkThenFile.arg(QStringLiteral("\"$O\""), QStringLiteral("-ola"))),
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
        QStringLiteral("ln -s %1 l; 7zz a -snl \"$A\" l; rm l; mkdir l; echo bad >l/escaped; 7zz a \"$A\" l/escaped");
    const QString renamed = QStringLiteral("echo bad >escaped; 7zz a \"$A\" escaped; 7zz rn \"$A\" escaped %1");
    const QStringList archives{
        shell(QStringLiteral("up.7z"), renamed.arg(QStringLiteral("../escaped"))),
        shell(QStringLiteral("abs.7z"), renamed.arg(QStringLiteral("\"$O/escaped\""))),
        shell(QStringLiteral("l1.7z"), linkThenFile.arg(QStringLiteral("../outside"))),
        shell(QStringLiteral("l2.7z"), linkThenFile.arg(QStringLiteral("\"$O\""))),
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
    const QList<Member> use{file(QStringLiteral("l/escaped"))};
    const QString packed = QStringLiteral("mkdir l; echo bad >l/escaped; %1 \"$A\" l/escaped");
    const QStringList users{
        make(QStringLiteral("use.tar"), use),
        make(QStringLiteral("use.zip"), use),
        shell(QStringLiteral("use.rar"), packed.arg(QStringLiteral("rar a -idq"))),
        shell(QStringLiteral("use.7z"), packed.arg(QStringLiteral("7zz a"))),
    };
    const QString planting = QStringLiteral("ln -s ../outside l; %1 \"$A\" l");
    const QStringList planters{
        make(QStringLiteral("up.tar"), {link(QStringLiteral("l"), QStringLiteral("../outside"))}),
        make(QStringLiteral("abs.tar"), {link(QStringLiteral("l"), outside())}),
        make(QStringLiteral("up.zip"), {link(QStringLiteral("l"), QStringLiteral("../outside"))}),
        make(QStringLiteral("abs.zip"), {link(QStringLiteral("l"), outside())}),
        shell(QStringLiteral("plant.rar"), planting.arg(QStringLiteral("rar a -idq -ol"))),
        shell(QStringLiteral("plant.7z"), planting.arg(QStringLiteral("7zz a -snl"))),
        // A failed extraction plants as well.
        make(QStringLiteral("fails.tar"),
             {link(QStringLiteral("l"), QStringLiteral("../outside")), file(QStringLiteral("../x"))}),
    };
    for (const QString& planter : planters)
        for (const QString& user : users)
            unpack({planter, user});
}

TEST_F(HostileArchiveTest, TheUsersOwnLinksStay)
{
    VORMEL_NEEDS_TOOL("tar");
    VORMEL_NEEDS_TOOL("python3");
    const QString own = sandbox.path(QStringLiteral("dest/mine"));
    ASSERT_EQ(::symlink("../outside", own.toUtf8().constData()), 0);
    // The archive is made in between, so that the stamps of the file system have moved on.
    const QString archive = make(QStringLiteral("a.tar"),
                                 {file(QStringLiteral("x")), link(QStringLiteral("theirs"), QStringLiteral(".."))});
    ToolRunner runner;
    ArchiveExtractor extractor(runner, [](const QString&) {});
    EXPECT_TRUE(runToEnd(unpackInto(extractor, archive, sandbox.path(QStringLiteral("dest")))).isSuccess());
    EXPECT_TRUE(QFileInfo(own).isSymLink());
    EXPECT_FALSE(QFileInfo(sandbox.path(QStringLiteral("dest/theirs"))).isSymLink());
}

} // namespace
} // namespace vormel

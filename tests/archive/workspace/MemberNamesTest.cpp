#include "archive/tools/ToolArguments.h"
#include "archive/workspace/HarmlessTree.h"
#include "archive/workspace/RawZip.h"
#include "archive/workspace/TreeRemoval.h"
#include "archive/workspace/Trees.h"
#include "fixtures/RealTools.h"
#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::runRealTool;

class MemberNamesTest : public ::testing::Test
{
protected:
    MemberNamesTest()
    {
        // As the program has it, whatever the tests are started from.
        qputenv("LC_ALL", "C.UTF-8");
        empty();
    }
    /// No path leads to names that are no UTF-8.
    ~MemberNamesTest() override { static_cast<void>(removeTree(folderAt(sandbox.root()).get(), "in")); }

    [[nodiscard]] QString root() const { return sandbox.path(u"root"_s); }
    [[nodiscard]] FileDescriptor top() const { return folderAt(root()); }

    void empty() const
    {
        QDir(root()).removeRecursively();
        QDir().mkpath(root());
    }
    /// Unpacks with that tool into the empty folder and looks it over.
    void unpack(const QString& archive, const QString& tool, ArchiveFormat format = ArchiveFormat::zip) const
    {
        empty();
        QStringList args = tarArguments(u"-xf"_s, archive, root());
        if (tool == u"unzip")
            args = unzipArguments(archive, root(), {});
        else if (tool.startsWith(u"7z"))
            args = sevenZipArguments(archive, root(), {});
        else if (tool == u"unrar" || tool == u"rar")
            args = rarArguments(archive, root(), {});
        // What the tool thinks of such names is not asked here.
        EXPECT_NE(runRealTool(u"/usr/bin/"_s + tool, args, sandbox.root()).status, -1);
        EXPECT_EQ(makeHarmless(root(), format), 0);
    }
    [[nodiscard]] QStringList filesAfter(const QString& archive, const QString& tool) const
    {
        unpack(archive, tool);
        return sandbox.files(u"root"_s);
    }

    fixtures::Sandbox sandbox;
};

TEST_F(MemberNamesTest, AZipOfAnySystemComesOutReadableWithAnyTool)
{
    VORMEL_NEEDS_TOOL("unzip");
    VORMEL_NEEDS_TOOL("7zz");
    const QString zip = sandbox.path(u"a.zip"_s);
    for (const ZipHost host : {ZipHost::dos, ZipHost::unixLike, ZipHost::windows})
        for (const QString& tool : {u"unzip"_s, u"7zz"_s}) {
            writeRawZip(zip, host,
                        {{"Pr\x81"
                          "fung \x82\x85.txt",
                          "1"},
                         {"ordner \x84/sch\x94n.txt", "2"}});
            EXPECT_EQ(filesAfter(zip, tool), (QStringList{u"Prüfung éà.txt"_s, u"ordner ä/schön.txt"_s}))
                << static_cast<int>(host) << tool.toStdString();
            EXPECT_EQ(sandbox.read(u"root/ordner ä/schön.txt"_s), "2");
        }
}

TEST_F(MemberNamesTest, AZipThatSaysUtf8ComesOutAsItSays)
{
    VORMEL_NEEDS_TOOL("unzip");
    VORMEL_NEEDS_TOOL("7zz");
    const QString zip = sandbox.path(u"a.zip"_s);
    const QStringList wanted{u"Prüfung 中.txt"_s};
    const QList<RawMember> members{{"Prüfung 中.txt", "1", true}};
    writeRawZip(zip, ZipHost::dos, members);
    EXPECT_EQ(filesAfter(zip, u"7zz"_s), wanted);
    writeRawZip(zip, ZipHost::unixLike, members);
    EXPECT_EQ(filesAfter(zip, u"7zz"_s), wanted);
    EXPECT_EQ(filesAfter(zip, u"unzip"_s), wanted);
}

TEST_F(MemberNamesTest, BackslashesInAZipAreFoldersOnceWhicheverToolUnpacked)
{
    VORMEL_NEEDS_TOOL("unzip");
    VORMEL_NEEDS_TOOL("7zz");
    const QString zip = sandbox.path(u"a.zip"_s);
    const QList<RawMember> members{{"dir\\file.txt", "1"},
                                   {"dir\\sub\\", ""},
                                   {"dir\\sub\\in.txt", "2"},
                                   {"plain/mixed\\file.txt", "3"},
                                   {"dir\\empty\\", ""}};
    for (const ZipHost host : {ZipHost::dos, ZipHost::unixLike, ZipHost::windows})
        for (const QString& tool : {u"unzip"_s, u"7zz"_s}) {
            // unzip decides by the first name, and leaves the backslashes of a name that has slashes too.
            writeRawZip(zip, host, members);
            EXPECT_EQ(filesAfter(zip, tool),
                      (QStringList{u"dir/file.txt"_s, u"dir/sub/in.txt"_s, u"plain/mixed/file.txt"_s}))
                << static_cast<int>(host) << tool.toStdString();
            EXPECT_EQ(namesIn(top().get()), (QList<QByteArray>{"dir", "plain"}));
            EXPECT_EQ(namesIn(folderAt(root() + u"/dir"_s).get()), (QList<QByteArray>{"empty", "file.txt", "sub"}));
            EXPECT_EQ(sandbox.read(u"root/dir/sub/in.txt"_s), "2");
        }
}

TEST_F(MemberNamesTest, BackslashesInAZipNeverLeadUp)
{
    VORMEL_NEEDS_TOOL("unzip");
    VORMEL_NEEDS_TOOL("7zz");
    const QString zip = sandbox.path(u"a.zip"_s);
    writeRawZip(zip, ZipHost::unixLike,
                {{"..\\up.txt", "1"}, {"a\\..\\..\\up2.txt", "2"}, {"\\root.txt", "3"}, {"\\", "4"}});
    for (const QString& tool : {u"unzip"_s, u"7zz"_s}) {
        const QStringList files = filesAfter(zip, tool);
        EXPECT_TRUE(files.contains(u"up.txt"_s)) << tool.toStdString();
        EXPECT_TRUE(files.contains(u"a/up2.txt"_s));
        EXPECT_TRUE(files.contains(u"root.txt"_s));
        EXPECT_FALSE(sandbox.exists(u"up.txt"_s) || sandbox.exists(u"up2.txt"_s));
    }
}

TEST_F(MemberNamesTest, ElsewhereABackslashIsALetter)
{
    VORMEL_NEEDS_TOOL("tar");
    VORMEL_NEEDS_TOOL("rar");
    VORMEL_NEEDS_TOOL("unrar");
    VORMEL_NEEDS_TOOL("7zz");
    sandbox.write(u"in/a\\b.txt"_s, "1");
    writeIn(folderAt(sandbox.path(u"in"_s)).get(),
            "Pr\x81"
            "fung.txt",
            "2");
    const QString in = sandbox.path(u"in"_s);
    const auto path = [this](const char* name) { return sandbox.path(QString::fromLatin1(name)); };
    const QString all = u"."_s;
    runRealTool(u"/usr/bin/tar"_s, {u"cf"_s, path("a.tar"), all}, in);
    runRealTool(u"/usr/bin/rar"_s, {u"a"_s, path("a.rar"), all}, in);
    runRealTool(u"/usr/bin/7zz"_s, {u"a"_s, path("a.7z"), all}, in);
    const QStringList wanted{u"Prüfung.txt"_s, u"a\\b.txt"_s};
    const auto filesAs = [&](const char* archive, const char* tool, ArchiveFormat format) {
        unpack(path(archive), QString::fromLatin1(tool), format);
        return sandbox.files(u"root"_s);
    };
    EXPECT_EQ(filesAs("a.tar", "tar", ArchiveFormat::tar), wanted);
    EXPECT_EQ(filesAs("a.rar", "unrar", ArchiveFormat::rar), wanted);
    EXPECT_EQ(filesAs("a.rar", "rar", ArchiveFormat::rar), wanted);
    EXPECT_EQ(filesAs("a.7z", "7zz", ArchiveFormat::sevenZip), wanted);
}

TEST_F(MemberNamesTest, AReadableNameThatIsTakenGetsANumber)
{
    writeIn(top().get(), "é.txt", "1");
    writeIn(top().get(), "\x82.txt", "2");
    writeIn(top().get(), "\xe9.txt", "3");
    QDir().mkpath(root() + u"/ü.d/x"_s);
    ASSERT_EQ(::mkdirat(top().get(), "\x81.d", 0755), 0);
    writeIn(folderAt(root()).get(), "plain", "p");
    EXPECT_EQ(makeHarmless(root(), ArchiveFormat::tar), 0);
    EXPECT_EQ(namesIn(top().get()), (QList<QByteArray>{"plain", "é (1).txt", "é (2).txt", "é.txt", "ü.d"}));
    EXPECT_EQ(readIn(top().get(), "é.txt"), "1");
    EXPECT_EQ(readIn(top().get(), "é (1).txt"), "2");
}

TEST_F(MemberNamesTest, AFullFolderWhoseReadableNameIsTakenGetsANumber)
{
    QDir().mkpath(root() + u"/ü.d/x"_s);
    ASSERT_EQ(::mkdirat(top().get(), "\x81.d", 0755), 0);
    const FileDescriptor folder(::openat(top().get(), "\x81.d", O_PATH | O_DIRECTORY | O_CLOEXEC));
    writeIn(folder.get(), "in", "1");
    EXPECT_EQ(makeHarmless(root(), ArchiveFormat::tar), 0);
    EXPECT_EQ(namesIn(top().get()), (QList<QByteArray>{"ü.d", "ü.d (1)"}));
    EXPECT_EQ(sandbox.read(u"root/ü.d (1)/in"_s), "1");
}

TEST_F(MemberNamesTest, AFolderBeforeABackslashIsNoLinkAndNoFile)
{
    writeIn(top().get(), "file", "1");
    writeIn(top().get(), "file\\a", "2");
    writeIn(top().get(), "file\\b", "3");
    QDir().mkpath(root() + u"/real"_s);
    ASSERT_EQ(::symlinkat("real", top().get(), "link"), 0);
    writeIn(top().get(), "link\\a", "4");
    EXPECT_EQ(makeHarmless(root(), ArchiveFormat::zip), 0);
    EXPECT_EQ(namesIn(top().get()), (QList<QByteArray>{"file", "file (1)", "link", "link (1)", "real"}));
    EXPECT_EQ(sandbox.read(u"root/file (1)/a"_s), "2");
    EXPECT_EQ(sandbox.read(u"root/file (1)/b"_s), "3");
    EXPECT_EQ(sandbox.read(u"root/link (1)/a"_s), "4");
    EXPECT_TRUE(namesIn(folderAt(root() + u"/real"_s).get()).isEmpty());
}

TEST_F(MemberNamesTest, WhatIsInAFolderWithBackslashesIsLookedOverToo)
{
    ASSERT_EQ(::mkdirat(top().get(), "a\\b", 0755), 0);
    const FileDescriptor folder(::openat(top().get(), "a\\b", O_PATH | O_DIRECTORY | O_CLOEXEC));
    ASSERT_EQ(::symlinkat("../..", folder.get(), "out"), 0);
    ASSERT_EQ(::symlinkat("../c", folder.get(), "in"), 0);
    writeIn(folder.get(), "x\\\x81", "1");
    EXPECT_EQ(makeHarmless(root(), ArchiveFormat::zip), 0);
    EXPECT_EQ(namesIn(top().get()), QList<QByteArray>{"a"});
    EXPECT_EQ(namesIn(folderAt(root() + u"/a/b"_s).get()), (QList<QByteArray>{"in", "x"}));
    EXPECT_EQ(sandbox.read(u"root/a/b/x/ü"_s), "1");
}

} // namespace
} // namespace vormel

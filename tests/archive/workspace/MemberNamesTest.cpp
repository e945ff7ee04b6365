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

    [[nodiscard]] QString root() const { return sandbox.path(QStringLiteral("root")); }
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
        QStringList args = tarArguments(QStringLiteral("-xf"), archive, root());
        if (tool == u"unzip")
            args = unzipArguments(archive, root(), {});
        else if (tool.startsWith(u"7z"))
            args = sevenZipArguments(archive, root(), {});
        else if (tool == u"unrar" || tool == u"rar")
            args = rarArguments(archive, root(), {});
        // What the tool thinks of such names is not asked here.
        EXPECT_NE(runRealTool(QStringLiteral("/usr/bin/") + tool, args, sandbox.root()).status, -1);
        EXPECT_EQ(makeHarmless(root(), format), 0);
    }
    [[nodiscard]] QStringList filesAfter(const QString& archive, const QString& tool) const
    {
        unpack(archive, tool);
        return sandbox.files(QStringLiteral("root"));
    }

    fixtures::Sandbox sandbox;
};

TEST_F(MemberNamesTest, AZipOfAnySystemComesOutReadableWithAnyTool)
{
    VORMEL_NEEDS_TOOL("unzip");
    VORMEL_NEEDS_TOOL("7zz");
    const QString zip = sandbox.path(QStringLiteral("a.zip"));
    for (const ZipHost host : {ZipHost::dos, ZipHost::unixLike, ZipHost::windows})
        for (const QString& tool : {QStringLiteral("unzip"), QStringLiteral("7zz")}) {
            writeRawZip(zip, host,
                        {{"Pr\x81"
                          "fung \x82\x85.txt",
                          "1"},
                         {"ordner \x84/sch\x94n.txt", "2"}});
            EXPECT_EQ(filesAfter(zip, tool),
                      (QStringList{QStringLiteral("Prüfung éà.txt"), QStringLiteral("ordner ä/schön.txt")}))
                << static_cast<int>(host) << tool.toStdString();
            EXPECT_EQ(sandbox.read(QStringLiteral("root/ordner ä/schön.txt")), "2");
        }
}

TEST_F(MemberNamesTest, AZipThatSaysUtf8ComesOutAsItSays)
{
    VORMEL_NEEDS_TOOL("unzip");
    VORMEL_NEEDS_TOOL("7zz");
    const QString zip = sandbox.path(QStringLiteral("a.zip"));
    const QStringList wanted{QStringLiteral("Prüfung 中.txt")};
    const QList<RawMember> members{{"Prüfung 中.txt", "1", true}};
    writeRawZip(zip, ZipHost::dos, members);
    EXPECT_EQ(filesAfter(zip, QStringLiteral("7zz")), wanted);
    writeRawZip(zip, ZipHost::unixLike, members);
    EXPECT_EQ(filesAfter(zip, QStringLiteral("7zz")), wanted);
    EXPECT_EQ(filesAfter(zip, QStringLiteral("unzip")), wanted);
}

TEST_F(MemberNamesTest, BackslashesInAZipAreFoldersOnceWhicheverToolUnpacked)
{
    VORMEL_NEEDS_TOOL("unzip");
    VORMEL_NEEDS_TOOL("7zz");
    const QString zip = sandbox.path(QStringLiteral("a.zip"));
    const QList<RawMember> members{{"dir\\file.txt", "1"},
                                   {"dir\\sub\\", ""},
                                   {"dir\\sub\\in.txt", "2"},
                                   {"plain/mixed\\file.txt", "3"},
                                   {"dir\\empty\\", ""}};
    for (const ZipHost host : {ZipHost::dos, ZipHost::unixLike, ZipHost::windows})
        for (const QString& tool : {QStringLiteral("unzip"), QStringLiteral("7zz")}) {
            // unzip decides by the first name, and leaves the backslashes of a name that has slashes too.
            writeRawZip(zip, host, members);
            EXPECT_EQ(filesAfter(zip, tool),
                      (QStringList{QStringLiteral("dir/file.txt"), QStringLiteral("dir/sub/in.txt"),
                                   QStringLiteral("plain/mixed/file.txt")}))
                << static_cast<int>(host) << tool.toStdString();
            EXPECT_EQ(namesIn(top().get()), (QList<QByteArray>{"dir", "plain"}));
            EXPECT_EQ(namesIn(folderAt(root() + QStringLiteral("/dir")).get()),
                      (QList<QByteArray>{"empty", "file.txt", "sub"}));
            EXPECT_EQ(sandbox.read(QStringLiteral("root/dir/sub/in.txt")), "2");
        }
}

TEST_F(MemberNamesTest, BackslashesInAZipNeverLeadUp)
{
    VORMEL_NEEDS_TOOL("unzip");
    VORMEL_NEEDS_TOOL("7zz");
    const QString zip = sandbox.path(QStringLiteral("a.zip"));
    writeRawZip(zip, ZipHost::unixLike,
                {{"..\\up.txt", "1"}, {"a\\..\\..\\up2.txt", "2"}, {"\\root.txt", "3"}, {"\\", "4"}});
    for (const QString& tool : {QStringLiteral("unzip"), QStringLiteral("7zz")}) {
        const QStringList files = filesAfter(zip, tool);
        EXPECT_TRUE(files.contains(QStringLiteral("up.txt"))) << tool.toStdString();
        EXPECT_TRUE(files.contains(QStringLiteral("a/up2.txt")));
        EXPECT_TRUE(files.contains(QStringLiteral("root.txt")));
        EXPECT_FALSE(sandbox.exists(QStringLiteral("up.txt")) || sandbox.exists(QStringLiteral("up2.txt")));
    }
}

TEST_F(MemberNamesTest, ElsewhereABackslashIsALetter)
{
    VORMEL_NEEDS_TOOL("tar");
    VORMEL_NEEDS_TOOL("rar");
    VORMEL_NEEDS_TOOL("unrar");
    VORMEL_NEEDS_TOOL("7zz");
    sandbox.write(QStringLiteral("in/a\\b.txt"), "1");
    writeIn(folderAt(sandbox.path(QStringLiteral("in"))).get(),
            "Pr\x81"
            "fung.txt",
            "2");
    const QString in = sandbox.path(QStringLiteral("in"));
    const auto path = [this](const char* name) { return sandbox.path(QString::fromLatin1(name)); };
    const QString all = QStringLiteral(".");
    runRealTool(QStringLiteral("/usr/bin/tar"), {QStringLiteral("cf"), path("a.tar"), all}, in);
    runRealTool(QStringLiteral("/usr/bin/rar"), {QStringLiteral("a"), path("a.rar"), all}, in);
    runRealTool(QStringLiteral("/usr/bin/7zz"), {QStringLiteral("a"), path("a.7z"), all}, in);
    const QStringList wanted{QStringLiteral("Prüfung.txt"), QStringLiteral("a\\b.txt")};
    const auto filesAs = [&](const char* archive, const char* tool, ArchiveFormat format) {
        unpack(path(archive), QString::fromLatin1(tool), format);
        return sandbox.files(QStringLiteral("root"));
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
    QDir().mkpath(root() + QStringLiteral("/ü.d/x"));
    ASSERT_EQ(::mkdirat(top().get(), "\x81.d", 0755), 0);
    writeIn(folderAt(root()).get(), "plain", "p");
    EXPECT_EQ(makeHarmless(root(), ArchiveFormat::tar), 0);
    EXPECT_EQ(namesIn(top().get()), (QList<QByteArray>{"plain", "é (1).txt", "é (2).txt", "é.txt", "ü.d"}));
    EXPECT_EQ(readIn(top().get(), "é.txt"), "1");
    EXPECT_EQ(readIn(top().get(), "é (1).txt"), "2");
}

TEST_F(MemberNamesTest, AFullFolderWhoseReadableNameIsTakenGetsANumber)
{
    QDir().mkpath(root() + QStringLiteral("/ü.d/x"));
    ASSERT_EQ(::mkdirat(top().get(), "\x81.d", 0755), 0);
    const FileDescriptor folder(::openat(top().get(), "\x81.d", O_PATH | O_DIRECTORY | O_CLOEXEC));
    writeIn(folder.get(), "in", "1");
    EXPECT_EQ(makeHarmless(root(), ArchiveFormat::tar), 0);
    EXPECT_EQ(namesIn(top().get()), (QList<QByteArray>{"ü.d", "ü.d (1)"}));
    EXPECT_EQ(sandbox.read(QStringLiteral("root/ü.d (1)/in")), "1");
}

TEST_F(MemberNamesTest, AFolderBeforeABackslashIsNoLinkAndNoFile)
{
    writeIn(top().get(), "file", "1");
    writeIn(top().get(), "file\\a", "2");
    writeIn(top().get(), "file\\b", "3");
    QDir().mkpath(root() + QStringLiteral("/real"));
    ASSERT_EQ(::symlinkat("real", top().get(), "link"), 0);
    writeIn(top().get(), "link\\a", "4");
    EXPECT_EQ(makeHarmless(root(), ArchiveFormat::zip), 0);
    EXPECT_EQ(namesIn(top().get()), (QList<QByteArray>{"file", "file (1)", "link", "link (1)", "real"}));
    EXPECT_EQ(sandbox.read(QStringLiteral("root/file (1)/a")), "2");
    EXPECT_EQ(sandbox.read(QStringLiteral("root/file (1)/b")), "3");
    EXPECT_EQ(sandbox.read(QStringLiteral("root/link (1)/a")), "4");
    EXPECT_TRUE(namesIn(folderAt(root() + QStringLiteral("/real")).get()).isEmpty());
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
    EXPECT_EQ(namesIn(folderAt(root() + QStringLiteral("/a/b")).get()), (QList<QByteArray>{"in", "x"}));
    EXPECT_EQ(sandbox.read(QStringLiteral("root/a/b/x/ü")), "1");
}

} // namespace
} // namespace vormel

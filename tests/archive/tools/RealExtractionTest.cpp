#include "archive/TaskEnd.h"
#include "archive/Unpacking.h"
#include "archive/tools/ArchiveExtractor.h"
#include "archive/workspace/RawZip.h"
#include "fixtures/FakeTools.h"
#include "fixtures/RealTools.h"
#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <vector>

namespace vormel {
namespace {

using Kind = ExtractionError::Kind;
using fixtures::noise;
using fixtures::runRealTool;

const QString unicodeName = QStringLiteral("Æther/日本 ’ü😀.txt");

class RealExtractionTest : public ::testing::Test
{
protected:
    RealExtractionTest()
    {
        sandbox.write(QStringLiteral("in/") + unicodeName, "unicode");
        sandbox.write(QStringLiteral("in/g.bin"), noise(5000));
    }

    /// Packs the files with the program, whose arguments may speak of the archive as "%1".
    [[nodiscard]] QString pack(const QString& name, const QString& program, QStringList args) const
    {
        const QString path = sandbox.path(name);
        for (QString& arg : args)
            if (arg == u"%1")
                arg = path;
        const fixtures::ToolResult result =
            runRealTool(QStringLiteral("/usr/bin/") + program, args, sandbox.path(QStringLiteral("in")));
        EXPECT_EQ(result.status, 0) << result.output.constData();
        return path;
    }
    [[nodiscard]] QString packSevenZip(const QString& name, const QStringList& switches) const
    {
        return pack(name, QStringLiteral("7zz"),
                    QStringList{QStringLiteral("a")} + switches +
                        QStringList{QStringLiteral("%1"), QStringLiteral(".")});
    }

    TaskEnd extract(const QString& archive, const std::optional<QString>& password = {})
    {
        return runToEnd(unpackInto(extractor, archive, sandbox.path(QStringLiteral("out")), password,
                                   [this](double fraction) { fractions.push_back(fraction); }));
    }
    void expectUnpacked() const
    {
        EXPECT_EQ(sandbox.read(QStringLiteral("out/") + unicodeName), "unicode");
        EXPECT_EQ(sandbox.read(QStringLiteral("out/g.bin")), noise(5000));
    }
    /// Without the password, with a wrong one, and with the right one, which is "X".
    void expectGuarded(const QString& archive)
    {
        EXPECT_EQ(extract(archive).kind, Kind::passwordRequired) << archive.toStdString();
        EXPECT_EQ(extract(archive, QStringLiteral("bad")).kind, Kind::wrongPassword) << archive.toStdString();
        EXPECT_TRUE(extract(archive, QStringLiteral("X")).isSuccess()) << archive.toStdString();
        expectUnpacked();
    }

    fixtures::Sandbox sandbox;
    ToolRunner runner;
    ArchiveExtractor extractor{runner, [](const QString&) {}};
    std::vector<double> fractions;
};

TEST_F(RealExtractionTest, NamesThatUnzipWouldSpoilAreLeftToSevenZip)
{
    VORMEL_NEEDS_TOOL("unzip");
    VORMEL_NEEDS_TOOL("7zz");
    const QString archive = sandbox.path(QStringLiteral("a.zip"));
    writeRawZip(archive, ZipHost::dos, {{"日本/ü.txt", "here", true}});
    EXPECT_TRUE(extract(archive).isSuccess());
    EXPECT_EQ(sandbox.read(QStringLiteral("out/日本/ü.txt")), "here");
}

TEST_F(RealExtractionTest, AZipWithBackslashesNeedsNoSecondTool)
{
    VORMEL_NEEDS_TOOL("unzip");
    const fixtures::FakeTools onlyUnzip;
    onlyUnzip.addReal(QStringLiteral("unzip"), QStringLiteral("/usr/bin/unzip"));
    ToolRunner withoutSevenZip(onlyUnzip.folders());
    ArchiveExtractor unzipping(withoutSevenZip, [](const QString&) {});
    const QString archive = sandbox.path(QStringLiteral("a.zip"));
    writeRawZip(archive, ZipHost::dos, {{"folder\\file.txt", "here"}, {"folder\\other.txt", "there"}});
    EXPECT_TRUE(runToEnd(unpackInto(unzipping, archive, sandbox.path(QStringLiteral("out")))).isSuccess());
    EXPECT_EQ(sandbox.read(QStringLiteral("out/folder/file.txt")), "here");
    EXPECT_EQ(sandbox.read(QStringLiteral("out/folder/other.txt")), "there");
}

TEST_F(RealExtractionTest, TarOfEachCompressionIsUnpacked)
{
    VORMEL_NEEDS_TOOL("tar");
    for (const auto& [name, letters] : {std::pair(QStringLiteral("a.tar"), QStringLiteral("-cf")),
                                        std::pair(QStringLiteral("a.tgz"), QStringLiteral("-czf")),
                                        std::pair(QStringLiteral("a.tar.bz2"), QStringLiteral("-cjf")),
                                        std::pair(QStringLiteral("a.tar.xz"), QStringLiteral("-cJf"))}) {
        const QString archive = pack(name, QStringLiteral("tar"), {letters, QStringLiteral("%1"), QStringLiteral(".")});
        EXPECT_TRUE(extract(archive).isSuccess());
        expectUnpacked();
        QDir(sandbox.path(QStringLiteral("out"))).removeRecursively();
    }
}

TEST_F(RealExtractionTest, ZipIsUnpacked)
{
    VORMEL_NEEDS_TOOL("7zz");
    VORMEL_NEEDS_TOOL("unzip");
    const TaskEnd end = extract(packSevenZip(QStringLiteral("a.zip"), {}));
    EXPECT_TRUE(end.isSuccess()) << end.output.toStdString();
    expectUnpacked();
}

TEST_F(RealExtractionTest, GuardedZipsAskForTheirPassword)
{
    VORMEL_NEEDS_TOOL("7zz");
    VORMEL_NEEDS_TOOL("unzip");
    expectGuarded(packSevenZip(QStringLiteral("c.zip"), {QStringLiteral("-pX"), QStringLiteral("-mem=ZipCrypto")}));
    expectGuarded(packSevenZip(QStringLiteral("a.zip"), {QStringLiteral("-pX"), QStringLiteral("-mem=AES256")}));
}

TEST_F(RealExtractionTest, AGuardedZipAsksForItsPasswordAlsoWithUnzipAlone)
{
    VORMEL_NEEDS_TOOL("7zz");
    VORMEL_NEEDS_TOOL("unzip");
    const QString archive =
        packSevenZip(QStringLiteral("c.zip"), {QStringLiteral("-pX"), QStringLiteral("-mem=ZipCrypto")});
    const fixtures::FakeTools tools;
    tools.addReal(QStringLiteral("unzip"), QStringLiteral("/usr/bin/unzip"));
    ToolRunner few(tools.folders());
    ArchiveExtractor withFew(few, [](const QString&) {});
    const QString out = sandbox.path(QStringLiteral("out"));
    EXPECT_EQ(runToEnd(unpackInto(withFew, archive, out, {})).kind, Kind::passwordRequired);
    EXPECT_EQ(runToEnd(unpackInto(withFew, archive, out, QStringLiteral("bad"))).kind, Kind::wrongPassword);
    EXPECT_TRUE(runToEnd(unpackInto(withFew, archive, out, QStringLiteral("X"))).isSuccess());
}

TEST_F(RealExtractionTest, GuardedSevenZipsAskForTheirPasswordWithEachTool)
{
    VORMEL_NEEDS_TOOL("7zz");
    const QString plain = packSevenZip(QStringLiteral("p.7z"), {QStringLiteral("-pX")});
    const QString hidden = packSevenZip(QStringLiteral("h.7z"), {QStringLiteral("-pX"), QStringLiteral("-mhe=on")});
    expectGuarded(plain);
    expectGuarded(hidden);
    const fixtures::FakeTools tools;
    tools.addReal(QStringLiteral("7zz"), QStringLiteral("/usr/bin/7zz"));
    ToolRunner few(tools.folders());
    ArchiveExtractor withFew(few, [](const QString&) {});
    for (const QString& archive : {plain, hidden}) {
        const QString out = sandbox.path(QStringLiteral("out"));
        EXPECT_EQ(runToEnd(unpackInto(withFew, archive, out, {})).kind, Kind::passwordRequired);
        EXPECT_EQ(runToEnd(unpackInto(withFew, archive, out, QStringLiteral("bad"))).kind, Kind::wrongPassword);
        EXPECT_TRUE(runToEnd(unpackInto(withFew, archive, out, QStringLiteral("X"))).isSuccess());
    }
}

TEST_F(RealExtractionTest, RarSetsAreUnpackedAndAskForTheirPassword)
{
    VORMEL_NEEDS_TOOL("rar");
    VORMEL_NEEDS_TOOL("unrar");
    fixtures::RarSet set;
    set.files = {{unicodeName, "unicode"}, {QStringLiteral("g.bin"), noise(5000)}};
    set.volumeBytes = 3000;
    set.password = QStringLiteral("X");
    const QStringList guarded = fixtures::makeRarSet(sandbox.path(QStringLiteral("p")), set);
    ASSERT_GE(guarded.size(), 2);
    expectGuarded(guarded.front());
    set.areHeadersEncrypted = true;
    expectGuarded(fixtures::makeRarSet(sandbox.path(QStringLiteral("hp")), set).value(0));
    set.password.clear();
    set.isSolid = true;
    set.name = QStringLiteral("Ünï cødé");
    const QStringList open = fixtures::makeRarSet(sandbox.path(QStringLiteral("open")), set);
    ASSERT_GE(open.size(), 2);
    QDir(sandbox.path(QStringLiteral("out"))).removeRecursively();
    EXPECT_TRUE(extract(open.front()).isSuccess());
    expectUnpacked();
}

TEST_F(RealExtractionTest, TheProgressOfABigSetMoves)
{
    VORMEL_NEEDS_TOOL("rar");
    VORMEL_NEEDS_TOOL("unrar");
    fixtures::RarSet set;
    set.files = {{QStringLiteral("big.bin"), noise(24'000'000)}};
    set.volumeBytes = 5'000'000;
    const QStringList volumes = fixtures::makeRarSet(sandbox.path(QStringLiteral("big")), set);
    ASSERT_EQ(volumes.size(), 5);
    EXPECT_TRUE(extract(volumes.front()).isSuccess());
    ASSERT_GE(fractions.size(), 3U);
    EXPECT_TRUE(std::is_sorted(fractions.begin(), fractions.end()));
    // How often the tool tells it is the tool's affair, and on a busy machine less often.
    EXPECT_LT(fractions.front(), 0.5);
    EXPECT_GT(fractions.back(), 0.5);
}

TEST_F(RealExtractionTest, APasswordOfAnyKindOpensEachKindOfArchive)
{
    VORMEL_NEEDS_TOOL("rar");
    VORMEL_NEEDS_TOOL("unrar");
    VORMEL_NEEDS_TOOL("7zz");
    VORMEL_NEEDS_TOOL("zip");
    VORMEL_NEEDS_TOOL("unzip");
    const fixtures::FakeTools tools;
    tools.addReal(QStringLiteral("unzip"), QStringLiteral("/usr/bin/unzip"));
    ToolRunner few(tools.folders());
    ArchiveExtractor withFew(few, [](const QString&) {});
    const QString out = sandbox.path(QStringLiteral("out"));
    const QString each = QStringLiteral("%1");
    const QString dot = QStringLiteral(".");
    int number = 0;
    for (const QString& password :
         {QStringLiteral("-x"), QStringLiteral("@x"), QStringLiteral(" a b "), QStringLiteral("a\"b'c\\$HOME;`x`*"),
          QStringLiteral("a\nb\tc"), QStringLiteral("пароль 日本 ü😀"), QStringLiteral("k").repeated(200)}) {
        const QString name = QString::number(++number);
        const QString rar = pack(name + QStringLiteral(".rar"), QStringLiteral("rar"),
                                 {QStringLiteral("a"), QStringLiteral("-idq"), QStringLiteral("-r"),
                                  QStringLiteral("-hp") + password, each, dot});
        const QString seven = packSevenZip(name + QStringLiteral(".7z"), {QStringLiteral("-p") + password});
        for (const QString& archive : {rar, seven}) {
            const TaskEnd end = extract(archive, password);
            EXPECT_TRUE(end.isSuccess()) << archive.toStdString() << ' ' << password.toStdString()
                                         << end.output.toStdString();
            expectUnpacked();
            QDir(out).removeRecursively();
        }
        if (password.startsWith(u'-')) // the packer of ZIPs takes it for a switch
            continue;
        const QString zip = pack(name + QStringLiteral(".zip"), QStringLiteral("zip"),
                                 {QStringLiteral("-qr"), QStringLiteral("-P"), password, each, dot});
        EXPECT_TRUE(runToEnd(unpackInto(withFew, zip, out, password)).isSuccess()) << password.toStdString();
        expectUnpacked();
        QDir(out).removeRecursively();
    }
}

TEST_F(RealExtractionTest, UnzipTakesPasswordsThatBeginWithAHyphen)
{
    VORMEL_NEEDS_TOOL("7zz");
    VORMEL_NEEDS_TOOL("unzip");
    const fixtures::FakeTools tools;
    tools.addReal(QStringLiteral("unzip"), QStringLiteral("/usr/bin/unzip"));
    ToolRunner few(tools.folders());
    ArchiveExtractor withFew(few, [](const QString&) {});
    for (const QString& password :
         {QStringLiteral("-"), QStringLiteral("-x"), QStringLiteral("--"), QStringLiteral("-o a")}) {
        const QString zip =
            packSevenZip(QStringLiteral("a.zip"), {QStringLiteral("-mem=ZipCrypto"), QStringLiteral("-p") + password});
        EXPECT_TRUE(runToEnd(unpackInto(withFew, zip, sandbox.path(QStringLiteral("out")), password)).isSuccess())
            << password.toStdString();
        expectUnpacked();
        QFile::remove(zip);
        QDir(sandbox.path(QStringLiteral("out"))).removeRecursively();
    }
}

TEST_F(RealExtractionTest, ARarWhosePasswordIsAHyphenOpens)
{
    VORMEL_NEEDS_TOOL("rar");
    VORMEL_NEEDS_TOOL("unrar");
    const QString archive = sandbox.path(QStringLiteral("a.rar"));
    // As a switch it would mean that there is none.
    ASSERT_EQ(runRealTool(QStringLiteral("/usr/bin/setsid"),
                          {QStringLiteral("-w"), QStringLiteral("rar"), QStringLiteral("a"), QStringLiteral("-idq"),
                           QStringLiteral("-r"), QStringLiteral("-p"), archive, QStringLiteral(".")},
                          sandbox.path(QStringLiteral("in")), "-\n-\n")
                  .status,
              0);
    EXPECT_TRUE(extract(archive, QStringLiteral("-")).isSuccess());
    expectUnpacked();
    EXPECT_EQ(extract(archive, QStringLiteral("x")).kind, Kind::wrongPassword);
}

TEST_F(RealExtractionTest, DamageThatAToolTakesForAWrongPasswordIsToldApartOnRequest)
{
    VORMEL_NEEDS_TOOL("7zz");
    const QString archive = packSevenZip(QStringLiteral("a.7z"), {QStringLiteral("-pX")});
    fixtures::damageFile(archive, 2000);
    const TaskEnd end = extract(archive, QStringLiteral("X"));
    EXPECT_EQ(end.kind, Kind::wrongPassword);
    ASSERT_TRUE(end.damage);
    EXPECT_TRUE(end.damage->startsWith(u"Extraction failed (code 2): ERROR: ")) << end.damage->toStdString();
    EXPECT_TRUE(end.damage->contains(u"in encrypted file. Wrong password? : ")) << end.damage->toStdString();
}

TEST_F(RealExtractionTest, APathThatLooksLikeASwitchIsAFileName)
{
    VORMEL_NEEDS_TOOL("tar");
    const QString archive = pack(QStringLiteral("-rf --help.tar"), QStringLiteral("tar"),
                                 {QStringLiteral("-cf"), QStringLiteral("%1"), QStringLiteral(".")});
    EXPECT_TRUE(extract(archive).isSuccess());
    expectUnpacked();
}

} // namespace
} // namespace vormel

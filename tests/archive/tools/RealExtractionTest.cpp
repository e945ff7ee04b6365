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

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using Kind = ExtractionError::Kind;
using fixtures::noise;
using fixtures::runRealTool;

const QString unicodeName = u"Æther/日本 ’ü😀.txt"_s;

class RealExtractionTest : public ::testing::Test
{
protected:
    RealExtractionTest()
    {
        sandbox.write(u"in/"_s + unicodeName, "unicode");
        sandbox.write(u"in/g.bin"_s, noise(5000));
    }

    /// Packs the files with the program, whose arguments may speak of the archive as "%1".
    [[nodiscard]] QString pack(const QString& name, const QString& program, QStringList args) const
    {
        const QString path = sandbox.path(name);
        for (QString& arg : args)
            if (arg == u"%1")
                arg = path;
        const fixtures::ToolResult result = runRealTool(u"/usr/bin/"_s + program, args, sandbox.path(u"in"_s));
        EXPECT_EQ(result.status, 0) << result.output.constData();
        return path;
    }
    [[nodiscard]] QString packSevenZip(const QString& name, const QStringList& switches) const
    {
        return pack(name, u"7zz"_s, QStringList{u"a"_s} + switches + QStringList{u"%1"_s, u"."_s});
    }

    TaskEnd extract(const QString& archive, const std::optional<QString>& password = {})
    {
        return runToEnd(unpackInto(extractor, archive, sandbox.path(u"out"_s), password,
                                   [this](double fraction) { fractions.push_back(fraction); }));
    }
    void expectUnpacked() const
    {
        EXPECT_EQ(sandbox.read(u"out/"_s + unicodeName), "unicode");
        EXPECT_EQ(sandbox.read(u"out/g.bin"_s), noise(5000));
    }
    /// Without the password, with a wrong one, and with the right one, which is "X".
    void expectGuarded(const QString& archive)
    {
        EXPECT_EQ(extract(archive).kind, Kind::passwordRequired) << archive.toStdString();
        EXPECT_EQ(extract(archive, u"bad"_s).kind, Kind::wrongPassword) << archive.toStdString();
        EXPECT_TRUE(extract(archive, u"X"_s).isSuccess()) << archive.toStdString();
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
    const QString archive = sandbox.path(u"a.zip"_s);
    writeRawZip(archive, ZipHost::dos, {{"日本/ü.txt", "here", true}});
    EXPECT_TRUE(extract(archive).isSuccess());
    EXPECT_EQ(sandbox.read(u"out/日本/ü.txt"_s), "here");
}

TEST_F(RealExtractionTest, AZipWithBackslashesNeedsNoSecondTool)
{
    VORMEL_NEEDS_TOOL("unzip");
    const fixtures::FakeTools onlyUnzip;
    onlyUnzip.addReal(u"unzip"_s, u"/usr/bin/unzip"_s);
    ToolRunner withoutSevenZip(onlyUnzip.folders());
    ArchiveExtractor unzipping(withoutSevenZip, [](const QString&) {});
    const QString archive = sandbox.path(u"a.zip"_s);
    writeRawZip(archive, ZipHost::dos, {{"folder\\file.txt", "here"}, {"folder\\other.txt", "there"}});
    EXPECT_TRUE(runToEnd(unpackInto(unzipping, archive, sandbox.path(u"out"_s))).isSuccess());
    EXPECT_EQ(sandbox.read(u"out/folder/file.txt"_s), "here");
    EXPECT_EQ(sandbox.read(u"out/folder/other.txt"_s), "there");
}

TEST_F(RealExtractionTest, TarOfEachCompressionIsUnpacked)
{
    VORMEL_NEEDS_TOOL("tar");
    for (const auto& [name, letters] : {std::pair(u"a.tar"_s, u"-cf"_s), std::pair(u"a.tgz"_s, u"-czf"_s),
                                        std::pair(u"a.tar.bz2"_s, u"-cjf"_s), std::pair(u"a.tar.xz"_s, u"-cJf"_s)}) {
        const QString archive = pack(name, u"tar"_s, {letters, u"%1"_s, u"."_s});
        EXPECT_TRUE(extract(archive).isSuccess());
        expectUnpacked();
        QDir(sandbox.path(u"out"_s)).removeRecursively();
    }
}

TEST_F(RealExtractionTest, ZipIsUnpacked)
{
    VORMEL_NEEDS_TOOL("7zz");
    VORMEL_NEEDS_TOOL("unzip");
    const TaskEnd end = extract(packSevenZip(u"a.zip"_s, {}));
    EXPECT_TRUE(end.isSuccess()) << end.output.toStdString();
    expectUnpacked();
}

TEST_F(RealExtractionTest, GuardedZipsAskForTheirPassword)
{
    VORMEL_NEEDS_TOOL("7zz");
    VORMEL_NEEDS_TOOL("unzip");
    expectGuarded(packSevenZip(u"c.zip"_s, {u"-pX"_s, u"-mem=ZipCrypto"_s}));
    expectGuarded(packSevenZip(u"a.zip"_s, {u"-pX"_s, u"-mem=AES256"_s}));
}

TEST_F(RealExtractionTest, AGuardedZipAsksForItsPasswordAlsoWithUnzipAlone)
{
    VORMEL_NEEDS_TOOL("7zz");
    VORMEL_NEEDS_TOOL("unzip");
    const QString archive = packSevenZip(u"c.zip"_s, {u"-pX"_s, u"-mem=ZipCrypto"_s});
    const fixtures::FakeTools tools;
    tools.addReal(u"unzip"_s, u"/usr/bin/unzip"_s);
    ToolRunner few(tools.folders());
    ArchiveExtractor withFew(few, [](const QString&) {});
    const QString out = sandbox.path(u"out"_s);
    EXPECT_EQ(runToEnd(unpackInto(withFew, archive, out, {})).kind, Kind::passwordRequired);
    EXPECT_EQ(runToEnd(unpackInto(withFew, archive, out, u"bad"_s)).kind, Kind::wrongPassword);
    EXPECT_TRUE(runToEnd(unpackInto(withFew, archive, out, u"X"_s)).isSuccess());
}

TEST_F(RealExtractionTest, GuardedSevenZipsAskForTheirPasswordWithEachTool)
{
    VORMEL_NEEDS_TOOL("7zz");
    const QString plain = packSevenZip(u"p.7z"_s, {u"-pX"_s});
    const QString hidden = packSevenZip(u"h.7z"_s, {u"-pX"_s, u"-mhe=on"_s});
    expectGuarded(plain);
    expectGuarded(hidden);
    const fixtures::FakeTools tools;
    tools.addReal(u"7zz"_s, u"/usr/bin/7zz"_s);
    ToolRunner few(tools.folders());
    ArchiveExtractor withFew(few, [](const QString&) {});
    for (const QString& archive : {plain, hidden}) {
        const QString out = sandbox.path(u"out"_s);
        EXPECT_EQ(runToEnd(unpackInto(withFew, archive, out, {})).kind, Kind::passwordRequired);
        EXPECT_EQ(runToEnd(unpackInto(withFew, archive, out, u"bad"_s)).kind, Kind::wrongPassword);
        EXPECT_TRUE(runToEnd(unpackInto(withFew, archive, out, u"X"_s)).isSuccess());
    }
}

TEST_F(RealExtractionTest, RarSetsAreUnpackedAndAskForTheirPassword)
{
    VORMEL_NEEDS_TOOL("rar");
    VORMEL_NEEDS_TOOL("unrar");
    fixtures::RarSet set;
    set.files = {{unicodeName, "unicode"}, {u"g.bin"_s, noise(5000)}};
    set.volumeBytes = 3000;
    set.password = u"X"_s;
    const QStringList guarded = fixtures::makeRarSet(sandbox.path(u"p"_s), set);
    ASSERT_GE(guarded.size(), 2);
    expectGuarded(guarded.front());
    set.areHeadersEncrypted = true;
    expectGuarded(fixtures::makeRarSet(sandbox.path(u"hp"_s), set).value(0));
    set.password.clear();
    set.isSolid = true;
    set.name = u"Ünï cødé"_s;
    const QStringList open = fixtures::makeRarSet(sandbox.path(u"open"_s), set);
    ASSERT_GE(open.size(), 2);
    QDir(sandbox.path(u"out"_s)).removeRecursively();
    EXPECT_TRUE(extract(open.front()).isSuccess());
    expectUnpacked();
}

TEST_F(RealExtractionTest, TheProgressOfABigSetMoves)
{
    VORMEL_NEEDS_TOOL("rar");
    VORMEL_NEEDS_TOOL("unrar");
    fixtures::RarSet set;
    set.files = {{u"big.bin"_s, noise(24'000'000)}};
    set.volumeBytes = 5'000'000;
    const QStringList volumes = fixtures::makeRarSet(sandbox.path(u"big"_s), set);
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
    tools.addReal(u"unzip"_s, u"/usr/bin/unzip"_s);
    ToolRunner few(tools.folders());
    ArchiveExtractor withFew(few, [](const QString&) {});
    const QString out = sandbox.path(u"out"_s);
    const QString each = u"%1"_s;
    const QString dot = u"."_s;
    int number = 0;
    for (const QString& password : {u"-x"_s, u"@x"_s, u" a b "_s, u"a\"b'c\\$HOME;`x`*"_s, u"a\nb\tc"_s,
                                    u"пароль 日本 ü😀"_s, u"k"_s.repeated(200)}) {
        const QString name = QString::number(++number);
        const QString rar =
            pack(name + u".rar"_s, u"rar"_s, {u"a"_s, u"-idq"_s, u"-r"_s, u"-hp"_s + password, each, dot});
        const QString seven = packSevenZip(name + u".7z"_s, {u"-p"_s + password});
        for (const QString& archive : {rar, seven}) {
            const TaskEnd end = extract(archive, password);
            EXPECT_TRUE(end.isSuccess()) << archive.toStdString() << ' ' << password.toStdString()
                                         << end.output.toStdString();
            expectUnpacked();
            QDir(out).removeRecursively();
        }
        if (password.startsWith(u'-')) // the packer of ZIPs takes it for a switch
            continue;
        const QString zip = pack(name + u".zip"_s, u"zip"_s, {u"-qr"_s, u"-P"_s, password, each, dot});
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
    tools.addReal(u"unzip"_s, u"/usr/bin/unzip"_s);
    ToolRunner few(tools.folders());
    ArchiveExtractor withFew(few, [](const QString&) {});
    for (const QString& password : {u"-"_s, u"-x"_s, u"--"_s, u"-o a"_s}) {
        const QString zip = packSevenZip(u"a.zip"_s, {u"-mem=ZipCrypto"_s, u"-p"_s + password});
        EXPECT_TRUE(runToEnd(unpackInto(withFew, zip, sandbox.path(u"out"_s), password)).isSuccess())
            << password.toStdString();
        expectUnpacked();
        QFile::remove(zip);
        QDir(sandbox.path(u"out"_s)).removeRecursively();
    }
}

TEST_F(RealExtractionTest, ARarWhosePasswordIsAHyphenOpens)
{
    VORMEL_NEEDS_TOOL("rar");
    VORMEL_NEEDS_TOOL("unrar");
    const QString archive = sandbox.path(u"a.rar"_s);
    // As a switch it would mean that there is none.
    ASSERT_EQ(runRealTool(u"/usr/bin/setsid"_s,
                          {u"-w"_s, u"rar"_s, u"a"_s, u"-idq"_s, u"-r"_s, u"-p"_s, archive, u"."_s},
                          sandbox.path(u"in"_s), "-\n-\n")
                  .status,
              0);
    EXPECT_TRUE(extract(archive, u"-"_s).isSuccess());
    expectUnpacked();
    EXPECT_EQ(extract(archive, u"x"_s).kind, Kind::wrongPassword);
}

TEST_F(RealExtractionTest, DamageThatAToolTakesForAWrongPasswordIsToldApartOnRequest)
{
    VORMEL_NEEDS_TOOL("7zz");
    const QString archive = packSevenZip(u"a.7z"_s, {u"-pX"_s});
    fixtures::damageFile(archive, 2000);
    const TaskEnd end = extract(archive, u"X"_s);
    EXPECT_EQ(end.kind, Kind::wrongPassword);
    ASSERT_TRUE(end.damage);
    EXPECT_TRUE(end.damage->startsWith(u"Extraction failed (code 2): ERROR: ")) << end.damage->toStdString();
    EXPECT_TRUE(end.damage->contains(u"in encrypted file. Wrong password? : ")) << end.damage->toStdString();
}

TEST_F(RealExtractionTest, APathThatLooksLikeASwitchIsAFileName)
{
    VORMEL_NEEDS_TOOL("tar");
    const QString archive = pack(u"-rf --help.tar"_s, u"tar"_s, {u"-cf"_s, u"%1"_s, u"."_s});
    EXPECT_TRUE(extract(archive).isSuccess());
    expectUnpacked();
}

} // namespace
} // namespace vormel

#include "archive/tools/ToolReason.h"

#include "archive/TaskEnd.h"
#include "archive/tools/ToolArguments.h"
#include "archive/tools/ToolRunner.h"
#include "fixtures/ProcessorTime.h"
#include "fixtures/RealTools.h"
#include "fixtures/Sandbox.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace vormel {
namespace {

QString reasonOf(const char* output)
{
    return toolReason(QString::fromUtf8(output)).text();
}

TEST(ToolReason, LeavesOutWhatUnrarPrintsBesides)
{
    EXPECT_EQ(reasonOf("\nUNRAR 6.21 freeware      Copyright (c) 1993-2023 A. Uthor\n\n"
                       "Unexpected end of archive\n\nExtracting from /x/bad.rar\n\n"
                       "Creating    /x/out/d                                           OK\n"
                       "Extracting  /x/out/d/ERROR 1.bin                             \b\b\b\b  7%\b\b\b\b\b  OK \n"
                       "Extracting  /x/out/d/a.bin                                        \b\b\b\b 50%\n"
                       "Testing     d/tiny.bin                                        \n"
                       "d/a.bin              - checksum error\nUnexpected end of archive\nTotal errors: 3\n"),
              u"Unexpected end of archive\nd/a.bin              - checksum error");
    EXPECT_EQ(reasonOf("UNRAR 6.21 freeware\n/x/bad.rar is not RAR archive\nNo files to extract\n"),
              u"/x/bad.rar is not RAR archive");
    EXPECT_EQ(reasonOf("RAR 7.01   Copyright\nTrial version             Type 'rar -?' for help\n"
                       "ERROR: Bad archive /x/a.part3.rar\n\nProgram aborted\n"),
              u"ERROR: Bad archive /x/a.part3.rar");
}

TEST(ToolReason, LeavesOutWhatSevenZipPrintsBesides)
{
    EXPECT_EQ(reasonOf("\n7-Zip [64] 26.02 : Copyright\np7zip Version 16.02 (locale=C.UTF-8)\n\n"
                       "Scanning the drive for archives:\n1 file, 130122 bytes (128 KiB)\n\n"
                       "Extracting archive: /x/bad.7z\nERROR: /x/bad.7z\n/x/bad.7z\n"
                       "Open ERROR: Cannot open the file as [7z] archive\n\n\nERRORS:\nUnexpected end of archive\n\n"
                       "Can't open as archive: 1\nFiles: 0\nSize:       0\nCompressed: 0\n"),
              u"Open ERROR: Cannot open the file as [7z] archive\nUnexpected end of archive");
    EXPECT_EQ(reasonOf("7-Zip (z) 26.02\n 64-bit locale=C.UTF-8\nExtracting archive: /x/bad.7z\n--\n"
                       "Path = /x/bad.7z\nType = 7z\nPhysical Size = 260244\nHeaders Size = 225\nMethod = LZMA2:18\n"
                       "Solid = +\nBlocks = 1\n\nERROR: CRC Failed : d/a.bin\n\nSub items Errors: 1\n\n"
                       "Archives with Errors: 1\n"),
              u"ERROR: CRC Failed : d/a.bin");
    EXPECT_EQ(reasonOf("7-Zip [64] 9.20\nProcessing archive: /x/a.7z\n\nExtracting  f.txt     CRC Failed\n"),
              u"Extracting  f.txt     CRC Failed");
}

TEST(ToolReason, LeavesOutWhatUnzipAndTarPrintBesides)
{
    EXPECT_EQ(reasonOf("Archive:  /x/bad.zip\n   creating: /x/out/d/\n extracting: /x/out/d/ERROR 1.bin  \n"
                       "  inflating: /x/out/d/a.bin    bad CRC 6ee78002  (should be 94b46b91)\n"
                       "    linking: /x/out/l            -> f \nfinishing deferred symbolic links:\n"),
              u"inflating: /x/out/d/a.bin    bad CRC 6ee78002  (should be 94b46b91)");
    EXPECT_EQ(reasonOf("gzip: stdin: unexpected end of file\ntar: Unexpected EOF in archive\n"
                       "tar: Unexpected EOF in archive\ntar: Error is not recoverable: exiting now\n"),
              u"gzip: stdin: unexpected end of file\ntar: Unexpected EOF in archive");
}

TEST(ToolReason, SaysWhatLittleItKnowsWhereNothingElseIsTold)
{
    EXPECT_EQ(reasonOf("UNRAR 6.21\nNo files to extract\n"), u"No files to extract");
    EXPECT_EQ(reasonOf("UNRAR 6.21\n\nExtracting from /x/a.rar\n"), u"");
    EXPECT_EQ(reasonOf(""), u"");
}

TEST(ToolReason, AHundredThousandComplaintsCostLittle)
{
    QByteArray output;
    for (int i = 0; i < 100'000; ++i)
        output += "file " + QByteArray::number(i) + " - checksum error\n";
    const fixtures::ProcessorTime watch;
    const ToolReason reason = toolReason(QString::fromUtf8(output));
    EXPECT_LT(watch.elapsed(), 5s);
    EXPECT_TRUE(reason.text().startsWith(u"file 0 - checksum error\nfile 1 - checksum error"));
    EXPECT_LT(reason.text().size(), 10'000);
}

/// A real archive of each kind, cut in half.
TEST(ToolReason, OfRealToolsIsShortAndBeginsWithNoBanner)
{
    VORMEL_NEEDS_TOOL("unrar");
    VORMEL_NEEDS_TOOL("rar");
    VORMEL_NEEDS_TOOL("7zz");
    VORMEL_NEEDS_TOOL("unzip");
    VORMEL_NEEDS_TOOL("tar");
    const fixtures::Sandbox sandbox;
    sandbox.write(u"in/a.bin"_s, fixtures::noise(200'000));
    const QString out = sandbox.path(u"out"_s);
    QDir().mkpath(out);
    const auto cut = [&sandbox](const QString& name, const QString& tool, QStringList args) {
        const QString archive = sandbox.path(name);
        args << archive << u"a.bin"_s;
        EXPECT_EQ(fixtures::runRealTool(tool, args, sandbox.path(u"in"_s)).status, 0);
        fixtures::truncateFile(archive, 100'000);
        return archive;
    };
    const auto reason = [](const QString& tool, const QStringList& args) {
        ToolRunner runner;
        return runToEnd(runner.run(tool, args, {})).description.value_or(QString());
    };
    const QString start = u"Extraction failed (code %1): "_s;
    const QString rar = cut(u"a.rar"_s, u"/usr/bin/rar"_s, {u"a"_s});
    for (const QString& tool : {u"/usr/bin/unrar"_s, u"/usr/bin/rar"_s})
        EXPECT_EQ(reason(tool, rarArguments(rar, out, {})),
                  start.arg(3) + u"Unexpected end of archive\na.bin                - checksum error"_s);
    const QString seven = cut(u"a.7z"_s, u"/usr/bin/7zz"_s, {u"a"_s});
    EXPECT_EQ(reason(u"/usr/bin/7zz"_s, sevenZipArguments(seven, out, {})),
              start.arg(2) + u"Open ERROR: Cannot open the file as [7z] archive\nUnexpected end of archive"_s);
    const QString zip = cut(u"a.zip"_s, u"/usr/bin/7zz"_s, {u"a"_s, u"-tzip"_s});
    EXPECT_TRUE(reason(u"/usr/bin/unzip"_s, unzipArguments(zip, out, {}))
                    .startsWith(start.arg(9) + u"End-of-central-directory signature not found."_s));
    const QString tar = cut(u"a.tgz"_s, u"/usr/bin/tar"_s, {u"-czf"_s});
    // Two programs speak, in either order.
    const QString told = reason(u"/usr/bin/tar"_s, tarArguments(u"-xzf"_s, tar, out));
    EXPECT_TRUE(told.contains(u"gzip: stdin: unexpected end of file") && told.contains(u"tar: Unexpected EOF"))
        << told.toStdString();
    EXPECT_FALSE(told.contains(u"not recoverable")) << told.toStdString();
}

} // namespace
} // namespace vormel

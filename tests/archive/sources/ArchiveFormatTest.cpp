#include "archive/sources/ArchiveFormat.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace vormel {
namespace {

TEST(ArchiveFormat, TheNameTellsTheFormatInAnyLetterCase)
{
    const std::vector<std::pair<QString, ArchiveFormat>> rows{
        {QStringLiteral("/x/a.zip"), ArchiveFormat::zip},        {QStringLiteral("/x/A.RAR"), ArchiveFormat::rar},
        {QStringLiteral("/x/a.part2.rar"), ArchiveFormat::rar},  {QStringLiteral("/x/a.7Z"), ArchiveFormat::sevenZip},
        {QStringLiteral("/x/a.tar"), ArchiveFormat::tar},        {QStringLiteral("/x/a.TAR.GZ"), ArchiveFormat::tarGz},
        {QStringLiteral("/x/a.tar.bz2"), ArchiveFormat::tarBz2}, {QStringLiteral("/x/a.tar.xz"), ArchiveFormat::tarXz},
        {QStringLiteral("/x/a.tgz"), ArchiveFormat::tarGz},
    };
    for (const auto& [path, format] : rows)
        EXPECT_EQ(formatOf(path), format) << path.toStdString();
}

TEST(ArchiveFormat, OtherFilesHaveNone)
{
    for (const QString& path :
         {QStringLiteral("/x/a.gz"), QStringLiteral("/x/a.bz2"), QStringLiteral("/x/a.xz"),
          QStringLiteral("/x/a.part1.rev"), QStringLiteral("/x/a.tbz"), QStringLiteral("/x/a.txz"),
          QStringLiteral("/x.zip/a"), QStringLiteral("/x/.zip"), QString()})
        EXPECT_EQ(formatOf(path), std::nullopt) << path.toStdString();
}

} // namespace
} // namespace vormel

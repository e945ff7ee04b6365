#include "archive/sources/ArchiveFormat.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

TEST(ArchiveFormat, TheNameTellsTheFormatInAnyLetterCase)
{
    const std::vector<std::pair<QString, ArchiveFormat>> rows{
        {u"/x/a.zip"_s, ArchiveFormat::zip},        {u"/x/A.RAR"_s, ArchiveFormat::rar},
        {u"/x/a.part2.rar"_s, ArchiveFormat::rar},  {u"/x/a.7Z"_s, ArchiveFormat::sevenZip},
        {u"/x/a.tar"_s, ArchiveFormat::tar},        {u"/x/a.TAR.GZ"_s, ArchiveFormat::tarGz},
        {u"/x/a.tar.bz2"_s, ArchiveFormat::tarBz2}, {u"/x/a.tar.xz"_s, ArchiveFormat::tarXz},
        {u"/x/a.tgz"_s, ArchiveFormat::tarGz},
    };
    for (const auto& [path, format] : rows)
        EXPECT_EQ(formatOf(path), format) << path.toStdString();
}

TEST(ArchiveFormat, OtherFilesHaveNone)
{
    for (const QString& path : {u"/x/a.gz"_s, u"/x/a.bz2"_s, u"/x/a.xz"_s, u"/x/a.part1.rev"_s, u"/x/a.tbz"_s,
                                u"/x/a.txz"_s, u"/x.zip/a"_s, u"/x/.zip"_s, QString()})
        EXPECT_EQ(formatOf(path), std::nullopt) << path.toStdString();
}

} // namespace
} // namespace vormel

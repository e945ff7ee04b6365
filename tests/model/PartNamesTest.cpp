#include "model/SetName.h"

#include <gtest/gtest.h>

using namespace vormel;

namespace {

struct Name
{
    const char* name;
    bool isRarPart;
    bool isFirstVolume;
    qint64 number;
};

const Name names[] = {
    {"m.part1.rar", true, true, 1},
    {"m.part01.rar", true, true, 1},
    {"m.PART0001.RAR", true, true, 1},
    {"m.part11.rar", true, false, 11},
    {"m.part21.rar", true, false, 21},
    {"m.part101.rar", true, false, 101},
    {"m.part10.rar", true, false, 10},
    {"m.part9.rar", true, false, 9},
    {"m.part0.rar", true, false, 0},
    {"m.part1.rev", false, false, 1},
    {"m.part12.REV", false, false, 12},
    {"m.rar", false, false, 0},
    {"m.part.rar", false, false, 0},
    {"m.part1.rar.zip", false, false, 0},
    {"m.part1.zip", false, false, 0},
    {"mpart1.rar", false, false, 0},
    {"part1.rar", false, false, 0},
    {".part1.rar", true, true, 1},
    {"m.part9223372036854775807.rar", true, false, 9223372036854775807},
    {"m.part9223372036854775808.rar", true, false, 0},
};

} // namespace

TEST(PartNames, TellPartsFirstVolumesAndNumbers)
{
    for (const Name& row : names) {
        const QString name = QString::fromLatin1(row.name);
        EXPECT_EQ(isRarPart(name), row.isRarPart) << row.name;
        EXPECT_EQ(isFirstVolume(name), row.isFirstVolume) << row.name;
        EXPECT_EQ(partNumber(name), row.number) << row.name;
    }
}

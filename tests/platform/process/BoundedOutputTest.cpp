#include "platform/process/BoundedOutput.h"

#include <gtest/gtest.h>

namespace vormel {
namespace {

constexpr qsizetype side = BoundedOutput::keptEachSide;

TEST(BoundedOutput, KeepsEverythingUpToBothEnds)
{
    BoundedOutput output;
    output.append("one ");
    output.append(QByteArray(side, 'a'));
    output.append(QByteArray(side - 4, 'b'));
    EXPECT_EQ(output.text(), "one " + QByteArray(side, 'a') + QByteArray(side - 4, 'b'));
}

TEST(BoundedOutput, TellsHowMuchOfTheMiddleIsLeftOut)
{
    BoundedOutput output;
    output.append(QByteArray(side, 'a'));
    output.append(QByteArray(7, 'm'));
    output.append(QByteArray(side, 'z'));
    EXPECT_EQ(output.text(), QByteArray(side, 'a') + "\n[7 bytes left out]\n" + QByteArray(side, 'z'));
}

TEST(BoundedOutput, CountsEveryByteOfALongOutput)
{
    BoundedOutput output;
    constexpr int pieces = 1000;
    for (int i = 0; i < pieces; ++i)
        output.append(QByteArray(65'536, 'x'));
    const qint64 leftOut = 65'536LL * pieces - 2 * side;
    EXPECT_EQ(output.text(), QByteArray(side, 'x') + "\n[" + QByteArray::number(leftOut) + " bytes left out]\n" +
                                 QByteArray(side, 'x'));
}

} // namespace
} // namespace vormel

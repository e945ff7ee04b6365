#include "ui/queue/tree/Runs.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

struct RunsRow
{
    const char* name;
    std::vector<int> numbers;
    const char16_t* runs;
    const char16_t* fromTheBack;
};

class Runs : public ::testing::TestWithParam<RunsRow>
{};

const RunsRow rows[] = {
    {"none", {}, u"", u""},
    {"one", {3}, u"3-3", u"3-3"},
    {"fromZero", {0, 1}, u"0-1", u"0-1"},
    {"allInOne", {4, 5, 6, 7}, u"4-7", u"4-7"},
    {"allApart", {1, 3, 5}, u"1-1 3-3 5-5", u"5-5 3-3 1-1"},
    {"aGapInTheMiddle", {1, 2, 4, 5}, u"1-2 4-5", u"4-5 1-2"},
    {"aLongerGap", {1, 2, 9}, u"1-2 9-9", u"9-9 1-2"},
    {"singleOnesAtBothEnds", {0, 2, 3, 4, 6}, u"0-0 2-4 6-6", u"6-6 2-4 0-0"},
};

QString textOf(const std::vector<Run>& runs)
{
    QStringList texts;
    for (const Run& run : runs)
        texts << u"%1-%2"_s.arg(run.first).arg(run.last);
    return texts.join(u' ');
}

TEST_P(Runs, AreTheConsecutiveNumbers)
{
    const std::vector<vormel::Run> runs = runsOf(GetParam().numbers);
    EXPECT_EQ(textOf(runs), QString::fromUtf16(GetParam().runs));
    EXPECT_EQ(textOf(fromTheBack(runs)), QString::fromUtf16(GetParam().fromTheBack));
}

INSTANTIATE_TEST_SUITE_P(Rows, Runs, ::testing::ValuesIn(rows),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace vormel

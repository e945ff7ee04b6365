#include "ui/queue/rows/RowCaptions.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/Languages.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace vormel {
namespace {

using fixtures::english;
using fixtures::italian;

constexpr SteadyTime captionTime{50h};
constexpr qint64 captionGibibyte = 1024LL * 1024 * 1024;

class RowFigures : public ::testing::Test
{
protected:
    QString figures(DownloadStatus status, qint64 received, qint64 total, AppLanguage language = english)
    {
        item.setStatus(std::move(status));
        item.setBytesReceived(received);
        item.setTotalBytes(total);
        return figuresText(item, language);
    }

    DownloadItem item{fixtures::link(u"https://host.example/file.rar"_s), ItemId::make()};
};

TEST_F(RowFigures, TellHowMuchOfHowMuchIsThereWhileNothingRuns)
{
    for (const DownloadStatus& status :
         {DownloadStatus(DownloadStatus::paused), DownloadStatus(DownloadStatus::stopped),
          DownloadStatus(DownloadStatus::queued), DownloadStatus::failure(u"x"_s)}) {
        EXPECT_EQ(figures(status, captionGibibyte * 6 / 5, 4 * captionGibibyte), u"1.2 GB of 4 GB");
        EXPECT_EQ(figures(status, captionGibibyte * 6 / 5, 4 * captionGibibyte, italian), u"1.2 GB di 4 GB");
    }
}

TEST_F(RowFigures, LeaveARunningTransferToItsOwnLine)
{
    EXPECT_EQ(figures(DownloadStatus::downloading, captionGibibyte, 4 * captionGibibyte), u"");
}

TEST_F(RowFigures, StayWhileTheTransferIsPrepared)
{
    EXPECT_EQ(figures(DownloadStatus::resolving, captionGibibyte, 4 * captionGibibyte), u"1 GB of 4 GB");
}

TEST_F(RowFigures, AreTheSizeAloneWhenFinishedOrNotBegun)
{
    EXPECT_EQ(figures(DownloadStatus::completed, 4 * captionGibibyte, 4 * captionGibibyte), u"4 GB");
    EXPECT_EQ(figures(DownloadStatus::completed, 2 * captionGibibyte, 0), u"2 GB");
    EXPECT_EQ(figures(DownloadStatus::queued, 0, 4 * captionGibibyte), u"4 GB");
}

TEST_F(RowFigures, AreWhatIsThereAloneWhileTheSizeIsNotKnown)
{
    EXPECT_EQ(figures(DownloadStatus::paused, captionGibibyte, 0), u"1 GB");
    EXPECT_EQ(figures(DownloadStatus::paused, captionGibibyte, -1), u"1 GB");
}

TEST_F(RowFigures, AreNotThereWhileNothingIsKnown)
{
    EXPECT_EQ(figures(DownloadStatus::queued, 0, 0), u"");
    EXPECT_EQ(figures(DownloadStatus::completed, 0, -1), u"");
}

QString textOf(const ItemWait& wait, AppLanguage language)
{
    return waitText(wait, language, captionTime);
}

TEST(RowWait, SaysWhyAndForHowLong)
{
    const ItemWait lost{ItemWait::nextTry, captionTime + 12s};
    EXPECT_EQ(textOf(lost, english), u"Connection lost, trying again in 12 s");
    EXPECT_EQ(textOf(lost, italian), u"Connessione persa, nuovo tentativo tra 12 s");
    const ItemWait rest{ItemWait::serverRest, captionTime + 310s};
    EXPECT_EQ(textOf(rest, english), u"The server asks for a pause, trying again in 5 min 10 s");
    EXPECT_EQ(textOf(rest, italian), u"Il server chiede una pausa, nuovo tentativo tra 5 min 10 s");
}

TEST(RowWait, CountsNothingBelowZero)
{
    EXPECT_EQ(textOf({ItemWait::nextTry, captionTime}, english), u"Connection lost, trying again soon");
    EXPECT_EQ(textOf({ItemWait::serverRest, captionTime - 1s}, italian),
              u"Il server chiede una pausa, nuovo tentativo a breve");
}

TEST(RowWait, SaysWhatItIsFor)
{
    EXPECT_EQ(textOf({ItemWait::sameName}, english), u"Waits for another link of this name");
    EXPECT_EQ(textOf({ItemWait::sameName}, italian), u"Attende un altro link con questo nome");
    const ItemWait signIn{ItemWait::signIn, {}, u"Files Example"_s};
    EXPECT_EQ(textOf(signIn, english), u"Waits for the sign-in to Files Example");
    EXPECT_EQ(textOf(signIn, italian), u"Attende l'accesso a Files Example");
}

TEST(RowWait, SaysNothingWithoutAReasonOrForOneThatIsNotKnown)
{
    EXPECT_EQ(textOf({}, english), u"");
    EXPECT_EQ(textOf({static_cast<ItemWait::Kind>(200), captionTime + 5s}, english), u"");
    EXPECT_EQ(waitTextChangesAt({static_cast<ItemWait::Kind>(200), captionTime + 5s}, captionTime), std::nullopt);
}

TEST(RowWait, ReadsABegunSecondAsAWholeOne)
{
    EXPECT_EQ(timeLeftText(12s), u"12 s");
    EXPECT_EQ(timeLeftText(11s + 1ns), u"12 s");
    EXPECT_EQ(timeLeftText(59s), u"59 s");
    EXPECT_EQ(timeLeftText(59s + 1ms), u"1 min");
    EXPECT_EQ(timeLeftText(125s), u"2 min 5 s");
    EXPECT_EQ(timeLeftText(10min), u"10 min");
    EXPECT_EQ(timeLeftText(0s), u"0 s");
    EXPECT_EQ(timeLeftText(-3s), u"0 s");
}

TEST(RowWait, ChangesAtTheNextSecondsEdgeAndNotBefore)
{
    for (const auto left : {12000ms, 11999ms, 11001ms, 61000ms, 1ms}) {
        const ItemWait wait{ItemWait::nextTry, captionTime + left};
        const std::optional<SteadyTime> edge = waitTextChangesAt(wait, captionTime);
        ASSERT_TRUE(edge) << left.count();
        EXPECT_EQ(waitText(wait, english, *edge - 1ns), waitText(wait, english, captionTime)) << left.count();
        EXPECT_NE(waitText(wait, english, *edge), waitText(wait, english, captionTime)) << left.count();
    }
}

TEST(RowWait, StaysForGoodWhenItDoesNotCountOrHasCounted)
{
    for (const ItemWait::Kind kind : {ItemWait::none, ItemWait::sameName, ItemWait::signIn})
        EXPECT_EQ(waitTextChangesAt({kind, captionTime + 5s}, captionTime), std::nullopt) << kind;
    EXPECT_EQ(waitTextChangesAt({ItemWait::nextTry, captionTime}, captionTime), std::nullopt);
    EXPECT_EQ(waitTextChangesAt({ItemWait::serverRest, captionTime - 5s}, captionTime), std::nullopt);
}

} // namespace
} // namespace vormel

#include "ui/queue/rows/HeaderPresenter.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/Languages.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::english;
using fixtures::italian;

class HeaderPresenter : public ::testing::Test
{
protected:
    DownloadItem& add(const DownloadStatus& status)
    {
        group.items.push_back(std::make_shared<DownloadItem>(fixtures::link(u"https://h.example/x"_s), ItemId::make()));
        group.items.back()->setStatus(status);
        return *group.items.back();
    }
    bool hasProgressLine(const std::vector<DownloadStatus>& statuses)
    {
        group.items.clear();
        for (const DownloadStatus& status : statuses)
            add(status);
        return headerLines(GroupTally(group)).testFlag(RowLine::progress);
    }
    HeaderContent content(AppLanguage language = english) { return headerContent(GroupTally(group), language); }

    HeaderContent extraction(AppLanguage language = english)
    {
        HeaderContent whole = content(language);
        addExtraction(whole, group, language);
        return whole;
    }

    DownloadGroup group{u"movie"_s, {}};
};

TEST_F(HeaderPresenter, TellsStatePartsAndSize)
{
    add(DownloadStatus::downloading).setTotalBytes(1024 * 1024);
    add(DownloadStatus::downloading).setTotalBytes(2 * 1024 * 1024);
    for (const auto kind : {DownloadStatus::completed, DownloadStatus::queued, DownloadStatus::paused})
        add(kind);
    EXPECT_EQ(content().summaryText, u"Downloading (2/5)");
    EXPECT_EQ(content().partsText, u"·  5 parts");
    EXPECT_EQ(content().sizeText, u"·  3 MB");
    EXPECT_EQ(content(italian).summaryText, u"Download (2/5)");
    EXPECT_EQ(content(italian).partsText, u"·  5 parti");
}

TEST_F(HeaderPresenter, TellsWhatBecomesOfTheArchive)
{
    DownloadItem& first = add(DownloadStatus::completed);
    add(DownloadStatus::completed);
    EXPECT_EQ(extraction().extractionText, u"");
    first.setExtractionStatus(ExtractionStatus::extracting);
    first.setExtractionProgress(0.42);
    EXPECT_EQ(extraction().extractionText, u"·  Checking / extracting…"); // without a figure that means nothing alone
    first.setAwaitsExtractionTurn(true);
    EXPECT_EQ(extraction().extractionText, u"·  Waiting for its turn to be extracted…");
    first.setExtractionStatus(ExtractionStatus::done);
    EXPECT_EQ(extraction().extractionText, u"·  Extracted");
    EXPECT_EQ(extraction(italian).extractionText, u"·  Estratto");
    EXPECT_EQ(accessibleText(extraction()), u"Completed, 2 parts, Extracted");
    first.setExtractionStatus(ExtractionStatus::failure(u"No space"_s));
    EXPECT_EQ(extraction().extractionText, u"·  Extraction failed: No space");
    EXPECT_EQ(extraction().extraction, ExtractionStatus::failed);
}

TEST_F(HeaderPresenter, LeavesTheSizeOutWhileNoneIsKnown)
{
    add(DownloadStatus::queued);
    add(DownloadStatus::queued);
    EXPECT_EQ(content().sizeText, u"");
}

TEST_F(HeaderPresenter, AFailureOutweighsATransfer)
{
    add(DownloadStatus::failure(u"x"_s));
    add(DownloadStatus::downloading);
    EXPECT_EQ(content().summaryText, u"Error");
    EXPECT_EQ(content().summary, GroupTally::Summary::error);
}

TEST_F(HeaderPresenter, HasAProgressLineWhileSomethingRunsWaitsOrIsStopped)
{
    const DownloadStatus failed = DownloadStatus::failure(u"x"_s);
    using S = DownloadStatus;
    EXPECT_TRUE(hasProgressLine({S::downloading, S::queued}));
    EXPECT_TRUE(hasProgressLine({S::paused, S::completed}));
    EXPECT_TRUE(hasProgressLine({S::stopped, S::completed}));
    EXPECT_FALSE(hasProgressLine({S::stopped, S::queued}));
    EXPECT_FALSE(hasProgressLine({S::completed, failed}));
    EXPECT_FALSE(hasProgressLine({S::resolving, S::queued}));
}

TEST_F(HeaderPresenter, SumsBytesAndSpeeds)
{
    DownloadItem& first = add(DownloadStatus::downloading);
    DownloadItem& second = add(DownloadStatus::downloading);
    first.setBytesReceived(1024);
    second.setBytesReceived(1024);
    EXPECT_EQ(content().byteText, u"2 KB");
    EXPECT_EQ(content().speedText, u"");
    first.setTotalBytes(4096);
    second.setTotalBytes(4096);
    first.setSpeedBytesPerSec(1024);
    second.setSpeedBytesPerSec(2048);
    EXPECT_EQ(content().byteText, u"2 KB / 8 KB");
    EXPECT_EQ(content().speedText, u"3 KB/s");
    EXPECT_EQ(content().progress, 0.25);
}

TEST_F(HeaderPresenter, SpeaksItsWholeHeader)
{
    add(DownloadStatus::paused).setTotalBytes(1024);
    add(DownloadStatus::paused);
    HeaderContent header = content();
    header.title = u"My ·  film"_s;
    EXPECT_EQ(accessibleText(header), u"My ·  film, Paused, 2 parts, 1 KB");
}

TEST_F(HeaderPresenter, TellsWhatIsLackingInALineOfItsOwn)
{
    add(DownloadStatus::completed);
    add(DownloadStatus::completed).setVerification({VerificationResult::sound});
    HeaderContent header = extraction();
    header.title = u"<b>"_s;
    addLack(header, {}, english);
    EXPECT_EQ(header.lines, headerLines(GroupTally(group)));
    EXPECT_EQ(headerToolTip(header), u"<p>&lt;b&gt;<br>Verified — all parts are sound</p>");
    const GroupLack lack{{{3, 3}}, {{5, 6}}, 7, 3};
    addLack(header, lack, english);
    EXPECT_EQ(header.lines, headerLines(GroupTally(group), lack));
    EXPECT_TRUE(header.lines.testFlag(RowLine::lack));
    EXPECT_TRUE(header.canBeRebuilt);
    EXPECT_EQ(accessibleText(header),
              u"<b>, Completed, 2 parts, Verified — all parts are sound, "
              u"Part 3 of 7 failed, 2 parts not in the list; 3 recovery volumes can rebuild them, "
              u"Not in the list: 5 and 6");
    EXPECT_EQ(copiedText(header), u"<b>\nPart 3 of 7 failed, 2 parts not in the list; 3 recovery volumes can rebuild "
                                  u"them\nNot in the list: 5 and 6");
    EXPECT_TRUE(headerToolTip(header).endsWith(u"can rebuild them<br>Not in the list: 5 and 6</p>"));
    addLack(header, {{{3, 3}}, {}, 7, 0}, english);
    EXPECT_FALSE(header.canBeRebuilt);
}

TEST_F(HeaderPresenter, SpeaksAndCopiesWhichPartsAreLacking)
{
    HeaderContent header;
    header.title = u"a"_s;
    addLack(header, {{{1, 1}, {3, 3}, {5, 5}, {7, 8}}, {{9, 10}}, 12, 0}, english);
    EXPECT_TRUE(accessibleText(header).endsWith(u", Failed: 1, 3, 5, 7 and 8, Not in the list: 9 and 10"))
        << qPrintable(accessibleText(header));
    EXPECT_TRUE(copiedText(header).endsWith(u"\nFailed: 1, 3, 5, 7 and 8\nNot in the list: 9 and 10"));
    header = {};
    header.title = u"a"_s;
    EXPECT_EQ(copiedText(header), u"a");
}

TEST_F(HeaderPresenter, HasNoToolTipWhereThereIsNothingToTell)
{
    add(DownloadStatus::queued);
    EXPECT_EQ(headerToolTip(extraction()), u"");
}

TEST_F(HeaderPresenter, TellsWhatAVerificationCameToInPlaceOfTheArchiveStep)
{
    add(DownloadStatus::completed).setExtractionStatus(ExtractionStatus::done);
    DownloadItem& first = add(DownloadStatus::completed);
    first.setVerification({VerificationResult::sound});
    EXPECT_EQ(extraction().extractionText, u"·  Verified — all parts are sound");
    EXPECT_EQ(extraction().verification, VerificationResult::sound);
    EXPECT_EQ(extraction(italian).extractionText, u"·  Verificato — tutte le parti sono integre");
    first.setVerification({});
    EXPECT_EQ(extraction().extractionText, u"·  Extracted");
    EXPECT_EQ(extraction().verification, VerificationResult::none);
}

} // namespace
} // namespace vormel

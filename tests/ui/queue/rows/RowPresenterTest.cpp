#include "ui/queue/rows/RowPresenter.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/Languages.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::english;
using fixtures::italian;
using fixtures::link;
constexpr WallTime presentTime{std::chrono::hours(100)};
constexpr SteadyTime steadyTime{std::chrono::hours(50)};
constexpr Moment present{presentTime, steadyTime};

class RowPresenter : public ::testing::Test
{
protected:
    DownloadItem item{link(u"https://Host.example/file.rar"_s), ItemId::make()};
};

TEST_F(RowPresenter, ShowsTheTotalOnlyWhenItIsKnown)
{
    item.setBytesReceived(1024 * 1024);
    EXPECT_EQ(rowContent(item, AppLanguage::english, {}).byteText, u"1 MB");
    item.setTotalBytes(3 * 1024 * 1024);
    EXPECT_EQ(rowContent(item, AppLanguage::english, {}).byteText, u"1 MB / 3 MB");
}

TEST_F(RowPresenter, CountsDownToTheRecovery)
{
    EXPECT_EQ(recoveryText(item, english), u"");
    EXPECT_FALSE(rowLines(item).testFlag(RowLine::recovery));
    item.setRecoveryCountdown(7);
    EXPECT_EQ(recoveryText(item, english), u"Recovery starts in 7s…");
    EXPECT_EQ(recoveryText(item, italian), u"Recupero tra 7s…");
    EXPECT_TRUE(rowLines(item).testFlag(RowLine::recovery));
}

TEST_F(RowPresenter, HasAProgressLineOnlyWhileDownloading)
{
    for (const auto kind : {DownloadStatus::queued, DownloadStatus::resolving, DownloadStatus::expanding,
                            DownloadStatus::paused, DownloadStatus::stopped, DownloadStatus::completed}) {
        item.setStatus(kind);
        EXPECT_FALSE(rowLines(item).testFlag(RowLine::progress)) << kind;
    }
    item.setStatus(DownloadStatus::downloading);
    EXPECT_TRUE(rowLines(item).testFlag(RowLine::progress));
}

TEST_F(RowPresenter, TellsHowFarTheArchiveStepIs)
{
    EXPECT_EQ(extractionText(item, english), u"");
    item.setExtractionStatus(ExtractionStatus::extracting);
    EXPECT_EQ(extractionText(item, english), u"Checking / extracting…");
    EXPECT_EQ(extractionText(item, italian), u"Verifica / estrazione…");
    EXPECT_EQ(rowContent(item, english, present).extractionProgress, std::nullopt);
    item.setExtractionProgress(0.426);
    EXPECT_EQ(extractionText(item, english), u"43%");
    EXPECT_EQ(rowContent(item, english, present).extractionProgress, 0.426);
    EXPECT_TRUE(rowContent(item, english, present).hasExtractionBar);
}

TEST_F(RowPresenter, TellsHowTheArchiveStepEnded)
{
    item.setExtractionStatus(ExtractionStatus::repairing);
    EXPECT_EQ(extractionText(item, english), u"Repairing with .rev…");
    EXPECT_EQ(extractionText(item, italian), u"Riparazione con .rev…");
    item.setExtractionStatus(ExtractionStatus::done);
    EXPECT_EQ(extractionText(item, english), u"Extracted");
    EXPECT_EQ(extractionText(item, italian), u"Estratto");
    item.setExtractionStatus(ExtractionStatus::failure(u"no volume"_s));
    EXPECT_EQ(extractionText(item, english), u"Extraction failed: no volume");
    EXPECT_EQ(extractionText(item, italian), u"Estrazione fallita: no volume");
}

TEST_F(RowPresenter, CountsTheTimeOfAStepWithoutAnEnd)
{
    using std::chrono::seconds;
    item.setExtractionStatus(ExtractionStatus::repairing);
    EXPECT_EQ(elapsedText(item, presentTime), u"");
    item.setExtractionStartedAt(presentTime - seconds(7));
    EXPECT_EQ(elapsedText(item, presentTime), u"0:07");
    EXPECT_EQ(elapsedText(item, presentTime + seconds(125)), u"2:12");
    EXPECT_EQ(elapsedText(item, presentTime + seconds(6000)), u"100:07");
    EXPECT_EQ(elapsedText(item, presentTime - seconds(60)), u"0:00");
    EXPECT_EQ(rowContent(item, english, present).elapsedText, u"0:07");
    item.setExtractionStatus(ExtractionStatus::extracting);
    item.setExtractionProgress(0.5);
    EXPECT_EQ(rowContent(item, english, present).elapsedText, u"");
}

TEST_F(RowPresenter, MovesWhileItWaitsWithoutAnEnd)
{
    EXPECT_FALSE(isMoving(item));
    item.setExtractionStatus(ExtractionStatus::extracting);
    EXPECT_TRUE(isMoving(item));
    item.setExtractionProgress(0.1);
    EXPECT_FALSE(isMoving(item));
    item.setExtractionStatus(ExtractionStatus::repairing);
    EXPECT_TRUE(isMoving(item));
    item.setExtractionStatus(ExtractionStatus::done);
    EXPECT_FALSE(isMoving(item));
    item.setStatus(DownloadStatus::resolving);
    EXPECT_TRUE(isMoving(item));
}

TEST_F(RowPresenter, AFailedArchiveStepHasRoomForTwoLinesAndARetry)
{
    item.setExtractionStatus(ExtractionStatus::failure(u"x"_s));
    EXPECT_EQ(rowLines(item), RowLines(RowLine::failure));
    EXPECT_EQ(rowContent(item, english, present).retryText, u"Retry");
    EXPECT_EQ(rowContent(item, italian, present).retryText, u"Riprova");
}

TEST_F(RowPresenter, StatusTextFollowsTheLanguage)
{
    item.setStatus(DownloadStatus::paused);
    EXPECT_EQ(rowContent(item, english, present).statusText, u"Paused");
    EXPECT_EQ(rowContent(item, italian, present).statusText, u"In pausa");
}

TEST_F(RowPresenter, SpeaksTheWholeRow)
{
    item.setStatus(DownloadStatus::downloading);
    item.setBytesReceived(2048);
    item.setSpeedBytesPerSec(1024);
    EXPECT_EQ(accessibleText(rowContent(item, english, present)), u"file.rar, Downloading, 2 KB, 1 KB/s, Host.example");
}

TEST_F(RowPresenter, SpeaksOfSizeAndWaitBehindTheHost)
{
    item.setBytesReceived(1024);
    item.setTotalBytes(4096);
    item.setWait({ItemWait::nextTry, steadyTime + std::chrono::seconds(12)});
    EXPECT_EQ(accessibleText(rowContent(item, english, present)),
              u"file.rar, Queued, Host.example, Connection lost, trying again in 12 s, 1 KB of 4 KB");
}

TEST_F(RowPresenter, TellsUntilWhenItsTextsStay)
{
    EXPECT_EQ(rowContent(item, english, present).staysUntil, std::nullopt);
    item.setWait({ItemWait::nextTry, steadyTime + std::chrono::milliseconds(11500)});
    EXPECT_EQ(rowContent(item, english, present).staysUntil, steadyTime + std::chrono::milliseconds(500));
}

TEST_F(RowPresenter, AnErrorHasOneLineAndALongOneHasTwo)
{
    item.setStatus(DownloadStatus::failure(u"x"_s.repeated(32)));
    EXPECT_EQ(rowLines(item), RowLines(RowLine::error));
    item.setStatus(DownloadStatus::failure(u"x"_s.repeated(33)));
    EXPECT_EQ(rowLines(item), RowLine::error | RowLine::longError);
    item.setStatus(DownloadStatus::paused);
    EXPECT_EQ(rowLines(item), RowLines());
}

TEST_F(RowPresenter, CopiesTheNameWithWhatFailedOfItOrElseTheLink)
{
    EXPECT_EQ(copiedText(item, english), u"https://Host.example/file.rar");
    item.setStatus(DownloadStatus::failure(u"no such file"_s));
    EXPECT_EQ(copiedText(item, english), u"file.rar\nError: no such file");
    EXPECT_EQ(copiedText(item, italian), u"file.rar\nErrore: no such file");
    item.setStatus(DownloadStatus::completed);
    item.setExtractionStatus(ExtractionStatus::failure(u"no volume"_s));
    EXPECT_EQ(copiedText(item, english), u"file.rar\nExtraction failed: no volume");
    EXPECT_EQ(copiedText(item, italian), u"file.rar\nEstrazione fallita: no volume");
}

TEST_F(RowPresenter, ToolTipHasTheHostAndTheSizeThatMayBeElidedAndNoCountdown)
{
    item.setTotalBytes(4096);
    item.setWait({ItemWait::nextTry, steadyTime + std::chrono::seconds(12)});
    EXPECT_EQ(rowToolTip(rowContent(item, english, present)), u"<p>file.rar<br>Host.example · 4 KB</p>");
}

TEST_F(RowPresenter, ToolTipHasNoEmptyLineWhereHostAndSizeAreUnknown)
{
    RowContent content = rowContent(item, english, present);
    content.host.clear();
    ASSERT_EQ(content.figuresText, u"");
    EXPECT_EQ(rowToolTip(content), u"<p>file.rar</p>");
}

TEST_F(RowPresenter, ToolTipHasTheWholeFailureAndNoMarkupFromOutside)
{
    const QString message = u"<b>long</b> "_s.repeated(20);
    item.setStatus(DownloadStatus::failure(message));
    EXPECT_TRUE(rowToolTip(rowContent(item, english, present)).contains(message.toHtmlEscaped()));
    EXPECT_FALSE(rowToolTip(rowContent(item, english, present)).contains(u"<b>"));
    EXPECT_TRUE(accessibleText(rowContent(item, english, present)).contains(message));
}

TEST_F(RowPresenter, TellsWhatAVerificationCameTo)
{
    struct Told
    {
        VerificationResult result;
        QString inEnglish;
        QString inItalian;
    };
    const QString detail = u"a.part3.rar"_s;
    const QList<Told> all{
        {{VerificationResult::running}, u"Verifying…"_s, u"Verifica in corso…"_s},
        {{VerificationResult::sound},
         u"Verified — all parts are sound"_s,
         u"Verificato — tutte le parti sono integre"_s},
        {{VerificationResult::running, 0, {}, {}, 42}, u"Verifying… 42%"_s, u"Verifica in corso… 42%"_s},
        {{VerificationResult::fetchedAgain, 1, {}, {3}},
         u"Verified — part 3 is damaged or missing, and downloaded again"_s,
         u"Verificato — la parte 3 è danneggiata o manca, e viene riscaricata"_s},
        {{VerificationResult::fetchedAgain, 2, {}, {3, 7}},
         u"Verified — parts 3 and 7 are damaged or missing, and downloaded again"_s,
         u"Verificato — le parti 3 e 7 sono danneggiate o mancano, e vengono riscaricate"_s},
        {{VerificationResult::fetchedAgain, 7, {}, {3, 4, 5, 7, 9, 10, 12}},
         u"Verified — 7 damaged or missing parts are downloaded again"_s,
         u"Verificato — 7 parti danneggiate o mancanti vengono riscaricate"_s},
        {{VerificationResult::damaged, 1, detail},
         u"Verified — damaged or missing, and not in the list: a.part3.rar"_s,
         u"Verificato — danneggiate o mancanti, e non nella lista: a.part3.rar"_s},
        {{VerificationResult::passwordNeeded},
         u"Not verified — the archive needs a password"_s,
         u"Non verificato — l'archivio richiede una password"_s},
        {{VerificationResult::busy},
         u"Not verified — the archive is being extracted"_s,
         u"Non verificato — l'archivio è in estrazione"_s},
        {{VerificationResult::failed, 0, u"code 9"_s}, u"Verification failed: code 9"_s, u"Verifica fallita: code 9"_s},
    };
    EXPECT_FALSE(rowLines(item).testFlag(RowLine::verification));
    EXPECT_EQ(rowContent(item, english, present).verificationText, u"");
    for (const Told& told : all) {
        item.setVerification(told.result);
        const RowContent content = rowContent(item, english, present);
        EXPECT_TRUE(content.lines.testFlag(RowLine::verification));
        EXPECT_EQ(content.verification, told.result.kind);
        EXPECT_EQ(content.verificationText, told.inEnglish);
        EXPECT_EQ(rowContent(item, italian, present).verificationText, told.inItalian);
        EXPECT_TRUE(accessibleText(content).contains(told.inEnglish));
        EXPECT_TRUE(rowToolTip(content).contains(told.inEnglish.toHtmlEscaped()));
    }
}

} // namespace
} // namespace vormel

#include "engine/OneTransfer.h"
#include "engine/transfer/TransferTexts.h"
#include "fixtures/EngineOnScript.h"
#include "fixtures/EventLoop.h"

#include <QFile>

#include <gtest/gtest.h>

#include <cerrno>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;
using namespace vormel;
using namespace vormel::fixtures;

namespace {

class TransferCompletionTest : public ::testing::Test
{
protected:
    ScriptedHttpClient::Exchange& server() { return engine.http.last(); }
    [[nodiscard]] std::size_t requests() const { return engine.http.exchanges().size(); }
    void answer(int status, const std::vector<HttpHeader>& headers, const QByteArray& body)
    {
        server().head(status, headers);
        server().data(body);
        server().finish();
        turnEventLoop();
    }
    void loseConnection()
    {
        server().fail(HttpError::Kind::connectionLost);
        turnEventLoop();
    }
    void failPage(const QByteArray& page) { answer(403, {{"Content-Type", "text/html"}}, page); }

    EngineOnScript engine;
};

const QString pageText =
    u"Server returned a web page, not the file — the link may be expired or need a premium account."_s;

} // namespace

TEST_F(TransferCompletionTest, FailsWithTheTextOfAPage)
{
    const ItemPtr item = engine.resume(rarLink, "old");
    failPage("<html>sorry</html>");
    EXPECT_EQ(item->status(), DownloadStatus::failure(pageText));
    EXPECT_FALSE(engine.sandbox.exists(partFile));
    engine.clock.advance(1h);
    EXPECT_EQ(requests(), 1U);
}

TEST_F(TransferCompletionTest, RecognisesAGeographicBlockInAnyLetterCase)
{
    const ItemPtr item = engine.start(rarLink);
    failPage("<h1>GeoLocation denied</h1>");
    EXPECT_EQ(item->status(),
              DownloadStatus::failure(
                  u"Download blocked: the server does not allow access from your country (geo-restricted)."_s));
}

TEST_F(TransferCompletionTest, RecognisesABlockedCountryAndSpeaksItalian)
{
    engine.settings().language.set(AppLanguage::italian);
    const ItemPtr item = engine.start(rarLink);
    failPage("Blocked Country");
    EXPECT_EQ(item->status(),
              DownloadStatus::failure(
                  u"Download bloccato: il server non consente l'accesso dal tuo paese (geo-restriction)."_s));
}

TEST_F(TransferCompletionTest, TellsAnyOtherPageInItalian)
{
    engine.settings().language.set(AppLanguage::italian);
    const ItemPtr item = engine.start(rarLink);
    failPage("\xff\xfe geolocation");
    EXPECT_EQ(item->status().message(), u"Il server ha restituito una pagina web, non il file — il link "
                                        u"potrebbe essere scaduto o richiedere un account premium."_s);
}

TEST_F(TransferCompletionTest, UnderstandsAPageThatIsCutInsideACharacter)
{
    EXPECT_TRUE(webPageText("geolocation \xe2\x82", AppLanguage::english).startsWith(u"Download blocked"_s));
}

TEST_F(TransferCompletionTest, TriesALostConnectionAgainAfterGrowingDelays)
{
    const ItemPtr item = engine.start(rarLink);
    for (const auto delay : {2s, 4s, 6s, 8s, 10s, 10s, 10s, 10s}) {
        loseConnection();
        EXPECT_EQ(item->status(), DownloadStatus::queued);
        const std::size_t before = requests();
        engine.clock.advance(delay - 1ms);
        EXPECT_EQ(requests(), before);
        engine.clock.advance(1ms);
        EXPECT_EQ(requests(), before + 1);
        EXPECT_EQ(item->status(), DownloadStatus::downloading);
    }
    loseConnection();
    EXPECT_EQ(item->status(), DownloadStatus::failure(u"The connection to the server was lost."_s));
    EXPECT_EQ(requests(), 9U);
}

TEST_F(TransferCompletionTest, TreatsAllNetworkErrorsAlike)
{
    const ItemPtr item = engine.start(rarLink);
    for (const HttpError::Kind kind :
         {HttpError::Kind::timedOut, HttpError::Kind::cannotFindHost, HttpError::Kind::certificateUntrusted,
          HttpError::Kind::tooManyRedirects, HttpError::Kind::badServerResponse}) {
        server().fail(kind);
        turnEventLoop();
        EXPECT_EQ(item->status(), DownloadStatus::queued);
        engine.clock.advance(10s);
    }
}

TEST_F(TransferCompletionTest, ResumesAfterALostConnection)
{
    const ItemPtr item = engine.start(rarLink);
    server().head(200, {{"Content-Length", "6"}});
    server().data("abc");
    loseConnection();
    engine.clock.advance(2s);
    EXPECT_EQ(server().header("Range"), "bytes=3-");
    answer(206, {{"Content-Range", "bytes 3-5/6"}}, "def");
    EXPECT_EQ(engine.sandbox.read(u"Downloads/x.rar"_s), "abcdef");
    EXPECT_EQ(item->status(), DownloadStatus::completed);
}

TEST_F(TransferCompletionTest, EarnsTheBudgetBackWithATick)
{
    const ItemPtr item = engine.start(rarLink);
    for (int i = 0; i < 8; ++i) {
        loseConnection();
        engine.clock.advance(10s);
    }
    server().head(200, {{"Content-Length", "100"}});
    engine.clock.advance(500ms);
    server().data("x");
    turnEventLoop();
    loseConnection();
    EXPECT_EQ(item->status(), DownloadStatus::queued);
    engine.clock.advance(2s);
    EXPECT_EQ(requests(), 10U);
}

TEST_F(TransferCompletionTest, TriesAShortFileEightTimesAndThenTellsTheNumbers)
{
    engine.settings().language.set(AppLanguage::italian);
    const ItemPtr item = engine.add(rarLink);
    engine.begin(item, QByteArray(999, 'x'));
    item->setTotalBytes(1000);
    engine.manager().commands().startAll();
    turnEventLoop();
    for (const auto delay : {2s, 4s, 6s, 8s, 10s, 10s, 10s, 10s, 10s}) {
        ASSERT_EQ(item->status(), DownloadStatus::downloading);
        EXPECT_EQ(server().header("Range"), "bytes=999-");
        answer(206, {{"Content-Range", "bytes 999-999/1000"}}, "");
        EXPECT_EQ(item->bytesReceived(), 999);
        EXPECT_DOUBLE_EQ(item->progress(), 0.999);
        engine.clock.advance(delay);
    }
    EXPECT_EQ(item->status(), DownloadStatus::failure(u"Incomplete download (999 bytes of 1,000 bytes) — retry"_s));
    EXPECT_EQ(requests(), 9U);
    EXPECT_EQ(engine.sandbox.read(partFile).size(), 999);
}

TEST_F(TransferCompletionTest, CountsATransferOfUnknownLengthAsComplete)
{
    const ItemPtr item = engine.start(rarLink);
    answer(200, {}, "whatever came");
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_EQ(engine.sandbox.read(u"Downloads/x.rar"_s), "whatever came");
}

TEST_F(TransferCompletionTest, NeverCompletesAFileLargerThanToldAndFetchesItNotForEver)
{
    const ItemPtr item = engine.start(rarLink);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(item->status(), DownloadStatus::downloading);
        EXPECT_FALSE(server().header("Range"));
        server().head(200, {{"Content-Length", "5"}});
        // A tick earns the whole budget back.
        engine.clock.advance(1s);
        server().data("1234");
        server().data("56");
        turnEventLoop();
        EXPECT_EQ(item->bytesReceived(), 0);
        engine.clock.advance(10s);
    }
    EXPECT_EQ(item->status(), DownloadStatus::failure(u"The server sent more than it had announced — retry"_s));
    EXPECT_EQ(requests(), 2U);
    EXPECT_TRUE(engine.sandbox.files(u"Downloads"_s).isEmpty());
    engine.manager().commands().retryItem(*item);
    turnEventLoop();
    answer(200, {{"Content-Length", "5"}}, "12345");
    EXPECT_EQ(engine.sandbox.read(u"Downloads/x.rar"_s), "12345");
}

TEST_F(TransferCompletionTest, KeepsWhatItHadWhenTheRestIsTooLong)
{
    const ItemPtr item = engine.add(rarLink);
    engine.begin(item, "good");
    item->setTotalBytes(8);
    engine.manager().commands().startAll();
    turnEventLoop();
    server().head(206, {{"Content-Range", "bytes 4-7/8"}});
    server().data("en");
    server().data("d!?");
    turnEventLoop();
    EXPECT_EQ(engine.sandbox.read(partFile), "good");
    EXPECT_EQ(item->bytesReceived(), 4);
    engine.clock.advance(10s);
    EXPECT_EQ(server().header("Range"), "bytes=4-");
    answer(206, {{"Content-Range", "bytes 4-7/8"}}, "end!");
    EXPECT_EQ(engine.sandbox.read(u"Downloads/x.rar"_s), "goodend!");
}

TEST_F(TransferCompletionTest, BeginsAPartFileAnewThatIsLongerThanItsSource)
{
    const ItemPtr item = engine.add(rarLink);
    engine.begin(item, "much too long");
    item->setTotalBytes(8);
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_FALSE(server().header("Range"));
    answer(200, {{"Content-Length", "8"}}, "goodend!");
    EXPECT_EQ(engine.sandbox.read(u"Downloads/x.rar"_s), "goodend!");
}

TEST_F(TransferCompletionTest, NeverCompletesAnErrorAnswer)
{
    const ItemPtr item = engine.start(rarLink);
    for (int i = 0; i < 9; ++i) {
        answer(404, {{"Content-Type", "text/plain"}, {"Content-Length", "9"}}, "not found");
        EXPECT_EQ(engine.sandbox.read(partFile), "");
        engine.clock.advance(10s);
    }
    EXPECT_EQ(item->status(),
              DownloadStatus::failure(u"The server answered with error 404 instead of the file — retry"_s));
    EXPECT_EQ(item->totalBytes(), 0);
    EXPECT_EQ(requests(), 9U);
    EXPECT_FALSE(engine.sandbox.exists(u"Downloads/x.rar"_s));
}

TEST_F(TransferCompletionTest, KeepsTheGoodBytesThroughErrorAnswersOnAResume)
{
    const ItemPtr item = engine.add(rarLink);
    engine.begin(item, "good");
    item->setTotalBytes(8);
    engine.manager().commands().startAll();
    turnEventLoop();
    for (int i = 0; i < 8; ++i) {
        answer(503, {{"Content-Type", "text/plain"}}, "try later");
        EXPECT_EQ(engine.sandbox.read(partFile), "good");
        EXPECT_EQ(item->totalBytes(), 8);
        engine.clock.advance(10s);
    }
    answer(206, {{"Content-Range", "bytes 4-7/8"}}, "end!");
    EXPECT_EQ(engine.sandbox.read(u"Downloads/x.rar"_s), "goodend!");
    EXPECT_EQ(item->status(), DownloadStatus::completed);
}

TEST_F(TransferCompletionTest, TellsTheNumbersWhenErrorAnswersLeaveAFileShort)
{
    const ItemPtr item = engine.add(rarLink);
    engine.begin(item, "good");
    item->setTotalBytes(8);
    engine.manager().commands().startAll();
    turnEventLoop();
    for (int i = 0; i < 9; ++i) {
        answer(503, {{"Content-Type", "text/plain"}}, "try later");
        engine.clock.advance(10s);
    }
    EXPECT_EQ(item->status(), DownloadStatus::failure(u"Incomplete download (4 bytes of 8 bytes) — retry"_s));
}

TEST_F(TransferCompletionTest, NumbersAFileWhoseNameIsTaken)
{
    const ItemPtr item = engine.start(rarLink);
    engine.sandbox.write(u"Downloads/x.rar"_s, "first");
    answer(200, {{"Content-Length", "6"}}, "second");
    EXPECT_EQ(item->localPath(), engine.sandbox.path(u"Downloads/x (1).rar"_s));
    EXPECT_EQ(item->filename(), u"x.rar"_s);
    EXPECT_EQ(engine.sandbox.read(u"Downloads/x.rar"_s), "first");
    EXPECT_EQ(engine.sandbox.read(u"Downloads/x (1).rar"_s), "second");
}

TEST_F(TransferCompletionTest, FailsWhenTheFileCannotBeMovedAndKeepsItsBytes)
{
    engine.sandbox.write(u"Downloads/set"_s, "a file where the folder of the set should be");
    const ItemPtr item = engine.start(u"http://h/get"_s);
    answer(200, {{"Content-Disposition", "filename=set.part1.rar"}}, "abc");
    EXPECT_EQ(item->status(), DownloadStatus::failure(u"A file stands where the folder of this download should be."_s));
    EXPECT_EQ(engine.sandbox.read(u"Downloads/get.download"_s), "abc");
    EXPECT_EQ(engine.sandbox.read(u"Downloads/set"_s), "a file where the folder of the set should be");
}

TEST_F(TransferCompletionTest, BringsARecoveryVolumeToItsArchive)
{
    engine.settings().downloadRevFiles.set(true);
    const ItemPtr rar = engine.add(u"http://h/m.part1.rar"_s);
    const QString elsewhere = engine.sandbox.write(u"elsewhere/m.part1.rar"_s, "rar");
    engine.sandbox.write(u"elsewhere/m.part1.rev"_s, "stale");
    const ItemPtr missing = engine.add(u"http://h/m.part2.rar"_s);
    const ItemPtr rev = engine.start(u"http://h/m.part1.rev"_s);
    rar->setStatus(DownloadStatus::completed);
    rar->setLocalPath(elsewhere);
    missing->setStatus(DownloadStatus::failure(u"gone"_s));
    auto& exchange = *std::find_if(engine.http.exchanges().begin(), engine.http.exchanges().end(), [](const auto& e) {
                          return e->request.url.path().endsWith(u".rev"_s);
                      })->get();
    exchange.head(200, {{"Content-Length", "5"}});
    exchange.data("fresh");
    exchange.finish();
    turnEventLoop();
    EXPECT_EQ(rev->localPath(), engine.sandbox.path(u"elsewhere/m.part1.rev"_s));
    EXPECT_EQ(engine.sandbox.read(u"elsewhere/m.part1.rev"_s), "fresh");
    EXPECT_EQ(engine.sandbox.read(u"Trash/m.part1.rev"_s), "stale");
    // The arrival starts the archive again, by its first volume.
    EXPECT_FALSE(rar->extractionStatus() == ExtractionStatus::idle);
}

TEST_F(TransferCompletionTest, HandsAFinishedFileToTheArchiveStepOnlyIfAsked)
{
    engine.settings().autoExtract.set(false);
    const ItemPtr item = engine.start(rarLink);
    answer(200, {}, "x");
    EXPECT_EQ(item->status(), DownloadStatus::completed);
    EXPECT_EQ(item->extractionStatus(), ExtractionStatus::idle);
}

TEST_F(TransferCompletionTest, StartsTheNextItemWhenOneEnds)
{
    engine.settings().maxConcurrentDownloads.set(1);
    const auto items = engine.add({u"http://h/a"_s, u"http://h/b"_s});
    engine.manager().commands().startAll();
    turnEventLoop();
    EXPECT_EQ(items[1]->status(), DownloadStatus::queued);
    answer(200, {}, "x");
    EXPECT_EQ(items[1]->status(), DownloadStatus::downloading);
}

TEST_F(TransferCompletionTest, ForgetsARetryOfARemovedItem)
{
    const ItemPtr item = engine.start(rarLink);
    loseConnection();
    engine.manager().commands().removeItems({item->id()});
    engine.clock.advance(1min);
    EXPECT_EQ(requests(), 1U);
    EXPECT_TRUE(engine.manager().items().empty());
}

TEST_F(TransferCompletionTest, ItsTextsExistInBothLanguages)
{
    const auto in = [this](const TransferEnd& end, AppLanguage language) {
        engine.settings().language.set(language);
        return endText(end, engine.settings());
    };
    for (int kind = 0; kind <= static_cast<int>(HttpError::Kind::other); ++kind) {
        TransferEnd end;
        end.reason = TransferEnd::Reason::networkError;
        end.error.kind = static_cast<HttpError::Kind>(kind);
        EXPECT_NE(in(end, AppLanguage::english), in(end, AppLanguage::italian));
    }
    for (const auto reason :
         {TransferEnd::Reason::errorAnswer, TransferEnd::Reason::foreignRange, TransferEnd::Reason::sourceChanged,
          TransferEnd::Reason::notWritten, TransferEnd::Reason::webPage, TransferEnd::Reason::overlong}) {
        TransferEnd end;
        end.reason = reason;
        end.systemError = ENOSPC;
        EXPECT_NE(in(end, AppLanguage::english), in(end, AppLanguage::italian));
    }
}

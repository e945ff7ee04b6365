#include "fixtures/EngineOnScript.h"
#include "ui/queue/rows/PaintedRow.h"

#include <gtest/gtest.h>

#include <functional>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::PaintedRow;
using S = DownloadStatus;
using E = ExtractionStatus;

constexpr Moment now{WallTime(std::chrono::hours(100)), SteadyTime(std::chrono::hours(50))};
constexpr qint64 mebibyte = 1024 * 1024;

struct Case
{
    const char* name;
    std::function<void(DownloadItem&)> set;
    const char* english; ///< texts
    const char* italian;
    const char* glyphs;
    const char* bar = "";
};

void download(DownloadItem& item, qint64 received, qint64 total, double speed)
{
    item.setStatus(S::downloading);
    item.setBytesReceived(received);
    item.setTotalBytes(total);
    item.setProgress(total > 0 ? static_cast<double>(received) / static_cast<double>(total) : 0);
    item.setSpeedBytesPerSec(speed);
}

void extract(DownloadItem& item, const ExtractionStatus& status, int secondsAgo, double progress = 0)
{
    item.setStatus(S::completed);
    item.setExtractionStatus(status);
    item.setExtractionProgress(progress);
    if (secondsAgo >= 0)
        item.setExtractionStartedAt(now.wall - std::chrono::seconds(secondsAgo));
}

#define COMPLETED "checkmark.circle.fill/green folder/secondary arrow.down.circle/secondary xmark/secondary"

const Case cases[] = {
    {"queued", [](DownloadItem& item) { item.setStatus(S::queued); },
     "**film.rar**/text|Queued/secondary|Host.example/tertiary",
     "**film.rar**/text|In coda/secondary|Host.example/tertiary",
     "clock/secondary stop.fill/secondary arrow.triangle.2.circlepath/secondary xmark/secondary"},
    {"resolving", [](DownloadItem& item) { item.setStatus(S::resolving); },
     "**film.rar**/text|Resolving.../secondary|Host.example/tertiary",
     "**film.rar**/text|Risoluzione.../secondary|Host.example/tertiary", "xmark/secondary"},
    {"expanding", [](DownloadItem& item) { item.setStatus(S::expanding); },
     "**film.rar**/text|Reading container.../secondary|Host.example/tertiary",
     "**film.rar**/text|Lettura container.../secondary|Host.example/tertiary",
     "archivebox.fill/orange xmark/secondary"},
    {"paused", [](DownloadItem& item) { item.setStatus(S::paused); },
     "**film.rar**/text|Paused/secondary|Host.example/tertiary",
     "**film.rar**/text|In pausa/secondary|Host.example/tertiary",
     "pause.circle.fill/orange play.fill/secondary stop.fill/secondary arrow.triangle.2.circlepath/secondary "
     "xmark/secondary"},
    {"stopped", [](DownloadItem& item) { item.setStatus(S::stopped); },
     "**film.rar**/text|Stopped/secondary|Host.example/tertiary",
     "**film.rar**/text|Fermato/secondary|Host.example/tertiary",
     "stop.circle.fill/secondary play.fill/secondary xmark/secondary"},
    {"completed", [](DownloadItem& item) { item.setStatus(S::completed); },
     "**film.rar**/text|Completed/secondary|Host.example/tertiary",
     "**film.rar**/text|Completato/secondary|Host.example/tertiary", COMPLETED},
    {"failed", [](DownloadItem& item) { item.setStatus(S::failure(u"no such file"_s)); },
     "**film.rar**/text|Error: no such file/red|Host.example/tertiary",
     "**film.rar**/text|Errore: no such file/red|Host.example/tertiary",
     "exclamationmark.circle.fill/red arrow.clockwise/secondary xmark/secondary"},
    {"failedAndSoonRecovered",
     [](DownloadItem& item) {
         item.setStatus(S::failure(u"x"_s));
         item.setRecoveryCountdown(7);
     },
     "**film.rar**/text|Error: x/red|Recovery starts in 7s…/orange|Host.example/tertiary",
     "**film.rar**/text|Errore: x/red|Recupero tra 7s…/orange|Host.example/tertiary",
     "exclamationmark.circle.fill/red arrow.clockwise/secondary xmark/secondary bandage.fill/orange"},
    {"pausedHalfWay",
     [](DownloadItem& item) {
         download(item, mebibyte, 4 * mebibyte, 0);
         item.setStatus(S::paused);
     },
     "**film.rar**/text|Paused/secondary|Host.example/tertiary|·/tertiary|1 MB of 4 MB/secondary",
     "**film.rar**/text|In pausa/secondary|Host.example/tertiary|·/tertiary|1 MB di 4 MB/secondary",
     "pause.circle.fill/orange play.fill/secondary stop.fill/secondary arrow.triangle.2.circlepath/secondary "
     "xmark/secondary"},
    {"finished",
     [](DownloadItem& item) {
         download(item, 4 * mebibyte, 4 * mebibyte, 0);
         item.setStatus(S::completed);
     },
     "**film.rar**/text|Completed/secondary|Host.example/tertiary|·/tertiary|4 MB/secondary",
     "**film.rar**/text|Completato/secondary|Host.example/tertiary|·/tertiary|4 MB/secondary", COMPLETED},
    {"queuedToBeTriedAgain",
     [](DownloadItem& item) {
         download(item, mebibyte, 4 * mebibyte, 0);
         item.setStatus(S::queued);
         item.setWait({ItemWait::nextTry, now.steady + std::chrono::seconds(12)});
     },
     "**film.rar**/text|Queued/secondary|Host.example/tertiary|·/tertiary|"
     "Connection lost, trying again in 12 s/secondary|·/tertiary|1 MB of 4 MB/secondary",
     "**film.rar**/text|In coda/secondary|Host.example/tertiary|·/tertiary|"
     "Connessione persa, nuovo tentativo tra 12 s/secondary|·/tertiary|1 MB di 4 MB/secondary",
     "clock/secondary stop.fill/secondary arrow.triangle.2.circlepath/secondary xmark/secondary"},
    {"downloading", [](DownloadItem& item) { download(item, mebibyte, 4 * mebibyte, 2 * 1024 * 1024); },
     "**film.rar**/text|Downloading/secondary|1 MB / 4 MB/secondary|2 MB/s/secondary|Host.example/tertiary",
     "**film.rar**/text|Download/secondary|1 MB / 4 MB/secondary|2 MB/s/secondary|Host.example/tertiary",
     "arrow.down.circle.fill/blue pause.fill/orange stop.fill/secondary xmark/secondary", "0.25/blue"},
    {"downloadingWithoutASpeedYet", [](DownloadItem& item) { download(item, 0, 4 * mebibyte, 0); },
     "**film.rar**/text|Downloading/secondary|Zero KB / 4 MB/secondary|Host.example/tertiary",
     "**film.rar**/text|Download/secondary|Zero KB / 4 MB/secondary|Host.example/tertiary",
     "arrow.down.circle.fill/blue pause.fill/orange stop.fill/secondary xmark/secondary", "empty"},
    {"downloadingWhatHasNoKnownSize", [](DownloadItem& item) { download(item, mebibyte, 0, 1024); },
     "**film.rar**/text|Downloading/secondary|1 MB/secondary|1 KB/s/secondary|Host.example/tertiary",
     "**film.rar**/text|Download/secondary|1 MB/secondary|1 KB/s/secondary|Host.example/tertiary",
     "arrow.down.circle.fill/blue pause.fill/orange stop.fill/secondary xmark/secondary", "empty"},
    {"extractingForAWhile", [](DownloadItem& item) { extract(item, E::extracting, 67); },
     "**film.rar**/text|Completed/secondary|Checking / extracting…/secondary|1:07/secondary|Host.example/tertiary",
     "**film.rar**/text|Completato/secondary|Verifica / estrazione…/secondary|1:07/secondary|Host.example/tertiary",
     COMPLETED " archivebox.fill/secondary", "0.30/blue"},
    {"extractingHalf", [](DownloadItem& item) { extract(item, E::extracting, 67, 0.5); },
     "**film.rar**/text|Completed/secondary|50%/secondary|Host.example/tertiary",
     "**film.rar**/text|Completato/secondary|50%/secondary|Host.example/tertiary",
     COMPLETED " archivebox.fill/secondary", "0.50/blue"},
    {"repairing", [](DownloadItem& item) { extract(item, E::repairing, 3); },
     "**film.rar**/text|Completed/secondary|Repairing with .rev…/orange|0:03/orange|Host.example/tertiary",
     "**film.rar**/text|Completato/secondary|Riparazione con .rev…/orange|0:03/orange|Host.example/tertiary",
     COMPLETED " bandage.fill/orange", "0.30/orange"},
    {"repairingSinceNobodyKnows", [](DownloadItem& item) { extract(item, E::repairing, -1); },
     "**film.rar**/text|Completed/secondary|Repairing with .rev…/orange|Host.example/tertiary",
     "**film.rar**/text|Completato/secondary|Riparazione con .rev…/orange|Host.example/tertiary",
     COMPLETED " bandage.fill/orange", "0.30/orange"},
    {"waitingToBeExtracted",
     [](DownloadItem& item) {
         extract(item, E::extracting, 3);
         item.setAwaitsExtractionTurn(true);
     },
     "**film.rar**/text|Completed/secondary|Waiting for its turn to be extracted…/secondary|Host.example/tertiary",
     "**film.rar**/text|Completato/secondary|In attesa del turno di estrazione…/secondary|Host.example/tertiary",
     COMPLETED " archivebox.fill/secondary", "0.30/blue"},
    {"verified",
     [](DownloadItem& item) {
         item.setStatus(S::completed);
         item.setVerification({VerificationResult::sound});
     },
     "**film.rar**/text|Completed/secondary|Verified — all parts are sound/green|Host.example/tertiary",
     "**film.rar**/text|Completato/secondary|Verificato — tutte le parti sono integre/green|Host.example/tertiary",
     COMPLETED " checkmark.seal/green"},
    {"verifiedAndFetchedAgain",
     [](DownloadItem& item) {
         item.setStatus(S::queued);
         item.setVerification({VerificationResult::fetchedAgain, 2, {}, {3, 7}});
     },
     "**film.rar**/text|Queued/secondary|Verified — parts 3 and 7 are damaged or missing, and downloaded again/orange|"
     "Host.example/tertiary",
     "**film.rar**/text|In coda/secondary|Verificato — le parti 3 e 7 sono danneggiate o mancano, e vengono "
     "riscaricate/orange|"
     "Host.example/tertiary",
     "clock/secondary stop.fill/secondary arrow.triangle.2.circlepath/secondary xmark/secondary checkmark.seal/orange"},
    {"notVerified",
     [](DownloadItem& item) {
         item.setStatus(S::completed);
         item.setVerification({VerificationResult::failed, 0, u"no tool"_s});
     },
     "**film.rar**/text|Completed/secondary|Verification failed: no tool/red|Host.example/tertiary",
     "**film.rar**/text|Completato/secondary|Verifica fallita: no tool/red|Host.example/tertiary",
     COMPLETED " checkmark.seal/red"},
    {"extracted", [](DownloadItem& item) { extract(item, E::done, 3); },
     "**film.rar**/text|Completed/secondary|Extracted/green|Host.example/tertiary",
     "**film.rar**/text|Completato/secondary|Estratto/green|Host.example/tertiary", COMPLETED " archivebox.fill/green"},
    {"notExtracted", [](DownloadItem& item) { extract(item, E::failure(u"no volume"_s), 3); },
     "**film.rar**/text|Completed/secondary|Extraction failed: no volume/red|Retry/text|Host.example/tertiary",
     "**film.rar**/text|Completato/secondary|Estrazione fallita: no volume/red|Riprova/text|Host.example/tertiary",
     COMPLETED " exclamationmark.triangle.fill/red arrow.clockwise/text"},
};

class RowPainting : public ::testing::TestWithParam<Case>
{
protected:
    RowPainting() { GetParam().set(item); }
    PaintedRow painted(AppLanguage language, const PaintedRow::Look& look = {}) const
    {
        return {rowContent(item, language, now), look};
    }

    DownloadItem item{fixtures::link(u"https://Host.example/film.rar"_s), ItemId::make()};
};

TEST_P(RowPainting, ShowsItsTextsInTheirColours)
{
    EXPECT_EQ(painted(AppLanguage::english).texts().join(u'|').toStdString(), GetParam().english);
    EXPECT_EQ(painted(AppLanguage::italian).texts().join(u'|').toStdString(), GetParam().italian);
}

TEST_P(RowPainting, ShowsItsIconsInTheirColours)
{
    EXPECT_EQ(painted(AppLanguage::english).glyphs().join(u' ').toStdString(), GetParam().glyphs);
}

TEST_P(RowPainting, FillsItsBar)
{
    EXPECT_EQ(painted(AppLanguage::english).bar().toStdString(), GetParam().bar);
}

TEST_P(RowPainting, ASelectedRowHasOneColourForAll)
{
    PaintedRow::Look look;
    look.isSelected = true;
    const PaintedRow row = painted(AppLanguage::english, look);
    EXPECT_EQ(row.texts().size(), QString::fromUtf8(GetParam().english).count(u'|') + 1);
    for (const QString& part : row.texts() + row.glyphs())
        EXPECT_TRUE(part.endsWith(u"/highlightedText")) << qPrintable(part);
}

TEST_P(RowPainting, WhatHasNoRoomIsElidedAndNothingIsCutOff)
{
    item.setFilename(u"The.beginning."_s.repeated(20) + u"the.end.rar"_s);
    PaintedRow::Look look;
    look.width = 520;
    const PaintedRow row = painted(AppLanguage::italian, look);
    const QString name = row.texts().front();
    EXPECT_TRUE(name.startsWith(u"**The.beg") && name.contains(u'…') && name.endsWith(u"end.rar**/text"))
        << qPrintable(name);
    const QFontMetrics caption(RowMetrics(QApplication::font()).captionFont);
    for (const auto& text : row.recorder().texts) {
        const QFontMetrics& metrics = text.isBold ? QFontMetrics(RowMetrics(QApplication::font()).nameFont) : caption;
        EXPECT_LE(text.place.x() + metrics.horizontalAdvance(text.text), look.width) << qPrintable(text.text);
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, RowPainting, ::testing::ValuesIn(cases), [](const auto& row) { return row.param.name; });

class OneRowPainting : public ::testing::Test
{
protected:
    QStringList texts(int width)
    {
        return PaintedRow(rowContent(item, AppLanguage::english, now), {width, false, {}, false}).texts();
    }

    DownloadItem item{fixtures::link(u"https://Host.example/film.rar"_s), ItemId::make()};
};

TEST_F(OneRowPainting, ALongErrorTakesTwoLinesAndNoMore)
{
    item.setStatus(S::failure(u"The server said no. "_s.repeated(20)));
    const QStringList all = texts(700);
    ASSERT_EQ(all.size(), 4); // name, two lines, the host
    EXPECT_TRUE(all.at(1).startsWith(u"Error: The server said no.") && !all.at(1).contains(u'…'))
        << qPrintable(all.at(1));
    EXPECT_TRUE(all.at(2).endsWith(u"…/red")) << qPrintable(all.at(2));
}

TEST_F(OneRowPainting, ALongWordIsBrokenWhereverTheLineEnds)
{
    item.setStatus(S::failure(u"word"_s.repeated(32)));
    const QString both = texts(700).mid(1, 2).join(QString()).remove(u"/red"_s);
    EXPECT_EQ(both, u"Error: "_s + u"word"_s.repeated(32));
}

TEST_F(OneRowPainting, AnErrorOfManyLinesIsReadAsOne)
{
    item.setStatus(S::failure(u"The page said:\n\nno"_s));
    EXPECT_EQ(texts(900).at(1), u"Error: The page said: no/red");
    item.setStatus(S::failure(u"The page said:\n\nno, and that it will never say anything else to anybody"_s));
    EXPECT_EQ(texts(900).at(1), u"Error: The page said: no, and that it will never say anything else to anybody/red");
}

TEST_F(OneRowPainting, ANameAndAnErrorNeverElideEachOther)
{
    item.setFilename(u"A.name.of.some.length.that.needs.all.of.its.line.rar"_s);
    item.setStatus(S::failure(u"The server answered with error 503 instead of the file — retry"_s));
    const QStringList all = texts(700);
    EXPECT_EQ(all.at(0), u"**A.name.of.some.length.that.needs.all.of.its.line.rar**/text");
    EXPECT_EQ(all.at(1), u"Error: The server answered with error 503 instead of the file — retry/red");
}

TEST_F(OneRowPainting, AFailedArchiveStepTakesTwoLinesAndNoMore)
{
    extract(item, E::failure(u"The volume is broken. "_s.repeated(20)), 3);
    const QStringList all = texts(700);
    ASSERT_EQ(all.size(), 6); // name, status, two lines, the button, the host
    EXPECT_TRUE(all.at(2).startsWith(u"Extraction failed: The volume") && !all.at(2).contains(u'…'));
    EXPECT_TRUE(all.at(3).endsWith(u"…/red")) << qPrintable(all.at(3));
}

TEST_F(OneRowPainting, AHostThatFitsNowhereIsElided)
{
    const QString host = u"very-long-host-name."_s.repeated(20) + u"example"_s;
    const DownloadItem far(fixtures::link(u"https://"_s + host + u"/x"_s), ItemId::make());
    const PaintedRow row(rowContent(far, AppLanguage::english, now), {600, false, {}, false});
    EXPECT_TRUE(row.texts().back().startsWith(u"very-long") && row.texts().back().endsWith(u"…/tertiary"));
}

TEST_F(OneRowPainting, AButtonUnderThePointerIsPlainAndTheOneThatRemovesIsRed)
{
    item.setStatus(S::stopped);
    const auto glyphs = [this](RowButton hot) {
        PaintedRow::Look look;
        look.hot.button = hot;
        return PaintedRow(rowContent(item, AppLanguage::english, now), look).glyphs().join(u' ');
    };
    EXPECT_EQ(glyphs(RowButton::start), u"stop.circle.fill/secondary play.fill/text xmark/secondary");
    EXPECT_EQ(glyphs(RowButton::remove), u"stop.circle.fill/secondary play.fill/secondary xmark/red");
}

TEST(RowCanvasText, ReadsFiguresFromLeftToRightInEveryWindow)
{
    const RowMetrics metrics(QApplication::font());
    const auto painted = [&metrics](const QString& text, Qt::LayoutDirection direction) {
        const QRect place(10, 4, QFontMetrics(metrics.captionFont).horizontalAdvance(text), metrics.captionHeight);
        QImage image(place.right() + 10, place.bottom() + 4, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        QStyleOptionViewItem option;
        option.palette = fixtures::lightPalette();
        option.direction = direction;
        const RowCanvas canvas(painter, option, metrics);
        canvas.text(place, text, metrics.captionFont, Tint::text, Qt::ElideNone, Qt::AlignCenter);
        return image;
    };
    for (const QString& text : {u"1.2 GB of 4 GB"_s, u"37%"_s, u"The disk is full."_s})
        EXPECT_EQ(painted(text, Qt::RightToLeft), painted(text, Qt::LeftToRight)) << qPrintable(text);
}

} // namespace
} // namespace vormel

#include "screenshots/QueueScenes.h"

#include "ui/queue/list/QueueView.h"
#include "ui/queue/list/RowMenus.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vormel::screenshots {

namespace {

constexpr qint64 mebibyte = 1024 * 1024;

QStringList volumes(const QString& base, int count)
{
    QStringList names;
    for (int i = 1; i <= count; ++i)
        names << u"%1.part%2.rar"_s.arg(base).arg(i, 2, 10, QChar(u'0'));
    return names;
}

void finish(DownloadItem& item, qint64 bytes)
{
    item.setTotalBytes(bytes);
    item.setBytesReceived(bytes);
    item.setProgress(1);
    item.setLocalPath(u"/home/anna/Downloads/"_s + item.filename());
    item.setStatus(DownloadStatus::completed);
}

void run(DownloadItem& item, double share, qint64 bytes, double speed)
{
    item.setTotalBytes(bytes);
    item.setBytesReceived(static_cast<qint64>(share * static_cast<double>(bytes)));
    item.setProgress(share);
    item.setSpeedBytesPerSec(speed);
    item.setStatus(DownloadStatus::downloading);
}

QueueView& list(Stage& stage)
{
    return stage.part<QueueView>("queueView");
}

QModelIndex row(Stage& stage, int number)
{
    return list(stage).model()->index(number, 0);
}

void errors(Stage& stage)
{
    const auto items =
        stage.add({u"report.zip"_s, u"gone.iso"_s, u"broken.part1.rar"_s, u"broken.part2.rar"_s, u"secret.7z"_s});
    items[0]->setStatus(DownloadStatus::failure(u"The server answered 503 Service Unavailable"_s));
    items[1]->setStatus(DownloadStatus::failure(
        u"The file is not on the server any more: it may have been removed by its owner, or the link was mistyped"_s));
    finish(*items[2], 100 * mebibyte);
    items[3]->setStatus(DownloadStatus::failure(u"Incomplete: 51 MB of 100 MB"_s));
    finish(*items[4], 40 * mebibyte);
    items[4]->setExtractionStatus(ExtractionStatus::failure(
        u"7z exited with code 2: ERROR: Data Error in encrypted file. Wrong password? : secret/plans.txt, "
        u"and some more words that need the second line of this message"_s));
    list(stage).expand(row(stage, 2));
}

/// What the server or the disk says in everyday life, short and long.
void usualErrors(Stage& stage)
{
    const auto text = [&stage](QStringView english, QStringView italian) {
        return DownloadStatus::failure(pair(stage.engine.settings().language.value(), english, italian));
    };
    const auto items =
        stage.add({u"A.Very.Long.Documentary.About.The.History.Of.Cartography.S01E04.2160p.mkv"_s,
                   u"holiday-photos-2024.zip"_s, u"lecture-08.mp4"_s, u"ספר-ישן-מאוד.pdf"_s, u"dataset-v3.tar.xz"_s});
    items[0]->setStatus(
        text(u"Server returned a web page, not the file — the link may be expired or need a premium account.",
             u"Il server ha restituito una pagina web, non il file — il link potrebbe essere scaduto o richiedere un "
             u"account premium."));
    items[1]->setStatus(text(u"The disk is full.", u"Il disco è pieno."));
    items[1]->setTotalBytes(812 * mebibyte);
    items[1]->setBytesReceived(410 * mebibyte);
    items[2]->setStatus(text(u"Download blocked: the server does not allow access from your country (geo-restricted).",
                             u"Download bloccato: il server non consente l'accesso dal tuo paese (geo-restrizione)."));
    items[3]->setStatus(text(u"The server answered with error 503 instead of the file — retry",
                             u"Il server ha risposto con l'errore 503 invece del file — riprova"));
    items[4]->setStatus(DownloadStatus::failure(
        u"https://files.example/d/0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef/dataset: timed out"_s));
    list(stage).setCurrentIndex(row(stage, 2));
}

/// Every reason to wait, and how far what stands still is.
void waits(Stage& stage)
{
    using std::chrono::seconds;
    const SteadyTime now = stage.engine.clock.steadyNow();
    auto items = stage.add({u"holiday-photos-2024.zip"_s, u"Lecture 07 - Rivers.mp4"_s, u"manual.pdf"_s,
                            u"A.Very.Long.Documentary.About.The.History.Of.Cartography.And.The.People."
                            u"Who.Drew.The.Maps.S01E04.German.DL.2160p.WEB.h265-ATLAS.mkv"_s,
                            u"dataset-v3.tar.xz"_s, u"old-records.zip"_s, u"song.flac"_s});
    items.push_back(stage.engine.add(u"https://download-17.a-host-with-quite-a-long-name.example/atlas.iso"_s));
    const auto wait = [](const ItemPtr& item, ItemWait reason, qint64 received, qint64 total) {
        item->setStatus(DownloadStatus::queued);
        item->setBytesReceived(received);
        item->setTotalBytes(total);
        item->setWait(std::move(reason));
    };
    wait(items[0], {ItemWait::nextTry, now + seconds(12)}, 305 * mebibyte, 812 * mebibyte);
    wait(items[1], {ItemWait::serverRest, now + seconds(310)}, 0, 1433 * mebibyte);
    wait(items[2], {ItemWait::sameName}, 0, 0);
    wait(items[3], {ItemWait::signIn, {}, u"Terabytez"_s}, 1200 * mebibyte, 9216 * mebibyte);
    wait(items[7], {ItemWait::serverRest, now + seconds(595)}, 1229 * mebibyte, 4096 * mebibyte);
    items[4]->setStatus(DownloadStatus::paused);
    items[4]->setTotalBytes(4096 * mebibyte);
    items[4]->setBytesReceived(1229 * mebibyte);
    items[5]->setStatus(DownloadStatus::stopped);
    items[5]->setBytesReceived(77 * mebibyte);
    finish(*items[6], 31 * mebibyte);
    list(stage).setCurrentIndex(row(stage, 1));
}

void recovery(Stage& stage)
{
    const auto set = stage.add(volumes(u"Northern.Lights.S02E05.720p.WEB-AURORA"_s, 4));
    for (std::size_t i : {0U, 1U, 3U})
        finish(*set[i], 95 * mebibyte);
    set[2]->setStatus(DownloadStatus::failure(u"The connection was lost"_s));
    set[2]->setRecoveryCountdown(4);
    const ItemPtr rev = stage.add(u"Northern.Lights.S02E05.720p.WEB-AURORA.part1.rev"_s);
    rev->setStatus(DownloadStatus::queued);
    stage.settle();
    list(stage).expand(row(stage, 0));
}

void extraction(Stage& stage)
{
    const auto items = stage.add({u"holiday.zip"_s, u"lecture.part1.rar"_s, u"lecture.part2.rar"_s,
                                  u"damaged.part1.rar"_s, u"damaged.part2.rar"_s, u"music.7z"_s, u"letters.zip"_s,
                                  u"tested.part1.rar"_s, u"tested.part2.rar"_s});
    for (const ItemPtr& item : items)
        finish(*item, 300 * mebibyte);
    items[0]->setExtractionStatus(ExtractionStatus::done);
    items[1]->setExtractionStatus(ExtractionStatus::extracting);
    items[1]->setExtractionProgress(0.37);
    items[3]->setExtractionStatus(ExtractionStatus::repairing);
    items[3]->setExtractionStartedAt(stage.engine.clock.wallNow() - std::chrono::seconds(73));
    items[5]->setExtractionStatus(ExtractionStatus::extracting);
    items[5]->setExtractionStartedAt(stage.engine.clock.wallNow() - std::chrono::seconds(8));
    items[6]->setExtractionStatus(ExtractionStatus::extracting);
    items[6]->setAwaitsExtractionTurn(true);
    items[7]->setVerification({VerificationResult::fetchedAgain, 2, {}, {3, 7}});
    stage.settle();
    list(stage).expand(row(stage, 1));
}

/// Sets that lack parts: some that can be rebuilt, some that cannot, and one of which the first part has failed.
void lacks(Stage& stage)
{
    const QString names[] = {u"Northern.Lights.S02E05"_s, u"Rivers.of.Europe"_s, u"field-recordings"_s, u"atlas"_s};
    for (const QString& base : names) {
        for (const ItemPtr& item : stage.add(volumes(base, 9)))
            finish(*item, 95 * mebibyte);
    }
    const std::vector<ItemPtr> items = stage.engine.manager().items();
    const DownloadStatus failed = DownloadStatus::failure(u"The connection was lost"_s);
    items[2]->setStatus(failed);
    for (std::size_t i : {9U + 2, 9U + 6})
        items[i]->setStatus(failed);
    items[27]->setStatus(failed);
    stage.engine.manager().commands().removeItems({items[18 + 3]->id(), items[18 + 4]->id()});
    stage.add({names[0] + u".part1.rev"_s, names[0] + u".part2.rev"_s, names[1] + u".part1.rev"_s,
               names[3] + u".part1.rev"_s});
    for (const ItemPtr& item : stage.engine.manager().items()) {
        if (item->filename().endsWith(u".rev"))
            item->setStatus(DownloadStatus::queued);
    }
}

void verification(Stage& stage)
{
    const QString names[] = {u"running"_s, u"sound"_s, u"damaged"_s};
    for (const QString& base : names) {
        for (const ItemPtr& item : stage.add(volumes(base, 7)))
            finish(*item, 95 * mebibyte);
    }
    const std::vector<ItemPtr>& items = stage.engine.manager().items();
    items[0]->setVerification({VerificationResult::running, 0, {}, {}, 42});
    items[7]->setExtractionStatus(ExtractionStatus::done);
    items[7]->setVerification({VerificationResult::sound});
    for (std::size_t i : {14U + 2, 14U + 6})
        items[i]->setStatus(DownloadStatus::queued);
    items[14]->setVerification({VerificationResult::fetchedAgain, 2, {}, {3, 7}});
    stage.settle();
    list(stage).expand(row(stage, 0));
}

/// The pointer on the stop button of a row.
void pointer(Stage& stage)
{
    fillQueue(stage);
    stage.settle();
    const QRect place = list(stage).visualRect(row(stage, 1));
    const QPoint point(place.right() - 60, place.top() + 20);
    QMouseEvent move(QEvent::MouseMove, point, list(stage).viewport()->mapToGlobal(point), Qt::NoButton, Qt::NoButton,
                     {});
    QCoreApplication::sendEvent(list(stage).viewport(), &move);
}

void extractionMenu(Stage& stage)
{
    extraction(stage);
    list(stage).setCurrentIndex(row(stage, 3));
    QTest::keyClick(&list(stage), Qt::Key_F10, Qt::ShiftModifier);
}

void banner(Stage& stage)
{
    fillQueue(stage);
    for (const char* tool : {"unrar", "7zz"})
        stage.engine.tools.remove(QString::fromLatin1(tool));
    stage.desktop.tools.look();
}

void dropOverlay(Stage& stage)
{
    fillQueue(stage);
    QMimeData data;
    data.setText(u"https://files.example/a.zip"_s);
    QDragEnterEvent event({300, 200}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&stage.part("downloadQueueView"), &event);
}

void menuOf(Stage& stage, int number)
{
    fillQueue(stage);
    list(stage).setCurrentIndex(row(stage, number));
    QTest::keyClick(&list(stage), Qt::Key_F10, Qt::ShiftModifier);
}

void rename(Stage& stage)
{
    fillQueue(stage);
    list(stage).setCurrentIndex(row(stage, 0));
    list(stage).menus().rename(row(stage, 0));
}

void drag(Stage& stage)
{
    fillQueue(stage);
    const QPoint from = list(stage).visualRect(row(stage, 2)).center() - QPoint(80, 0);
    const QPoint to = list(stage).visualRect(row(stage, 1)).topLeft() + QPoint(200, 12);
    QTest::mousePress(list(stage).viewport(), Qt::LeftButton, {}, from);
    QMouseEvent move(QEvent::MouseMove, to, list(stage).viewport()->mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(list(stage).viewport(), &move);
}

void removeSome(Stage& stage)
{
    fillQueue(stage);
    stage.engine.manager().removed().clearCompleted();
    list(stage).run(row(stage, 1), RowButton::remove);
}

void askForRemoval(Stage& stage)
{
    fillQueue(stage);
    stage.part<QAction>("removeUnfinished").trigger();
}

void queueMenu(Stage& stage)
{
    errors(stage);
    stage.engine.manager().removed().removeGroup(u"report.zip"_s);
    auto& menu = stage.part<QMenu>("queueMenu");
    menu.popup(stage.window.menuBar()->mapToGlobal(QPoint(60, stage.window.menuBar()->height())));
}

void menuOfFailed(Stage& stage)
{
    errors(stage);
    list(stage).setCurrentIndex(row(stage, 2));
    QTest::keyClick(&list(stage), Qt::Key_F10, Qt::ShiftModifier);
}

} // namespace

void fillQueue(Stage& stage)
{
    const auto set = stage.add(volumes(u"The.Lighthouse.Keeper.2024.1080p.BluRay.x264-SHORE"_s, 6));
    finish(*set[0], 200 * mebibyte);
    finish(*set[1], 200 * mebibyte);
    run(*set[2], 0.62, 200 * mebibyte, 5.4 * mebibyte);
    run(*set[3], 0.18, 200 * mebibyte, 4.9 * mebibyte);
    for (std::size_t i : {4U, 5U}) {
        set[i]->setTotalBytes(200 * mebibyte);
        set[i]->setStatus(DownloadStatus::queued);
    }
    const auto rest = stage.add({u"holiday-photos-2024.zip"_s, u"Lecture 07 - Rivers.mp4"_s,
                                 u"A.Very.Long.Documentary.About.The.History.Of.Cartography.And.The.People."
                                 u"Who.Drew.The.Maps.S01E04.German.DL.2160p.WEB.h265-ATLAS.mkv"_s,
                                 u"manual.pdf"_s, u"dataset-v3.tar.xz"_s});
    run(*rest[0], 0.44, 812 * mebibyte, 1.25 * mebibyte);
    finish(*rest[1], 1433 * mebibyte);
    rest[2]->setTotalBytes(9216 * mebibyte);
    rest[3]->setStatus(DownloadStatus::stopped);
    rest[4]->setStatus(DownloadStatus::resolving);
    list(stage).setCurrentIndex({});
}

std::vector<Scene> queueScenes()
{
    return {
        {"queue-empty", [](Stage& /*stage*/) {}},
        {"queue-running", fillQueue},
        {"queue-group-open",
         [](Stage& stage) {
             fillQueue(stage);
             list(stage).expand(row(stage, 0));
         }},
        {"queue-errors", errors},
        {"queue-errors-usual", usualErrors},
        {"queue-waits", waits},
        {"queue-recovery", recovery},
        {"queue-lacks", lacks},
        {"queue-verification", verification},
        {"queue-pointer", pointer},
        {"queue-extraction", extraction},
        {"queue-menu-extraction", extractionMenu},
        {"queue-banner", banner},
        {"queue-drop", dropOverlay},
        {"queue-drag", drag},
        {"queue-menu-row", [](Stage& stage) { menuOf(stage, 3); }},
        {"queue-menu-group", [](Stage& stage) { menuOf(stage, 0); }},
        {"queue-menu-failed-group", menuOfFailed},
        {"queue-menu", queueMenu},
        {"queue-removed", removeSome},
        {"queue-removal-question", askForRemoval},
        {"queue-rename", rename},
    };
}

} // namespace vormel::screenshots

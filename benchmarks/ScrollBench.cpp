#include "Benchmarks.h"
#include "LongQueue.h"
#include "Measure.h"
#include "ProgramInProfile.h"
#include "ui/queue/list/QueueView.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QPaintEvent>
#include <QScrollBar>

#include <algorithm>
#include <array>
#include <ctime>

using namespace Qt::StringLiterals;

namespace vormel::bench {

namespace {

constexpr int itemCount = 10000;

/// What a list was asked to paint.
class PaintWatch final : public QObject
{
public:
    explicit PaintWatch(QWidget* watched) { watched->installEventFilter(this); }
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            painted += static_cast<QPaintEvent*>(event)->region();
        return QObject::eventFilter(object, event);
    }

    QRegion painted;
};

void rest()
{
    constexpr int turns = 20;
    for (int turn = 0; turn < turns; ++turn)
        QCoreApplication::processEvents();
}

/// Of so many frames, the one that only one in a hundred exceeds.
double slowFrame(int frames, const std::function<void()>& step, QueueView& list)
{
    std::vector<double> costs;
    for (int frame = 0; frame < frames; ++frame) {
        QElapsedTimer timer;
        timer.start();
        step();
        list.viewport()->repaint(0, 0, 1, 1); // now, with all that the step left to be painted
        costs.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    std::sort(costs.begin(), costs.end());
    return costs.at(costs.size() * 99 / 100);
}

void press(QueueView& list, Qt::Key key, const QString& text = {})
{
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(&list, &event);
}

void benchFrames(Report& report, QueueView& list)
{
    constexpr int frames = 400;
    constexpr int slow = 37;    // a gentle turn of the wheel
    constexpr int fast = 23011; // the bar dragged: nothing of the last frame is left
    QScrollBar& bar = *list.verticalScrollBar();
    const auto by = [&bar](int step) { bar.setValue((bar.value() + step) % bar.maximum()); };
    report.add(u"queue10k_scroll_frame_ms"_s,
               slowFrame(
                   frames, [&] { by(slow); }, list),
               8);
    report.add(u"queue10k_jump_frame_ms"_s,
               slowFrame(
                   frames, [&] { by(fast); }, list),
               8);
    report.add(u"queue10k_key_frame_ms"_s,
               slowFrame(
                   frames, [&] { press(list, Qt::Key_Down); }, list),
               8);
    report.add(u"queue10k_page_frame_ms"_s,
               slowFrame(
                   frames / 2, [&] { press(list, Qt::Key_PageUp); }, list),
               8);
}

int rowsTouched(const QueueView& list, const QRegion& painted)
{
    int touched = 0;
    for (int row = 0; row < list.model()->rowCount(); ++row) {
        const QRect place = list.visualRect(list.model()->index(row, 0));
        if (place.top() > list.viewport()->height())
            break;
        touched += painted.intersects(place) ? 1 : 0;
    }
    return touched;
}

/// Lets some of the rows in sight get on, as a tick of the transfers would, and counts the rows that are painted for
/// it.
void benchTick(Report& report, QueueView& list, const std::vector<ItemPtr>& items)
{
    constexpr std::array<std::size_t, 3> running{1, 2, 5};
    list.scrollToTop();
    for (const std::size_t row : running)
        items.at(row)->setStatus(DownloadStatus::downloading);
    rest();
    const PaintWatch watch(list.viewport());
    for (const std::size_t row : running) {
        items.at(row)->setBytesReceived(items.at(row)->bytesReceived() + 1000000);
        items.at(row)->setSpeedBytesPerSec(2000000);
    }
    rest();
    report.add(u"tick_changed_rows"_s, static_cast<double>(running.size()));
    report.add(u"tick_repaint_rows"_s, rowsTouched(list, watch.painted), static_cast<double>(running.size()));
}

double ownProcessorMilliseconds()
{
    return static_cast<double>(std::clock()) * 1000 / CLOCKS_PER_SEC;
}

/// Has every item count down to its next try, and tells what a second of that costs while some of them are in sight.
void benchCountdown(Report& report, QueueView& list, const std::vector<ItemPtr>& items)
{
    constexpr std::chrono::minutes away(30);
    constexpr int seconds = 5;
    list.scrollToTop();
    const SteadyTime due = std::chrono::steady_clock::now() + away;
    for (const ItemPtr& item : items) {
        item->setStatus(DownloadStatus::queued);
        item->setWait({.kind = ItemWait::nextTry, .due = due});
    }
    rest();
    const PaintWatch watch(list.viewport());
    const double before = ownProcessorMilliseconds();
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < seconds * 1000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents);
    report.add(u"queue10k_countdown_cpu_ms_per_s"_s, (ownProcessorMilliseconds() - before) / seconds, 10);
    report.add(u"countdown_repaint_rows"_s, rowsTouched(list, watch.painted));
}

/// Has the whole list go and come back, each with the frame that shows it.
void benchRemoval(Report& report, QueueView& list, DownloadManager& manager)
{
    RemovedItems& removed = manager.removed();
    const auto shown = [&list](const std::function<void()>& change) {
        QElapsedTimer timer;
        timer.start();
        change();
        rest();
        list.viewport()->repaint();
        return static_cast<double>(timer.nsecsElapsed()) / 1e6;
    };
    report.add(u"queue10k_remove_all_ms"_s, shown([&] { removed.remove(removed.all()); }), 150);
    if (!manager.items().empty())
        giveUp(u"rows are left"_s);
    report.add(u"queue10k_undo_remove_all_ms"_s, shown([&] { removed.putBack(); }), 150);
    if (manager.items().size() != itemCount)
        giveUp(u"not all rows have come back"_s);
}

} // namespace

void benchScroll(Report& report)
{
    report.note(u"A window of 980 by 640 over 10,000 rows; of all frames, the slowest but one in a hundred:"_s);
    ProgramInProfile program({}, [](const Folders& folders) { writeLongQueue(folders, itemCount); });
    program.window().resize(980, 640);
    auto* const list = program.window().findChild<QueueView*>();
    if (!list || program.manager().items().size() != itemCount)
        giveUp(u"the queue was not restored"_s);
    rest();
    benchFrames(report, *list);
    benchTick(report, *list, program.manager().items());
    benchCountdown(report, *list, program.manager().items());
    benchRemoval(report, *list, program.manager());
}

} // namespace vormel::bench

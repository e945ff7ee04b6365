#include "Benchmarks.h"
#include "LongQueue.h"
#include "Measure.h"
#include "ProgramInProfile.h"
#include "model/SetName.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>

using namespace Qt::StringLiterals;

namespace vormel::bench {

namespace {

constexpr int itemCount = 10000;

/// Half parts, which are complete, and half recovery volumes, which are queued and of no use any more.
void fillWithOneSet(DownloadManager& manager)
{
    manager.settings().maxConcurrentDownloads.set(0);
    std::vector<Link> links;
    for (int i = 0; i < itemCount; ++i) {
        const QString kind = i % 2 == 0 ? u"rar"_s : u"rev"_s;
        links.push_back(*Link::parse(u"https://files.example/set.part%1.%2"_s.arg(i / 2 + 1).arg(kind)));
    }
    manager.addDirectURLs(links);
    for (const ItemPtr& item : manager.items())
        item->setStatus(isRevName(item->filename()) ? DownloadStatus::queued : DownloadStatus::completed);
    manager.settings().downloadRevFiles.set(true);
    manager.settings().maxConcurrentDownloads.set(3);
}

void benchOneSet(Report& report)
{
    const QTemporaryDir directory(scratchTemplate());
    Program program(Folders::below(QDir(directory.path()).absolutePath()));
    DownloadManager& manager = program.manager();
    fillWithOneSet(manager);
    report.note(u"One set of 10,000 volumes, of which none is to be started:"_s);
    report.add(u"set10k_pass_ms"_s, medianMilliseconds([&] { manager.processQueue(); }), 5);
    report.add(u"set10k_groups_ms"_s, medianMilliseconds([&] { (void)manager.visibleGroups(); }), 20);
    manager.settings().maxConcurrentDownloads.set(0);
    manager.settings().autoExtract.set(false);
    const std::vector<ItemPtr> items = manager.items();
    report.add(u"set10k_resync_ms"_s, medianMilliseconds([&] { manager.commands().resyncItems(items); }), 200);
}

/// All items are of one host, of which nobody listens at the port.
void benchHostAway(Report& report)
{
    const QTemporaryDir directory(scratchTemplate());
    Program program(Folders::below(QDir(directory.path()).absolutePath()));
    DownloadManager& manager = program.manager();
    std::vector<Link> links;
    for (int i = 0; i < itemCount; ++i)
        links.push_back(*Link::parse(u"http://127.0.0.1:1/file%1.bin"_s.arg(i)));
    manager.addDirectURLs(links);
    manager.commands().startAll();
    const ItemPtr first = manager.items().front();
    QDeadlineTimer deadline(10000);
    while (first->wait().kind != ItemWait::nextTry && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    if (first->wait().kind != ItemWait::nextTry)
        giveUp(u"the host that is away does not rest"_s);
    report.note(u"10,000 items that wait for one host:"_s);
    report.add(u"queue10k_host_away_pass_ms"_s, medianMilliseconds([&] { manager.processQueue(); }), 8);
}

} // namespace

void benchQueue(Report& report)
{
    report.note(u"A queue of 10,000 items:"_s);
    const QTemporaryDir directory(scratchTemplate());
    const Folders folders = Folders::below(QDir(directory.path()).absolutePath());
    writeLongQueue(folders, itemCount);

    std::unique_ptr<Program> program;
    report.add(u"queue10k_restore_ms"_s,
               medianMilliseconds([&] { program = std::make_unique<Program>(folders); }, [&] { program.reset(); }));
    DownloadManager& manager = program->manager();
    if (manager.items().size() != itemCount)
        giveUp(u"the queue was not restored"_s);

    // One item has changed since the last save, as at the end of a transfer.
    int turn = 0;
    report.add(u"queue10k_save_ms"_s,
               medianMilliseconds([&] { manager.saveQueue(); },
                                  [&] {
                                      ++turn;
                                      manager.items()[static_cast<std::size_t>(turn)]->setBytesReceived(turn);
                                  }),
               5);
    // The pass that finds nothing to start has to look at every item.
    report.add(u"queue10k_pass_ms"_s, medianMilliseconds([&] { manager.processQueue(); }), 0.2);
    benchOneSet(report);
    benchHostAway(report);
}

} // namespace vormel::bench

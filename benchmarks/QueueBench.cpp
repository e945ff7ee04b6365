#include "Benchmarks.h"
#include "LongQueue.h"
#include "Measure.h"
#include "ProgramInProfile.h"
#include "model/SetName.h"

#include <QDir>

namespace vormel::bench {

namespace {

constexpr int itemCount = 10000;

/// Half parts, which are complete, and half recovery volumes, which are queued and of no use any more.
void fillWithOneSet(DownloadManager& manager)
{
    manager.settings().maxConcurrentDownloads.set(0);
    std::vector<Link> links;
    for (int i = 0; i < itemCount; ++i) {
        const QString kind = i % 2 == 0 ? QStringLiteral("rar") : QStringLiteral("rev");
        links.push_back(*Link::parse(QStringLiteral("https://files.example/set.part%1.%2").arg(i / 2 + 1).arg(kind)));
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
    report.note(QStringLiteral("One set of 10,000 volumes, of which none is to be started:"));
    report.add(QStringLiteral("set10k_pass_ms"), medianMilliseconds([&] { manager.processQueue(); }), 5);
    report.add(QStringLiteral("set10k_groups_ms"), medianMilliseconds([&] { (void)manager.visibleGroups(); }), 20);
    manager.settings().maxConcurrentDownloads.set(0);
    manager.settings().autoExtract.set(false);
    const std::vector<ItemPtr> items = manager.items();
    report.add(QStringLiteral("set10k_resync_ms"), medianMilliseconds([&] { manager.commands().resyncItems(items); }),
               200);
}

} // namespace

void benchQueue(Report& report)
{
    report.note(QStringLiteral("A queue of 10,000 items:"));
    const QTemporaryDir directory(scratchTemplate());
    const Folders folders = Folders::below(QDir(directory.path()).absolutePath());
    writeLongQueue(folders, itemCount);

    std::unique_ptr<Program> program;
    report.add(QStringLiteral("queue10k_restore_ms"),
               medianMilliseconds([&] { program = std::make_unique<Program>(folders); }, [&] { program.reset(); }));
    DownloadManager& manager = program->manager();
    if (manager.items().size() != itemCount)
        giveUp(QStringLiteral("the queue was not restored"));

    // One item has changed since the last save, as at the end of a transfer.
    int turn = 0;
    report.add(QStringLiteral("queue10k_save_ms"),
               medianMilliseconds([&] { manager.saveQueue(); },
                                  [&] {
                                      ++turn;
                                      manager.items()[static_cast<std::size_t>(turn)]->setBytesReceived(turn);
                                  }),
               5);
    // The pass that finds nothing to start has to look at every item.
    report.add(QStringLiteral("queue10k_pass_ms"), medianMilliseconds([&] { manager.processQueue(); }), 0.2);
    benchOneSet(report);
}

} // namespace vormel::bench

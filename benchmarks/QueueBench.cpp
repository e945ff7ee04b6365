#include "Benchmarks.h"
#include "LongQueue.h"
#include "Measure.h"
#include "Shop.h"

#include <QDir>

namespace vormel::bench {

namespace {

constexpr int itemCount = 10000;

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
}

} // namespace vormel::bench

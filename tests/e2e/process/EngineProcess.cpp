#include "app/Program.h"

#include <QCoreApplication>
#include <QTimer>

#include <algorithm>

namespace {

using vormel::DownloadStatus;
using vormel::ExtractionStatus;

/// As the user would whose program was killed while it unpacked.
void takeUpArchives(vormel::DownloadManager& manager)
{
    const auto items = manager.items();
    for (const auto& item : items)
        if (item->status() == DownloadStatus::completed && item->extractionStatus() == ExtractionStatus::idle)
            manager.commands().retryExtraction(item->id());
}

} // namespace

// Runs the engine in a profile until everything in its queue is complete: exit code 0, or 1 if an item failed. With
// "unpack" instead of links it takes up all that an earlier run left in the queue, and goes on until somebody ends it.
// Usage: vormel_engine_process <profile> <cap in KB/s> unpack|<link>...
int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    vormel::Program program(vormel::Folders::below(arguments.at(1)));
    vormel::DownloadManager& manager = program.manager();
    manager.settings().maxDownloadSpeedKBps.set(arguments.at(2).toLongLong());

    if (arguments.value(3) == u"unpack") {
        manager.commands().startAll();
        takeUpArchives(manager);
        return QCoreApplication::exec();
    }
    std::vector<vormel::Link> links;
    for (const QString& argument : arguments.mid(3))
        links.push_back(*vormel::Link::parse(argument));
    manager.addURLs(links, std::nullopt);
    manager.commands().startAll();

    const auto check = [&manager] {
        const auto& items = manager.items();
        const auto has = [&items](vormel::DownloadStatus::Kind kind) {
            return std::any_of(items.begin(), items.end(), [kind](const auto& item) { return item->status() == kind; });
        };
        if (has(DownloadStatus::queued) || has(DownloadStatus::resolving) || has(DownloadStatus::downloading))
            return;
        manager.shutDown();
        QCoreApplication::exit(has(DownloadStatus::failed) ? 1 : 0);
    };
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &manager, check);
    timer.start(5);
    return QCoreApplication::exec();
}

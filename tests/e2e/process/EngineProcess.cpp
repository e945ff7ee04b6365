#include "app/Program.h"

#include <QCoreApplication>
#include <QTimer>

#include <algorithm>
#include <cstdio>

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

std::vector<vormel::Link> linksOf(const QStringList& arguments)
{
    std::vector<vormel::Link> links;
    for (const QString& argument : arguments)
        links.push_back(*vormel::Link::parse(argument));
    return links;
}

/// As the user would who takes everything out as soon as something has come, and says so when it is done.
int removeAllUnderWay(vormel::DownloadManager& manager)
{
    const auto check = [&manager] {
        const auto& items = manager.items();
        if (std::none_of(items.begin(), items.end(), [](const auto& item) { return item->bytesReceived() > 0; }))
            return;
        manager.removed().remove(manager.removed().all());
        std::puts("removed");
        std::fflush(stdout);
    };
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &manager, check);
    timer.start(5);
    return QCoreApplication::exec();
}

} // namespace

// Runs the engine in a profile until everything in its queue is complete: exit code 0, or 1 if an item failed. With
// "unpack" instead of links it takes up all that an earlier run left in the queue, and goes on until somebody ends it.
// With "remove" in front of the links it takes all of them out while they are fetched, and goes on likewise.
// Usage: vormel_engine_process <profile> <cap in KB/s> unpack|[remove] <link>...
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
    const bool isRemoval = arguments.value(3) == u"remove";
    manager.addURLs(linksOf(arguments.mid(isRemoval ? 4 : 3)), std::nullopt);
    manager.commands().startAll();
    if (isRemoval)
        return removeAllUnderWay(manager);

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

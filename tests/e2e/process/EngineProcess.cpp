#include "app/Program.h"

#include <QCoreApplication>
#include <QTimer>

#include <algorithm>

// Runs the engine in a profile until everything in its queue is complete: exit code 0, or 1 if an item failed.
// Usage: vormel_engine_process <profile> <cap in KB/s> <link>...
int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    vormel::Program program(vormel::Folders::below(arguments.at(1)));
    vormel::DownloadManager& manager = program.manager();
    manager.settings().maxDownloadSpeedKBps.set(arguments.at(2).toLongLong());

    std::vector<vormel::Link> links;
    for (const QString& argument : arguments.mid(3))
        links.push_back(*vormel::Link::parse(argument));
    manager.addURLs(links, std::nullopt);
    manager.startAll();

    const auto check = [&manager] {
        const auto& items = manager.items();
        const auto has = [&items](vormel::DownloadStatus::Kind kind) {
            return std::any_of(items.begin(), items.end(), [kind](const auto& item) { return item->status() == kind; });
        };
        using vormel::DownloadStatus;
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

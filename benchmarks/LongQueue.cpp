#include "LongQueue.h"

#include "Measure.h"
#include "engine/queue/QueueRecords.h"
#include "platform/storage/WholeFile.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace vormel::bench {

namespace {

std::shared_ptr<const QueueRecord> record(int number, const QString& name, DownloadStatus::Kind status)
{
    const QString url =
        u"https://files%1.example/d/%2/%3"_s.arg(number % 7).arg(number * 7919, 10, 10, QChar(u'0')).arg(name);
    DownloadItem item(*Link::parse(url), ItemId::make());
    item.setStatus(status);
    item.setTotalBytes(qint64{1000003} * (number + 1));
    item.setBytesReceived(qint64{500001} * (number + 1));
    item.setProgress(0.5);
    return encodeRecord(item, DownloadPaths(QString()));
}

void write(const Folders& folders, const std::vector<std::shared_ptr<const QueueRecord>>& records)
{
    QDir().mkpath(folders.applicationSupport);
    if (!replaceWholeFile(folders.applicationSupport + u"/download_queue.json"_s, encodeQueue(records)))
        giveUp(u"cannot write the queue file"_s);
}

QString nameInSets(int number, int firstSet)
{
    constexpr int smallSet = 20;
    constexpr int cycle = smallSet + 10; // a set and ten single files
    const QString release = u"Some.Long.Release.Name.2026.1080p.%1"_s;
    if (number < firstSet)
        return release.arg(u"first") + u".part%1.rar"_s.arg(number + 1, 3, 10, QChar(u'0'));
    const int place = (number - firstSet) % cycle;
    if (place < smallSet)
        return release.arg((number - firstSet) / cycle) + u".part%1.rar"_s.arg(place + 1, 2, 10, QChar(u'0'));
    return release.arg(number) + u".bin"_s;
}

} // namespace

void writeLongQueue(const Folders& folders, int items)
{
    std::vector<std::shared_ptr<const QueueRecord>> records;
    records.reserve(static_cast<std::size_t>(items));
    for (int i = 0; i < items; ++i) {
        records.push_back(record(i, u"Some.Long.Release.Name.2026.1080p.%1.bin"_s.arg(i),
                                 i % 10 == 0 ? DownloadStatus::completed : DownloadStatus::paused));
    }
    write(folders, records);
}

void writeLongQueueOfSets(const Folders& folders, int items, int firstSet)
{
    std::vector<std::shared_ptr<const QueueRecord>> records;
    records.reserve(static_cast<std::size_t>(items));
    for (int i = 0; i < items; ++i)
        records.push_back(record(i, nameInSets(i, firstSet), DownloadStatus::paused));
    write(folders, records);
}

} // namespace vormel::bench

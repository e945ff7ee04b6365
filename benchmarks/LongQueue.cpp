#include "LongQueue.h"

#include "Measure.h"
#include "engine/queue/QueueRecords.h"
#include "platform/storage/WholeFile.h"

#include <QDir>

namespace vormel::bench {

void writeLongQueue(const Folders& folders, int items)
{
    std::vector<std::shared_ptr<const QueueRecord>> records;
    for (int i = 0; i < items; ++i) {
        const QString url = QStringLiteral("https://files%1.example/d/%2/Some.Long.Release.Name.2026.1080p.%3.bin")
                                .arg(i % 7)
                                .arg(i * 7919, 10, 10, QChar(u'0'))
                                .arg(i);
        DownloadItem item(*Link::parse(url), ItemId::make());
        item.setStatus(i % 10 == 0 ? DownloadStatus::completed : DownloadStatus::paused);
        item.setTotalBytes(qint64{1000003} * (i + 1));
        item.setBytesReceived(qint64{500001} * (i + 1));
        item.setProgress(0.5);
        records.push_back(encodeRecord(item));
    }
    QDir().mkpath(folders.applicationSupport);
    if (!replaceWholeFile(folders.applicationSupport + QStringLiteral("/download_queue.json"), encodeQueue(records)))
        giveUp(QStringLiteral("cannot write the queue file"));
}

} // namespace vormel::bench

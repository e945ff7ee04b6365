#include "ui/queue/rows/GroupTally.h"

#include <QtNumeric>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// Sizes come from servers, which may claim anything.
qint64 sumOfSizes(qint64 a, qint64 b)
{
    qint64 sum = 0;
    return qAddOverflow(a, qMax<qint64>(b, 0), &sum) ? std::numeric_limits<qint64>::max() : sum;
}

/// The end of a transfer leaves the bytes of its last tick, but what is complete is complete.
qint64 bytesOf(const DownloadItem& item)
{
    const bool isWhole = item.status() == DownloadStatus::completed && item.totalBytes() > 0;
    return isWhole ? item.totalBytes() : item.bytesReceived();
}

} // namespace

GroupTally::GroupTally(const DownloadGroup& group)
    : items(static_cast<qsizetype>(group.items.size()))
{
    for (const ItemPtr& item : group.items) {
        count(item->status().kind());
        totalBytes = sumOfSizes(totalBytes, item->totalBytes());
        bytesReceived = sumOfSizes(bytesReceived, bytesOf(*item));
        speedBytesPerSec += item->speedBytesPerSec();
        m_progressSum += item->progress();
    }
}

void GroupTally::count(DownloadStatus::Kind status)
{
    switch (status) {
    case DownloadStatus::queued:
        ++queued;
        break;
    case DownloadStatus::resolving:
        ++resolving;
        break;
    case DownloadStatus::expanding:
        break;
    case DownloadStatus::downloading:
        ++downloading;
        break;
    case DownloadStatus::paused:
        ++paused;
        break;
    case DownloadStatus::stopped:
        ++stopped;
        break;
    case DownloadStatus::completed:
        ++completed;
        break;
    case DownloadStatus::failed:
        ++failed;
        break;
    }
}

bool GroupTally::isStopped() const
{
    return stopped > 0 && stopped + completed + failed == items;
}

GroupTally::Summary GroupTally::summary() const
{
    if (completed == items)
        return Summary::completed;
    if (failed > 0)
        return Summary::error;
    if (downloading > 0)
        return Summary::downloading;
    if (isStopped())
        return Summary::stopped;
    if (paused == items)
        return Summary::paused;
    return resolving > 0 ? Summary::resolving : Summary::queued;
}

QString GroupTally::text(AppLanguage language) const
{
    switch (summary()) {
    case Summary::completed:
        return pair(language, u"Completed", u"Completato");
    case Summary::error:
        return pair(language, u"Error", u"Errore");
    case Summary::downloading:
        return u"%1%2/%3)"_s.arg(pair(language, u"Downloading (", u"Download (")).arg(downloading).arg(items);
    case Summary::stopped:
        return pair(language, u"Stopped", u"Fermato");
    case Summary::paused:
        return pair(language, u"Paused", u"In pausa");
    case Summary::resolving:
        return pair(language, u"Resolving...", u"Risoluzione...");
    case Summary::queued:
        return pair(language, u"Queued", u"In coda");
    }
    Q_UNREACHABLE();
}

double GroupTally::progress() const
{
    if (totalBytes > 0)
        return std::clamp(static_cast<double>(bytesReceived) / static_cast<double>(totalBytes), 0.0, 1.0);
    return items == 0 ? 0.0 : m_progressSum / static_cast<double>(items);
}

} // namespace vormel

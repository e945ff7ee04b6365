#include "engine/queue/StoredValues.h"

#include "text/PercentCoding.h"

#include <QUrl>

#include <algorithm>
#include <climits>
#include <cmath>

namespace vormel {

namespace {

/// Seconds from 1 January 1970 to 1 January 2001, where the dates of the file count from.
constexpr double referenceDate = 978307200.0;

} // namespace

const char* storedName(const DownloadStatus& status)
{
    switch (status.kind()) {
    case DownloadStatus::stopped:
        return "stopped";
    case DownloadStatus::completed:
        return "completed";
    case DownloadStatus::failed:
        return "failed";
    default:
        return "paused";
    }
}

const char* storedName(const ExtractionStatus& status)
{
    switch (status.kind()) {
    case ExtractionStatus::done:
        return "done";
    case ExtractionStatus::failed:
        return "failed";
    default:
        return "idle";
    }
}

DownloadStatus statusFrom(const QString& name, const QString& message)
{
    if (name == u"completed")
        return DownloadStatus::completed;
    if (name == u"failed")
        return DownloadStatus::failure(message);
    return name == u"stopped" ? DownloadStatus::stopped : DownloadStatus::paused;
}

ExtractionStatus extractionFrom(const QString& name, const QString& message)
{
    if (name == u"done")
        return ExtractionStatus::done;
    return name == u"failed" ? ExtractionStatus::failure(message) : ExtractionStatus::idle;
}

double storedDate(WallTime time)
{
    return std::chrono::duration<double>(time.time_since_epoch()).count() - referenceDate;
}

std::optional<WallTime> dateFrom(double stored)
{
    constexpr double maxSeconds = 9e9;
    const std::chrono::duration<double> sinceEpoch(stored + referenceDate);
    if (std::abs(sinceEpoch.count()) > maxSeconds)
        return std::nullopt;
    return WallTime(std::chrono::duration_cast<WallTime::duration>(sinceEpoch));
}

QString storedPath(const QString& path)
{
    return QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
}

std::optional<QString> pathFrom(const std::optional<QString>& stored)
{
    constexpr qsizetype maxLength = qsizetype{3} * PATH_MAX;
    if (!stored || stored->size() > maxLength || !stored->startsWith(u"file://"))
        return std::nullopt;
    QStringView rest = QStringView{*stored}.mid(7);
    rest = rest.mid(std::max<qsizetype>(rest.indexOf(u'/'), 0));
    return percentDecoded(rest);
}

} // namespace vormel

#include "engine/queue/QueueRecords.h"

#include "engine/queue/PartFinder.h"
#include "engine/queue/RecordReader.h"
#include "engine/queue/StoredValues.h"
#include "model/NormalizeURL.h"

#include <QFile>
#include <QSet>

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <sys/stat.h>

#include <cmath>

namespace vormel {

namespace {

using Writer = rapidjson::Writer<rapidjson::StringBuffer>;

/// What the members of a record are called.
namespace key {
constexpr const char* id = "id";
constexpr const char* originalURL = "originalURL";
constexpr const char* filename = "filename";
constexpr const char* statusType = "statusType";
constexpr const char* statusMessage = "statusMessage";
constexpr const char* progress = "progress";
constexpr const char* bytesReceived = "bytesReceived";
constexpr const char* totalBytes = "totalBytes";
constexpr const char* resolvedURL = "resolvedURL";
constexpr const char* resolvedAt = "resolvedAt";
constexpr const char* localPath = "localPath";
constexpr const char* hostName = "hostName";
constexpr const char* extractionStatusType = "extractionStatusType";
constexpr const char* extractionError = "extractionError";
constexpr const char* partPath = "partPath";
} // namespace key

void write(Writer& writer, const char* key, const QString& text)
{
    writer.Key(key);
    const QByteArray utf8 = text.toUtf8();
    writer.String(utf8.constData(), static_cast<rapidjson::SizeType>(utf8.size()));
}

void write(Writer& writer, const char* key, double number)
{
    writer.Key(key);
    writer.Double(std::isfinite(number) ? number : 0);
}

void write(Writer& writer, const char* key, qint64 number)
{
    writer.Key(key);
    writer.Int64(number);
}

/// Would nobody find the part file by its name and by what it says of itself?
bool mustStorePart(const DownloadItem& item, const DownloadPaths& paths)
{
    const std::optional<PartPlace>& place = item.partPlace();
    return place && item.status() != DownloadStatus::completed &&
           (!place->isMarked || place->path != paths.partFile(item.filename()));
}

QByteArray taken(rapidjson::StringBuffer& buffer)
{
    QByteArray bytes(buffer.GetString(), static_cast<qsizetype>(buffer.GetSize()));
    buffer.Clear();
    return bytes;
}

void writeTransfer(Writer& writer, const DownloadItem& item)
{
    write(writer, key::id, item.id().toString());
    write(writer, key::originalURL, item.originalURL().absoluteString());
    write(writer, key::filename, item.filename());
    write(writer, key::statusType, QString::fromLatin1(storedName(item.status())));
    if (item.status() == DownloadStatus::failed)
        write(writer, key::statusMessage, item.status().message());
    write(writer, key::progress, item.progress());
    write(writer, key::bytesReceived, item.bytesReceived());
    write(writer, key::totalBytes, item.totalBytes());
    if (item.resolvedURL())
        write(writer, key::resolvedURL, item.resolvedURL()->absoluteString());
    if (item.resolvedAt())
        write(writer, key::resolvedAt, storedDate(*item.resolvedAt()));
}

void writeExtraction(Writer& writer, const DownloadItem& item)
{
    write(writer, key::hostName, item.hostName());
    write(writer, key::extractionStatusType, QString::fromLatin1(storedName(item.extractionStatus())));
    if (item.extractionStatus() == ExtractionStatus::failed)
        write(writer, key::extractionError, item.extractionStatus().message());
}

void readTransfer(DownloadItem& item, RecordReader& reader)
{
    item.setFilename(reader.requiredShown(key::filename));
    const QString statusType = reader.requiredText(key::statusType);
    item.setStatus(statusFrom(statusType, reader.optionalShown(key::statusMessage)));
    item.setProgress(reader.requiredNumber(key::progress));
    item.setBytesReceived(reader.requiredInteger(key::bytesReceived));
    item.setTotalBytes(reader.requiredInteger(key::totalBytes));
    item.setResolvedURL(reader.optionalLink(key::resolvedURL));
    if (const std::optional<double> date = reader.optionalNumber(key::resolvedAt))
        item.setResolvedAt(dateFrom(*date));
}

void readExtraction(DownloadItem& item, RecordReader& reader)
{
    item.restoreHostName(reader.requiredShown(key::hostName));
    const QString extractionType = reader.requiredText(key::extractionStatusType);
    item.setExtractionStatus(extractionFrom(extractionType, reader.optionalShown(key::extractionError)));
}

/// The truth of a partial download is on disk, not in the record.
void takeTruthFromDisk(DownloadItem& item, const std::optional<QString>& storedPart, PartFinder& parts)
{
    if (item.status() == DownloadStatus::completed)
        return;
    const std::optional<PartFinder::Found> found = parts.find(item, storedPart);
    if (!found)
        return;
    item.setPartPlace(found->place);
    if (item.status() != DownloadStatus::paused || found->size < 1)
        return;
    if (item.totalBytes() < 1)
        item.setTotalBytes(found->total);
    item.setBytesReceived(found->size);
    const auto total = static_cast<double>(item.totalBytes());
    item.setProgress(item.totalBytes() < 1 ? 0 : static_cast<double>(found->size) / total);
}

ItemPtr decodeRecord(const rapidjson::Value& value, PartFinder& parts)
{
    RecordReader reader(value);
    const ItemId id = reader.requiredId(key::id);
    const Link url = reader.requiredLink(key::originalURL);
    if (!reader.isSound())
        return nullptr;
    auto item = std::make_shared<DownloadItem>(normalizeURL(url), id);
    readTransfer(*item, reader);
    item->setLocalPath(pathFrom(reader.optionalText(key::localPath)));
    readExtraction(*item, reader);
    const std::optional<QString> storedPart = pathFrom(reader.optionalText(key::partPath));
    if (!reader.isSound())
        return nullptr;
    takeTruthFromDisk(*item, storedPart, parts);
    return item;
}

} // namespace

void QueueRecord::appendTo(QByteArray& json) const
{
    json += upToLocalPath;
    struct stat facts = {};
    if (!localPathEntry.isEmpty() && ::stat(localPathOnDisk.constData(), &facts) == 0)
        json += localPathEntry;
    json += behindLocalPath;
}

std::shared_ptr<const QueueRecord> encodeRecord(const DownloadItem& item, const DownloadPaths& paths)
{
    if (item.status() == DownloadStatus::expanding)
        return nullptr;
    auto record = std::make_shared<QueueRecord>();
    rapidjson::StringBuffer buffer;
    Writer writer(buffer);
    writer.StartObject();
    writeTransfer(writer, item);
    record->upToLocalPath = taken(buffer);
    if (item.localPath()) {
        write(writer, key::localPath, storedPath(*item.localPath()));
        record->localPathEntry = taken(buffer);
        record->localPathOnDisk = QFile::encodeName(*item.localPath());
    }
    writeExtraction(writer, item);
    if (mustStorePart(item, paths))
        write(writer, key::partPath, storedPath(item.partPlace()->path));
    writer.EndObject();
    record->behindLocalPath = taken(buffer);
    return record;
}

QByteArray encodeQueue(const std::vector<std::shared_ptr<const QueueRecord>>& records)
{
    constexpr qsizetype usualRecord = 400;
    QByteArray json;
    json.reserve(static_cast<qsizetype>(records.size()) * usualRecord + 2);
    json += '[';
    for (const auto& record : records) {
        if (json.size() > 1)
            json += ',';
        record->appendTo(json);
    }
    json += ']';
    return json;
}

std::optional<std::vector<ItemPtr>> decodeQueue(QByteArray json, const DownloadPaths& paths)
{
    // Iterative, so that deep nesting costs memory in proportion to the file and never the stack.
    constexpr unsigned flags =
        rapidjson::kParseInsituFlag | rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;
    rapidjson::Document document;
    document.ParseInsitu<flags>(json.data());
    if (document.HasParseError() || !document.IsArray())
        return std::nullopt;
    PartFinder parts(paths);
    std::vector<ItemPtr> items;
    items.reserve(document.Size());
    QSet<QString> links;
    QSet<ItemId> ids;
    for (const rapidjson::Value& value : document.GetArray()) {
        ItemPtr item = decodeRecord(value, parts);
        if (!item)
            return std::nullopt;
        const qsizetype known = links.size();
        links.insert(item->originalURL().absoluteString().toLower());
        if (links.size() == known)
            continue;
        // Two items must never share an identity, whatever the file says.
        if (ids.contains(item->id()))
            return std::nullopt;
        ids.insert(item->id());
        items.push_back(std::move(item));
    }
    return items;
}

} // namespace vormel

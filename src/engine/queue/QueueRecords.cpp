#include "engine/queue/QueueRecords.h"

#include "engine/queue/PartFinder.h"
#include "model/NormalizeURL.h"
#include "text/FileName.h"
#include "text/PercentCoding.h"

#include <QFile>
#include <QSet>
#include <QUrl>

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <sys/stat.h>

#include <climits>
#include <cmath>

namespace vormel {

namespace {

using Writer = rapidjson::Writer<rapidjson::StringBuffer>;
using Value = rapidjson::Value;

/// Seconds from 1 January 1970 to 1 January 2001, where the dates of the file count from.
constexpr double referenceDate = 978307200.0;
constexpr qsizetype uuidLength = 36;

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

DownloadStatus statusFrom(const QString& type, const QString& message)
{
    if (type == u"completed")
        return DownloadStatus::completed;
    if (type == u"failed")
        return DownloadStatus::failure(message);
    return type == u"stopped" ? DownloadStatus::stopped : DownloadStatus::paused;
}

ExtractionStatus extractionFrom(const QString& type, const QString& message)
{
    if (type == u"done")
        return ExtractionStatus::done;
    return type == u"failed" ? ExtractionStatus::failure(message) : ExtractionStatus::idle;
}

double storedDate(WallTime time)
{
    return std::chrono::duration<double>(time.time_since_epoch()).count() - referenceDate;
}

/// Nothing for a date beyond all that the clock can tell.
std::optional<WallTime> dateFrom(double stored)
{
    constexpr double farthest = 9e9;
    const std::chrono::duration<double> sinceEpoch(stored + referenceDate);
    if (std::abs(sinceEpoch.count()) > farthest)
        return std::nullopt;
    return WallTime(std::chrono::duration_cast<WallTime::duration>(sinceEpoch));
}

void writeText(Writer& writer, const char* key, const QString& text)
{
    writer.Key(key);
    const QByteArray utf8 = text.toUtf8();
    writer.String(utf8.constData(), static_cast<rapidjson::SizeType>(utf8.size()));
}

QString urlOf(const QString& path)
{
    return QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
}

/// Would nobody find the part file by its name and by what it says of itself?
bool mustStorePart(const DownloadItem& item, const DownloadPaths& paths)
{
    const std::optional<PartPlace>& place = item.partPlace();
    return place && item.status() != DownloadStatus::completed &&
           (!place->isMarked || place->path != paths.partFile(item.filename()));
}

double writableNumber(double value)
{
    return std::isfinite(value) ? value : 0;
}

QByteArray taken(rapidjson::StringBuffer& buffer)
{
    QByteArray bytes(buffer.GetString(), static_cast<qsizetype>(buffer.GetSize()));
    buffer.Clear();
    return bytes;
}

/// The members of one record as they are read; every getter that finds the wrong thing spoils the record.
class RecordReader
{
public:
    explicit RecordReader(const Value& record)
        : m_record(record)
        , m_isSound(record.IsObject())
    {}

    [[nodiscard]] bool isSound() const { return m_isSound; }

    std::optional<QString> optionalText(const char* key)
    {
        const Value* value = member(key);
        if (!value)
            return std::nullopt;
        if (!value->IsString())
            return spoil<std::optional<QString>>();
        return QString::fromUtf8(value->GetString(), static_cast<qsizetype>(value->GetStringLength()));
    }

    QString requiredText(const char* key)
    {
        const std::optional<QString> value = optionalText(key);
        return value ? *value : spoil<QString>();
    }

    /// Texts that are shown are cut to what can be shown; one of ten megabytes would hold up the window.
    QString requiredShown(const char* key) { return readableName(requiredText(key)); }
    QString optionalShown(const char* key) { return readableName(optionalText(key).value_or(QString())); }

    std::optional<double> optionalNumber(const char* key)
    {
        const Value* value = member(key);
        if (!value)
            return std::nullopt;
        if (!value->IsNumber() || !std::isfinite(value->GetDouble()))
            return spoil<std::optional<double>>();
        return value->GetDouble();
    }

    double requiredNumber(const char* key)
    {
        const std::optional<double> value = optionalNumber(key);
        return value ? *value : spoil<double>();
    }

    qint64 requiredInteger(const char* key)
    {
        constexpr double firstTooLarge = 9.2e18;
        const Value* value = member(key);
        if (value && value->IsInt64())
            return value->GetInt64();
        if (!value || !value->IsDouble() || std::abs(value->GetDouble()) > firstTooLarge)
            return spoil<qint64>();
        const double number = value->GetDouble();
        return std::trunc(number) == number ? static_cast<qint64>(number) : spoil<qint64>();
    }

    Link requiredLink(const char* key) { return linkFrom(requiredText(key)); }

    std::optional<Link> optionalLink(const char* key)
    {
        const std::optional<QString> value = optionalText(key);
        return value ? std::optional(linkFrom(*value)) : std::nullopt;
    }

    ItemId requiredId(const char* key)
    {
        const QString value = requiredText(key);
        const QUuid uuid = value.size() == uuidLength ? QUuid::fromString(value) : QUuid();
        return uuid.isNull() ? spoil<ItemId>() : ItemId(uuid);
    }

private:
    [[nodiscard]] const Value* member(const char* key) const
    {
        if (!m_record.IsObject())
            return nullptr;
        const auto found = m_record.FindMember(key);
        return found == m_record.MemberEnd() || found->value.IsNull() ? nullptr : &found->value;
    }

    template <typename T>
    T spoil()
    {
        m_isSound = false;
        return T();
    }

    Link linkFrom(const QString& text)
    {
        const std::optional<Link> link = Link::parse(text);
        return link ? *link : spoil<Link>();
    }

    const Value& m_record;
    bool m_isSound;
};

std::optional<QString> localPathFrom(const std::optional<QString>& url)
{
    constexpr qsizetype longest = qsizetype{3} * PATH_MAX;
    if (!url || url->size() > longest || !url->startsWith(u"file://"))
        return std::nullopt;
    QStringView rest = QStringView{*url}.mid(7);
    rest = rest.mid(std::max<qsizetype>(rest.indexOf(u'/'), 0));
    return percentDecoded(rest);
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

ItemPtr decodeRecord(const Value& value, PartFinder& parts)
{
    RecordReader reader(value);
    const ItemId id = reader.requiredId("id");
    const Link url = reader.requiredLink("originalURL");
    if (!reader.isSound())
        return nullptr;
    auto item = std::make_shared<DownloadItem>(normalizeURL(url), id);
    item->setFilename(reader.requiredShown("filename"));
    const QString statusType = reader.requiredText("statusType");
    item->setStatus(statusFrom(statusType, reader.optionalShown("statusMessage")));
    item->setProgress(reader.requiredNumber("progress"));
    item->setBytesReceived(reader.requiredInteger("bytesReceived"));
    item->setTotalBytes(reader.requiredInteger("totalBytes"));
    item->setResolvedURL(reader.optionalLink("resolvedURL"));
    if (const std::optional<double> date = reader.optionalNumber("resolvedAt"))
        item->setResolvedAt(dateFrom(*date));
    item->setLocalPath(localPathFrom(reader.optionalText("localPath")));
    item->restoreHostName(reader.requiredShown("hostName"));
    const QString extractionType = reader.requiredText("extractionStatusType");
    item->setExtractionStatus(extractionFrom(extractionType, reader.optionalShown("extractionError")));
    const std::optional<QString> storedPart = localPathFrom(reader.optionalText("partPath"));
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
    writeText(writer, "id", item.id().toString());
    writeText(writer, "originalURL", item.originalURL().absoluteString());
    writeText(writer, "filename", item.filename());
    writeText(writer, "statusType", QString::fromLatin1(storedName(item.status())));
    if (item.status() == DownloadStatus::failed)
        writeText(writer, "statusMessage", item.status().message());
    writer.Key("progress");
    writer.Double(writableNumber(item.progress()));
    writer.Key("bytesReceived");
    writer.Int64(item.bytesReceived());
    writer.Key("totalBytes");
    writer.Int64(item.totalBytes());
    if (item.resolvedURL())
        writeText(writer, "resolvedURL", item.resolvedURL()->absoluteString());
    if (item.resolvedAt()) {
        writer.Key("resolvedAt");
        writer.Double(storedDate(*item.resolvedAt()));
    }
    record->upToLocalPath = taken(buffer);
    if (item.localPath()) {
        writeText(writer, "localPath", urlOf(*item.localPath()));
        record->localPathEntry = taken(buffer);
        record->localPathOnDisk = QFile::encodeName(*item.localPath());
    }
    writeText(writer, "hostName", item.hostName());
    writeText(writer, "extractionStatusType", QString::fromLatin1(storedName(item.extractionStatus())));
    if (item.extractionStatus() == ExtractionStatus::failed)
        writeText(writer, "extractionError", item.extractionStatus().message());
    if (mustStorePart(item, paths))
        writeText(writer, "partPath", urlOf(item.partPlace()->path));
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
    for (const Value& value : document.GetArray()) {
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

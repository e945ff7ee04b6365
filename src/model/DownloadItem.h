#pragma once

#include "model/DownloadStatus.h"
#include "model/ItemId.h"
#include "model/ItemWait.h"
#include "model/VerificationResult.h"
#include "platform/clock/Clock.h"
#include "text/Link.h"

#include <QFlags>

#include <memory>
#include <optional>

namespace vormel {

class DownloadItem;

/// The observable fields of an item.
enum class ItemField : quint32
{
    resolvedUrl = 1U << 0,
    filename = 1U << 1,
    status = 1U << 2,
    progress = 1U << 3,
    bytesReceived = 1U << 4,
    totalBytes = 1U << 5,
    speed = 1U << 6,
    localPath = 1U << 7,
    extractionStatus = 1U << 8,
    extractionProgress = 1U << 9,
    resolvedAt = 1U << 10,
    recoveryCountdown = 1U << 11,
    extractionStartedAt = 1U << 12,
    extractionTurn = 1U << 13,
    verification = 1U << 14,
    partPlace = 1U << 15,
    wait = 1U << 16,
};
Q_DECLARE_FLAGS(ItemFields, ItemField)
Q_DECLARE_OPERATORS_FOR_FLAGS(ItemFields)

/// Where the unfinished file of an item lies.
struct PartPlace
{
    QString path;
    bool isMarked = false; ///< the file itself says whose it is

    friend bool operator==(const PartPlace&, const PartPlace&) = default;
};

/// Hears of every change of the items that it watches, during the change.
class ItemWatcher
{
public:
    virtual void itemChanged(DownloadItem& item, ItemField field) = 0;

protected:
    ~ItemWatcher() = default;
};

/// One file to be fetched, or one placeholder for a link container that is being read. A reference object: all views
/// and the manager share one instance. UI thread only.
class DownloadItem
{
public:
    /// The name comes from the link's last path component, or is "download", which means that none is known yet.
    DownloadItem(Link originalUrl, ItemId id);
    DownloadItem(const DownloadItem&) = delete;
    DownloadItem& operator=(const DownloadItem&) = delete;
    ~DownloadItem() = default;

    [[nodiscard]] const ItemId& id() const { return m_id; }
    [[nodiscard]] const Link& originalURL() const { return m_originalURL; }
    [[nodiscard]] const std::optional<Link>& resolvedURL() const { return m_resolvedURL; }
    [[nodiscard]] const QString& filename() const { return m_filename; }
    [[nodiscard]] const DownloadStatus& status() const { return m_status; }
    [[nodiscard]] double progress() const { return m_progress; }
    [[nodiscard]] qint64 bytesReceived() const { return m_bytesReceived; }
    [[nodiscard]] qint64 totalBytes() const { return m_totalBytes; } ///< below 1: not known
    [[nodiscard]] double speedBytesPerSec() const { return m_speedBytesPerSec; }
    [[nodiscard]] const std::optional<QString>& localPath() const { return m_localPath; }
    /// The part file that the item has begun, whatever the name of its finished file is by now. It may be gone.
    [[nodiscard]] const std::optional<PartPlace>& partPlace() const { return m_partPlace; }
    [[nodiscard]] const QString& hostName() const { return m_hostName; }
    [[nodiscard]] const ExtractionStatus& extractionStatus() const { return m_extractionStatus; }
    [[nodiscard]] double extractionProgress() const { return m_extractionProgress; }
    [[nodiscard]] const std::optional<WallTime>& resolvedAt() const { return m_resolvedAt; }
    [[nodiscard]] const std::optional<int>& recoveryCountdown() const { return m_recoveryCountdown; }
    [[nodiscard]] const std::optional<WallTime>& extractionStartedAt() const { return m_extractionStartedAt; }
    /// Is its archive ready, but others are worked on first?
    [[nodiscard]] bool awaitsExtractionTurn() const { return m_awaitsExtractionTurn; }
    /// Gone with the next change of either status.
    [[nodiscard]] const VerificationResult& verification() const { return m_verification; }
    /// Gone with the next change of the status.
    [[nodiscard]] const ItemWait& wait() const { return m_wait; }

    void setResolvedURL(std::optional<Link> url) { set(m_resolvedURL, std::move(url), ItemField::resolvedUrl); }
    void setFilename(QString name) { set(m_filename, std::move(name), ItemField::filename); }
    /// The name as the file's own host knows it, and no longer one that was read off the link.
    void setToldFilename(QString name)
    {
        m_isNameTold = true;
        setFilename(std::move(name));
    }
    void setStatus(DownloadStatus status);
    void setProgress(double progress) { set(m_progress, progress, ItemField::progress); }
    void setBytesReceived(qint64 bytes) { set(m_bytesReceived, bytes, ItemField::bytesReceived); }
    void setTotalBytes(qint64 bytes) { set(m_totalBytes, bytes, ItemField::totalBytes); }
    void setSpeedBytesPerSec(double speed) { set(m_speedBytesPerSec, speed, ItemField::speed); }
    void setLocalPath(std::optional<QString> path) { set(m_localPath, std::move(path), ItemField::localPath); }
    void setPartPlace(std::optional<PartPlace> place) { set(m_partPlace, std::move(place), ItemField::partPlace); }
    void setExtractionStatus(ExtractionStatus status);
    void setExtractionProgress(double progress) { set(m_extractionProgress, progress, ItemField::extractionProgress); }
    void setResolvedAt(std::optional<WallTime> time) { set(m_resolvedAt, time, ItemField::resolvedAt); }
    void setRecoveryCountdown(std::optional<int> seconds)
    {
        set(m_recoveryCountdown, seconds, ItemField::recoveryCountdown);
    }
    void setExtractionStartedAt(std::optional<WallTime> time)
    {
        set(m_extractionStartedAt, time, ItemField::extractionStartedAt);
    }
    void setAwaitsExtractionTurn(bool awaits) { set(m_awaitsExtractionTurn, awaits, ItemField::extractionTurn); }
    void setWantedAnew(bool isWanted) { m_isWantedAnew = isWanted; }
    void setVerification(VerificationResult result) { set(m_verification, std::move(result), ItemField::verification); }
    void setWait(ItemWait wait) { set(m_wait, std::move(wait), ItemField::wait); }
    /// For the queue file, which stores the text it once showed.
    void restoreHostName(QString name) { m_hostName = std::move(name); }

    /// Has a host told the name since the start of the program?
    [[nodiscard]] bool isNameTold() const { return m_isNameTold; }
    /// Did the user ask for the file to be fetched again? One that stands under its name is then not the one.
    [[nodiscard]] bool isWantedAnew() const { return m_isWantedAnew; }

    /// The speed as text with "/s", or nothing while there is none.
    [[nodiscard]] QString speedText() const;
    /// The total as text, or nothing while it is not known.
    [[nodiscard]] QString sizeText() const;

    /// At most one watcher; it must outlive its watch.
    void setWatcher(ItemWatcher* watcher) { m_watcher = watcher; }

private:
    template <typename T>
    void set(T& member, T value, ItemField field)
    {
        if (member == value)
            return;
        member = std::move(value);
        if (m_watcher)
            m_watcher->itemChanged(*this, field);
    }

    const ItemId m_id;
    const Link m_originalURL;
    std::optional<Link> m_resolvedURL;
    QString m_filename;
    DownloadStatus m_status;
    double m_progress = 0;
    qint64 m_bytesReceived = 0;
    qint64 m_totalBytes = 0;
    double m_speedBytesPerSec = 0;
    std::optional<QString> m_localPath;
    std::optional<PartPlace> m_partPlace;
    QString m_hostName;
    ExtractionStatus m_extractionStatus;
    double m_extractionProgress = 0;
    std::optional<WallTime> m_resolvedAt;
    std::optional<int> m_recoveryCountdown;
    std::optional<WallTime> m_extractionStartedAt;
    bool m_awaitsExtractionTurn = false;
    bool m_isNameTold = false;
    bool m_isWantedAnew = false;
    VerificationResult m_verification;
    ItemWait m_wait;
    ItemWatcher* m_watcher = nullptr;
};

using ItemPtr = std::shared_ptr<DownloadItem>;

/// The name that stands for "no name known yet".
[[nodiscard]] bool isNamelessFile(QStringView filename);

} // namespace vormel

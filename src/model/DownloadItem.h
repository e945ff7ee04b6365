#pragma once

#include "model/DownloadStatus.h"
#include "model/ItemId.h"
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
    ResolvedUrl = 1U << 0,
    Filename = 1U << 1,
    Status = 1U << 2,
    Progress = 1U << 3,
    BytesReceived = 1U << 4,
    TotalBytes = 1U << 5,
    Speed = 1U << 6,
    LocalPath = 1U << 7,
    ExtractionStatus = 1U << 8,
    ExtractionProgress = 1U << 9,
    ResolvedAt = 1U << 10,
    RecoveryCountdown = 1U << 11,
    ExtractionStartedAt = 1U << 12,
    ExtractionTurn = 1U << 13,
    Verification = 1U << 14,
};
Q_DECLARE_FLAGS(ItemFields, ItemField)
Q_DECLARE_OPERATORS_FOR_FLAGS(ItemFields)

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

    void setResolvedURL(std::optional<Link> url) { set(m_resolvedURL, std::move(url), ItemField::ResolvedUrl); }
    void setFilename(QString name) { set(m_filename, std::move(name), ItemField::Filename); }
    /// The name as the file's own host knows it, and no longer one that was read off the link.
    void setToldFilename(QString name)
    {
        m_isNameTold = true;
        setFilename(std::move(name));
    }
    void setStatus(DownloadStatus status);
    void setProgress(double progress) { set(m_progress, progress, ItemField::Progress); }
    void setBytesReceived(qint64 bytes) { set(m_bytesReceived, bytes, ItemField::BytesReceived); }
    void setTotalBytes(qint64 bytes) { set(m_totalBytes, bytes, ItemField::TotalBytes); }
    void setSpeedBytesPerSec(double speed) { set(m_speedBytesPerSec, speed, ItemField::Speed); }
    void setLocalPath(std::optional<QString> path) { set(m_localPath, std::move(path), ItemField::LocalPath); }
    void setExtractionStatus(ExtractionStatus status);
    void setExtractionProgress(double progress) { set(m_extractionProgress, progress, ItemField::ExtractionProgress); }
    void setResolvedAt(std::optional<WallTime> time) { set(m_resolvedAt, time, ItemField::ResolvedAt); }
    void setRecoveryCountdown(std::optional<int> seconds)
    {
        set(m_recoveryCountdown, seconds, ItemField::RecoveryCountdown);
    }
    void setExtractionStartedAt(std::optional<WallTime> time)
    {
        set(m_extractionStartedAt, time, ItemField::ExtractionStartedAt);
    }
    void setAwaitsExtractionTurn(bool awaits) { set(m_awaitsExtractionTurn, awaits, ItemField::ExtractionTurn); }
    void setWantedAnew(bool isWanted) { m_isWantedAnew = isWanted; }
    void setVerification(VerificationResult result) { set(m_verification, std::move(result), ItemField::Verification); }
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
    ItemWatcher* m_watcher = nullptr;
};

using ItemPtr = std::shared_ptr<DownloadItem>;

/// The name that stands for "no name known yet".
[[nodiscard]] bool isNamelessFile(QStringView filename);

} // namespace vormel

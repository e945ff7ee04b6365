#pragma once

#include "model/AppLanguage.h"

#include <QString>

namespace vormel {

/// Where an item stands on its way from a link to a file. Two failed statuses are equal only with equal messages.
class DownloadStatus
{
public:
    enum Kind : quint8
    {
        queued,      ///< waits for a slot
        resolving,   ///< a start is under way; counts against the limit
        expanding,   ///< a placeholder for a container; never counts
        downloading, ///< a transfer runs; counts
        paused,      ///< out of the scheduler's sight until Start All or a row's Start
        stopped,     ///< as paused, but Start All leaves it alone
        completed,   ///< the file is at its final place
        failed,      ///< carries the message for the user
    };

    DownloadStatus(Kind kind = queued) // NOLINT(google-explicit-constructor): a kind is a status
        : m_kind(kind)
    {}
    [[nodiscard]] static DownloadStatus failure(QString message);

    [[nodiscard]] Kind kind() const { return m_kind; }
    [[nodiscard]] const QString& message() const { return m_message; }

    friend bool operator==(const DownloadStatus&, const DownloadStatus&) = default;
    friend bool operator==(const DownloadStatus& status, Kind kind) { return status.m_kind == kind; }

private:
    Kind m_kind;
    QString m_message;
};

/// The row's text for a status. The message of a failed one stays in the language in which it was made.
[[nodiscard]] QString statusLabel(const DownloadStatus& status, AppLanguage language);

/// Where the archive step after the download stands.
class ExtractionStatus
{
public:
    enum Kind : quint8
    {
        idle,
        extracting,
        repairing,
        done,
        failed,
    };

    ExtractionStatus(Kind kind = idle) // NOLINT(google-explicit-constructor): a kind is a status
        : m_kind(kind)
    {}
    [[nodiscard]] static ExtractionStatus failure(QString message);

    [[nodiscard]] Kind kind() const { return m_kind; }
    [[nodiscard]] const QString& message() const { return m_message; }

    friend bool operator==(const ExtractionStatus&, const ExtractionStatus&) = default;
    friend bool operator==(const ExtractionStatus& status, Kind kind) { return status.m_kind == kind; }

private:
    Kind m_kind;
    QString m_message;
};

} // namespace vormel

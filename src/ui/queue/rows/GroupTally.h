#pragma once

#include "engine/groups/DownloadGroup.h"
#include "model/AppLanguage.h"

namespace vormel {

/// What the items of a group come to together. A value, made in one walk over them.
struct GroupTally
{
    /// The group as a whole. The first that fits, in this order.
    enum class Summary
    {
        completed,
        error,
        downloading,
        stopped,
        paused,
        resolving,
        queued,
    };

    explicit GroupTally(const DownloadGroup& group);

    [[nodiscard]] Summary summary() const;
    /// The summary in words: "Downloading (2/5)".
    [[nodiscard]] QString text(AppLanguage language) const;
    /// Only a command on the group or its items brings anything of it back.
    [[nodiscard]] bool isStopped() const;
    /// From 0 to 1: by bytes where sizes are known, else the mean of the items.
    [[nodiscard]] double progress() const;

    qsizetype items = 0;
    qsizetype queued = 0;
    qsizetype resolving = 0;
    qsizetype downloading = 0;
    qsizetype paused = 0;
    qsizetype stopped = 0;
    qsizetype completed = 0;
    qsizetype failed = 0;
    qint64 totalBytes = 0;
    qint64 bytesReceived = 0;
    double speedBytesPerSec = 0;

private:
    void count(DownloadStatus::Kind status);

    double m_progressSum = 0;
};

} // namespace vormel

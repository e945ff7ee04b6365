#pragma once

#include "model/DownloadStatus.h"
#include "platform/clock/Clock.h"

#include <QString>

#include <optional>

/// How single values stand in the queue file, each beside the way back.
namespace vormel {

/// Whatever is under way is stored as paused.
[[nodiscard]] const char* storedName(const DownloadStatus& status);
/// The message is a failure's.
[[nodiscard]] DownloadStatus statusFrom(const QString& name, const QString& message);

/// Whatever is under way is stored as idle.
[[nodiscard]] const char* storedName(const ExtractionStatus& status);
[[nodiscard]] ExtractionStatus extractionFrom(const QString& name, const QString& message);

/// In seconds from 1 January 2001.
[[nodiscard]] double storedDate(WallTime time);
/// Nothing for a date beyond all that the clock can tell.
[[nodiscard]] std::optional<WallTime> dateFrom(double stored);

/// As the address of a file.
[[nodiscard]] QString storedPath(const QString& path);
/// Nothing for what is no address of a file, or longer than any can be.
[[nodiscard]] std::optional<QString> pathFrom(const std::optional<QString>& stored);

} // namespace vormel

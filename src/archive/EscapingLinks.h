#pragma once

#include <QString>

#include <ctime>

namespace vormel {

/// The moment as the file system under the folder would stamp it now.
[[nodiscard]] timespec fileSystemMoment(const QString& folder);

/// Removes every symbolic link below the folder that was made at that moment or later and leads out of the folder, so
/// that no later archive can write through it. Older links are the user's own and stay. Any thread; waits for the disk.
void removeEscapingLinks(const QString& folder, const timespec& since);

} // namespace vormel

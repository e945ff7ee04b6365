#pragma once

#include <QString>

namespace vormel {

/// The path itself if nothing stands there, else the first free one of "name (1).ext", "name (2).ext" and so on.
[[nodiscard]] QString uniqueDestination(const QString& path);

/// Where a move ended, or the system's error number.
struct MoveResult
{
    QString path;
    int systemError = 0;
};

/// Moves a file to the path or, if something stands there, to the first free variant of it. Never overwrites.
[[nodiscard]] MoveResult moveToFinalPlace(const QString& from, const QString& to);

} // namespace vormel

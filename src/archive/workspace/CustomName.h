#pragma once

#include <QString>

namespace vormel {

/// A name chosen by the user as one that can only stand for a folder inside another, with "-" for "/" and ":".
[[nodiscard]] QString folderNameOf(const QString& customName);

} // namespace vormel

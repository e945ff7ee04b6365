#pragma once

#include "demo/DemoSites.h"

#include <QStringList>

namespace vormel::demo {

// What the disk says against a claim; nothing where it agrees. Read without the help of the program that is shown.

/// Does the file have exactly the bytes of its source?
[[nodiscard]] QString objectionToFile(const QString& path, const sites::PatternContent& source);

/// Does the queue file list the links of all samples in their order, the one that is gone as failed, the others as
/// completed?
[[nodiscard]] QString objectionToStoredQueue(const QString& path, const std::vector<Sample>& samples);

/// All files below the folder, however deep and whether hidden or not, as sorted relative paths.
[[nodiscard]] QStringList filesBelow(const QString& folder);

/// Those of them that hold the text, or that cannot be looked into.
[[nodiscard]] QStringList filesWith(const QString& folder, const QString& text);

} // namespace vormel::demo

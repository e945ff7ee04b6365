#pragma once

#include <QString>

namespace vormel::bench {

/// Writes a file of so many bytes that do not compress. Ends the benchmark if that fails.
void writePatternFile(const QString& path, qint64 size);

} // namespace vormel::bench

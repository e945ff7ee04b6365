#pragma once

#include <QString>

#include <optional>

namespace vormel {

enum class ArchiveFormat
{
    zip,
    rar,
    sevenZip,
    tar,
    tarGz,
    tarBz2,
    tarXz,
};

/// What a file's name says that it is; nothing for files that are not unpacked, such as recovery volumes.
[[nodiscard]] std::optional<ArchiveFormat> formatOf(const QString& path);

} // namespace vormel

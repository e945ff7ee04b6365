#pragma once

#include <QString>

namespace vormel {

/// Does the ZIP have names that unzip would spoil for good? It takes every name that was packed on Windows for one of a
/// DOS code page, also where the archive says UTF-8, and drops what Latin-1 does not have. Other tools leave the bytes
/// as they are. False for what is no ZIP. Waits for the disk.
[[nodiscard]] bool hasNamesThatUnzipSpoils(const QString& archive);

} // namespace vormel

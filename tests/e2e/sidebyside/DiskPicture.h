#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <sys/stat.h>

#include <optional>

namespace vormel::e2e {

/// One thing on the disk, as far as anybody could tell it from another.
struct DiskEntry
{
    mode_t mode = 0;       ///< kind and permissions
    QByteArray contents;   ///< the digest of a file, the target of a link
    qint64 modifiedAt = 0; ///< in nanoseconds; 0 for a folder, whose time changes with what others put into it

    [[nodiscard]] bool isFile() const { return S_ISREG(mode); }
    friend bool operator==(const DiskEntry&, const DiskEntry&) = default;
};

/// Everything below a folder by its path from there. Paths are bytes, as not every name is text.
using DiskPicture = QMap<QByteArray, DiskEntry>;

[[nodiscard]] std::optional<DiskEntry> entryAt(const QByteArray& path);
/// Empty for a folder that is not there. Follows no links.
[[nodiscard]] DiskPicture pictureOf(const QString& folder);

[[nodiscard]] qint64 modifiedAt(const struct stat& facts);
[[nodiscard]] QByteArray digestOf(const QByteArray& contents);
/// The contents of a file; empty if there is none.
[[nodiscard]] QByteArray contentsOf(const QString& path);

} // namespace vormel::e2e

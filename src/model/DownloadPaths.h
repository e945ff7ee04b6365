#pragma once

#include <QString>

namespace vormel {

/// Where the files of the queue lie, given the folder of all downloads. Pure: the disk is not looked at. Whatever the
/// file name says, each path lies in that folder or in one folder directly below it.
class DownloadPaths
{
public:
    explicit DownloadPaths(QString downloadFolder)
        : m_downloadFolder(std::move(downloadFolder))
    {}

    /// The folder of a multi-part set for its members, named by the set's base name; else the download folder itself.
    [[nodiscard]] QString groupFolder(const QString& filename) const;
    /// The file when it is complete.
    [[nodiscard]] QString finalFile(const QString& filename) const;
    /// The file while it is coming: the final name with ".download" behind it.
    [[nodiscard]] QString partFile(const QString& filename) const { return partOf(finalFile(filename)); }
    [[nodiscard]] static QString partOf(const QString& finalFile) { return finalFile + QStringLiteral(".download"); }

private:
    QString m_downloadFolder;
};

} // namespace vormel

#pragma once

#include "e2e/sidebyside/Scene.h"

namespace vormel::e2e {

/// Looks at every file there is when all is over, and tells what is wrong with it, a line each.
class Inspection
{
public:
    explicit Inspection(Scene& scene);

    /// Every download lies whole at its item's place, or in the Trash where an archive was spent.
    [[nodiscard]] QStringList wrongDownloads();
    /// All that was packed is there under a right name, or in the Trash where two archives brought one name.
    [[nodiscard]] QStringList lostMembers();
    /// Part files of nobody, work folders, half files.
    [[nodiscard]] QStringList debris();

private:
    struct Member
    {
        QString path; ///< in the archive
        const PackedArchive* archive = nullptr;
    };
    void learnMembers();
    [[nodiscard]] bool isInTrash(const QByteArray& digest) const;
    /// Another archive may bring the same name, of itself or by a name that the user gave to both.
    [[nodiscard]] bool isContested(const Member& member) const;
    [[nodiscard]] static QString broughtAs(const QString& member);
    [[nodiscard]] bool mayBeCalled(const QByteArray& path, const Member& member) const;
    [[nodiscard]] QString wrongWith(const QByteArray& path, const DiskEntry& entry) const;
    [[nodiscard]] bool isOfWaitingRow(const QString& row) const;
    /// The rows of unpacked archives go by themselves; of one that was to be fetched anew the part file stays.
    [[nodiscard]] bool isOfClearedArchive(const QString& row) const;
    [[nodiscard]] QString wrongWith(const DownloadItem& item) const;

    Scene& m_scene;
    QHash<QString, DiskPicture> m_folders; ///< by path
    DiskPicture m_trash;
    QHash<QByteArray, Member> m_members; ///< by digest
    QHash<QString, int> m_bringers;      ///< how many archives bring a name
    QSet<QByteArray> m_downloads;        ///< digests
};

} // namespace vormel::e2e

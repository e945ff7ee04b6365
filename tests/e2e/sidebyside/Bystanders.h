#pragma once

#include "e2e/sidebyside/DiskPicture.h"

#include <QStringList>

#include <random>
#include <vector>

namespace vormel::e2e {

/// Files of all kinds that lie in a folder and are nobody's business but the user's. Knows how each of them looked, so
/// that whatever happens to one shows.
class Bystanders
{
public:
    /// `beside` is a folder outside, which some links lead to.
    Bystanders(QString folder, QString beside);
    Bystanders(const Bystanders&) = delete;
    Bystanders& operator=(const Bystanders&) = delete;
    /// Removes the folder, as not everybody could.
    ~Bystanders();

    /// Puts one of every kind there.
    void plant();
    /// One more, as the user saves something in the middle of all else. What it is called tells.
    QString save(std::mt19937& random);
    /// What lies below here may go to the Trash with its folder.
    void mayGo(const QByteArray& folder) { m_mayGo.push_back(folder); }

    /// What is not as it was, a line each. What a member of an archive needs the name of may be in the Trash instead.
    [[nodiscard]] QStringList changed(const QString& trash) const;
    /// Is that one of them?
    [[nodiscard]] bool contains(const QByteArray& relative) const { return m_all.contains(relative); }
    [[nodiscard]] const QString& folder() const { return m_folder; }

private:
    struct Bystander
    {
        DiskEntry entry;
        bool isInTheWay = false; ///< a member of an archive has its name
    };
    [[nodiscard]] QByteArray path(const QByteArray& relative) const;
    /// False if the folder is gone.
    bool putFile(const QByteArray& relative, const QByteArray& contents, mode_t mode, bool isInTheWay);
    void putLink(const QByteArray& relative, const QByteArray& target, bool isInTheWay);
    void note(const QByteArray& relative, bool isInTheWay);
    void plantFiles();
    void plantFolders();
    void plantLinks();
    [[nodiscard]] bool mayBeInTrash(const QByteArray& relative, const Bystander& bystander) const;

    QString m_folder;
    QString m_beside;
    QMap<QByteArray, Bystander> m_all;
    std::vector<QByteArray> m_mayGo;
    int m_saved = 0;
};

} // namespace vormel::e2e

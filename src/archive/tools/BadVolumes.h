#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QStringList>

namespace vormel {

/// Reads what unrar or rar prints while it tests a set of RAR volumes, line by line, and collects the volumes that it
/// blames. Only lines that name an archive blame one by its name. Lines that name a member, whatever it is called, say
/// no more than that something is wrong; they blame the volume that was being tested, and that only as long as no other
/// is to blame. Names that go over several lines can look like any line: where there are such, only paths count, which
/// they cannot know.
class BadVolumes
{
public:
    /// The path that the test was started with.
    explicit BadVolumes(const QString& archive);

    /// One line of the output, without its end, in order.
    void readLine(const QByteArray& line);

    /// The sorted names of the volumes to blame, without folders.
    [[nodiscard]] QStringList names() const;
    /// Does the tool want a password, without which it tests nothing?
    [[nodiscard]] bool wantsPassword() const { return m_wantsPassword; }

private:
    [[nodiscard]] bool readArchive(const QString& line);
    void readComplaint(const QString& line);
    [[nodiscard]] bool isVolume(const QString& path) const;

    QString m_folder; ///< with the "/" at its end
    QString m_base;
    QString m_tested;         ///< the volume that is being tested
    QSet<QString> m_named;    ///< by a path in the folder
    QSet<QString> m_believed; ///< to be blamed by lines that could be a part of a name
    bool m_hasBrokenNames = false;
    bool m_wantsPassword = false;
};

} // namespace vormel

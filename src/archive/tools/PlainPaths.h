#pragma once

#include <QString>

#include <memory>

class QTemporaryDir;

namespace vormel {

/// What becomes of the recovery volumes beside an archive. unrar and rar rebuild with them, in the folder where they
/// lie, as soon as they miss a volume, also when they are only to test.
enum class Recovery
{
    leftBeside,
    keptAway,
};

/// Paths that no tool takes for a pattern. unrar, rar, unzip and 7z look for every file that "Who?.rar" or
/// "pics[1].zip" fits, and there is no way of telling all of them not to. What could be taken so is given under a plain
/// name instead, through symbolic links in a private folder that goes with this object; other paths stay as they are.
/// The object must outlive the tool's run.
class PlainPaths
{
public:
    /// Absolute paths. All volumes that belong to the archive are linked with it. Recovery volumes that are kept away
    /// are a reason for links by themselves. Throws ToolLaunchError when the links cannot be made.
    explicit PlainPaths(const QString& archive, const QString& destination = {},
                        Recovery recovery = Recovery::leftBeside);
    PlainPaths(const PlainPaths&) = delete;
    PlainPaths& operator=(const PlainPaths&) = delete;
    ~PlainPaths();

    [[nodiscard]] const QString& archive() const { return m_archive; }
    /// The destination without a "*", in place of which 7z would put the archive's name. The other tools take theirs as
    /// it is, and unrar and rar are stricter with a link in its place.
    [[nodiscard]] const QString& destination() const { return m_destination; }

    /// The name on disk of a volume that the tool names by its plain name.
    [[nodiscard]] QString realName(const QString& volume) const;

private:
    void linkArchive(const QString& archive, Recovery recovery);
    void link(const QString& target, const QString& name);

    std::unique_ptr<QTemporaryDir> m_links; ///< nothing while no link is needed
    QString m_archive;
    QString m_destination;
    QString m_base;     ///< what the names of the volumes begin with on the disk
    QString m_linkBase; ///< and what those of their links begin with
};

} // namespace vormel

#pragma once

#include "engine/transfer/PartMarks.h"
#include "platform/storage/FileDescriptor.h"

#include <QByteArrayView>
#include <QString>

namespace vormel {

/// The file that a transfer grows: always a prefix of its source. It notices when somebody else shortens, lengthens or
/// replaces the file meanwhile, and takes no byte that would not stand where it belongs. Not safe for threads.
class PartFile
{
public:
    enum class Opening
    {
        existing, ///< at its end
        fresh,    ///< where nothing stands yet
    };

    /// A symbolic link, a file with a second name and anything else that is no regular file is refused. On failure
    /// isOpen() is false and error() tells why.
    PartFile(const QString& path, Opening opening);

    [[nodiscard]] const QString& path() const { return m_path; }
    [[nodiscard]] bool isOpen() const { return m_file && m_file->isOpen(); }
    /// The system's error number of the first failure; 0 without one.
    [[nodiscard]] int error() const { return m_error; }
    /// How many bytes of the source are in it.
    [[nodiscard]] qint64 size() const { return m_size; }

    /// Adds to the end. False if not all of it could be written: the file then takes nothing more, and what is in it is
    /// still a prefix.
    [[nodiscard]] bool append(QByteArrayView bytes);
    /// Empties it. False on failure, after which it takes nothing more.
    [[nodiscard]] bool restart() { return cutBackTo(0); }
    /// Takes the bytes behind the first ones away. False on failure, after which it takes nothing more.
    [[nodiscard]] bool cutBackTo(qint64 size);

    /// What is kept with the file. Of an empty file only the owner counts.
    [[nodiscard]] PartMarks marks() const;
    void setMarks(const PartMarks& marks);
    /// Could the file system keep the last marks?
    [[nodiscard]] bool isMarked() const { return m_isMarked; }

    /// Gives it another name where nothing stands yet. 0, or the system's error number.
    [[nodiscard]] int moveTo(const QString& path);
    /// Does its path still name this very file, with all that was written to it?
    [[nodiscard]] bool isStillThere() const;
    /// An empty file is of no use to anybody. True if it was one, and is gone.
    bool removeIfEmpty() const;

    /// Whoever holds it keeps the file open beyond the life of this.
    [[nodiscard]] std::shared_ptr<const FileDescriptor> descriptor() const { return m_file; }

private:
    [[nodiscard]] bool matchesDisk();
    bool fail(int error);

    QString m_path;
    std::shared_ptr<const FileDescriptor> m_file;
    qint64 m_size = 0;
    int m_error = 0;
    bool m_isMarked = false;
};

} // namespace vormel

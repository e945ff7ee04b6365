#pragma once

#include "platform/storage/FileDescriptor.h"

#include <QByteArrayView>
#include <QString>

namespace vormel {

/// The file that a transfer grows: always a prefix of its source. It notices when somebody else shortens, lengthens or
/// replaces the file meanwhile, and takes no byte that would not stand where it belongs. Not safe for threads.
class PartFile
{
public:
    /// Opens or creates the file, at its end. A symbolic link or anything else that is no regular file is refused. On
    /// failure isOpen() is false and error() tells why.
    explicit PartFile(const QString& path);

    [[nodiscard]] bool isOpen() const { return m_file.isOpen(); }
    /// The system's error number of the first failure; 0 without one.
    [[nodiscard]] int error() const { return m_error; }
    /// How many bytes of the source are in it.
    [[nodiscard]] qint64 size() const { return m_size; }

    /// Adds to the end. False if not all of it could be written: the file then takes nothing more, and what is in it is
    /// still a prefix.
    [[nodiscard]] bool append(QByteArrayView bytes);
    /// Empties it. False on failure, after which it takes nothing more.
    [[nodiscard]] bool restart();

    /// The fingerprint of the source, kept with the file where the file system can.
    [[nodiscard]] QString source() const;
    void setSource(const QString& fingerprint);

    /// Does the path still name this very file, with all that was written to it?
    [[nodiscard]] bool isStillAt(const QString& path) const;

private:
    [[nodiscard]] bool matchesDisk();
    bool fail(int error);

    FileDescriptor m_file;
    qint64 m_size = 0;
    int m_error = 0;
};

} // namespace vormel

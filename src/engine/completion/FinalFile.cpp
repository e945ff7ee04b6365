#include "engine/completion/FinalFile.h"

#include "text/FileName.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>

namespace vormel {

namespace {

/// Also true for a symbolic link that leads nowhere, since the name is taken.
bool isTaken(const QString& path)
{
    struct stat facts = {};
    return ::lstat(QFile::encodeName(path).constData(), &facts) == 0;
}

} // namespace

QString uniqueDestination(const QString& path)
{
    if (!isTaken(path))
        return path;
    const QFileInfo info(path);
    const QString stem = withoutPathExtension(info.fileName());
    const QString extension = pathExtension(info.fileName());
    for (int number = 1;; ++number) {
        // Without an extension the full stop stays all the same.
        QString candidate = QStringLiteral("%1/%2 (%3).%4").arg(info.path(), stem, QString::number(number), extension);
        if (!isTaken(candidate))
            return candidate;
    }
}

MoveResult moveToFinalPlace(const QString& from, const QString& to)
{
    const QByteArray source = QFile::encodeName(from);
    while (true) {
        const QString target = uniqueDestination(to);
        if (::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, QFile::encodeName(target).constData(),
                        RENAME_NOREPLACE) == 0)
            return {target, 0};
        if (errno == EINVAL && ::rename(source.constData(), QFile::encodeName(target).constData()) == 0)
            return {target, 0}; // a file system without the careful kind of move
        // Somebody may have taken the name in between.
        if (errno != EEXIST)
            return {{}, errno};
    }
}

} // namespace vormel

#include "platform/storage/UniqueDestination.h"

#include "platform/storage/CarefulMove.h"
#include "text/FileName.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

#include <cerrno>

using namespace Qt::StringLiterals;

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
    // Without an extension the full stop stays all the same.
    const QString end = pathExtension(info.fileName()).isEmpty() ? u"."_s : QString();
    for (int number = 1;; ++number) {
        QString candidate = info.path() + u'/' + numberedFileName(info.fileName(), number) + end;
        if (!isTaken(candidate))
            return candidate;
    }
}

MoveResult moveToFinalPlace(const QString& from, const QString& to)
{
    while (true) {
        const QString target = uniqueDestination(to);
        const int error = moveWithoutReplacing(from, target);
        // Somebody may have taken the name in between.
        if (error != EEXIST)
            return error == 0 ? MoveResult{target, 0} : MoveResult{{}, error};
    }
}

} // namespace vormel

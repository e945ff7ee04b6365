#include "platform/storage/CarefulMove.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace vormel {

namespace {

/// For file systems that know no flags of rename.
int moveByHand(int fromFolder, const char* from, int toFolder, const char* to)
{
    if (::linkat(fromFolder, from, toFolder, to, 0) == 0)
        return ::unlinkat(fromFolder, from, 0) == 0 ? 0 : errno;
    if (errno == EEXIST) // which the kernel tells before it tells that this cannot have a second name
        return EEXIST;
    return ::renameat(fromFolder, from, toFolder, to) == 0 ? 0 : errno;
}

} // namespace

int moveWithoutReplacing(int fromFolder, const QByteArray& from, int toFolder, const QByteArray& to)
{
    if (::renameat2(fromFolder, from.constData(), toFolder, to.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    return errno == EINVAL || errno == ENOSYS ? moveByHand(fromFolder, from.constData(), toFolder, to.constData())
                                              : errno;
}

int moveWithoutReplacing(const QString& from, const QString& to)
{
    return moveWithoutReplacing(AT_FDCWD, QFile::encodeName(from), AT_FDCWD, QFile::encodeName(to));
}

int exchangeFiles(const QString& one, const QString& other)
{
    const QByteArray names[] = {QFile::encodeName(one), QFile::encodeName(other)};
    const bool isDone =
        ::renameat2(AT_FDCWD, names[0].constData(), AT_FDCWD, names[1].constData(), RENAME_EXCHANGE) == 0;
    return isDone ? 0 : errno;
}

} // namespace vormel

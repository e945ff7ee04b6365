#include "archive/workspace/ZipNames.h"

#include <QByteArray>
#include <QFile>
#include <QtEndian>

#include <algorithm>

namespace vormel {

namespace {

constexpr qint64 endSize = 22;
constexpr qint64 end64Size = 56;
constexpr qint64 locatorSize = 20;
constexpr qint64 entrySize = 46;

template <typename Number>
Number numberAt(const QByteArray& bytes, qint64 offset)
{
    return qFromLittleEndian<Number>(bytes.constData() + offset);
}

QByteArray readAt(QFile& file, qint64 offset, qint64 size)
{
    return offset >= 0 && file.seek(offset) ? file.read(size) : QByteArray();
}

/// The list of members; empty if there is none to be found.
QByteArray directoryOf(QFile& file)
{
    // It would be read whole.
    constexpr auto maxSize = quint64{256} * 1024 * 1024;
    constexpr qint64 maxComment = 0xffff;
    const qint64 tailStart = std::max<qint64>(0, file.size() - endSize - maxComment);
    const QByteArray tail = readAt(file, tailStart, endSize + maxComment);
    const qint64 end = tail.lastIndexOf("PK\5\6", tail.size() - endSize);
    if (tail.size() < endSize || end < 0)
        return {};
    quint64 size = numberAt<quint32>(tail, end + 12);
    // Counted back from its end, as other things may stand in front of the archive.
    qint64 directoryEnd = tailStart + end;
    const QByteArray end64 = readAt(file, directoryEnd - locatorSize - end64Size, end64Size);
    if (end64.size() == end64Size && end64.startsWith("PK\6\6")) {
        directoryEnd -= locatorSize + end64Size;
        size = numberAt<quint64>(end64, 40);
    }
    return size <= maxSize ? readAt(file, directoryEnd - static_cast<qint64>(size), static_cast<qint64>(size))
                           : QByteArray();
}

bool isSpoiled(int host, const QByteArray& name)
{
    constexpr int fat = 0;
    constexpr int hpfs = 6;
    constexpr int ntfs = 11;
    return (host == fat || host == hpfs || host == ntfs) &&
           std::any_of(name.begin(), name.end(), [](char c) { return static_cast<signed char>(c) < 0; });
}

} // namespace

bool hasNamesThatUnzipSpoils(const QString& archive)
{
    QFile file(archive);
    if (!file.open(QFile::ReadOnly))
        return false;
    const QByteArray directory = directoryOf(file);
    for (qint64 at = 0; at + entrySize <= directory.size();) {
        if (QByteArrayView(directory).sliced(at, 4) != "PK\1\2")
            return false;
        const qint64 nameSize = numberAt<quint16>(directory, at + 28);
        const qint64 rest = numberAt<quint16>(directory, at + 30) + numberAt<quint16>(directory, at + 32);
        if (isSpoiled(directory[at + 5], directory.mid(at + entrySize, nameSize)))
            return true;
        at += entrySize + nameSize + rest;
    }
    return false;
}

} // namespace vormel

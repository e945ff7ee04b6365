#include "engine/transfer/PartFile.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace vormel {

namespace {

constexpr const char* sourceAttribute = "user.vormel.source";
constexpr mode_t usualMode = 0666;

} // namespace

PartFile::PartFile(const QString& path)
    : m_file(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK,
                    usualMode))
{
    struct stat facts = {};
    if (!m_file.isOpen() || ::fstat(m_file.get(), &facts) != 0) {
        fail(errno);
    } else if (!S_ISREG(facts.st_mode)) {
        fail(EINVAL);
        m_file.close();
    } else {
        m_size = facts.st_size;
    }
}

bool PartFile::fail(int error)
{
    if (m_error == 0)
        m_error = error;
    return false;
}

bool PartFile::matchesDisk()
{
    struct stat facts = {};
    if (::fstat(m_file.get(), &facts) != 0)
        return fail(errno);
    if (facts.st_nlink == 0)
        return fail(ENOENT);
    if (facts.st_size < m_size)
        return fail(ESTALE);
    // Bytes that somebody else put behind ours are not the source's.
    if (facts.st_size > m_size && ::ftruncate(m_file.get(), m_size) != 0)
        return fail(errno);
    return true;
}

bool PartFile::append(QByteArrayView bytes)
{
    if (m_error != 0 || !matchesDisk())
        return false;
    while (!bytes.isEmpty()) {
        const ssize_t count = ::pwrite(m_file.get(), bytes.data(), static_cast<size_t>(bytes.size()), m_size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return fail(count == 0 ? EIO : errno);
        m_size += count;
        bytes = bytes.sliced(count);
    }
    return true;
}

bool PartFile::restart()
{
    if (m_error != 0)
        return false;
    if (::ftruncate(m_file.get(), 0) != 0)
        return fail(errno);
    m_size = 0;
    return true;
}

QString PartFile::source() const
{
    std::array<char, 1024> text{};
    const ssize_t length = ::fgetxattr(m_file.get(), sourceAttribute, text.data(), text.size());
    return length > 0 ? QString::fromUtf8(text.data(), length) : QString();
}

void PartFile::setSource(const QString& fingerprint)
{
    const QByteArray text = fingerprint.toUtf8();
    if (text.isEmpty())
        ::fremovexattr(m_file.get(), sourceAttribute);
    else
        ::fsetxattr(m_file.get(), sourceAttribute, text.constData(), static_cast<size_t>(text.size()), 0);
}

bool PartFile::isStillAt(const QString& path) const
{
    struct stat ours = {};
    struct stat there = {};
    if (::fstat(m_file.get(), &ours) != 0 || ::lstat(QFile::encodeName(path).constData(), &there) != 0)
        return false;
    return ours.st_dev == there.st_dev && ours.st_ino == there.st_ino && ours.st_size == m_size;
}

} // namespace vormel

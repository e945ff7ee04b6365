#include "engine/transfer/PartFile.h"

#include "platform/storage/CarefulMove.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace vormel {

namespace {

constexpr mode_t usualMode = 0666;

FileDescriptor opened(const QString& path, PartFile::Opening opening)
{
    const int creation = opening == PartFile::Opening::fresh ? O_CREAT | O_EXCL : 0;
    return FileDescriptor(::open(QFile::encodeName(path).constData(),
                                 O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | creation, usualMode));
}

} // namespace

PartFile::PartFile(const QString& path, Opening opening)
    : m_path(path)
    , m_file(std::make_shared<const FileDescriptor>(opened(path, opening)))
{
    struct stat facts = {};
    if (!m_file->isOpen() || ::fstat(m_file->get(), &facts) != 0) {
        fail(errno);
    } else if (!S_ISREG(facts.st_mode) || facts.st_nlink > 1) {
        fail(S_ISREG(facts.st_mode) ? EMLINK : EINVAL);
        m_file.reset();
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
    if (::fstat(m_file->get(), &facts) != 0)
        return fail(errno);
    if (facts.st_nlink != 1)
        return fail(facts.st_nlink == 0 ? ENOENT : EMLINK);
    if (facts.st_size < m_size)
        return fail(ESTALE);
    // Bytes that somebody else put behind ours are not the source's.
    if (facts.st_size > m_size && ::ftruncate(m_file->get(), m_size) != 0)
        return fail(errno);
    return true;
}

bool PartFile::append(QByteArrayView bytes)
{
    if (m_error != 0 || !matchesDisk())
        return false;
    while (!bytes.isEmpty()) {
        const ssize_t count = ::pwrite(m_file->get(), bytes.data(), static_cast<size_t>(bytes.size()), m_size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return fail(count == 0 ? EIO : errno);
        m_size += count;
        bytes = bytes.sliced(count);
    }
    return true;
}

bool PartFile::cutBackTo(qint64 size)
{
    if (m_error != 0 || size > m_size)
        return false;
    if (::ftruncate(m_file->get(), size) != 0)
        return fail(errno);
    m_size = size;
    return true;
}

PartMarks PartFile::marks() const
{
    PartMarks marks = readMarks(m_file->get());
    if (m_size == 0) {
        marks.total = 0;
        marks.source = {};
    }
    return marks;
}

void PartFile::setMarks(const PartMarks& marks)
{
    m_isMarked = writeMarks(m_file->get(), marks);
}

int PartFile::moveTo(const QString& path)
{
    const int error = moveWithoutReplacing(m_path, path);
    if (error == 0)
        m_path = path;
    return error;
}

bool PartFile::isStillThere() const
{
    struct stat ours = {};
    struct stat there = {};
    if (::fstat(m_file->get(), &ours) != 0 || ::lstat(QFile::encodeName(m_path).constData(), &there) != 0)
        return false;
    return ours.st_dev == there.st_dev && ours.st_ino == there.st_ino && ours.st_size == m_size;
}

bool PartFile::removeIfEmpty() const
{
    return m_size == 0 && isStillThere() && ::unlink(QFile::encodeName(m_path).constData()) == 0;
}

} // namespace vormel

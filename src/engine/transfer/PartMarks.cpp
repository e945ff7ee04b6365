#include "engine/transfer/PartMarks.h"

#include <QCryptographicHash>
#include <QFile>

#include <sys/xattr.h>

#include <array>
#include <cerrno>

namespace vormel {

namespace {

constexpr const char* itemAttribute = "user.vormel.item";
constexpr const char* linkAttribute = "user.vormel.link";
constexpr const char* totalAttribute = "user.vormel.total";
constexpr const char* sourceAttribute = "user.vormel.source";

/// A link may hold what nobody else shall read, and may be longer than an attribute.
QByteArray markOf(const Link& link)
{
    return QCryptographicHash::hash(link.absoluteString().toUtf8(), QCryptographicHash::Sha256).toHex();
}

/// `read` gets one attribute by its name.
template <typename Read>
PartMarks marksThrough(Read read)
{
    const auto value = [&read](const char* name) {
        std::array<char, 2048> text{};
        const ssize_t length = read(name, text.data(), text.size());
        return length > 0 ? QByteArray(text.data(), length) : QByteArray();
    };
    PartMarks marks;
    marks.item = value(itemAttribute);
    marks.link = value(linkAttribute);
    marks.total = value(totalAttribute).toLongLong();
    if (const QByteArray source = value(sourceAttribute); !source.isEmpty())
        marks.source = SourceMark::fromText(QString::fromUtf8(source));
    return marks;
}

} // namespace

bool PartMarks::nameOwner(const DownloadItem& owner) const
{
    return areThere() && (item == owner.id().toString().toLatin1() || link == markOf(owner.originalURL()));
}

void PartMarks::setOwner(const DownloadItem& owner)
{
    item = owner.id().toString().toLatin1();
    link = markOf(owner.originalURL());
}

PartMarks readMarks(int file)
{
    return marksThrough(
        [file](const char* name, char* text, size_t size) { return ::fgetxattr(file, name, text, size); });
}

PartMarks readMarks(const QString& path)
{
    return marksThrough([name = QFile::encodeName(path)](const char* attribute, char* text, size_t size) {
        return ::lgetxattr(name.constData(), attribute, text, size);
    });
}

bool writeMarks(int file, const PartMarks& marks)
{
    const auto write = [file](const char* name, const QByteArray& value) {
        return ::fsetxattr(file, name, value.constData(), static_cast<size_t>(value.size()), 0) == 0;
    };
    return write(sourceAttribute, marks.source.toText().toUtf8()) &&
           write(totalAttribute, QByteArray::number(marks.total)) && write(linkAttribute, marks.link) &&
           write(itemAttribute, marks.item);
}

void removeMarks(const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    for (const char* const attribute : {itemAttribute, linkAttribute, totalAttribute, sourceAttribute})
        ::lremovexattr(name.constData(), attribute);
}

} // namespace vormel

#include "e2e/sidebyside/DiskPicture.h"

#include <QCryptographicHash>
#include <QFile>

#include <filesystem>

namespace vormel::e2e {

namespace {

QByteArray bytesOf(const std::filesystem::path& path)
{
    return QByteArray::fromStdString(path.native());
}

QByteArray contentsByBytes(const QByteArray& path)
{
    // Not by QString, which cannot hold every name.
    QByteArray contents;
    if (std::FILE* const raw = std::fopen(path.constData(), "rbe")) {
        QFile file;
        if (file.open(raw, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
            contents = file.readAll();
    }
    return contents;
}

void look(const std::filesystem::path& folder, const std::filesystem::path& below, DiskPicture& picture)
{
    // Others may take away what was just listed.
    std::error_code gone;
    for (const auto& found : std::filesystem::directory_iterator(folder / below, gone)) {
        const std::filesystem::path relative = below / found.path().filename();
        const std::optional<DiskEntry> entry = entryAt(bytesOf(found.path()));
        if (!entry)
            continue;
        picture.insert(bytesOf(relative), *entry);
        if (S_ISDIR(entry->mode))
            look(folder, relative, picture);
    }
}

} // namespace

std::optional<DiskEntry> entryAt(const QByteArray& path)
{
    struct stat facts = {};
    if (::lstat(path.constData(), &facts) != 0)
        return std::nullopt;
    DiskEntry entry;
    entry.mode = facts.st_mode;
    if (!S_ISDIR(entry.mode))
        entry.modifiedAt = modifiedAt(facts);
    std::error_code gone;
    if (S_ISREG(entry.mode))
        entry.contents = digestOf(contentsByBytes(path));
    else if (S_ISLNK(entry.mode))
        entry.contents = bytesOf(std::filesystem::read_symlink(path.toStdString(), gone));
    return entry;
}

DiskPicture pictureOf(const QString& folder)
{
    DiskPicture picture;
    look(folder.toStdString(), {}, picture);
    return picture;
}

qint64 modifiedAt(const struct stat& facts)
{
    constexpr qint64 second = 1'000'000'000;
    return facts.st_mtim.tv_sec * second + facts.st_mtim.tv_nsec;
}

QByteArray digestOf(const QByteArray& contents)
{
    return QCryptographicHash::hash(contents, QCryptographicHash::Sha1);
}

QByteArray contentsOf(const QString& path)
{
    return contentsByBytes(QFile::encodeName(path));
}

} // namespace vormel::e2e

#include "engine/queue/PartFinder.h"

#include "text/FileName.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

#include <dirent.h>

namespace vormel {

namespace {

constexpr QStringView ending = u".download";
/// In a folder with more part files than this, lost ones are not looked for.
constexpr qsizetype maxSearched = 1000;

QSet<QString> partNamesIn(const QString& folder)
{
    QSet<QString> names;
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(::opendir(QFile::encodeName(folder).constData()), &::closedir);
    while (const dirent* const entry = directory ? ::readdir(directory.get()) : nullptr) {
        if (QByteArrayView(entry->d_name).endsWith(".download"))
            names.insert(QFile::decodeName(entry->d_name));
    }
    return names;
}

/// The queue file comes from outside: only what can be a part file is believed to be one.
bool mayBePart(const QString& path)
{
    return QDir::isAbsolutePath(path) && QDir::cleanPath(path) == path && path.endsWith(ending);
}

} // namespace

std::optional<PartFinder::Found> PartFinder::find(const DownloadItem& item, const std::optional<QString>& storedPath)
{
    if (storedPath && mayBePart(*storedPath)) {
        if (std::optional<Found> found = claim(item, *storedPath, true))
            return found;
    }
    const QString usual = m_paths.partFile(item.filename());
    const Listing& listing = listingOf(QFileInfo(usual).path());
    if (listing.names.contains(lastComponent(usual))) {
        if (std::optional<Found> found = claim(item, usual, false))
            return found;
    }
    const QString lost = listing.pathsByItem.value(item.id().toString().toLatin1());
    return lost.isEmpty() ? std::nullopt : claim(item, lost, false);
}

const PartFinder::Listing& PartFinder::listingOf(const QString& folder)
{
    const auto known = m_listings.constFind(folder);
    if (known != m_listings.constEnd())
        return *known;
    Listing listing{partNamesIn(folder), {}};
    if (listing.names.size() <= maxSearched) {
        for (const QString& name : listing.names) {
            const QString path = folder + u'/' + name;
            listing.pathsByItem.insert(readMarks(path).item, path);
        }
    }
    return *m_listings.insert(folder, listing);
}

std::optional<PartFinder::Found> PartFinder::claim(const DownloadItem& item, const QString& path, bool isStored)
{
    struct stat facts = {};
    if (m_claimed.contains(path) || ::lstat(QFile::encodeName(path).constData(), &facts) != 0 ||
        !S_ISREG(facts.st_mode))
        return std::nullopt;
    const PartMarks marks = readMarks(path);
    const bool hasBegun = item.bytesReceived() >= 1 || item.totalBytes() >= 1;
    if (marks.areThere() ? !marks.nameOwner(item) : !isStored && !hasBegun)
        return std::nullopt;
    m_claimed.insert(path);
    return Found{{path, marks.areThere()}, facts.st_size, facts.st_size >= 1 ? marks.total : 0};
}

} // namespace vormel

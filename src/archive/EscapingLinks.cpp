#include "archive/EscapingLinks.h"

#include <QFile>
#include <QTemporaryFile>

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <tuple>
#include <vector>

namespace vormel {

namespace {

namespace fs = std::filesystem;

/// By the time of change, which no tool can set.
bool isLinkSince(const fs::path& path, const timespec& since)
{
    struct stat status = {};
    if (::lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode))
        return false;
    return std::tie(status.st_ctim.tv_sec, status.st_ctim.tv_nsec) >= std::tie(since.tv_sec, since.tv_nsec);
}

/// Does the target go up no further than the root, and only before it goes down? What stands behind a name may be
/// another link by the next archive, and going up from there could end anywhere.
bool isTargetTame(const fs::path& target, std::ptrdiff_t depth)
{
    bool wentDown = false;
    for (const fs::path& part : target) {
        if (part == "..") {
            if (wentDown || depth-- == 0)
                return false;
        } else if (!part.empty() && part != ".") {
            wentDown = true;
        }
    }
    return true;
}

bool isBelow(const fs::path& path, const fs::path& root)
{
    return std::mismatch(root.begin(), root.end(), path.begin(), path.end()).first == root.end();
}

bool leadsOut(const fs::path& link, const fs::path& root)
{
    std::error_code error;
    const fs::path target = fs::read_symlink(link, error);
    // No archive knows where it is unpacked, so an absolute target is never meant to be inside.
    if (error || target.is_absolute())
        return true;
    const fs::path folder = link.parent_path();
    if (!isTargetTame(target, std::distance(folder.begin(), folder.end()) - std::distance(root.begin(), root.end())))
        return true;
    const fs::path end = fs::weakly_canonical(folder / target, error);
    return error || !isBelow(end, root);
}

std::vector<fs::path> linksSince(const fs::path& root, const timespec& since)
{
    std::vector<fs::path> links;
    std::error_code error;
    fs::recursive_directory_iterator entry(root, fs::directory_options::skip_permission_denied, error);
    for (const fs::recursive_directory_iterator end; !error && entry != end; entry.increment(error))
        if (isLinkSince(entry->path(), since))
            links.push_back(entry->path());
    return links;
}

} // namespace

timespec fileSystemMoment(const QString& folder)
{
    QTemporaryFile probe(folder + QStringLiteral("/.vormel-XXXXXX"));
    struct stat status = {};
    if (probe.open() && ::fstat(probe.handle(), &status) == 0)
        return status.st_ctim;
    timespec now = {};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    return now;
}

void removeEscapingLinks(const QString& folder, const timespec& since)
{
    std::error_code error;
    const fs::path root = fs::canonical(QFile::encodeName(folder).toStdString(), error);
    if (error)
        return;
    // All are judged while all are there, as one may lead through another.
    std::vector<fs::path> links = linksSince(root, since);
    std::erase_if(links, [&](const fs::path& link) { return !leadsOut(link, root); });
    for (const fs::path& link : links)
        fs::remove(link, error);
}

} // namespace vormel

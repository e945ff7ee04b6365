#include "e2e/sidebyside/Bystanders.h"

#include <QDir>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

using namespace Qt::StringLiterals;

namespace vormel::e2e {

namespace {

constexpr mode_t usual = 0644;
constexpr mode_t folderMode = 0755;

struct FileRow
{
    const char* name;
    mode_t mode = usual;
    bool isInTheWay = false;
};

/// Beside downloads of nearly the same name; with names that cleaning would change; with names of parts and volumes;
/// and, marked, with the very name of something in an archive.
constexpr FileRow fileRows[]{
    {"Film.2021.1080p.mkv.nfo"},
    {"Film.2021.1080p.avi"},
    {"Film.2021"},
    {"plain.bin.txt"},
    {"plain.bin.downloads"},
    {"plain"},
    {"plain (1).txt"},
    {"old.bin.download"},
    {"fine.rar"},
    {"fine.part1.rar", usual, true},
    {"fine.part01.rev"},
    {"fine2.part1.rar.bad"},
    {"set-uid.1080p", 04755},
    {"readonly.1080p.txt", 0444},
    {"nobody.1080p.txt", 0000},
    {".hidden.1080p.mkv"},
    {".vormel-mark"},
    {"caf\xe9.1080p.txt"},
    {"line\nbreak.1080p.txt"},
    {"readme.txt", usual, true},
    {"Tunes", usual, true},
    {"fine/notes.txt"},
    {"fine/Other.2020.720p.mkv"},
    {"fine/other.part1.rar"},
    {"fine/fine.nfo", usual, true},
    {"hurt/Hurt.2020.720p.avi"},
    {"Same name/older.1080p.mkv"},
    {"Stuff/inner.1080p.txt"},
    {"Album/mine.1080p.flac"},
    {"Album/cover.jpg", 0444, true},
    {"clash/inner.txt", usual, true},
    {".vormel-unpack-mine/keep.1080p.txt"},
    {".vormel-unpack-mine/files/keep.txt"},
    {"locked/inside.1080p.txt"},
};

struct LinkRow
{
    const char* name;
    const char* target; ///< nothing stands for a folder outside
    bool isInTheWay = false;
};

constexpr LinkRow linkRows[]{
    {"to-file.1080p.txt", "readonly.1080p.txt"},
    {"nowhere.1080p", "/nowhere/at/all"},
    {"up", "../Beside"},
    {"outside.1080p", nullptr},
    {"Pics", nullptr, true},
    {"Album/shelf", nullptr},
};

[[noreturn]] void fail(const QByteArray& path)
{
    qFatal("The test could not make %s: %s", path.constData(), std::strerror(errno));
}

} // namespace

Bystanders::Bystanders(QString folder, QString beside)
    : m_folder(std::move(folder))
    , m_beside(std::move(beside))
{}

Bystanders::~Bystanders()
{
    ::chmod(path("locked").constData(), folderMode);
    std::error_code ignored;
    std::filesystem::remove_all(m_folder.toStdString(), ignored);
}

QByteArray Bystanders::path(const QByteArray& relative) const
{
    return m_folder.toUtf8() + '/' + relative;
}

void Bystanders::plant()
{
    plantFiles();
    plantFolders();
    plantLinks();
}

void Bystanders::plantFiles()
{
    for (const FileRow& row : fileRows) {
        QDir().mkpath(QFileInfo(QString::fromUtf8(path(row.name))).path());
        if (!putFile(row.name, QByteArray("the user's ") + row.name, row.mode, row.isInTheWay))
            fail(row.name);
    }
    constexpr int longest = 240;
    if (!putFile("long" + QByteArray(longest, 'g') + ".1080p", "a long name", usual, false) ||
        ::link(path("plain").constData(), path("plain.second.1080p").constData()) != 0 ||
        ::mkfifo(path("pipe.1080p").constData(), usual) != 0)
        fail(m_folder.toUtf8());
    note("plain.second.1080p", false);
    note("pipe.1080p", false);
}

void Bystanders::plantFolders()
{
    constexpr mode_t lockedMode = 0555;
    ::chmod(path("locked").constData(), lockedMode);
    for (const char* const name : {"fine", "hurt", "Same name", "Stuff", "Album", ".vormel-unpack-mine", "locked"})
        note(name, false);
}

void Bystanders::plantLinks()
{
    for (const LinkRow& row : linkRows)
        putLink(row.name, row.target ? row.target : m_beside.toUtf8(), row.isInTheWay);
}

QString Bystanders::save(std::mt19937& random)
{
    const QByteArray number = QByteArray::number(++m_saved);
    const QByteArrayList places{"", "", "Album/", "Same name/", "fine/", "hurt/"};
    const QByteArrayList names{"Saved.2021.1080p." + number + ".mkv", "plain.bin." + number, "fine." + number + ".rar",
                               ".saved." + number, "saved.part1.rar." + number};
    const auto oneOf = [&random](const QByteArrayList& all) {
        return all[static_cast<qsizetype>(random() % static_cast<unsigned>(all.size()))];
    };
    constexpr mode_t readOnly = 0444;
    if (random() % 4 == 0) {
        const QByteArray name = oneOf(names);
        putLink(name, m_beside.toUtf8(), false);
        return u"the link "_s + QString::fromUtf8(name);
    }
    const QByteArray name = oneOf(places) + oneOf(names);
    const mode_t mode = random() % 4 == 0 ? readOnly : usual;
    const bool isSaved = putFile(name, "saved meanwhile, " + number, mode, false);
    return isSaved ? QString::fromUtf8(name) : u"nothing, as the folder is gone"_s;
}

bool Bystanders::putFile(const QByteArray& relative, const QByteArray& contents, mode_t mode, bool isInTheWay)
{
    const int file = ::open(path(relative).constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, mode);
    if (file < 0)
        return false;
    struct stat facts = {};
    if (::write(file, contents.constData(), static_cast<std::size_t>(contents.size())) != contents.size() ||
        ::fchmod(file, mode) != 0 || ::fstat(file, &facts) != 0 || ::close(file) != 0)
        fail(path(relative));
    // By the handle: the folder may be on its way to the Trash.
    m_all.insert(relative, {{facts.st_mode, digestOf(contents), modifiedAt(facts)}, isInTheWay});
    return true;
}

void Bystanders::putLink(const QByteArray& relative, const QByteArray& target, bool isInTheWay)
{
    if (::symlink(target.constData(), path(relative).constData()) != 0)
        fail(path(relative));
    note(relative, isInTheWay);
}

void Bystanders::note(const QByteArray& relative, bool isInTheWay)
{
    m_all.insert(relative, {entryAt(path(relative)).value_or(DiskEntry()), isInTheWay});
}

bool Bystanders::mayBeInTrash(const QByteArray& relative, const Bystander& bystander) const
{
    return bystander.isInTheWay || std::any_of(m_mayGo.begin(), m_mayGo.end(), [&](const QByteArray& folder) {
               return relative == folder || relative.startsWith(folder + '/');
           });
}

QStringList Bystanders::changed(const QString& trash) const
{
    QStringList lines;
    for (auto each = m_all.begin(); each != m_all.end(); ++each) {
        const std::optional<DiskEntry> now = entryAt(path(each.key()));
        // It may have another name in the Trash. It is looked for only then, as others go there at any time.
        const bool isAsItWas =
            now == each->entry || (mayBeInTrash(each.key(), *each) && pictureOf(trash).values().contains(each->entry));
        if (!isAsItWas)
            lines << u"%1/%2 %3"_s.arg(m_folder, QString::fromUtf8(each.key()), now ? u"is another"_s : u"is gone"_s);
    }
    return lines;
}

} // namespace vormel::e2e

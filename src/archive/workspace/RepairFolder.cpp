#include "archive/workspace/RepairFolder.h"

#include "archive/sources/SetVolumes.h"
#include "model/SetName.h"
#include "platform/storage/CarefulMove.h"
#include "platform/storage/UniqueDestination.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>

#include <cerrno>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// Tools take some characters of a name for patterns; none of these is one.
const QString volumeBase = u"volume"_s;

bool looksLikeRar(const QString& path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) && file.read(6) == "Rar!\x1a\x07";
}

/// Keeps what stands at the path under another name.
bool setAside(const QString& path, const QString& aside)
{
    return ::link(QFile::encodeName(path).constData(), QFile::encodeName(aside).constData()) == 0 ||
           moveWithoutReplacing(path, aside) == 0;
}

} // namespace

RepairFolder::RepairFolder(WorkFolder folder)
    : m_folder(std::move(folder))
{}

RepairFolder RepairFolder::make(const QString& archive)
{
    const QFileInfo first(archive);
    RepairFolder folder(WorkFolder::make(first.path()));
    folder.m_archive = archive;
    folder.m_setPath = first.path() + u'/' + setBaseName(first.fileName());
    folder.link(volumesOfSet(archive));
    return folder;
}

RepairFolder::FileState RepairFolder::stateOf(const QString& path)
{
    constexpr qint64 second = 1'000'000'000;
    struct stat facts = {};
    if (::lstat(QFile::encodeName(path).constData(), &facts) != 0)
        return {};
    return {identityOf(facts), facts.st_size, facts.st_mtim.tv_sec * second + facts.st_mtim.tv_nsec};
}

void RepairFolder::link(const QStringList& volumes)
{
    const QString plainPath = m_folder.path() + u'/' + volumeBase;
    QStringList links;
    for (const QString& volume : volumes) {
        const QString link = plainPath + volume.mid(m_setPath.size());
        const FileState state = stateOf(volume);
        if (!QFileInfo(volume).isFile() || !QFile::link(volume, link))
            continue;
        m_linked.insert(volume, state);
        if (isRarPart(link) && looksLikeRar(link))
            links << link;
    }
    if (!links.isEmpty())
        m_archive = *std::min_element(links.begin(), links.end(),
                                      [](const QString& a, const QString& b) { return partNumber(a) < partNumber(b); });
}

QStringList RepairFolder::adopt()
{
    QStringList changed;
    const QDir folder(m_folder.path());
    for (const QFileInfo& made : folder.entryInfoList(QDir::Files | QDir::NoSymLinks | QDir::Hidden, QDir::Name)) {
        if (isSetMember(made.fileName()) && made.size() > 0)
            changed << putIntoPlace(made.filePath(), m_setPath + made.fileName().mid(volumeBase.size()));
    }
    return changed;
}

/// What stands in the place must be what the repair began with, or it has come anew meanwhile.
QStringList RepairFolder::putIntoPlace(const QString& made, const QString& place) const
{
    const FileState known = m_linked.value(place);
    if (stateOf(place) != known)
        return {};
    if (known == FileState())
        return moveWithoutReplacing(made, place) == 0 ? QStringList{place} : QStringList();
    const QString bad = uniqueDestination(place + u".bad"_s);
    if (!setAside(place, bad))
        return {};
    const bool isReplaced = ::rename(QFile::encodeName(made).constData(), QFile::encodeName(place).constData()) == 0;
    return isReplaced ? QStringList{bad, place} : QStringList{bad};
}

} // namespace vormel

#include "e2e/sidebyside/Inspection.h"

#include "model/ReleaseName.h"
#include "model/SetName.h"
#include "text/FileName.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel::e2e {

namespace {

/// A name that was taken: "name (1).ext", or "name.ext (1)" for a folder.
QString withoutNumber(QString name)
{
    static const QRegularExpression number(uR"( \(\d+\)(?=\.[^.]*$|$))"_s);
    return name.remove(number);
}

} // namespace

Inspection::Inspection(Scene& scene)
    : m_scene(scene)
    , m_trash(pictureOf(scene.trash()))
{
    for (const QString& folder : {scene.downloads(), scene.extraction()})
        m_folders.insert(folder, pictureOf(folder));
    learnMembers();
    for (const Offer& offer : scene.catalogue().offers())
        m_downloads += {digestOf(offer.content), digestOf(offer.alsoRight)};
}

void Inspection::learnMembers()
{
    for (const PackedArchive& archive : m_scene.catalogue().archives()) {
        for (auto member = archive.members.begin(); member != archive.members.end(); ++member) {
            m_members.insert(digestOf(member.value()), {member.key(), &archive});
            ++m_bringers[broughtAs(member.key())];
        }
    }
}

QString Inspection::broughtAs(const QString& member)
{
    const bool isAtTop = !member.contains(u'/') && !isSetMember(member);
    return isAtTop ? cleanedName(member, true, false) : member;
}

bool Inspection::isContested(const Member& member) const
{
    return m_bringers.value(broughtAs(member.path)) > 1 || m_scene.isRenamed(*member.archive);
}

bool Inspection::isInTrash(const QByteArray& digest) const
{
    return std::any_of(m_trash.begin(), m_trash.end(),
                       [&digest](const DiskEntry& entry) { return entry.isFile() && entry.contents == digest; });
}

QStringList Inspection::wrongDownloads()
{
    QStringList lines;
    QSet<QString> seen;
    for (const ItemPtr& item : m_scene.manager().items()) {
        seen.insert(m_scene.offerOf(*item).address);
        lines << wrongWith(*item);
    }
    for (const Offer& offer : m_scene.catalogue().offers()) {
        if (seen.contains(offer.address) || m_scene.isGivenUp(offer) || isRevName(offer.address))
            continue;
        // Only the program's own tidying takes rows out.
        if (m_scene.manner() != Manner::tidy || offer.archive.isEmpty())
            lines << offer.address + u" went from the queue"_s;
        else if (!isInTrash(digestOf(offer.content)) && !isInTrash(digestOf(offer.alsoRight)))
            lines << offer.address + u" is not in the Trash"_s;
    }
    lines.removeAll(QString());
    return lines;
}

QString Inspection::wrongWith(const DownloadItem& item) const
{
    const Offer& offer = m_scene.offerOf(item);
    if (item.status() != DownloadStatus::completed)
        return {};
    const QByteArray contents = contentsOf(item.localPath().value_or(QString()));
    const bool isThere = QFileInfo(item.localPath().value_or(QString())).isFile();
    if (isThere && (contents == offer.content || (!offer.alsoRight.isEmpty() && contents == offer.alsoRight)))
        return {};
    const bool maySpend = m_scene.manner() == Manner::tidy && !offer.archive.isEmpty();
    if (!isThere && maySpend && (isInTrash(digestOf(offer.content)) || isInTrash(digestOf(offer.alsoRight))))
        return {};
    return u"%1 is wrong at %2"_s.arg(offer.address, item.localPath().value_or(u"no place"_s));
}

QStringList Inspection::lostMembers()
{
    const QString folder = m_scene.manner() == Manner::tidy ? m_scene.extraction() : m_scene.downloads();
    const DiskPicture& there = m_folders[folder];
    QStringList lines;
    for (auto member = m_members.begin(); member != m_members.end(); ++member) {
        if (m_scene.isGivenUp(*member->archive))
            continue;
        const auto isIt = [&](const DiskEntry& entry) { return entry.isFile() && entry.contents == member.key(); };
        const auto found = std::find_if(there.begin(), there.end(), isIt);
        const QString line = u"%1 of %2"_s.arg(member->path, member->archive->name);
        if (found == there.end() && !(isContested(*member) && isInTrash(member.key())))
            lines << line + u" is lost"_s;
        else if (found != there.end() && !mayBeCalled(found.key(), *member))
            lines << line + u" is called "_s + QString::fromUtf8(found.key());
    }
    return lines;
}

bool Inspection::mayBeCalled(const QByteArray& path, const Member& member) const
{
    const QString name = withoutNumber(lastComponent(QString::fromUtf8(path)));
    const QString packed = lastComponent(member.path);
    const bool hasCustomName = m_scene.customNames().contains(withoutPathExtension(name));
    // One with the name of a part file of ours has lost that ending.
    return name == packed || name == broughtAs(packed) || name == safeFileName(packed) || hasCustomName;
}

QStringList Inspection::debris()
{
    QStringList lines;
    for (auto folder = m_folders.begin(); folder != m_folders.end(); ++folder) {
        for (auto entry = folder->begin(); entry != folder->end(); ++entry) {
            const QString wrong = wrongWith(entry.key(), *entry);
            if (!wrong.isEmpty() && !m_scene.isBystander(folder.key(), entry.key()))
                lines << u"%1/%2 %3"_s.arg(folder.key(), QString::fromUtf8(entry.key()), wrong);
        }
    }
    return lines;
}

QString Inspection::wrongWith(const QByteArray& path, const DiskEntry& entry) const
{
    const QString name = lastComponent(QString::fromUtf8(path));
    const QString ending = u".download"_s;
    if (path.contains(".vormel-unpack-") && !path.contains(".vormel-unpack-mine"))
        return u"was left by a run"_s;
    if (!entry.isFile() || m_members.contains(entry.contents))
        return {};
    if (name.endsWith(ending)) {
        const QString row = name.chopped(ending.size());
        const bool isTold = m_scene.namesOfGivenUp().contains(row) || isOfWaitingRow(row) || isOfClearedArchive(row);
        return isTold ? QString() : u"is a part of nobody"_s;
    }
    const bool isRight = m_downloads.contains(entry.contents) || name.endsWith(u".bad");
    return isRight ? QString() : u"is nobody's"_s;
}

/// As recovery volumes of which no more was needed, or whose set was given up.
bool Inspection::isOfWaitingRow(const QString& row) const
{
    const std::vector<ItemPtr>& items = m_scene.manager().items();
    return std::any_of(items.begin(), items.end(), [&row](const ItemPtr& item) {
        return item->filename() == row && !(item->status() == DownloadStatus::completed);
    });
}

bool Inspection::isOfClearedArchive(const QString& row) const
{
    if (m_scene.manner() != Manner::tidy)
        return false;
    const auto hasName = [&](const ItemPtr& item) { return item->filename() == row; };
    const std::vector<ItemPtr>& items = m_scene.manager().items();
    const std::vector<Offer>& offers = m_scene.catalogue().offers();
    return std::none_of(items.begin(), items.end(), hasName) &&
           std::any_of(offers.begin(), offers.end(), [&](const Offer& offer) {
               return !offer.archive.isEmpty() && (offer.toldName == row || lastComponent(offer.address) == row);
           });
}

} // namespace vormel::e2e

#include "archive/workspace/ResultNames.h"

#include "archive/workspace/CustomName.h"
#include "archive/workspace/OpenFolder.h"
#include "archive/workspace/WorkFolder.h"
#include "model/ReleaseName.h"
#include "model/SetName.h"
#include "platform/storage/CarefulMove.h"
#include "text/FileName.h"

#include <QFile>

#include <vector>

namespace vormel {

namespace {

std::vector<FolderEntry> shownEntries(int folder)
{
    std::vector<FolderEntry> entries = entriesOf(folder).value_or(std::vector<FolderEntry>());
    std::erase_if(entries, [](const FolderEntry& entry) { return entry.name.startsWith('.'); });
    return entries;
}

/// What the tools wrote or packed as part of a set is found by its name.
bool keepsItsName(const FolderEntry& entry, const QString& name)
{
    return entry.isFolder() || isSetMember(name) || name.endsWith(u".bad", Qt::CaseInsensitive);
}

/// Failures leave the entry under its old name.
void rename(int folder, const QByteArray& from, const QByteArray& to)
{
    static_cast<void>(moveWithoutReplacing(folder, from, folder, to));
}

} // namespace

void cleanNames(const WorkFolder& folder, bool clean, bool dotsToSpaces)
{
    for (const FolderEntry& entry : shownEntries(folder.filesHandle())) {
        const QString name = QFile::decodeName(entry.name);
        if (keepsItsName(entry, name))
            continue;
        const QByteArray cleaned = QFile::encodeName(cleanedName(name, clean, dotsToSpaces));
        if (cleaned != entry.name && !factsOf(folder.destinationHandle(), cleaned))
            rename(folder.filesHandle(), entry.name, cleaned);
    }
}

void giveCustomName(const WorkFolder& folder, const QString& name)
{
    const std::vector<FolderEntry> entries = shownEntries(folder.filesHandle());
    if (entries.size() != 1)
        return;
    const QString extension = pathExtension(QFile::decodeName(entries.front().name));
    const QString stem = folderNameOf(name);
    const QString renamed = safeFileName(extension.isEmpty() ? stem : stem + u'.' + extension);
    rename(folder.filesHandle(), entries.front().name, QFile::encodeName(renamed));
}

} // namespace vormel

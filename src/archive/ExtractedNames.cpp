#include "archive/ExtractedNames.h"

#include "model/ReleaseName.h"
#include "text/FileName.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace vormel {

namespace {

constexpr QDir::Filters everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

QStringList newNames(const QString& folder, const QSet<QString>& before)
{
    QStringList names = QDir(folder).entryList(everything, QDir::Name);
    names.removeIf([&](const QString& name) { return name.startsWith(u'.') || before.contains(name); });
    return names;
}

bool isTaken(const QString& path)
{
    const QFileInfo file(path);
    return file.exists() || file.isSymLink();
}

/// Not QFile::rename, which copies what cannot be renamed.
void move(const QString& from, const QString& to)
{
    std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData());
}

void removeWhatever(const QString& path)
{
    const QFileInfo file(path);
    if (file.isDir() && !file.isSymLink())
        QDir(path).removeRecursively();
    else
        QFile::remove(path);
}

} // namespace

QSet<QString> namesIn(const QString& folder)
{
    const QStringList names = QDir(folder).entryList(everything, QDir::Unsorted);
    return {names.begin(), names.end()};
}

QString folderNameOf(const QString& customName)
{
    QString name = customName;
    return safeFileName(name.replace(u'/', u'-').replace(u':', u'-'));
}

void renameExtractedFiles(const QString& destination, const QSet<QString>& before, bool clean, bool dotsToSpaces)
{
    const QDir folder(destination);
    for (const QString& name : newNames(destination, before)) {
        const QString path = folder.filePath(name);
        if (QFileInfo(path).isDir())
            continue;
        const QString cleaned = cleanedName(name, clean, dotsToSpaces);
        const QString target = folder.filePath(cleaned);
        if (cleaned != name && !isTaken(target))
            move(path, target);
    }
}

void applyCustomName(const QString& name, const QString& destination, const QSet<QString>& before)
{
    const QStringList names = newNames(destination, before);
    if (names.size() != 1)
        return;
    const QString& entry = names.front();
    const QString extension = pathExtension(entry);
    const QString stem = folderNameOf(name);
    const QString renamed = safeFileName(extension.isEmpty() ? stem : stem + u'.' + extension);
    if (renamed == entry)
        return;
    const QDir folder(destination);
    removeWhatever(folder.filePath(renamed));
    move(folder.filePath(entry), folder.filePath(renamed));
}

} // namespace vormel

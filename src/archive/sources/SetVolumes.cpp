#include "archive/sources/SetVolumes.h"

#include "archive/sources/SiblingVolumes.h"
#include "model/SetName.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

bool isOfSet(const QString& name, const QString& base)
{
    return isSetMember(name) && setBaseName(name) == base;
}

QStringList replacedVolumes(const QString& archive, const QString& base)
{
    const QString ending = u".bad"_s;
    const QDir folder = QFileInfo(archive).dir();
    QStringList replaced;
    for (const QString& name : folder.entryList({u'*' + ending}, QDir::Files | QDir::Hidden))
        if (isOfSet(name.chopped(ending.size()), base))
            replaced << folder.filePath(name);
    return replaced;
}

} // namespace

QStringList volumesOfSet(const QString& archive)
{
    const QString base = setBaseName(QFileInfo(archive).fileName());
    QStringList volumes = siblingVolumes(archive);
    volumes.removeIf([&base](const QString& path) { return !isOfSet(QFileInfo(path).fileName(), base); });
    return volumes;
}

QStringList sourcesOf(const QString& archive)
{
    const QString name = QFileInfo(archive).fileName();
    return isRarPart(name) ? volumesOfSet(archive) + replacedVolumes(archive, setBaseName(name)) : QStringList{archive};
}

} // namespace vormel

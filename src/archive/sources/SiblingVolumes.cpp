#include "archive/sources/SiblingVolumes.h"

#include "model/SetName.h"
#include "text/FileName.h"

#include <QDir>
#include <QFileInfo>

namespace vormel {

QStringList siblingVolumes(const QString& archive)
{
    const QFileInfo file(archive);
    if (!isRarPart(file.fileName()))
        return {};
    const QString base = setBaseName(file.fileName());
    const QDir folder = file.dir();
    QStringList siblings;
    for (const QString& name :
         folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)) {
        const QString extension = pathExtension(name).toLower();
        if (name.startsWith(base) && (extension == u"rar" || extension == u"rev"))
            siblings << folder.filePath(name);
    }
    return siblings;
}

} // namespace vormel

#include "archive/pipeline/ExtractionFolder.h"

#include "archive/workspace/CustomName.h"
#include "model/AppSettings.h"

#include <QFileInfo>

namespace vormel {

QString extractionFolder(const AppSettings& settings, const QString& archivePath, const QString& customName)
{
    const std::optional<QString> chosen = settings.effectiveExtractionFolder();
    if (customName.isEmpty())
        return chosen.value_or(QFileInfo(archivePath).path());
    return chosen.value_or(settings.downloadFolderPath.value()) + u'/' + folderNameOf(customName);
}

} // namespace vormel

#include "archive/workspace/CustomName.h"

#include "text/FileName.h"

namespace vormel {

QString folderNameOf(const QString& customName)
{
    QString name = customName;
    return safeFileName(name.replace(u'/', u'-').replace(u':', u'-'));
}

} // namespace vormel

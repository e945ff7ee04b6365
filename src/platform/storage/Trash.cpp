#include "platform/storage/Trash.h"

#include <QFile>

namespace vormel {

bool DesktopTrash::moveToTrash(const QString& path)
{
    return QFile::moveToTrash(path);
}

} // namespace vormel

#include "archive/workspace/FreeName.h"

#include "archive/workspace/OpenFolder.h"
#include "platform/storage/CarefulMove.h"
#include "text/FileName.h"

#include <QFile>

#include <cerrno>
#include <climits>

namespace vormel {

namespace {

QByteArray withNumber(const QString& name, bool isFolder, int number)
{
    return QFile::encodeName(isFolder ? name + QStringLiteral(" (%1)").arg(number) : numberedFileName(name, number));
}

} // namespace

QByteArray numberedName(const FolderEntry& entry, int number)
{
    if (number == 0)
        return entry.name;
    const QString name = QFile::decodeName(entry.name);
    QByteArray numbered = withNumber(name, entry.isFolder(), number);
    return numbered.size() <= NAME_MAX ? numbered : withNumber(safeFileName(name), entry.isFolder(), number);
}

NewPlace moveToFreeName(int fromFolder, const QByteArray& from, int toFolder, const FolderEntry& entry, int firstNumber,
                        const std::function<bool(const QByteArray&)>& isKept)
{
    for (int number = firstNumber;; ++number) {
        QByteArray name = numberedName(entry, number);
        if (isKept && isKept(name))
            continue;
        const int error = moveWithoutReplacing(fromFolder, from, toFolder, name);
        if (error != EEXIST)
            return {std::move(name), error};
    }
}

} // namespace vormel

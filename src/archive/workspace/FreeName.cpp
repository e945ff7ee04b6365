#include "archive/workspace/FreeName.h"

#include "archive/workspace/OpenFolder.h"
#include "platform/storage/CarefulMove.h"
#include "text/FileName.h"

#include <QFile>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace vormel {

QByteArray numberedName(const FolderEntry& entry, int number)
{
    if (number == 0)
        return entry.name;
    // Shortened where there is no room for the number.
    const QString name = safeFileName(QFile::decodeName(entry.name));
    return QFile::encodeName(entry.isFolder() ? name + u" (%1)"_s.arg(number) : numberedFileName(name, number));
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

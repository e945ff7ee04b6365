#include "platform/desktop/TerminalScript.h"

#include "platform/storage/WholeFile.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr mode_t ownerOnlyFolder = 0700;
constexpr mode_t runnableByAll = 0755;

/// False if the folder is not this user's own, closed to all others.
bool makePrivate(const QString& folder)
{
    const QByteArray path = QFile::encodeName(folder);
    struct stat facts = {};
    return QDir().mkpath(folder) && ::chmod(path.constData(), ownerOnlyFolder) == 0 &&
           ::lstat(path.constData(), &facts) == 0 && S_ISDIR(facts.st_mode) && facts.st_uid == ::geteuid();
}

} // namespace

std::optional<QString> writeTerminalScript(const QString& folder, const QString& command)
{
    const QString path = QDir(folder).filePath(u"vormel_install.command"_s);
    const QByteArray text = "#!/bin/bash\n" + command.toUtf8() + '\n';
    if (!makePrivate(folder) || !replaceWholeFile(path, text))
        return std::nullopt;
    // Without it the script still runs where the shell is named, so a failure does not matter.
    static_cast<void>(::chmod(QFile::encodeName(path).constData(), runnableByAll));
    return path;
}

} // namespace vormel

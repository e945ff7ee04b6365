#include "archive/tools/ToolEnvironment.h"

namespace vormel {

QProcessEnvironment toolEnvironment(const QProcessEnvironment& ours)
{
    QProcessEnvironment theirs;
    theirs.insert(QStringLiteral("PATH"), QStringLiteral("/usr/local/bin:/usr/bin:/bin"));
    // tar looks for its decompressors along the path; ZIP archives tell the times of their members in local time.
    for (const QString& name : {QStringLiteral("PATH"), QStringLiteral("TMPDIR"), QStringLiteral("TZ")})
        if (ours.contains(name))
            theirs.insert(name, ours.value(name));
    // unrar and rar read switches from ~/.rarrc.
    theirs.insert(QStringLiteral("HOME"), QStringLiteral("/nonexistent"));
    theirs.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    // Switches for unrar and rar: without it they print the archive's comment, which could look like their own lines.
    theirs.insert(QStringLiteral("RAR"), QStringLiteral("-c-"));
    return theirs;
}

} // namespace vormel

#include "archive/tools/ToolEnvironment.h"

using namespace Qt::StringLiterals;

namespace vormel {

QProcessEnvironment toolEnvironment(const QProcessEnvironment& ours)
{
    QProcessEnvironment theirs;
    theirs.insert(u"PATH"_s, u"/usr/local/bin:/usr/bin:/bin"_s);
    // tar looks for its decompressors along the path; ZIP archives tell the times of their members in local time.
    for (const QString& name : {u"PATH"_s, u"TMPDIR"_s, u"TZ"_s})
        if (ours.contains(name))
            theirs.insert(name, ours.value(name));
    // unrar and rar read switches from ~/.rarrc.
    theirs.insert(u"HOME"_s, u"/nonexistent"_s);
    theirs.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    // Switches for unrar and rar: without it they print the archive's comment, which could look like their own lines.
    theirs.insert(u"RAR"_s, u"-c-"_s);
    return theirs;
}

} // namespace vormel

#include "model/SetName.h"

#include "text/BoundedRegex.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

const BoundedRegex& partSuffixPattern()
{
    static const BoundedRegex pattern = BoundedRegex::ignoringCase(uR"(\.part\d+\.(rar|rev)$)"_s);
    return pattern;
}

/// Most names end in something else, and queues are long. The pattern also takes a line break at the end.
bool mayBeMember(QStringView filename)
{
    if (filename.endsWith(u'\n'))
        filename.chop(1);
    return isRarName(filename) || isRevName(filename);
}

} // namespace

bool isSetMember(const QString& filename)
{
    return mayBeMember(filename) && partSuffixPattern().search(filename);
}

QString setBaseName(const QString& filename)
{
    return mayBeMember(filename) ? partSuffixPattern().removedFrom(filename) : filename;
}

bool isRarPart(const QString& filename)
{
    static const BoundedRegex rarPartPattern = BoundedRegex::ignoringCase(uR"(\.part\d+\.rar$)"_s);
    return mayBeMember(filename) && rarPartPattern.search(filename);
}

bool isFirstVolume(const QString& filename)
{
    static const BoundedRegex pattern = BoundedRegex::ignoringCase(uR"(\.part0*1\.rar$)"_s);
    return mayBeMember(filename) && pattern.search(filename);
}

qint64 partNumber(const QString& filename)
{
    static const BoundedRegex pattern = BoundedRegex::ignoringCase(uR"(\.part(\d+)\.(rar|rev)$)"_s);
    if (!mayBeMember(filename))
        return 0;
    return pattern.search(filename).match.captured(1).toLongLong();
}

} // namespace vormel

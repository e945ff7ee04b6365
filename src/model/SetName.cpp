#include "model/SetName.h"

#include "text/BoundedRegex.h"

namespace vormel {

namespace {

const BoundedRegex& partSuffixPattern()
{
    static const BoundedRegex pattern = BoundedRegex::ignoringCase(QStringLiteral(R"(\.part\d+\.(rar|rev)$)"));
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
    static const BoundedRegex rarPartPattern = BoundedRegex::ignoringCase(QStringLiteral(R"(\.part\d+\.rar$)"));
    return mayBeMember(filename) && rarPartPattern.search(filename);
}

bool isFirstVolume(const QString& filename)
{
    static const BoundedRegex pattern = BoundedRegex::ignoringCase(QStringLiteral(R"(\.part0*1\.rar$)"));
    return mayBeMember(filename) && pattern.search(filename);
}

qint64 partNumber(const QString& filename)
{
    static const BoundedRegex pattern = BoundedRegex::ignoringCase(QStringLiteral(R"(\.part(\d+)\.(rar|rev)$)"));
    if (!mayBeMember(filename))
        return 0;
    return pattern.search(filename).match.captured(1).toLongLong();
}

} // namespace vormel

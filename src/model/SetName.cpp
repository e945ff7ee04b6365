#include "model/SetName.h"

#include "text/BoundedRegex.h"

namespace vormel {

namespace {

const BoundedRegex& partSuffixPattern()
{
    static const BoundedRegex pattern(QStringLiteral(R"(\.part\d+\.(rar|rev)$)"),
                                      QRegularExpression::CaseInsensitiveOption);
    return pattern;
}

/// Most names end in something else, and queues are long. The pattern also takes a line break at the end.
bool mayBeMember(QStringView filename)
{
    if (filename.endsWith(u'\n'))
        filename.chop(1);
    return filename.endsWith(u".rar", Qt::CaseInsensitive) || isRevName(filename);
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

} // namespace vormel

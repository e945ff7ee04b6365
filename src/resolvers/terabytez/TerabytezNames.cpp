#include "resolvers/terabytez/TerabytezNames.h"

#include "text/BoundedRegex.h"

using namespace Qt::StringLiterals;

namespace vormel {

std::optional<QString> terabytezFileName(const QString& heading)
{
    // Letters of any language, with their marks. From the first character of a name only: a long heading without an
    // ending would else be read anew from each.
    static const BoundedRegex name(
        uR"((?<![\w\p{M}.\- ])[\w\p{M}.\- ]+\.(zip|rar|r\d{2,3}|7z|mkv|mp4|avi|iso|part\d+\.rar))"_s,
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    const BoundedRegex::Result found = name.search(heading);
    return found ? std::optional(found.match.captured().trimmed()) : std::nullopt;
}

} // namespace vormel

#pragma once

#include <QString>

namespace vormel {

/// Is this the name of one member of a multi-part set: name.part03.rar, or name.part1.rev?
[[nodiscard]] bool isSetMember(const QString& filename);

/// The name that all members of a set share; a name that is no member's comes back as it is.
[[nodiscard]] QString setBaseName(const QString& filename);

/// Is this a numbered RAR volume: name.part03.rar?
[[nodiscard]] bool isRarPart(const QString& filename);

/// Is this the volume that a set is opened by: name.part01.rar?
[[nodiscard]] bool isFirstVolume(const QString& filename);

/// The place of a member in its set; 0 for other names and for numbers beyond 64 bits.
[[nodiscard]] qint64 partNumber(const QString& filename);

/// Does this end as RAR archives do, be it a volume of a set or not?
[[nodiscard]] inline bool isRarName(QStringView filename)
{
    return filename.endsWith(u".rar", Qt::CaseInsensitive);
}

/// Is this a recovery volume?
[[nodiscard]] inline bool isRevName(QStringView filename)
{
    return filename.endsWith(u".rev", Qt::CaseInsensitive);
}

} // namespace vormel

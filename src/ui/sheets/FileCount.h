#pragma once

#include <QString>

namespace vormel {

/// In both languages.
[[nodiscard]] inline QString fileCountText(std::size_t count)
{
    return QString::number(count) + (count == 1 ? QStringLiteral(" file") : QStringLiteral(" files"));
}

} // namespace vormel

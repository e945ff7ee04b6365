#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// What the tools are called with. Archives and destinations are absolute paths, so none is taken for a switch. An
/// empty password is none.
namespace vormel {

using Password = std::optional<QString>;

[[nodiscard]] QStringList dittoArguments(const QString& archive, const QString& destination);
[[nodiscard]] QStringList unzipArguments(const QString& archive, const QString& destination, const Password& password);
[[nodiscard]] QStringList rarArguments(const QString& archive, const QString& destination, const Password& password);
[[nodiscard]] QStringList sevenZipArguments(const QString& archive, const QString& destination,
                                            const Password& password);
/// The letters say how the tar is compressed: "-xf", "-xzf".
[[nodiscard]] QStringList tarArguments(const QString& letters, const QString& archive, const QString& destination);

} // namespace vormel

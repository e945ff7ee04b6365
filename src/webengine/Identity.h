#pragma once

#include <QString>
#include <QStringList>

namespace vormel {

// How the engine names itself to sites.

/// What an ordinary browser of the engine's kind and version calls itself: without the toolkit's own token, and of the
/// version the first number only.
[[nodiscard]] QString ordinaryUserAgent(const QString& ofEngine);
/// The header's value for these languages, the best first.
[[nodiscard]] QString acceptLanguage(const QStringList& languages);

} // namespace vormel

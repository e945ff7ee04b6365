#pragma once

#include <QByteArray>
#include <QString>

namespace vormel {

/// A name out of an archive as text. Names that are no UTF-8 were written in a code page that nothing tells. They are
/// taken for the one that ZIP prescribes, DOS 437, unless that gives signs where Windows 1252 gives Latin letters; tars
/// of old systems use the latter, and so does unzip where it has translated names itself. Names of other scripts come
/// out as text, if not as the right one. The tables are our own, as few systems install any for the C library.
[[nodiscard]] QString readableName(const QByteArray& name);

} // namespace vormel

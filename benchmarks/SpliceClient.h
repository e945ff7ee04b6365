#pragma once

#include <QByteArray>

namespace vormel::bench {

/// The floor: fetches a path from a server on loopback and lets the kernel move the body into the file, without looking
/// at it. Ends the benchmark on any error.
void spliceToFile(quint16 port, const QByteArray& path, const QByteArray& file);

} // namespace vormel::bench

#pragma once

#include <QString>

#include <stop_token>

namespace vormel {

/// Moves a file as moveWithoutReplacing() does, and also to another file system: there it is copied within a work
/// folder, synced, put into its place, and only then removed where it was. 0, or the system's error number; ECANCELED
/// if it was stopped, which only a copy can be. Takes as long as the copy takes: never on the UI thread.
[[nodiscard]] int moveFar(const QString& from, const QString& to, const std::stop_token& stop = {});

} // namespace vormel

#pragma once

#include <QSet>
#include <QString>

namespace vormel {

/// The names of everything in a folder; empty when it cannot be listed.
[[nodiscard]] QSet<QString> namesIn(const QString& folder);

/// A name chosen by the user as one that can only stand for a folder inside another, with "-" for "/" and ":".
[[nodiscard]] QString folderNameOf(const QString& customName);

/// Gives each file in the destination that was not there before its cleaned name (model/ReleaseName.h). Folders, hidden
/// files and names that are taken stay; failures are swallowed.
void renameExtractedFiles(const QString& destination, const QSet<QString>& before, bool clean, bool dotsToSpaces);

/// Gives the one entry of the destination that was not there before the custom name, keeping its extension and
/// replacing whatever has that name. With several new entries, or none, nothing happens; failures are swallowed.
void applyCustomName(const QString& name, const QString& destination, const QSet<QString>& before);

} // namespace vormel

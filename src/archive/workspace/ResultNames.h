#pragma once

#include <QString>

namespace vormel {

class WorkFolder;

/// Both work on the top of a work folder before it is placed. Failures are swallowed. Not for the UI thread.

/// Gives each file its cleaned name (model/ReleaseName.h). Folders, hidden files, members of sets and "*.bad" keep
/// theirs, and so does a file whose cleaned name is taken, in the work folder or in the destination.
void cleanNames(const WorkFolder& folder, bool clean, bool dotsToSpaces);

/// Gives the one entry that is not hidden the custom name, keeping its extension. With several entries, or none,
/// nothing happens. What has that name in the destination is a matter of placing.
void giveCustomName(const WorkFolder& folder, const QString& name);

} // namespace vormel

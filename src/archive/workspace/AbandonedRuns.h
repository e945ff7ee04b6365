#pragma once

#include <QStringList>

namespace vormel {

/// Removes what runs left that were killed with the program, in these folders and one below them: sets lie one folder
/// below that of all downloads, and so do the results that the user named. Not for the UI thread.
void removeAbandonedRuns(const QStringList& folders);

} // namespace vormel

#pragma once

#include <QString>

namespace vormel {

/// Where things are kept for this user. Absolute paths; the folders need not exist yet.
struct Folders
{
    QString downloads;          ///< the user's Downloads folder
    QString applicationSupport; ///< what must survive: the queue file
    QString configuration;      ///< preferences
    QString runtime;            ///< lock and socket of the running instance

    /// As the desktop and the environment tell them. Called once, by main().
    [[nodiscard]] static Folders ofThisUser();

    /// All four below one folder, for throw-away profiles.
    [[nodiscard]] static Folders below(const QString& root);
};

} // namespace vormel
